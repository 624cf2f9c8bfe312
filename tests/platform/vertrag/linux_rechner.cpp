// The adapters of Linux that need no message bus.

#include "doubles/buendel.h"
#include "doubles/dateien.h"
#include "platform/linux/endefrist.h"
#include "platform/linux/linuxprozesse.h"
#include "platform/linux/linuxschreibtisch.h"
#include "platform/linux/signale.h"
#include "platform/linux/xdganmeldestart.h"
#include "prueflinge.h"

#include <QDir>
#include <QTemporaryDir>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

const QString wer = u"linux"_s;

struct Startpruefling final : Anmeldestartpruefling
{
    Anmeldestart &start() override { return xdg; }
    [[nodiscard]] std::optional<QString> datei() const override { return autostartdatei(ort); }
    void verhindern() override { dateiSchreiben(ort, "a file where the folder should be"); }

    QTemporaryDir ordner;
    const QString ort = ordner.filePath(u"fehlt"_s);
    XdgAnmeldestart xdg{u"/opt/kalvaro"_s, ort};
};
const Vertrag<Anmeldestartpruefling> anmeldestart(wer, std::make_unique<Startpruefling>);

struct Signalpruefling final : Endepruefling
{
    [[nodiscard]] std::shared_ptr<void> hoeren(std::function<void()> ende) const override
    {
        return std::make_shared<Signale>(std::move(ende));
    }
    [[nodiscard]] bool wartet() const override { return endesignalWartet(); }
    void spaetestensEnden(int millisekunden, int status) const override
    {
        endeErzwingen(millisekunden, status);
    }
};
const Vertrag<Endepruefling> endesignale(wer, std::make_unique<Signalpruefling>);

struct Tabellenpruefling final : Prozesspruefling
{
    Tabellenpruefling()
    {
        dateiSchreiben(werkzeug,
                       "#!/bin/sh\nfor wer; do :; done\ncat \"${0%/*}/laufend $wer\" 2>&-\n", true);
    }

    [[nodiscard]] const Prozesse &prozesse() const override { return tabelle; }
    void laufen(const QString &name, int anzahl) override
    {
        dateiSchreiben(ordner.filePath(u"laufend "_s + name), QByteArray("1\n").repeated(anzahl));
    }
    void buendel(const QStringList &orte) override
    {
        for (const QString &ort : orte + orte) {
            const QString prozess = ordner.filePath(u"proc/%1"_s.arg(++prozesszahl));
            QDir().mkpath(prozess);
            QFile::link(ort + u"/Contents/MacOS/programm"_s, prozess + u"/exe"_s);
        }
    }
    bool ohneZaehlung() override { return QFile::remove(werkzeug); }
    bool zaehlungHaengt() override
    {
        dateiSchreiben(werkzeug, "#!/bin/sh\nexec sleep 1000\n", true);
        return true;
    }

    QTemporaryDir ordner;
    int prozesszahl = 0;
    const QString werkzeug = ordner.filePath(u"werkzeug"_s);
    const LinuxProzesse tabelle{uhr, werkzeug, QFile::encodeName(ordner.filePath(u"proc"_s))};
};
const Vertrag<Prozesspruefling> prozesse(wer, std::make_unique<Tabellenpruefling>);

struct Auskunftspruefling final : Schreibtischpruefling
{
    [[nodiscard]] const Schreibtischauskunft &auskunft() const override { return schreibtisch; }
    [[nodiscard]] QString datei() const override { return autostartdatei(ordner.path()); }
    void anschalten(const QString &programm) override
    {
        XdgAnmeldestart(programm, ordner.path()).setzen(true);
    }
    QString abschalten() override
    {
        dateiSchreiben(datei(), dateiLesen(datei()) + "Hidden=true\n");
        return u"Hidden=true"_s;
    }

    QTemporaryDir ordner;
    const LinuxSchreibtisch schreibtisch{QDBusConnection(u"keiner"_s), ordner.path()};
};
const Vertrag<Schreibtischpruefling> schreibtisch(wer, std::make_unique<Auskunftspruefling>);

} // namespace

} // namespace kalvaro
