// A program with nothing but its item in the tray. Lines on standard input: "symbol NAME",
// "hinweis TEXT", "zeile TEXT", "lage"; what happens to the menu, and whether there is a place for
// the item, stands on standard output.
#include "foundation/uhr.h"
#include "platform/linux/traystatusobjekt.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QSocketNotifier>

#include <array>
#include <cstdio>
#include <unistd.h>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

void sagen(const QString &zeile)
{
    std::fputs((zeile + u'\n').toUtf8().constData(), stdout);
    std::fflush(stdout);
}

} // namespace

int main(int argc, char *argv[])
{
    sitzungsbusFestlegen();
    const QApplication programm(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QMenu menue;
    QAction *kopf = menue.addAction(u"kopf"_s);
    kopf->setEnabled(false);
    menue.addSeparator();
    QObject::connect(menue.addAction(u"eins"_s), &QAction::triggered, &menue,
                     [] { sagen(u"eins"_s + qEnvironmentVariable("XDG_ACTIVATION_TOKEN")); });
    QAction *haken = menue.addAction(u"haken"_s);
    haken->setCheckable(true);
    QObject::connect(&menue, &QMenu::aboutToShow, haken, [haken] {
        haken->setChecked(!haken->isChecked());
        sagen(u"oeffnet"_s);
    });

    Systemuhr uhr;
    TrayStatusobjekt status(uhr);
    status.menueSetzen(&menue);
    status.symbolSetzen(u"icloud"_s);
    status.hinweisSetzen(u"kalvaro"_s);
    const auto lage = [&status] {
        sagen(status.erreichbar() ? u"erreichbar"_s : u"unerreichbar"_s);
    };
    status.beiWechsel(lage);

    QSocketNotifier eingabe(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&eingabe, &QSocketNotifier::activated, &menue, [&] {
        std::array<char, 4096> bytes = {};
        const ssize_t anzahl = ::read(STDIN_FILENO, bytes.data(), bytes.size());
        if (anzahl <= 0) {
            QCoreApplication::quit();
            return;
        }
        const QString befehl = QString::fromUtf8(bytes.data(), anzahl).chopped(1);
        const QString wert = befehl.section(u' ', 1);
        if (befehl.startsWith(u"symbol ")) {
            status.symbolSetzen(wert);
        } else if (befehl.startsWith(u"hinweis ")) {
            status.hinweisSetzen(wert);
        } else if (befehl.startsWith(u"zeile ")) {
            kopf->setText(wert);
        } else if (befehl == u"lage") {
            lage();
        }
        sagen(u"getan"_s);
    });
    sagen(u"bereit"_s);
    return QCoreApplication::exec();
}
