#include "democloud.h"
#include "doubles/dateien.h"
#include "doubles/datenordner.h"
#include "doubles/fristen.h"
#include "doubles/kindprogramm.h"
#include "doubles/mitteilungsserver.h"
#include "doubles/statushost.h"
#include "doubles/testbus.h"
#include "e2e/anzeige.h"
#include "testlauf.h"

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <csignal>
#include <optional>

using namespace kalvaro;
using namespace kalvaro::democloud;
using namespace Qt::StringLiterals;

namespace {

constexpr int geduld = 30'000; // milliseconds

// The process ids that pgrep names.
QStringList prozesse(const QString &name)
{
    QProcess pgrep;
    pgrep.start(u"/usr/bin/pgrep"_s, {u"-x"_s, name});
    pgrep.waitForFinished(geduld);
    return QString::fromUtf8(pgrep.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
}

// The desktop that the program runs on.
struct Desktop
{
    Anzeige anzeige;
    Testbus bus;
    Statushost leiste{bus.verbindung()};
    Mitteilungsserver mitteilungen{bus.verbindung(), {u"body"_s, u"actions"_s}};
};

} // namespace

// An evening: the real program with its window, its item in the tray and its notifications, a demo
// rekordbox that is a real process in a real bundle, and a demo cloud.
class TestAuftritt final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void oeffnenAbgleichenHerunterzaehlenStarten();
    void zweiterStartImHintergrundEndetLeise();
    void nachDemBeendenFolgtDerAbgleich();
    void zweiterStartOeffnetDasFenster();
    void beendenImMenue();

private:
    [[nodiscard]] QStringList anlaesse() const;
    [[nodiscard]] bool protokolliert(const QString &zeile) const;
    [[nodiscard]] int nocheinmal(const QStringList &argumente) const;

    Datenordner daten;
    std::optional<Desktop> desktop;
    Democloud cloud;
    QProcessEnvironment umgebung;
    QProcess kalvaro;
};

// The reasons of the syncs that the cloud was asked for, oldest first.
QStringList TestAuftritt::anlaesse() const
{
    QStringList liste;
    const auto anfragen = cloud.anfragen();
    for (const auto &anfrage : anfragen) {
        if (anfrage.pfad == u"/api/abgleich"_s) {
            liste.append(QJsonDocument::fromJson(anfrage.inhalt).object()[u"anlass"_s].toString());
        }
    }
    return liste;
}

bool TestAuftritt::protokolliert(const QString &zeile) const
{
    return daten.protokollzeilen().contains(zeile);
}

int TestAuftritt::nocheinmal(const QStringList &argumente) const
{
    QProcess zweiter;
    zweiter.setProcessEnvironment(umgebung);
    zweiter.start(QStringLiteral(KALVARO_PROGRAMM), argumente);
    return zweiter.waitForFinished(geduld) ? zweiter.exitCode() : -1;
}

void TestAuftritt::initTestCase()
{
    KALVARO_BRAUCHT_EIGENE_PROZESSE();
    KALVARO_BRAUCHT(u"Xvfb"_s, u"dbus-daemon"_s, u"pgrep"_s);
    desktop.emplace();
    QVERIFY(cloud.starten());
    daten.schreiben(u"konto.json"_s, demokonto(cloud.adresse()));
    daten.schreiben(u"einstellungen.json"_s, R"({"autostart":true})");
    umgebung = desktop->anzeige.umgebung(desktop->bus.adresse());
    umgebung.insert(u"XDG_DATA_HOME"_s, qEnvironmentVariable("XDG_DATA_HOME"));
    umgebung.insert(u"XDG_CONFIG_HOME"_s, desktop->bus.ordner());
    umgebung.insert(u"XDG_RUNTIME_DIR"_s, desktop->bus.ordner());
    umgebung.insert(u"KALVARO_APPLICATIONS"_s, QStringLiteral(PROGRAMME));
    kalvaro.setProcessEnvironment(umgebung);
    kalvaro.setProcessChannelMode(QProcess::ForwardedChannels);
    anTestBinden(kalvaro);
    kalvaro.start(QStringLiteral(KALVARO_PROGRAMM), QStringList());
    QVERIFY(kalvaro.waitForStarted(geduld));
}

void TestAuftritt::oeffnenAbgleichenHerunterzaehlenStarten()
{
    QVERIFY(bald([this] { return desktop->leiste.elemente().size() == 1; }, geduld));
    QVERIFY(bald([this] { return anlaesse() == QStringList{u"vorstart"_s}; }, geduld));
    QVERIFY(bald([] { return prozesse(u"rekordbox"_s).size() == 1; }, geduld));
    QVERIFY(bald([this] { return protokolliert(u"rekordbox 7.1.4 gestartet"_s); }, geduld));
    QVERIFY(protokolliert(u"Startprüfung: Stand passt"_s));
    QVERIFY(bald([this] { return protokolliert(u"rekordbox gestartet"_s); }, geduld));
    QVERIFY(desktop->leiste.hinweis().contains(u"rekordbox läuft"_s));
}

void TestAuftritt::zweiterStartImHintergrundEndetLeise()
{
    const QStringList vorher = anlaesse();
    QCOMPARE(nocheinmal({u"--hintergrund"_s}), 0);
    QCOMPARE(anlaesse(), vorher);
    const QStringList zeilen = daten.protokollzeilen();
    QCOMPARE(std::count(zeilen.begin(), zeilen.end(), u"gestartet (1.4, Gerät demo-mac)"_s), 1);
}

void TestAuftritt::nachDemBeendenFolgtDerAbgleich()
{
    const QStringList vorher = anlaesse();
    const qsizetype bisher = desktop->mitteilungen.mitteilungen().size();
    const QStringList laufende = prozesse(u"rekordbox"_s);
    QCOMPARE(laufende.size(), 1);
    ::kill(laufende.first().toInt(), SIGTERM);

    QVERIFY(bald([this] { return protokolliert(u"rekordbox beendet"_s); }, geduld));
    QVERIFY(bald([&] { return anlaesse() == vorher + QStringList{u"nachher"_s}; }, geduld));
    // The window hides while rekordbox runs, so the outcome comes as a notification.
    QVERIFY(
        bald([&] { return desktop->mitteilungen.mitteilungen().size() == bisher + 1; }, geduld));
    QCOMPARE(desktop->mitteilungen.mitteilungen().last().titel, u"Bibliothek ist abgeglichen"_s);
}

void TestAuftritt::zweiterStartOeffnetDasFenster()
{
    const QStringList vorher = anlaesse();
    QCOMPARE(nocheinmal({}), 0);
    QVERIFY(bald([&] { return anlaesse() == vorher + QStringList{u"vorstart"_s}; }, geduld));
    QCOMPARE(kalvaro.state(), QProcess::Running);
}

void TestAuftritt::beendenImMenue()
{
    desktop->leiste.menueOeffnen();
    const auto zeilen = desktop->leiste.menue();
    const auto zeile = std::find_if(zeilen.begin(), zeilen.end(), [](const Menuezeile &z) {
        return z.angaben[u"label"_s].toString() == u"kalvaro beenden"_s;
    });
    QVERIFY(zeile != zeilen.end());
    QElapsedTimer seit;
    seit.start();
    desktop->leiste.menueKlicken(zeile->id);
    QVERIFY(kalvaro.waitForFinished(geduld));
    QVERIFY2(seit.elapsed() <= endfrist, qPrintable(QString::number(seit.elapsed())));
    QCOMPARE(kalvaro.exitStatus(), QProcess::NormalExit);
    QCOMPARE(kalvaro.exitCode(), 0);
    QCOMPARE(daten.protokollzeilen().last(), u"beendet"_s);
    QVERIFY(bald([this] { return desktop->leiste.elemente().isEmpty(); }, geduld));
}

KALVARO_TEST(TestAuftritt)
#include "tst_auftritt.moc"
