// All that can happen in a simulated world, and how often.

#include "verlauf.h"
#include "welt.h"

#include <array>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

void serverEreignisse(std::vector<Ereignis> &alle)
{
    const auto zeile = [](const char *was, int ausgang) {
        return QString::fromUtf8(was) +
               QString::fromUtf8(ausgangsname(static_cast<Ausgang>(ausgang)));
    };
    for (int i = 0; i < ausgaenge; ++i) {
        const int gewicht = i == 0 ? 40 : 8;
        alle.push_back({zeile("Antwort: ", i), gewicht, &Welt::antworten, i});
        alle.push_back({zeile("Antwort auf das Neueste: ", i), 1, &Welt::spaetesteAntworten, i});
        alle.push_back({zeile("Server antworten sofort: ", i), 1, &Welt::laune, i});
    }
    alle.push_back({u"Server lassen warten"_s, 30, &Welt::laune, -1});
    const std::array server{&Welt::server1, &Welt::server2, &Welt::server3};
    for (size_t i = 0; i < server.size(); ++i) {
        const QString name = u"Server %1 "_s.arg(i + 1);
        alle.push_back({name + u"lebt"_s, 8, server.at(i), 0});
        alle.push_back({name + u"ist tot"_s, 4, server.at(i), 1});
        alle.push_back({name + u"schweigt"_s, 1, server.at(i), 2});
    }
}

void bedienungen(std::vector<Ereignis> &alle)
{
    alle.push_back({u"Menü: kalvaro öffnen"_s, 20, &Welt::menue, 0});
    alle.push_back({u"Menü: Jetzt abgleichen"_s, 12, &Welt::menue, 1});
    alle.push_back({u"Menü: rekordbox starten"_s, 40, &Welt::menue, 2});
    alle.push_back({u"Menü: Beim Anmelden starten"_s, 2, &Welt::menue, 3});
    alle.push_back({u"Fenster: rekordbox starten"_s, 40, &Welt::knopf, 0});
    alle.push_back({u"Fenster: Countdown abbrechen"_s, 6, &Welt::knopf, 1});
    alle.push_back({u"Fenster: Jetzt abgleichen"_s, 20, &Welt::knopf, 2});
    alle.push_back({u"Fenster: Haken beim Autostart"_s, 10, &Welt::knopf, 3});
    alle.push_back({u"Fenster: schließen"_s, 10, &Welt::fensterSchliessen, 0});
    alle.push_back({u"Fenster: ablegen"_s, 3, &Welt::fensterAblegen, 0});
    alle.push_back({u"Fenster: Einstellungen …"_s, 12, &Welt::einstellungenOeffnen, 0});
    alle.push_back({u"Einstellungen: Haken beim Autostart"_s, 8, &Welt::blatt,
                    static_cast<int>(Blatt::Autostart)});
    alle.push_back({u"Einstellungen: Haken an einer Playliste"_s, 8, &Welt::blatt,
                    static_cast<int>(Blatt::Playliste)});
    alle.push_back(
        {u"Einstellungen: Sichern"_s, 12, &Welt::blatt, static_cast<int>(Blatt::Sichern)});
    alle.push_back(
        {u"Einstellungen: Abbrechen"_s, 8, &Welt::blatt, static_cast<int>(Blatt::Abbrechen)});
    alle.push_back({u"Hinweis bestätigen"_s, 10, &Welt::hinweisSchliessen, 0});
    alle.push_back({u"Zweiter Programmstart"_s, 12, &Welt::zweiterStart, 0});
}

std::vector<Ereignis> zusammenstellen()
{
    std::vector<Ereignis> alle;
    const std::array lagen{"", ", ohne Autostart", ", rekordbox läuft", ", nur sein Agent läuft"};
    for (int i = 0; i < beginne; ++i) {
        const QString wo = i % 2 == 1 ? u"Beginn: mit Fenster"_s : u"Beginn: im Hintergrund"_s;
        alle.push_back(
            {wo + QString::fromUtf8(lagen.at(static_cast<size_t>(i) / 2)), 0, &Welt::beginnen, i});
    }
    for (const auto &[dauer, gewicht] :
         {std::pair{1, 60}, {2, 30}, {3, 60}, {5, 30}, {20, 6}, {90, 2}, {600, 1}}) {
        alle.push_back({u"%1 s vergehen"_s.arg(dauer), gewicht, &Welt::sekunden, dauer});
    }
    serverEreignisse(alle);
    alle.push_back({u"rekordbox kommt"_s, 60, &Welt::rekordboxKommt, 0});
    alle.push_back({u"rekordbox kommt nicht: Fehler"_s, 5, &Welt::startScheitert, 0});
    alle.push_back({u"rekordbox wird beendet und speichert"_s, 20, &Welt::rekordboxGeht, 1});
    alle.push_back({u"rekordbox wird beendet"_s, 20, &Welt::rekordboxGeht, 0});
    alle.push_back({u"rekordbox hat gespeichert"_s, 30, &Welt::agentGeht, 0});
    alle.push_back({u"Agent läuft von allein"_s, 6, &Welt::agentKommt, 0});
    bedienungen(alle);
    alle.push_back({u"Rechner wacht auf"_s, 8, &Welt::aufwachen, 0});
    alle.push_back({u"Uhr geht 5 Stunden vor"_s, 3, &Welt::uhrStellen, 5});
    alle.push_back({u"Uhr geht 30 Stunden zurück"_s, 3, &Welt::uhrStellen, -30});
    alle.push_back({u"Ein anderer erbittet einen Abgleich"_s, 10, &Welt::abgleichErbitten, 0});
    return alle;
}

} // namespace

const std::vector<Ereignis> &alleEreignisse()
{
    static const std::vector<Ereignis> alle = zusammenstellen();
    return alle;
}

} // namespace kalvaro
