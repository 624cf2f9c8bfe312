// What the check-up makes of this computer.

#include "pruefung/rechnerlage.h"

#include "testlauf.h"

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

using Dienst = Schreibtischauskunft::Mitteilungsdienst;
using Eintrag = Schreibtischauskunft::Anmeldeeintrag;
using Leiste = Schreibtischauskunft::Leiste;

} // namespace

class TestRechnerlage final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void befunde_data()
    {
        QTest::addColumn<Befund>("befund");
        QTest::addColumn<Befund>("erwartet");
        const auto zeilen = [](const QString &bereich, const QString &name) {
            return [bereich, name](const char *was, const Befund &befund, const QString &text,
                                   const QString &schritt = {}) {
                QTest::newRow(was) << befund << Befund{bereich, name, text, schritt};
            };
        };
        const auto installiert = [](const QString &version) {
            return Installation{version, QUrl(u"file:///A/rekordbox.app"_s)};
        };

        const auto ordner = zeilen(u"datenordner"_s, u"Datenordner"_s);
        const Ordnerlage gut{u"/d"_s, true, true, true, {}, 76.6e9};
        Ordnerlage lage = gut;
        ordner("a folder", datenordnerbefund(gut), u"„/d“ ist beschreibbar, 76,6 GB frei"_s);
        lage.frei.reset();
        ordner("a folder of unknown size", datenordnerbefund(lage), u"„/d“ ist beschreibbar"_s);
        lage = {u"/d"_s, false, false, true, {}, 76.6e9};
        ordner("none yet", datenordnerbefund(lage),
               u"„/d“ fehlt noch und lässt sich anlegen, 76,6 GB frei"_s);
        lage.beschreibbar = false;
        ordner("none possible", datenordnerbefund(lage), u"„/d“ lässt sich nicht anlegen."_s,
               u"Gib deinem Benutzer das Schreibrecht im Ordner darüber."_s);
        lage = {u"/d"_s, true, true, false, {}, 76.6e9};
        ordner("a folder that may not be written", datenordnerbefund(lage),
               u"„/d“ ist nicht beschreibbar."_s, u"Gib deinem Benutzer das Schreibrecht daran."_s);
        lage = {u"/d"_s, true, false, false, {}, 76.6e9};
        ordner("a file in its place", datenordnerbefund(lage), u"„/d“ ist kein Ordner."_s,
               u"Benenne um, was dort liegt."_s);
        lage = gut;
        lage.gesperrt = QStringList{u"/d/a"_s, u"/d/b"_s};
        ordner("files that may not be written", datenordnerbefund(lage),
               u"„/d/a“, „/d/b“ ist nicht beschreibbar."_s,
               u"Gib deinem Benutzer das Schreibrecht daran."_s);
        lage = gut;
        lage.frei = 1e6;
        ordner("a full disk", datenordnerbefund(lage),
               u"„/d“ ist beschreibbar, aber der Datenträger ist voll, 0,0 GB frei."_s,
               u"Schaffe Platz auf dem Datenträger."_s);

        const auto rekordbox = zeilen(u"rekordbox"_s, u"rekordbox"_s);
        rekordbox("no copy", rekordboxbefund({}, u"/A"_s), u"In „/A“ liegt keines."_s,
                  u"Installiere rekordbox dort."_s);
        rekordbox("two copies",
                  rekordboxbefund({installiert(u"7.1.4"_s), installiert(u"6.8.5"_s)}, u"/A"_s),
                  u"7.1.4, 6.8.5 in „/A“"_s);
        rekordbox("a copy that does not tell", rekordboxbefund({installiert(u"0"_s)}, u"/A"_s),
                  u"eine unbekannte Version in „/A“"_s);

        const auto programme = zeilen(u"prozesse"_s, u"Programme"_s);
        programme("both run", prozessbefund(true, true),
                  u"rekordbox läuft, rekordboxAgent läuft"_s);
        programme("the agent runs", prozessbefund(false, true),
                  u"rekordbox läuft nicht, rekordboxAgent läuft"_s);

        const auto bus = zeilen(u"sitzungsbus"_s, u"Sitzungsbus"_s);
        bus("a bus", sitzungsbusbefund(true), u"antwortet"_s);
        bus("no bus", sitzungsbusbefund(false), u"antwortet nicht"_s,
            u"Melde dich am Schreibtisch an und prüfe dort; fehlt der Bus auch da, installiere "
            "„dbus-user-session“."_s);

        const auto mitteilungen = zeilen(u"mitteilungen"_s, u"Mitteilungen"_s);
        mitteilungen("a service",
                     mitteilungsbefund({Dienst::Zustand::Laeuft, u"dunst 1.9"_s}, true),
                     u"zeigt „dunst 1.9“"_s);
        mitteilungen("one that starts when needed",
                     mitteilungsbefund({Dienst::Zustand::BeiBedarf, {}}, true),
                     u"zeigt ein Dienst, der mit der ersten startet"_s);
        mitteilungen("a silent one", mitteilungsbefund({Dienst::Zustand::Stumm, {}}, true),
                     u"Der Dienst dafür antwortet nicht."_s, u"Melde dich ab und wieder an."_s);
        mitteilungen("none", mitteilungsbefund({}, true),
                     u"Es gibt keinen Dienst, der sie zeigt."_s,
                     u"Installiere einen, zum Beispiel „dunst“."_s);
        mitteilungen("no bus for it", mitteilungsbefund({}, false),
                     u"kommen ohne Sitzungsbus nicht an"_s, u"Sorge erst für den Sitzungsbus."_s);

        const auto leiste = zeilen(u"menueleiste"_s, u"Menüleiste"_s);
        leiste("StatusNotifier", leistenbefund(Leiste::StatusNotifier),
               u"nimmt das Symbol auf (StatusNotifierItem)"_s);
        leiste("XEmbed", leistenbefund(Leiste::XEmbed), u"nimmt das Symbol auf (XEmbed)"_s);
        leiste("no tray is no fault", leistenbefund(Leiste::Keine),
               u"keine, die Symbole aufnimmt; das Fenster wird nur abgelegt, ein weiterer Start "
               "holt es zurück"_s);

        const auto start = zeilen(u"anmeldestart"_s, u"Start beim Anmelden"_s);
        const QString schritt = u"Schalte den Start beim Anmelden in kalvaro aus und, wenn du ihn "
                                "willst, wieder ein."_s;
        start("off is no fault", anmeldebefund({u"/e"_s, false, {}, {}, false}), u"aus"_s);
        start("on", anmeldebefund({u"/e"_s, true, {}, u"/usr/bin/kalvaro"_s, true}),
              u"an, mit „/usr/bin/kalvaro“"_s);
        start("switched off in the entry",
              anmeldebefund({u"/e"_s, true, u"Hidden=true"_s, u"/usr/bin/kalvaro"_s, true}),
              u"„/e“ ist mit „Hidden=true“ abgeschaltet."_s, schritt);
        start("an entry without a program", anmeldebefund({u"/e"_s, true, {}, {}, false}),
              u"„/e“ nennt kein Programm."_s, schritt);
        start("an entry for a program that is gone",
              anmeldebefund({u"/e"_s, true, {}, u"/weg"_s, false}),
              u"„/e“ nennt „/weg“, das es nicht gibt oder das sich nicht ausführen lässt."_s,
              schritt);

        zeilen(u"versionen"_s, u"Versionen"_s)("versions", versionsbefund(u"6.4"_s, u"Debian"_s),
                                               u"kalvaro 1.4, Qt 6.4, Debian"_s);
    }
    void befunde()
    {
        QFETCH(const Befund, befund);
        QTEST(befund, "erwartet");
    }
};

KALVARO_TEST(TestRechnerlage)
#include "tst_rechnerlage.moc"
