#include "ansichten.h"

#include "ui/erscheinung.h"
#include "ui/stil.h"

#include <QApplication>
#include <QFont>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QProxyStyle>
#include <QScreen>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

bool bewegt = false;

// In place of Qt's icons, which are drawn anew now and then: a disc.
class Scheibe final : public QIconEngine
{
public:
    void paint(QPainter *maler, const QRect &wo, QIcon::Mode modus, QIcon::State) override
    {
        maler->setRenderHint(QPainter::Antialiasing);
        maler->setOpacity(modus == QIcon::Disabled ? 0.5 : 1);
        maler->setPen(Qt::NoPen);
        maler->setBrush(Qt::gray);
        maler->drawEllipse(QRectF(wo).adjusted(1, 1, -1, -1));
    }

    QPixmap pixmap(const QSize &groesse, QIcon::Mode modus, QIcon::State zustand) override
    {
        QPixmap bild(groesse);
        bild.fill(Qt::transparent);
        QPainter maler(&bild);
        paint(&maler, bild.rect(), modus, zustand);
        return bild;
    }

    QIconEngine *clone() const override { return new Scheibe; }
};

class Standbildstil final : public QProxyStyle
{
public:
    Standbildstil()
        : QProxyStyle(new Stil)
    {
    }

    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *mehr) const override
    {
        if (hint == SH_Widget_Animation_Duration) {
            return bewegt ? 1 : 0;
        }
        return QProxyStyle::styleHint(hint, option, widget, mehr);
    }

    QIcon standardIcon(StandardPixmap, const QStyleOption *, const QWidget *) const override
    {
        return QIcon(new Scheibe);
    }
};

// As desktops for people with weak sight bring it.
QPalette kontrastreich()
{
    QPalette p(Qt::black, Qt::black);
    for (const auto rolle : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                             QPalette::BrightText, QPalette::ToolTipText, QPalette::Light}) {
        p.setColor(rolle, Qt::white);
    }
    for (const auto rolle : {QPalette::Window, QPalette::Base, QPalette::Button,
                             QPalette::AlternateBase, QPalette::ToolTipBase}) {
        p.setColor(rolle, Qt::black);
    }
    p.setColor(QPalette::Midlight, QColor(0xc0c0c0));
    p.setColor(QPalette::Mid, QColor(0xc0c0c0));
    p.setColor(QPalette::Dark, QColor(0xc0c0c0));
    p.setColor(QPalette::PlaceholderText, QColor(0xc0c0c0));
    p.setColor(QPalette::Highlight, QColor(0x1aebff));
    p.setColor(QPalette::HighlightedText, Qt::black);
    p.setColor(QPalette::Link, QColor(0xffff00));
    p.setColor(QPalette::LinkVisited, QColor(0xffff00));
    for (const auto rolle : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        p.setColor(QPalette::Disabled, rolle, QColor(0x3ff23f));
    }
    return p;
}

QPalette palette(Ansicht ansicht)
{
    switch (ansicht) {
    case Ansicht::Dunkel:
        return eigenePalette(true);
    case Ansicht::Kontrast:
        return kontrastreich();
    case Ansicht::Hell:
    case Ansicht::Rechts:
    case Ansicht::Gross:
    case Ansicht::Riesig:
    case Ansicht::Doppelt:
    case Ansicht::Krumm:
        return eigenePalette(false);
    }
    Q_UNREACHABLE();
}

} // namespace

QList<Ansicht> ansichten()
{
    const double massstab = QGuiApplication::primaryScreen()->devicePixelRatio();
    if (massstab > 1) {
        return {massstab < 2 ? Ansicht::Krumm : Ansicht::Doppelt};
    }
    return {Ansicht::Hell,   Ansicht::Dunkel, Ansicht::Kontrast,
            Ansicht::Rechts, Ansicht::Gross,  Ansicht::Riesig};
}

QString name(Ansicht ansicht)
{
    switch (ansicht) {
    case Ansicht::Hell:
        return u"hell"_s;
    case Ansicht::Dunkel:
        return u"dunkel"_s;
    case Ansicht::Kontrast:
        return u"kontrast"_s;
    case Ansicht::Rechts:
        return u"rechts"_s;
    case Ansicht::Gross:
        return u"gross"_s;
    case Ansicht::Riesig:
        return u"riesig"_s;
    case Ansicht::Doppelt:
        return u"doppelt"_s;
    case Ansicht::Krumm:
        return u"krumm"_s;
    }
    Q_UNREACHABLE();
}

void herstellen(Ansicht ansicht)
{
    QFont schrift(u"DejaVu Sans"_s);
    schrift.setPixelSize(ansicht == Ansicht::Riesig ? 26 : ansicht == Ansicht::Gross ? 20 : 13);
    QApplication::setFont(schrift);
    QApplication::setPalette(palette(ansicht));
    QApplication::setLayoutDirection(ansicht == Ansicht::Rechts ? Qt::RightToLeft
                                                                : Qt::LeftToRight);
}

void umgebungFestlegen()
{
    // With a large scale the screen has more pixels, too.
    qputenv("QT_QPA_PLATFORM", qEnvironmentVariableIsSet("QT_SCALE_FACTOR")
                                   ? "offscreen:configfile=" KALVARO_BILDER_ORDNER "/schirm.json"
                                   : "offscreen");
    qputenv("FONTCONFIG_FILE", KALVARO_BILDER_ORDNER "/fonts.conf");
    for (const char *name : {"QT_STYLE_OVERRIDE", "QT_QPA_PLATFORMTHEME", "QT_FONT_DPI",
                             "QT_SCREEN_SCALE_FACTORS", "QT_SCALE_FACTOR_ROUNDING_POLICY"}) {
        qunsetenv(name);
    }
}

void stilFestlegen()
{
    QApplication::setStyle(new Standbildstil);
    QApplication::setCursorFlashTime(0);
}

Bewegung::Bewegung()
{
    bewegt = true;
}

Bewegung::~Bewegung()
{
    bewegt = false;
}

} // namespace kalvaro
