#include "buehne.h"
#include "szenen.h"

#include "app/hauptmenue.h"
#include "controller/statusmenue.h"
#include "doubles/ereignisse.h"
#include "foundation/konstanten.h"
#include "mainwindow/fensterwelt.h"
#include "platform/linux/traysymbol.h"
#include "ui/hinweisfenster.h"

#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QPainter>
#include <QTest>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

QImage aufgeklappt(QMenu &menue, QAction *gewaehlt)
{
    menue.popup({});
    menue.setActiveAction(gewaehlt);
    ereignisseAbarbeiten();
    const QImage bild = menue.grab().toImage();
    menue.close();
    ereignisseAbarbeiten();
    return bild;
}

QImage statusmenues()
{
    Bogen bogen;
    Statusmenue menue;
    menue.kopfSetzen(u"Bibliothek ist abgeglichen · 18:07"_s);
    bogen.dazu(u"Ruhe"_s, aufgeklappt(menue, nullptr));
    menue.anmeldungSetzen(true);
    menue.updateZeigen(u"1.10"_s);
    bogen.dazu(u"Update, angehakt"_s, aufgeklappt(menue, menue.actions().at(3)));
    return bogen.bild();
}

QImage hauptmenues()
{
    Fensterwelt welt;
    menueBauen(*welt.fenster);
    welt.fenster->show();
    Bogen bogen;
    const auto menues = welt.fenster->findChildren<QMenu *>();
    for (QMenu *const menue : menues) {
        if (!menue->title().isEmpty()) {
            bogen.dazu(menue->title(), aufgeklappt(*menue, menue->actions().first()));
        }
    }
    return bogen.bild();
}

QImage hinweis()
{
    QMessageBox *const box = hinweisfenster(
        u"rekordbox ließ sich nicht starten"_s,
        u"Das Programm „rekordbox 7.1.4“ ist beschädigt oder unvollständig installiert."_s);
    box->open();
    ereignisseAbarbeiten();
    const QImage bild = box->grab().toImage();
    box->close();
    ereignisseAbarbeiten();
    return bild;
}

QImage ueber()
{
    Fensterwelt welt;
    menueBauen(*welt.fenster);
    welt.fenster->show();
    welt.fenster->aktionen().ueber->trigger();
    Fensterwelt::ruhe();
    auto *const box = welt.fenster->findChild<QMessageBox *>();
    box->setText(box->text().replace(VERSION, u"1.0"_s));
    Fensterwelt::ruhe();
    return box->grab().toImage();
}

// In bars of every kind, at their sizes: first where the bar has said its colour, then guessed.
QImage traysymbole()
{
    const QColor hell(0xf0, 0xf0, 0xf4);
    const QColor dunkel(0x20, 0x20, 0x24);
    const std::pair<QColor, Leistentinte> leisten[] = {
        {dunkel, Leistentinte::gesagt(Qt::white)},  {hell, Leistentinte::gesagt(dunkel)},
        {Qt::black, Leistentinte::geraten(dunkel)}, {hell, Leistentinte::geraten(dunkel)},
        {Qt::gray, Leistentinte::geraten(dunkel)},  {dunkel, Leistentinte::geraten(hell)},
        {Qt::white, Leistentinte::geraten(hell)},   {Qt::gray, Leistentinte::geraten(hell)},
    };
    constexpr int breite = 160;
    Bogen bogen;
    for (const QString &name :
         {u"icloud"_s, u"arrow.clockwise.icloud"_s, u"checkmark.icloud"_s,
          u"exclamationmark.icloud"_s, u"exclamationmark.icloud.fill"_s, u"icloud.slash"_s}) {
        QImage bild(breite * static_cast<int>(std::size(leisten)), 56, QImage::Format_RGB32);
        QPainter maler(&bild);
        int links = 0;
        for (const auto &[grund, tinte] : leisten) {
            maler.fillRect(links, 0, breite, bild.height(), grund);
            int x = links + 6;
            for (const int seite : {16, 22, 24, 48}) {
                traysymbol(name, tinte).paint(&maler, x, 4, seite, 48);
                x += seite + 10;
            }
            links += breite;
        }
        maler.end();
        bogen.dazu(name, bild);
    }
    return bogen.bild();
}

} // namespace

QList<Szene> schreibtischszenen()
{
    return {{u"statusmenue"_s, statusmenues, farben | anordnung},
            {u"hauptmenue"_s, hauptmenues, farben | anordnung},
            {u"hinweis"_s, hinweis, farben | anordnung},
            {u"ueber"_s, ueber, farben | anordnung},
            {u"traysymbol"_s, traysymbole, massstab}};
}

} // namespace kalvaro
