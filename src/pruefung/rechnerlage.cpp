#include "pruefung/rechnerlage.h"

#include "foundation/formate.h"
#include "foundation/konstanten.h"

#include <QStringList>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr double zuWenig = 50e6; // bytes: log, settings and what is written aside while they change

QString gefasst(const QString &was)
{
    return u"„"_s + was + u'“';
}

} // namespace

Befund datenordnerbefund(const Ordnerlage &lage)
{
    Befund b{.bereich = u"datenordner"_s, .name = u"Datenordner"_s};
    const QString frei = lage.frei ? u", %1 frei"_s.arg(fGB(lage.frei)) : QString();
    const QString ordner = gefasst(lage.pfad);
    if (lage.da && !lage.istOrdner) {
        b.text = ordner + u" ist kein Ordner."_s;
        b.schritt = u"Benenne um, was dort liegt."_s;
    } else if (!lage.beschreibbar) {
        b.text =
            ordner + (lage.da ? u" ist nicht beschreibbar."_s : u" lässt sich nicht anlegen."_s);
        b.schritt = u"Gib deinem Benutzer das Schreibrecht "_s +
                    (lage.da ? u"daran."_s : u"im Ordner darüber."_s);
    } else if (!lage.gesperrt.isEmpty()) {
        b.text = gefasst(lage.gesperrt.join(u"“, „"_s)) + u" ist nicht beschreibbar."_s;
        b.schritt = u"Gib deinem Benutzer das Schreibrecht daran."_s;
    } else if (lage.frei && *lage.frei < zuWenig) {
        b.text = ordner + u" ist beschreibbar, aber der Datenträger ist voll"_s + frei + u'.';
        b.schritt = u"Schaffe Platz auf dem Datenträger."_s;
    } else {
        b.text = ordner +
                 (lage.da ? u" ist beschreibbar"_s : u" fehlt noch und lässt sich anlegen"_s) +
                 frei;
    }
    return b;
}

Befund rekordboxbefund(const QList<Installation> &installationen, const QString &ordner)
{
    Befund b{.bereich = u"rekordbox"_s, .name = u"rekordbox"_s};
    QStringList versionen;
    for (const Installation &installation : installationen) {
        versionen.append(installation.version == u"0" ? u"eine unbekannte Version"_s
                                                      : installation.version);
    }
    if (versionen.isEmpty()) {
        b.text = u"In "_s + gefasst(ordner) + u" liegt keines."_s;
        b.schritt = u"Installiere rekordbox dort."_s;
    } else {
        b.text = versionen.join(u", "_s) + u" in "_s + gefasst(ordner);
    }
    return b;
}

Befund prozessbefund(bool haupt, bool agent)
{
    const auto laeuft = [](bool ja) { return ja ? u"läuft"_s : u"läuft nicht"_s; };
    return {.bereich = u"prozesse"_s,
            .name = u"Programme"_s,
            .text = u"rekordbox "_s + laeuft(haupt) + u", rekordboxAgent "_s + laeuft(agent)};
}

Befund sitzungsbusbefund(bool erreichbar)
{
    Befund b{.bereich = u"sitzungsbus"_s, .name = u"Sitzungsbus"_s};
    if (erreichbar) {
        b.text = u"antwortet"_s;
    } else {
        b.text = u"antwortet nicht"_s;
        b.schritt = u"Melde dich am Schreibtisch an und prüfe dort; fehlt der Bus auch da, "
                    "installiere „dbus-user-session“."_s;
    }
    return b;
}

Befund mitteilungsbefund(const Schreibtischauskunft::Mitteilungsdienst &dienst, bool bus)
{
    using Zustand = Schreibtischauskunft::Mitteilungsdienst::Zustand;
    Befund b{.bereich = u"mitteilungen"_s, .name = u"Mitteilungen"_s};
    if (!bus) {
        b.text = u"kommen ohne Sitzungsbus nicht an"_s;
        b.schritt = u"Sorge erst für den Sitzungsbus."_s;
        return b;
    }
    switch (dienst.zustand) {
    case Zustand::Laeuft:
        b.text = u"zeigt "_s + gefasst(dienst.name);
        break;
    case Zustand::BeiBedarf:
        b.text = u"zeigt ein Dienst, der mit der ersten startet"_s;
        break;
    case Zustand::Stumm:
        b.text = u"Der Dienst dafür antwortet nicht."_s;
        b.schritt = u"Melde dich ab und wieder an."_s;
        break;
    case Zustand::Keiner:
        b.text = u"Es gibt keinen Dienst, der sie zeigt."_s;
        b.schritt = u"Installiere einen, zum Beispiel „dunst“."_s;
        break;
    }
    return b;
}

Befund leistenbefund(Schreibtischauskunft::Leiste leiste)
{
    using Leiste = Schreibtischauskunft::Leiste;
    Befund b{.bereich = u"menueleiste"_s, .name = u"Menüleiste"_s};
    switch (leiste) {
    case Leiste::StatusNotifier:
        b.text = u"nimmt das Symbol auf (StatusNotifierItem)"_s;
        break;
    case Leiste::XEmbed:
        b.text = u"nimmt das Symbol auf (XEmbed)"_s;
        break;
    case Leiste::Keine:
        b.text = u"keine, die Symbole aufnimmt; das Fenster wird nur abgelegt, ein weiterer Start "
                 "holt es zurück"_s;
        break;
    }
    return b;
}

Befund anmeldebefund(const Schreibtischauskunft::Anmeldeeintrag &eintrag)
{
    Befund b{.bereich = u"anmeldestart"_s, .name = u"Start beim Anmelden"_s};
    if (!eintrag.da) {
        b.text = u"aus"_s;
        return b;
    }
    const QString datei = gefasst(eintrag.datei);
    if (!eintrag.abgeschaltet.isEmpty()) {
        b.text = datei + u" ist mit "_s + gefasst(eintrag.abgeschaltet) + u" abgeschaltet."_s;
    } else if (eintrag.programm.isEmpty()) {
        b.text = datei + u" nennt kein Programm."_s;
    } else if (!eintrag.ausfuehrbar) {
        b.text = datei + u" nennt "_s + gefasst(eintrag.programm) +
                 u", das es nicht gibt oder das sich nicht ausführen lässt."_s;
    } else {
        b.text = u"an, mit "_s + gefasst(eintrag.programm);
        return b;
    }
    b.schritt = u"Schalte den Start beim Anmelden in kalvaro aus und, wenn du ihn willst, wieder "
                "ein."_s;
    return b;
}

Befund versionsbefund(const QString &qt, const QString &system)
{
    return {.bereich = u"versionen"_s,
            .name = u"Versionen"_s,
            .text = u"kalvaro "_s + VERSION + u", Qt "_s + qt + u", "_s + system};
}

} // namespace kalvaro
