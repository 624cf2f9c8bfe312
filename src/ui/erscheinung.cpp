#include "ui/erscheinung.h"

#include "ui/farbe.h"
#include "ui/stil.h"
#include "ui/symbole.h"

#include <QApplication>
#include <QEvent>
#include <QStyle>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

struct Farbsatz
{
    QColor fenster, flaeche, schrift, sekundaer, haarlinie, akzent, verweis, gesperrt, gesperrtAuf;
};

const Farbsatz heller{QColor(0xf2f2f4), QColor(0xffffff), QColor(0x1d1d1f),
                      QColor(0x6e6e73), QColor(0xe6e6ea), QColor(0x0a66d8),
                      QColor(0x0a5cc8), QColor(0x7f7f84), QColor(0xe4e4e8)};
const Farbsatz dunkler{QColor(0x1e1e20), QColor(0x2a2a2d), QColor(0xf2f2f4),
                       QColor(0xa1a1a8), QColor(0x3a3a3e), QColor(0x2470ea),
                       QColor(0x5aa2ff), QColor(0x85858c), QColor(0x3a3a3e)};

} // namespace

QPalette eigenePalette(bool dunkel)
{
    const Farbsatz &f = dunkel ? dunkler : heller;
    QPalette p(f.flaeche, f.fenster);
    p.setColor(QPalette::Window, f.fenster);
    p.setColor(QPalette::WindowText, f.schrift);
    p.setColor(QPalette::Base, f.flaeche);
    p.setColor(QPalette::AlternateBase, f.fenster);
    p.setColor(QPalette::Text, f.schrift);
    p.setColor(QPalette::Button, f.flaeche);
    p.setColor(QPalette::ButtonText, f.schrift);
    p.setColor(QPalette::BrightText, f.schrift);
    p.setColor(QPalette::ToolTipBase, f.flaeche);
    p.setColor(QPalette::ToolTipText, f.schrift);
    p.setColor(QPalette::PlaceholderText, f.sekundaer);
    p.setColor(QPalette::Light, f.flaeche);
    p.setColor(QPalette::Midlight, f.haarlinie);
    p.setColor(QPalette::Mid, f.haarlinie);
    p.setColor(QPalette::Dark, f.gesperrt);
    p.setColor(QPalette::Shadow, Qt::black);
    p.setColor(QPalette::Highlight, f.akzent);
    p.setColor(QPalette::HighlightedText, Qt::white);
    p.setColor(QPalette::Link, f.verweis);
    p.setColor(QPalette::LinkVisited, f.verweis);
    for (const auto rolle : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                             QPalette::PlaceholderText, QPalette::ToolTipText}) {
        p.setColor(QPalette::Disabled, rolle, f.gesperrt);
    }
    p.setColor(QPalette::Disabled, QPalette::Button, f.gesperrtAuf);
    return p;
}

Erscheinung::Erscheinung(QApplication &anwendung, Farbwunsch wunsch)
    : anwendung_(anwendung)
{
    // Alerts stand before any window of ours, too.
    QApplication::setWindowIcon(programmsymbol());
    // Without a desktop's theme Qt falls back to Fusion and its standard palette.
    eigenerStil_ = anwendung.style()->name() == u"fusion"_s;
    if (eigenerStil_) {
        if (anwendung.palette() != anwendung.style()->standardPalette()) {
            const bool gesetzt = QApplication::testAttribute(Qt::AA_SetPalette);
            mitgebracht_ = gesetzt ? anwendung.palette() : QPalette();
            anwendung.installEventFilter(this);
        }
        anwendung.setStyle(new Stil);
        anpassen(wunsch);
    }
}

void Erscheinung::anpassen(Farbwunsch wunsch)
{
    wunsch_ = wunsch;
    if (!eigenerStil_) {
        return;
    }
    const auto passt = [](Helligkeit gewuenscht, bool dunkel) {
        return gewuenscht == Helligkeit::Offen || (gewuenscht == Helligkeit::Dunkel) == dunkel;
    };
    if (mitgebracht_) {
        anwendung_.setPalette(*mitgebracht_);
        if (passt(wunsch.ausdruecklich, Farbe::istDunkel(QApplication::palette()))) {
            return;
        }
    }
    const bool offen = wunsch.ausdruecklich == Helligkeit::Offen;
    anwendung_.setPalette(
        eigenePalette((offen ? wunsch.thema : wunsch.ausdruecklich) == Helligkeit::Dunkel));
}

// The desktop's palette may change before its wish or after it.
bool Erscheinung::eventFilter(QObject *objekt, QEvent *ereignis)
{
    if (ereignis->type() == QEvent::ThemeChange && objekt->isWindowType()) {
        QMetaObject::invokeMethod(
            this, [this] { anpassen(wunsch_); }, Qt::QueuedConnection);
    }
    return QObject::eventFilter(objekt, ereignis);
}

bool wenigerBewegung()
{
    return QApplication::style()->styleHint(QStyle::SH_Widget_Animation_Duration) == 0;
}

} // namespace kalvaro
