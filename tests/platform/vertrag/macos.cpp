// The adapters of macOS, as far as they are no part of its frameworks: what stands for those here
// does as they are documented to do, also on threads of its own.

#include "browser.h"
#include "doubles/dateien.h"
#include "doubles/systemfarben.h"
#include "foundation/datenordner.h"
#include "platform/macos/endesignale.h"
#include "platform/macos/launchagent.h"
#include "platform/macos/leistenobjekt.h"
#include "platform/macos/macarbeitsplatz.h"
#include "platform/macos/macfarbschema.h"
#include "platform/macos/macmitteilungen.h"
#include "platform/macos/macprozesse.h"
#include "platform/macos/macschreibtisch.h"
#include "platform/macos/ordnersperre.h"
#include "prueflinge.h"

#include <QMenu>
#include <QTemporaryDir>
#include <QThreadPool>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

const QString wer = u"macos"_s;

struct Startpruefling final : Anmeldestartpruefling
{
    Anmeldestart &start() override { return agent; }
    [[nodiscard]] std::optional<QString> datei() const override { return agentpfad(heim.path()); }
    void verhindern() override { dateiSchreiben(heim.filePath(u"Library"_s), "a file"); }

    QTemporaryDir heim;
    LaunchAgent agent{u"/Applications/kalvaro.app/Contents/MacOS/kalvaro"_s, heim.path()};
};
const Vertrag<Anmeldestartpruefling> anmeldestart(wer, std::make_unique<Startpruefling>);

struct Sitzungspruefling final : Arbeitsplatzpruefling
{
    ~Sitzungspruefling() override { faeden.waitForDone(); }

    Arbeitsplatz &arbeitsplatz() override { return sitzung; }
    QString gutes() override { return u"/Applications/gut.app"_s; }
    QString kaputtes() override { return u"/Applications/fehlt.app"_s; }
    [[nodiscard]] int starts() const override { return gestartet; }
    [[nodiscard]] QList<QUrl> geoeffnet() const override { return browser.adressen(); }
    void wecken() override
    {
        if (const auto ruf = geweckt.lock()) {
            (*ruf)();
        }
    }

    void oeffnen(const QString &buendel, const Arbeitsplatzzugang::Oeffnungsruf &fertig)
    {
        const bool gut = buendel == gutes();
        gestartet += gut ? 1 : 0;
        faeden.start([gut, fertig] {
            fertig(gut ? std::nullopt
                       : std::optional(Oeffnungsfehler{u"NSCocoaErrorDomain"_s, 260}));
        });
    }
    Arbeitsplatzzugang::Halter wachen(std::function<void()> ruf)
    {
        const auto halter = std::make_shared<std::function<void()>>(std::move(ruf));
        geweckt = halter;
        return halter;
    }

    int gestartet = 0;
    std::weak_ptr<std::function<void()>> geweckt;
    const Browser browser;
    QThreadPool faeden;
    MacArbeitsplatz sitzung{
        {.oeffnen = [this](const QString &was, const auto &fertig) { oeffnen(was, fertig); },
         .nachVorn = [](QWindow &) {},
         .auftreten = [](Arbeitsplatz::Auftritt) {},
         .wachen = [this](std::function<void()> ruf) { return wachen(std::move(ruf)); }}};
};
const Vertrag<Arbeitsplatzpruefling> arbeitsplatz(wer, std::make_unique<Sitzungspruefling>);

struct Ordnerpruefling final : Einzelinstanzpruefling
{
    [[nodiscard]] std::unique_ptr<Kindprogramm> start(const QStringList &argumente) const override
    {
        return std::make_unique<Kindprogramm>(QStringLiteral(EINZELINSTANZPROGRAMM_MACOS),
                                              argumente, QProcessEnvironment::systemEnvironment());
    }
    [[nodiscard]] std::unique_ptr<QObject> besetzt(std::function<void()> gefragt) const override
    {
        auto sperre = std::make_unique<Ordnersperre>(
            appOrdner(), [ruf = std::move(gefragt)](const QByteArray &) {
                ruf();
                return false;
            });
        [[maybe_unused]] const auto stand = sperre->nehmen();
        return sperre;
    }
};
const Vertrag<Einzelinstanzpruefling> einzelinstanz(wer, std::make_unique<Ordnerpruefling>);

struct Signalpruefling final : Endepruefling
{
    [[nodiscard]] std::shared_ptr<void> hoeren(std::function<void()> ende) const override
    {
        return std::make_shared<Endesignale>(std::move(ende));
    }
    [[nodiscard]] bool wartet() const override { return Endesignale::wartet(); }
    void spaetestensEnden(int millisekunden, int status) const override
    {
        kalvaro::spaetestensEnden(millisekunden, status);
    }
};
const Vertrag<Endepruefling> endesignale(wer, std::make_unique<Signalpruefling>);

struct Schemapruefling final : Farbpruefling
{
    Farbschema &schema() override { return schema_; }
    void wechseln(Helligkeit helligkeit) override
    {
        farben.setzen(helligkeit == Helligkeit::Dunkel ? Systemfarben::Schema::Dark
                      : helligkeit == Helligkeit::Hell ? Systemfarben::Schema::Light
                                                       : Systemfarben::Schema::Unknown);
    }

    Systemfarben farben;
    MacFarbschema schema_{farben};
};
const Vertrag<Farbpruefling> farbschema(wer, std::make_unique<Schemapruefling>);

struct Postpruefling final : Mitteilungspruefling
{
    ~Postpruefling() override { faeden.waitForDone(); }

    Mitteilungen &mitteilungen() override { return post; }
    [[nodiscard]] QList<Mitteilung> gezeigt() const override { return alle; }
    void klicken(qsizetype nummer) override
    {
        if (const auto ziel = alle.at(nummer).ziel) {
            faeden.start([ruf = klick, ziel] { ruf(*ziel); });
        }
    }
    bool verweigern() override { return nimmtNichts = true; }

    [[nodiscard]] Mitteilungszugang zugang()
    {
        return {.erlaubnisErbitten = [] {},
                .zeigen =
                    [this](const QString &titel, const QString &inhalt,
                           const std::optional<QString> &ziel,
                           const std::function<void(const QString &)> &gescheitert) {
                        if (nimmtNichts) {
                            faeden.start([gescheitert] { gescheitert(u"nicht\nerlaubt"_s); });
                        } else {
                            alle.append({titel, inhalt, ziel});
                        }
                    },
                .empfangen = [this](auto geklickt) { klick = std::move(geklickt); }};
    }

    bool nimmtNichts = false;
    QList<Mitteilung> alle;
    std::function<void(const QString &)> klick;
    QThreadPool faeden;
    MacMitteilungen post{zugang()};
};
const Vertrag<Mitteilungspruefling> mitteilungen(wer, std::make_unique<Postpruefling>);

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
        laufende.clear();
        for (const QString &ort : orte) {
            laufende << ort << ort + u'/';
        }
    }
    bool ohneZaehlung() override { return QFile::remove(werkzeug); }
    bool zaehlungHaengt() override
    {
        dateiSchreiben(werkzeug, "#!/bin/sh\nexec sleep 1000\n", true);
        return true;
    }

    QTemporaryDir ordner;
    QStringList laufende;
    const QString werkzeug = ordner.filePath(u"werkzeug"_s);
    const MacProzesse tabelle{uhr, [this] { return laufende; }, werkzeug};
};
const Vertrag<Prozesspruefling> prozesse(wer, std::make_unique<Tabellenpruefling>);

struct Auskunftspruefling final : Schreibtischpruefling
{
    [[nodiscard]] const Schreibtischauskunft &auskunft() const override { return schreibtisch; }
    [[nodiscard]] QString datei() const override { return agentpfad(heim.path()); }
    void anschalten(const QString &programm) override
    {
        LaunchAgent(programm, heim.path()).setzen(true);
    }
    QString abschalten() override
    {
        dateiSchreiben(datei(),
                       dateiLesen(datei()).replace("<dict>", "<dict><key>Disabled</key><true/>"));
        return u"Disabled"_s;
    }

    QTemporaryDir heim;
    const MacSchreibtisch schreibtisch{[] { return true; }, heim.path()};
};
const Vertrag<Schreibtischpruefling> schreibtisch(wer, std::make_unique<Auskunftspruefling>);

// By what the toolkit has been given: here it has no menu bar.
struct Leistenpruefling final : Statuspruefling
{
    Statusobjekt &objekt() override { return leistenobjekt; }
    bool sichtbar() override { return leistenobjekt.eintrag().isVisible(); }
    QString hinweis() override { return leistenobjekt.eintrag().toolTip(); }
    void menueOeffnen() override { Q_EMIT leistenobjekt.eintrag().contextMenu()->aboutToShow(); }
    bool leiste(bool /*da*/) override { return false; }

    Leistenobjekt leistenobjekt;
};
const Vertrag<Statuspruefling> statusobjekt(wer, std::make_unique<Leistenpruefling>);

} // namespace

} // namespace kalvaro
