#include "optionen.h"

#include "beispielwelt.h"
#include "bibliothek.h"
#include "weltdatei.h"

#include <QCommandLineParser>

#include <array>

namespace kalvaro::democloud {

using namespace Qt::StringLiterals;

namespace {

constexpr double vorgegebeneDauer = 2;

Abbruch falsch(const QString &grund)
{
    return {.ausgang = 2, .meldung = grund + u" „--help“ zeigt alle Optionen."_s};
}

// Digits only, without a sign or a leading zero.
std::optional<int> ganzzahl(const QString &text, int hoechstens)
{
    const int zahl = text.toInt();
    const bool passt = text == QString::number(zahl) && zahl >= 0 && zahl <= hoechstens;
    return passt ? std::optional(zahl) : std::nullopt;
}

std::optional<double> sekunden(const QString &text)
{
    bool lesbar = false;
    const double zahl = text.toDouble(&lesbar);
    const bool passt = lesbar && zahl >= 0 && zahl <= laengsteDauer;
    return passt ? std::optional(zahl) : std::nullopt;
}

// The empty text, or `sonst` when there is no value.
template<typename T>
QString setzen(T &ziel, const std::optional<T> &wert, const QString &sonst)
{
    ziel = wert.value_or(ziel);
    return wert ? QString() : sonst;
}

// The first device has no name until then; further ones are new.
QString geraetUebernehmen(DemocloudOptionen &cloud, const QString &name)
{
    if (name.isEmpty()) {
        return u"Der Name eines Geräts darf nicht leer sein."_s;
    }
    if (finde(*cloud.welt, name) != nullptr) {
        return u"Das Gerät „%1“ gibt es schon."_s.arg(name);
    }
    if (Geraet &erstes = cloud.welt->geraete.first(); erstes.name.isEmpty()) {
        erstes.name = name;
    } else {
        cloud.welt->geraete.append({.name = name});
    }
    return {};
}

QString szenarioUebernehmen(DemocloudOptionen &cloud, const QString &name)
{
    QStringList namen;
    for (const Szenarioeintrag &eintrag : szenarien()) {
        namen.append(eintrag.name.toString());
    }
    return setzen(
        cloud.szenario, szenarioAus(name),
        u"Das Szenario „%1“ gibt es nicht (bekannt sind: %2)."_s.arg(name, namen.join(u", "_s)));
}

QString updateUebernehmen(DemocloudOptionen &cloud, const QString &version)
{
    cloud.welt->appVersion = version;
    cloud.welt->appUrl = ladeadresse(version);
    return version.isEmpty() ? u"Die angebotene Version darf nicht leer sein."_s : QString();
}

QString playlistenUebernehmen(DemocloudOptionen &cloud, const QString &wert)
{
    const auto anzahl = ganzzahl(wert, meistePlaylisten);
    if (anzahl) {
        cloud.welt->playlisten = bibliothek(*anzahl);
        cloud.welt->statistik.playlisten = *anzahl;
    }
    return anzahl ? QString()
                  : u"„%1“ ist keine Anzahl von Playlisten (0 bis 1000000)."_s.arg(wert);
}

struct Option
{
    QStringView name;
    QStringView wert; // its name in the help; empty: the option has none
    QStringView hilfe;
    // Takes a value over; returns the empty text, or why it does not do. Null: read apart.
    QString (*uebernehmen)(DemocloudOptionen &, const QString &) = nullptr;
};

constexpr auto bekannte = std::to_array<Option>({
    {u"port", u"ZAHL", u"Port auf 127.0.0.1; 0 nimmt einen freien (Vorgabe: 0)",
     [](DemocloudOptionen &cloud, const QString &wert) {
         return setzen(cloud.port, ganzzahl(wert, 65'535),
                       u"„%1“ ist kein Port (0 bis 65535)."_s.arg(wert));
     }},
    {u"schluessel", u"TEXT", u"erwarteter Schlüssel, leer für keinen (Vorgabe: demo-schluessel)",
     [](DemocloudOptionen &cloud, const QString &wert) {
         return setzen(cloud.schluessel, std::optional(wert), {});
     }},
    {u"geraet", u"NAME", u"Name des Geräts (Vorgabe: demo-mac); mehrfach für weitere Geräte",
     geraetUebernehmen},
    {u"dauer", u"SEKUNDEN", u"Dauer eines Abgleichs, auch mit Bruchteil (Vorgabe: 2)",
     [](DemocloudOptionen &cloud, const QString &wert) {
         return setzen(
             cloud.dauer, sekunden(wert),
             u"„%1“ ist keine Dauer (Sekunden von 0 bis 86400, Bruchteile mit Punkt)."_s.arg(wert));
     }},
    {u"betrieb", u"ART",
     u"schatten (Probebetrieb) oder scharf (Vorgabe: scharf oder wie in der Welt)",
     [](DemocloudOptionen &cloud, const QString &wert) {
         return setzen(cloud.welt->betrieb, betriebAus(wert),
                       u"„%1“ ist keine Betriebsart (schatten oder scharf)."_s.arg(wert));
     }},
    {u"szenario", u"NAME", u"erzwingt einen Zustand, siehe unten", szenarioUebernehmen},
    {u"update", u"VERSION", u"bietet diese Version zum Herunterladen an", updateUebernehmen},
    {u"welt", u"DATEI", u"lädt die Welt aus einer JSON-Datei"},
    {u"playlisten", u"ANZAHL", u"erzeugt so viele Playlisten in Ordnern", playlistenUebernehmen},
    {u"help", u"", u"zeigt diese Hilfe"},
});

// The parser's own texts are English.
QString lesefehler(const QCommandLineParser &parser, const QStringList &argumente)
{
    if (const QStringList unbekannte = parser.unknownOptionNames(); !unbekannte.isEmpty()) {
        return u"„--%1“ ist keine bekannte Option."_s.arg(unbekannte.first());
    }
    if (const QStringList worte = parser.positionalArguments(); !worte.isEmpty()) {
        return u"„%1“ ist keine bekannte Option."_s.arg(worte.first());
    }
    return u"Der Option „%1“ fehlt der Wert."_s.arg(argumente.last());
}

QString hilfetext()
{
    QString text = u"Aufruf: kalvaro-democloud [Optionen]\n\n"
                   "Eine Demo-Cloud für kalvaro auf 127.0.0.1. Den gewählten Port nennt die erste\n"
                   "Zeile der Ausgabe als „port=ZAHL“. Strg+C oder SIGTERM beendet sie.\n\n"
                   "Optionen:\n"_s;
    for (const Option &option : bekannte) {
        const QString links = u"--%1 %2"_s.arg(option.name, option.wert);
        text += u"  %1  %2\n"_s.arg(links, -20).arg(option.hilfe);
    }
    text += u"\nSzenarien:\n"_s;
    for (const Szenarioeintrag &eintrag : szenarien()) {
        text += u"  %1  %2\n"_s.arg(eintrag.name, -28).arg(eintrag.beschreibung);
    }
    text +=
        u"\nOhne „--welt“ gibt es eine Beispielwelt: Änderungen in beide Richtungen beim ersten\n"
        "Abgleich, danach immer wieder neue von zwei anderen Geräten. Das Format einer\n"
        "eigenen Welt steht in tools/democloud/README.md.\n"_s;
    return text;
}

} // namespace

tl::expected<DemocloudOptionen, Abbruch> optionenLesen(const QStringList &argumente,
                                                       const QDateTime &jetzt)
{
    QCommandLineParser parser;
    for (const Option &option : bekannte) {
        parser.addOption({option.name.toString(), {}, option.wert.toString()});
    }
    const bool lesbar = parser.parse(QStringList{u"kalvaro-democloud"_s} + argumente);
    if (parser.isSet(u"help"_s)) {
        return tl::unexpected(Abbruch{.ausgang = 0, .meldung = hilfetext()});
    }
    if (!lesbar || !parser.positionalArguments().isEmpty()) {
        return tl::unexpected(falsch(lesefehler(parser, argumente)));
    }
    DemocloudOptionen cloud{.dauer = vorgegebeneDauer, .welt = beispielwelt(jetzt)};
    if (parser.isSet(u"welt"_s)) {
        auto welt = weltLaden(parser.value(u"welt"_s));
        if (!welt) {
            return tl::unexpected(Abbruch{.ausgang = 1, .meldung = welt.error()});
        }
        cloud.welt = *std::move(welt);
    }
    if (parser.isSet(u"geraet"_s)) {
        cloud.welt->geraete.first().name.clear();
    }
    for (const Option &option : bekannte) {
        if (!option.uebernehmen) {
            continue;
        }
        const QStringList werte = parser.values(option.name.toString());
        for (const QString &wert : werte) {
            const QString grund = option.uebernehmen(cloud, wert);
            if (!grund.isEmpty()) {
                return tl::unexpected(falsch(grund));
            }
        }
    }
    return cloud;
}

} // namespace kalvaro::democloud
