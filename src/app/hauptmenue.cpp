#include "app/hauptmenue.h"

#include "foundation/konstanten.h"
#include "mainwindow/hauptfenster.h"
#include "ui/hinweisfenster.h"

#include <QMenuBar>
#include <QMessageBox>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

void ueberZeigen(Hauptfenster &fenster)
{
    QMessageBox *const box = hinweisfenster(
        u"kalvaro "_s + VERSION,
        u"Hält die rekordbox-Bibliothek dieses Macs mit der Cloud im Gleichstand."_s, &fenster);
    box->setWindowTitle(u"Über kalvaro"_s);
    box->open();
}

} // namespace

void menueBauen(Hauptfenster &fenster)
{
    const Hauptfenster::Aktionen &aktionen = fenster.aktionen();
    auto *const leiste = new QMenuBar;
    QMenu *const programm = leiste->addMenu(u"kalvaro"_s);
    programm->addAction(aktionen.ueber);
    programm->addSeparator();
    programm->addAction(aktionen.ausblenden);
    programm->addSeparator();
    programm->addAction(aktionen.beenden);
    QMenu *const ansicht = leiste->addMenu(u"Fenster"_s);
    ansicht->addAction(aktionen.ablegen);
    ansicht->addAction(aktionen.schliessen);
    // Where the system has a menu for the program itself, all three of them stand there. The
    // toolkit knows no role for hiding.
    aktionen.ueber->setMenuRole(QAction::AboutRole);
    aktionen.ausblenden->setMenuRole(QAction::ApplicationSpecificRole);
    aktionen.beenden->setMenuRole(QAction::QuitRole);
    QObject::connect(&fenster, &Hauptfenster::ueberGewuenscht, &fenster,
                     [&fenster] { ueberZeigen(fenster); });
    fenster.menueleisteSetzen(leiste);
}

} // namespace kalvaro
