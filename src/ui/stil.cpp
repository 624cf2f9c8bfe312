#include "ui/stil.h"

#include "ui/farbe.h"
#include "ui/stilteile.h"

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

void knopfMalen(QPainter &maler, const QStyleOption &option)
{
    const QPalette &palette = option.palette;
    const bool haupt = istHauptknopf(&option);
    const bool gedrueckt = option.state.testFlag(QStyle::State_Sunken);
    QColor flaeche = haupt ? Farbe::akzent(palette) : palette.color(QPalette::Button);
    if (gedrueckt) {
        flaeche = Farbe::ueber(QColor(0, 0, 0, 28), flaeche);
    } else if (option.state.testFlag(QStyle::State_MouseOver)) {
        flaeche = Farbe::ueber(QColor(128, 128, 128, 18), flaeche);
    }
    const QColor kontur = Farbe::ueber(QColor(128, 128, 128, 70), flaeche);
    rundMalen(maler, option.rect, knopfradius, flaeche,
              QPen(kontur, 1, haupt ? Qt::NoPen : Qt::SolidLine));
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

void Stil::drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *maler,
                         const QWidget *widget) const
{
    maler->save();
    switch (element) {
    case PE_IndicatorCheckBox:
    case PE_IndicatorItemViewItemCheck:
        kaestchenMalen(*maler, option->rect, option->palette, option->state.testFlag(State_On),
                       !option->state.testFlag(State_Enabled));
        break;
    case PE_PanelButtonCommand:
        knopfMalen(*maler, *option);
        break;
    case PE_PanelLineEdit:
    case PE_FrameLineEdit:
        feldMalen(*maler, *option);
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
        fokusMalen(*maler, option->rect, knopfradius, option->palette);
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
    if (element == CE_PushButtonLabel && knopf != nullptr && istHauptknopf(option)) {
        QStyleOptionButton weiss = *knopf;
        weiss.palette.setColor(QPalette::ButtonText, Farbe::akzentSchrift(option->palette));
        QProxyStyle::drawControl(element, &weiss, maler, widget);
        return;
    }
    const auto *const auswahl = qstyleoption_cast<const QStyleOptionComboBox *>(option);
    if (element == CE_ComboBoxLabel && auswahl != nullptr && !auswahl->editable) {
        QStyleOptionComboBox passend = *auswahl;
        passend.currentText = option->fontMetrics.elidedText(auswahl->currentText, Qt::ElideRight,
                                                             auswahltext(*auswahl).width() - 2);
        QProxyStyle::drawControl(element, &passend, maler, widget);
        return;
    }
    QProxyStyle::drawControl(element, option, maler, widget);
}

void Stil::drawComplexControl(ComplexControl element, const QStyleOptionComplex *option,
                              QPainter *maler, const QWidget *widget) const
{
    maler->save();
    const auto *const auswahl = qstyleoption_cast<const QStyleOptionComboBox *>(option);
    const auto *const balken = qstyleoption_cast<const QStyleOptionSlider *>(option);
    if (element == CC_ComboBox && auswahl != nullptr && !auswahl->editable) {
        auswahlMalen(*maler, *auswahl);
    } else if (element == CC_ScrollBar && balken != nullptr) {
        rollbalkenMalen(*maler, *balken, rollgrund(balken->palette, widget));
    } else {
        QProxyStyle::drawComplexControl(element, option, maler, widget);
    }
    maler->restore();
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
