#include "ui/stil.h"

#include "ui/beschriftung.h"
#include "ui/farbe.h"
#include "ui/stilteile.h"
#include "ui/unterlage.h"

#include <QAbstractScrollArea>
#include <QPainter>
#include <QStyleOptionButton>
#include <QStyleOptionComboBox>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr double knopfradius = 7;

bool istHauptknopf(const QStyleOption *option)
{
    const auto *const knopf = qstyleoption_cast<const QStyleOptionButton *>(option);
    return knopf != nullptr && knopf->features.testFlag(QStyleOptionButton::DefaultButton) &&
           knopf->state.testFlag(QStyle::State_Enabled);
}

QColor knopfflaeche(const QStyleOption &option)
{
    const QPalette &palette = option.palette;
    const bool gedrueckt = option.state.testFlag(QStyle::State_Sunken);
    const bool beruehrt = gedrueckt || option.state.testFlag(QStyle::State_MouseOver);
    if (istHauptknopf(&option)) {
        const QColor flaeche = Farbe::akzent(palette);
        return beruehrt ? unterZeiger(flaeche, Farbe::akzentSchrift(palette), gedrueckt) : flaeche;
    }
    const QColor flaeche = palette.color(QPalette::Button);
    const QColor schleier = gedrueckt ? QColor(0, 0, 0, 28) : QColor(128, 128, 128, 18);
    return beruehrt ? Farbe::ueber(schleier, flaeche) : flaeche;
}

void knopfMalen(QPainter &maler, const QStyleOption &option, const QColor &grund)
{
    const QColor flaeche = knopfflaeche(option);
    const bool haupt = istHauptknopf(&option);
    rundMalen(maler, option.rect, knopfradius, flaeche,
              haupt ? akzentrand(option.palette, grund) : QPen(Farbe::kontur(grund, flaeche), 1));
    if (!option.state.testFlag(QStyle::State_HasFocus) ||
        !option.state.testFlag(QStyle::State_KeyboardFocusChange)) {
        return;
    }
    if (haupt) {
        innenringMalen(maler, option.rect, knopfradius, Farbe::akzentSchrift(option.palette));
    } else {
        fokusMalen(maler, option.rect, knopfradius, Farbe::fokus(option.palette, grund, flaeche));
    }
}

QColor grundVon(const QStyleOption &option, const QWidget *widget)
{
    return widget != nullptr ? untergrund(*widget) : Farbe::fenster(option.palette);
}

// A copy whose texts can be read on `grund`.
template<typename Option>
Option aufGrund(const Option &option, const QColor &grund)
{
    Option kopie = option;
    kopie.palette = Farbe::aufGrund(option.palette, grund);
    return kopie;
}

// The text of a menu's row, which Qt draws in the menu's own direction, with its order kept; what
// follows the tabulator is a shortcut.
QString abgesetzt(const QString &zeile)
{
    constexpr QChar linksNachRechts(0x2066); // the Unicode isolate, and its end
    constexpr QChar ende(0x2069);
    const qsizetype tab = zeile.indexOf(u'\t');
    const QString titel = zeile.left(tab);
    return vonRechts(titel) || titel.isEmpty()
               ? zeile
               : linksNachRechts + titel + ende + zeile.mid(titel.size());
}

// The frame of a list, a tree or a text area; not that of a pop-up list, which is a window.
bool istListe(const QWidget *widget)
{
    return qobject_cast<const QAbstractScrollArea *>(widget) != nullptr;
}

// The colour of what a scroll bar scrolls.
QColor rollgrund(const QPalette &palette, const QWidget *balken)
{
    // Between the two lies the container that a scroll area gives its bars.
    const QWidget *const halter = balken != nullptr ? balken->parentWidget() : nullptr;
    const auto *const bereich =
        halter != nullptr ? qobject_cast<const QAbstractScrollArea *>(halter->parentWidget())
                          : nullptr;
    return bereich != nullptr ? palette.color(bereich->viewport()->backgroundRole())
                              : Farbe::flaeche(palette);
}

} // namespace

Stil::Stil()
    : QProxyStyle(u"fusion"_s)
{
}

void Stil::polish(QPalette &palette)
{
    QProxyStyle::polish(palette);
    palette = Farbe::lesbarePalette(palette);
}

void Stil::drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *maler,
                         const QWidget *widget) const
{
    maler->save();
    switch (element) {
    case PE_IndicatorCheckBox:
    case PE_IndicatorItemViewItemCheck:
        kaestchenMalen(*maler, option->rect, option->palette,
                       element == PE_IndicatorCheckBox ? grundVon(*option, widget)
                                                       : Farbe::flaeche(option->palette),
                       option->state.testFlag(State_On), !option->state.testFlag(State_Enabled));
        break;
    case PE_PanelButtonCommand:
        knopfMalen(*maler, *option, grundVon(*option, widget));
        break;
    case PE_PanelLineEdit:
    case PE_FrameLineEdit:
        feldMalen(*maler, *option, grundVon(*option, widget));
        break;
    case PE_Frame:
        if (istListe(widget)) {
            listeMalen(*maler, *option);
        } else {
            QProxyStyle::drawPrimitive(element, option, maler, widget);
        }
        break;
    case PE_IndicatorBranch:
        klappzeichenMalen(*maler, *option);
        break;
    case PE_FrameFocusRect:
        fokusMalen(*maler, option->rect, knopfradius,
                   Farbe::fokus(option->palette, grundVon(*option, widget),
                                option->palette.color(QPalette::Button)));
        break;
    default:
        QProxyStyle::drawPrimitive(element, option, maler, widget);
    }
    maler->restore();
}

void Stil::drawControl(ControlElement element, const QStyleOption *option, QPainter *maler,
                       const QWidget *widget) const
{
    const auto *const knopf = qstyleoption_cast<const QStyleOptionButton *>(option);
    const auto *const auswahl = qstyleoption_cast<const QStyleOptionComboBox *>(option);
    const auto *const zeile = qstyleoption_cast<const QStyleOptionMenuItem *>(option);
    if (element == CE_PushButtonLabel && knopf != nullptr) {
        QStyleOptionButton kopie = aufGrund(*knopf, knopfflaeche(*knopf));
        if (istHauptknopf(knopf)) {
            kopie.palette.setColor(QPalette::ButtonText, Farbe::akzentSchrift(knopf->palette));
        }
        QProxyStyle::drawControl(element, &kopie, maler, widget);
    } else if (element == CE_ComboBoxLabel && auswahl != nullptr) {
        auto kopie = aufGrund(*auswahl, feldflaeche(*auswahl, grundVon(*auswahl, widget)));
        if (!auswahl->editable) {
            kopie.currentText = option->fontMetrics.elidedText(auswahl->currentText, Qt::ElideRight,
                                                               auswahltext(*auswahl).width() - 2);
        }
        QProxyStyle::drawControl(element, &kopie, maler, widget);
    } else if ((element == CE_MenuBarItem || element == CE_MenuItem) && zeile != nullptr) {
        const QPalette &palette = zeile->palette;
        auto kopie =
            aufGrund(*zeile, element == CE_MenuBarItem ? Farbe::fenster(palette)
                                                       : Farbe::flaeche(palette).lighter(108));
        if (element == CE_MenuItem && zeile->direction == Qt::RightToLeft) {
            kopie.text = abgesetzt(zeile->text);
        }
        QProxyStyle::drawControl(element, &kopie, maler, widget);
        if (element == CE_MenuBarItem && !zeile->state.testFlag(State_Selected)) {
            // At scales above 1 Fusion's line under the bar stops short of each title's end.
            kopie.rect.adjust(-1, 0, 1, 0);
            maler->save();
            maler->setClipRect(zeile->rect.adjusted(0, zeile->rect.height() - 2, 0, 0),
                               Qt::IntersectClip);
            QProxyStyle::drawControl(CE_MenuBarEmptyArea, &kopie, maler, widget);
            maler->restore();
        }
    } else {
        QProxyStyle::drawControl(element, option, maler, widget);
    }
}

void Stil::drawComplexControl(ComplexControl element, const QStyleOptionComplex *option,
                              QPainter *maler, const QWidget *widget) const
{
    maler->save();
    const auto *const auswahl = qstyleoption_cast<const QStyleOptionComboBox *>(option);
    const auto *const balken = qstyleoption_cast<const QStyleOptionSlider *>(option);
    if (element == CC_ComboBox && auswahl != nullptr && !auswahl->editable) {
        auswahlMalen(*maler, *auswahl, grundVon(*auswahl, widget));
    } else if (element == CC_ScrollBar && balken != nullptr) {
        rollbalkenMalen(*maler, *balken, rollgrund(balken->palette, widget));
    } else {
        QProxyStyle::drawComplexControl(element, option, maler, widget);
    }
    maler->restore();
}

void Stil::drawItemText(QPainter *maler, const QRect &platz, int flags, const QPalette &palette,
                        bool an, const QString &inhalt, QPalette::ColorRole rolle) const
{
    const Qt::LayoutDirection vorher = maler->layoutDirection();
    const Qt::Alignment seite =
        QStyle::visualAlignment(vorher, Qt::Alignment(flags & Qt::AlignHorizontal_Mask));
    constexpr int fest = Qt::AlignHorizontal_Mask | Qt::TextForceRightToLeft;
    maler->setLayoutDirection(leserichtung(inhalt));
    QProxyStyle::drawItemText(maler, platz, (flags & ~fest) | static_cast<int>(seite), palette, an,
                              inhalt, rolle);
    maler->setLayoutDirection(vorher);
}

QRect Stil::subControlRect(ComplexControl element, const QStyleOptionComplex *option,
                           SubControl stueck, const QWidget *widget) const
{
    const auto *const auswahl = qstyleoption_cast<const QStyleOptionComboBox *>(option);
    const auto *const balken = qstyleoption_cast<const QStyleOptionSlider *>(option);
    if (element == CC_ComboBox && stueck == SC_ComboBoxEditField && auswahl != nullptr) {
        return auswahltext(*auswahl);
    }
    if (element == CC_ScrollBar && balken != nullptr) {
        return rollbalkenstueck(*balken, stueck);
    }
    return QProxyStyle::subControlRect(element, option, stueck, widget);
}

QRect Stil::subElementRect(SubElement element, const QStyleOption *option,
                           const QWidget *widget) const
{
    constexpr int textrand = 7; // besides the frame and the margin that a line edit has by itself
    const QRect platz = QProxyStyle::subElementRect(element, option, widget);
    return element == SE_LineEditContents ? platz.adjusted(textrand, 0, -textrand, 0) : platz;
}

int Stil::styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                    QStyleHintReturn *mehr) const
{
    // A second copy in the palette's Light, which on a dark desktop may be the stronger one.
    return hint == SH_EtchDisabledText ? 0 : QProxyStyle::styleHint(hint, option, widget, mehr);
}

int Stil::pixelMetric(PixelMetric mass, const QStyleOption *option, const QWidget *widget) const
{
    switch (mass) {
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
        return kaestchen();
    case PM_ButtonDefaultIndicator:
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
        return 0;
    case PM_ScrollBarExtent:
        return rollbreite;
    case PM_DefaultFrameWidth:
        return istListe(widget) ? listenrand : QProxyStyle::pixelMetric(mass, option, widget);
    default:
        return QProxyStyle::pixelMetric(mass, option, widget);
    }
}

QSize Stil::sizeFromContents(ContentsType art, const QStyleOption *option, const QSize &inhalt,
                             const QWidget *widget) const
{
    constexpr QSize rand(28, 12);
    if (art == CT_PushButton) {
        return inhalt + rand;
    }
    return QProxyStyle::sizeFromContents(art, option, inhalt, widget);
}

} // namespace kalvaro
