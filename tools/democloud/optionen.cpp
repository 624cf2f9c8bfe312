#include "optionen.h"

#include "beispielwelt.h"
#include "bibliothek.h"
#include "dienst.h"
#include "weltdatei.h"

#include <algorithm>
#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr int falscheBefehlszeile = 2;
constexpr int falscheWelt = 1;
constexpr double vorgegebeneDauer = 2;
constexpr qint64 groessterPort = 65'535;

struct Option
{
    QStringView name;
    QStringView wert;
    QStringView hilfe;
};

constexpr std::array bekannte{
    Option{u"--port", u"ZAHL", u"Port auf 127.0.0.1; 0 nimmt einen freien (Vorgabe: 0)"},
    Option{u"--schluessel", u"TEXT",
           u"erwarteter Schlüssel, leer für keinen (Vorgabe: demo-schluessel)"},
    Option{u"--geraet", u"NAME",
           u"Name des Geräts (Vorgabe: demo-mac); mehrfach für weitere Geräte"},
    Option{u"--dauer", u"SEKUNDEN", u"Dauer eines Abgleichs, auch mit Bruchteil (Vorgabe: 2)"},
    Option{u"--betrieb", u"ART",
           u"schatten (Probebetrieb) oder scharf (Vorgabe: scharf oder wie in der Welt)"},
    Option{u"--szenario", u"NAME", u"erzwingt einen Zustand, siehe unten"},
    Option{u"--update", u"VERSION", u"bietet diese Version zum Herunterladen an"},
    Option{u"--welt", u"DATEI", u"lädt die Welt aus einer JSON-Datei"},
    Option{u"--playlisten", u"ANZAHL", u"erzeugt so viele Playlisten in Ordnern"},
    Option{u"--help", u"", u"zeigt diese Hilfe"},
};

struct Angabe
{
    QString name;
    QString wert;
};

Abbruch falsch(const QString &grund)
{
    return {.ausgang = falscheBefehlszeile, .meldung = grund + u" „--help“ zeigt alle Optionen."_s};
}

// Accepts "--name wert" and "--name=wert".
tl::expected<QList<Angabe>, Abbruch> zerlegt(const QStringList &argumente)
{
    QList<Angabe> angaben;
    for (qsizetype i = 0; i < argumente.size(); ++i) {
        const QString &argument = argumente.at(i);
        const qsizetype gleich = argument.indexOf(u'=');
        const QString name = gleich < 0 ? argument : argument.left(gleich);
        const auto *const option = std::find_if(bekannte.begin(), bekannte.end(),
                                                [&](const Option &o) { return o.name == name; });
        if (option == bekannte.end()) {
            return tl::unexpected(falsch(u"„%1“ ist keine bekannte Option."_s.arg(name)));
        }
        if (option->wert.isEmpty()) {
            angaben.append({name, {}});
        } else if (gleich >= 0) {
            angaben.append({name, argument.mid(gleich + 1)});
        } else if (i + 1 < argumente.size()) {
            angaben.append({name, argumente.at(++i)});
        } else {
            return tl::unexpected(falsch(u"Der Option „%1“ fehlt der Wert."_s.arg(name)));
        }
    }
    return angaben;
}

bool angegeben(const QList<Angabe> &angaben, QStringView name)
{
    return std::any_of(angaben.begin(), angaben.end(),
                       [&](const Angabe &a) { return a.name == name; });
}

std::optional<qint64> ganzzahl(const QString &text, qint64 hoechstens)
{
    const bool ziffern = std::all_of(
        text.begin(), text.end(), [](QChar zeichen) { return zeichen >= u'0' && zeichen <= u'9'; });
    bool lesbar = false;
    const qint64 zahl = text.toLongLong(&lesbar);
    return ziffern && lesbar && zahl <= hoechstens ? std::optional(zahl) : std::nullopt;
}

QString geraetUebernehmen(Welt &welt, const QString &name, bool erstes)
{
    if (name.isEmpty()) {
        return u"Der Name eines Geräts darf nicht leer sein."_s;
    }
    const Geraet *const vorhanden = finde(welt, name);
    if (vorhanden != nullptr && (!erstes || vorhanden != &welt.geraete.first())) {
        return u"Das Gerät „%1“ gibt es schon."_s.arg(name);
    }
    if (erstes) {
        welt.geraete.first().name = name;
    } else {
        welt.geraete.append({.name = name});
    }
    return {};
}

QString portUebernehmen(DemocloudOptionen &cloud, const QString &wert)
{
    const auto port = ganzzahl(wert, groessterPort);
    cloud.port = static_cast<int>(port.value_or(0));
    return port ? QString()
                : u"„%1“ ist kein Port (0 bis %2)."_s.arg(wert, QString::number(groessterPort));
}

QString dauerUebernehmen(DemocloudOptionen &cloud, const QString &wert)
{
    bool lesbar = false;
    const double dauer = wert.toDouble(&lesbar);
    if (!lesbar || !std::isfinite(dauer) || dauer < 0 || dauer > laengsteDauer) {
        return u"„%1“ ist keine Dauer (Sekunden von 0 bis %2, Bruchteile mit Punkt)."_s.arg(
            wert, QString::number(laengsteDauer));
    }
    cloud.dauer = dauer;
    return {};
}

QString betriebUebernehmen(Welt &welt, const QString &wert)
{
    const auto betrieb = betriebAus(wert);
    welt.betrieb = betrieb.value_or(welt.betrieb);
    return betrieb ? QString() : u"„%1“ ist keine Betriebsart (schatten oder scharf)."_s.arg(wert);
}

QString szenarioUebernehmen(DemocloudOptionen &cloud, const QString &wert)
{
    const auto szenario = szenarioAus(wert);
    cloud.szenario = szenario.value_or(Szenario::Keins);
    if (szenario) {
        return {};
    }
    QStringList namen;
    for (const Szenarioeintrag &eintrag : szenarien()) {
        namen.append(eintrag.name.toString());
    }
    return u"Das Szenario „%1“ gibt es nicht (bekannt sind: %2)."_s.arg(wert, namen.join(u", "_s));
}

QString updateUebernehmen(Welt &welt, const QString &wert)
{
    welt.appVersion = wert;
    welt.appUrl = ladeadresse(wert);
    return wert.isEmpty() ? u"Die angebotene Version darf nicht leer sein."_s : QString();
}

QString playlistenUebernehmen(Welt &welt, const QString &wert)
{
    const auto anzahl = ganzzahl(wert, meistePlaylisten);
    if (!anzahl) {
        return u"„%1“ ist keine Anzahl von Playlisten (0 bis %2)."_s.arg(
            wert, QString::number(meistePlaylisten));
    }
    playlistenErzeugen(welt, *anzahl);
    return {};
}

// The empty text, or why the value does not do. `erstes`: no "--geraet" came before.
QString uebernehmen(DemocloudOptionen &cloud, Welt &welt, const Angabe &angabe, bool erstes)
{
    if (angabe.name == u"--port"_s) {
        return portUebernehmen(cloud, angabe.wert);
    }
    if (angabe.name == u"--schluessel"_s) {
        cloud.schluessel = angabe.wert;
    } else if (angabe.name == u"--geraet"_s) {
        return geraetUebernehmen(welt, angabe.wert, erstes);
    } else if (angabe.name == u"--dauer"_s) {
        return dauerUebernehmen(cloud, angabe.wert);
    } else if (angabe.name == u"--betrieb"_s) {
        return betriebUebernehmen(welt, angabe.wert);
    } else if (angabe.name == u"--szenario"_s) {
        return szenarioUebernehmen(cloud, angabe.wert);
    } else if (angabe.name == u"--update"_s) {
        return updateUebernehmen(welt, angabe.wert);
    } else if (angabe.name == u"--playlisten"_s) {
        return playlistenUebernehmen(welt, angabe.wert);
    }
    return {};
}

// The world comes first, wherever its option stands: the other options change it.
tl::expected<Welt, Abbruch> grundwelt(const QList<Angabe> &angaben, const QDateTime &jetzt)
{
    const auto letzte = std::find_if(angaben.rbegin(), angaben.rend(),
                                     [](const Angabe &a) { return a.name == u"--welt"_s; });
    if (letzte == angaben.rend()) {
        return beispielwelt(jetzt);
    }
    return weltLaden(letzte->wert).map_error([](const QString &meldung) {
        return Abbruch{.ausgang = falscheWelt, .meldung = meldung};
    });
}

} // namespace

tl::expected<Programmoptionen, Abbruch> optionenLesen(const QStringList &argumente,
                                                      const QDateTime &jetzt)
{
    const auto angaben = zerlegt(argumente);
    if (!angaben) {
        return tl::unexpected(angaben.error());
    }
    if (angegeben(*angaben, u"--help")) {
        return Programmoptionen{.cloud = {}, .hilfe = true};
    }
    auto welt = grundwelt(*angaben, jetzt);
    if (!welt) {
        return tl::unexpected(welt.error());
    }
    Programmoptionen optionen;
    optionen.cloud.dauer = vorgegebeneDauer;
    bool erstesGeraet = true;
    for (const Angabe &angabe : *angaben) {
        const QString grund = uebernehmen(optionen.cloud, *welt, angabe, erstesGeraet);
        if (!grund.isEmpty()) {
            return tl::unexpected(falsch(grund));
        }
        erstesGeraet = erstesGeraet && angabe.name != u"--geraet"_s;
    }
    optionen.cloud.welt = *std::move(welt);
    return optionen;
}

QString hilfetext()
{
    QString text = u"Aufruf: kalvaro-democloud [Optionen]\n\n"
                   "Eine Demo-Cloud für kalvaro auf 127.0.0.1. Den gewählten Port nennt die erste\n"
                   "Zeile der Ausgabe als „port=ZAHL“. Strg+C oder SIGTERM beendet sie.\n\n"
                   "Optionen:\n"_s;
    for (const Option &option : bekannte) {
        const QString links = u"%1 %2"_s.arg(option.name, option.wert);
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
