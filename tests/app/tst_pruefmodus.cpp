// The check-up of the real program, without a display, in folders and on a bus of its own.

#include "app/zuhause.h"
#include "democloud.h"
#include "doubles/kindprogramm.h"
#include "doubles/mitteilungsserver.h"
#include "doubles/rohserver.h"
#include "doubles/statushost.h"
#include "doubles/testbus.h"
#include "testlauf.h"

#include <QDateTime>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <csignal>
#include <optional>

using namespace kalvaro;
using namespace kalvaro::democloud;
using namespace Qt::StringLiterals;

namespace {

constexpr int frist = 20'000; // ms before a test gives up
constexpr QFile::Permissions nurIch(0x6600);

const QString programm = QStringLiteral(KALVARO_PROGRAMM);
const QByteArray geheim = "demo-schluessel";

// Every file and folder below, with size and time.
QStringList bestand(const QString &wurzel)
{
    QStringList liste;
    QDirIterator alles(wurzel,
                       QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
    while (alles.hasNext()) {
        const QFileInfo eintrag(alles.next());
        liste.append(eintrag.filePath() + u' ' + QString::number(eintrag.size()) + u' ' +
                     eintrag.lastModified().toString(Qt::ISODateWithMs));
    }
    liste.sort();
    return liste;
}

} // namespace

class TestPruefmodus final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        KALVARO_BRAUCHT_EIGENE_PROZESSE();
        KALVARO_BRAUCHT(u"dbus-daemon"_s, u"pgrep"_s);
    }

    void init()
    {
        zuhause.emplace();
        umgebung = zuhause->umgebung();
        umgebung.remove(u"QT_QPA_PLATFORM"_s);
    }

    // Set up as it should be: every line is good, in this order.
    void allesGut()
    {
        Democloud cloud;
        QVERIFY(cloud.starten());
        konto(cloud.adresse());
        dateiSchreiben(zuhause->datei(u"programme/rekordbox 7/rekordbox.app/Contents/Info.plist"_s),
                       "<plist><dict><key>CFBundleShortVersionString</key>"
                       "<string>7.1.4</string></dict></plist>");
        dateiSchreiben(zuhause->datei(u"config/autostart/de.kalvaro.kalvaro.desktop"_s),
                       "[Desktop Entry]\nExec=/bin/sh --hintergrund\n");
        Testbus bus;
        const Mitteilungsserver mitteilungen(bus.verbindung(), {});
        const Statushost host(bus.verbindung());
        umgebung.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, bus.adresse());
        const QStringList vorher = bestand(zuhause->datei({}));

        const QStringList zeilen = pruefen(0);

        QCOMPARE(zeilen.size(), 11);
        QCOMPARE(zeilen[0], u"✓ Konto: Gerät „demo-mac“, eine Adresse"_s);
        QCOMPARE(zeilen[1], u"✓ Rechte der Kontodatei: nur für dich"_s);
        QVERIFY(zeilen[2].startsWith(u"✓ Adresse „%1“: antwortet in "_s.arg(cloud.adresse())));
        QVERIFY(zeilen[2].endsWith(u" ms, ohne Verschlüsselung, nimmt den Schlüssel an"));
        QVERIFY(zeilen[3].startsWith(
            u"✓ Datenordner: „%1“ ist beschreibbar, "_s.arg(zuhause->daten())));
        QCOMPARE(zeilen[4], u"✓ rekordbox: 7.1.4 in „%1“"_s.arg(zuhause->datei(u"programme"_s)));
        QCOMPARE(zeilen[5], u"✓ Programme: rekordbox läuft nicht, rekordboxAgent läuft nicht"_s);
        QCOMPARE(zeilen[6], u"✓ Sitzungsbus: antwortet"_s);
        QCOMPARE(zeilen[7], u"✓ Mitteilungen: zeigt „Testdienst 2.7“"_s);
        QCOMPARE(zeilen[8], u"✓ Menüleiste: nimmt das Symbol auf (StatusNotifierItem)"_s);
        QCOMPARE(zeilen[9], u"✓ Start beim Anmelden: an, mit „/bin/sh“"_s);
        QVERIFY(zeilen[10].startsWith(u"✓ Versionen: kalvaro 1.4, Qt 6."));
        // Nothing is written, and the cloud is asked for nothing that changes it.
        QCOMPARE(bestand(zuhause->datei({})), vorher);
        QCOMPARE(wege(cloud), (QStringList{u"GET /api/status"_s, u"GET /api/stand"_s}));
        QCOMPARE(cloud.anfragen()[1].kopfzeile("User-Agent"), QByteArray("kalvaro/1.4"));
        QVERIFY(host.elemente().isEmpty());
    }

    void ohneKonto()
    {
        const QStringList zeilen = pruefen(1);
        QVERIFY(zeilen[0].startsWith(
            u"✗ Konto: Die Datei „%1/konto.json“ existiert nicht. → "_s.arg(zuhause->daten())));
        QVERIFY(!QDir(zuhause->daten()).exists());
        QVERIFY(zeilen.contains(
            u"✗ Mitteilungen: kommen ohne Sitzungsbus nicht an → Sorge erst für den Sitzungsbus."_s));
    }

    // Every mistake of the file in one sentence.
    void verschriebenesKonto()
    {
        kontodatei("{\"gerät\":\"x\",\"schluessel\":\"demo-schluessel\",\"server\":\"http://x\"}",
                   QFile::Permissions(0x6644));
        const QStringList zeilen = pruefen(1);
        QCOMPARE(zeilen[0], u"✗ Konto: %1/konto.json ist unvollständig. → Berichtige die Datei: "
                            "„gerät“ heißt hier „geraet“; „server“ ist ein Text statt einer Liste "
                            "von Texten."_s.arg(zuhause->daten()));
        QCOMPARE(zeilen[1], u"✗ Rechte der Kontodatei: Andere Benutzer dieses Rechners können den "
                            "Schlüssel lesen oder ändern. → chmod 600 '%1/konto.json'"_s.arg(
                                zuhause->daten()));
    }

    void falscherSchluessel()
    {
        Democloud cloud({.schluessel = u"ein-anderer"_s});
        QVERIFY(cloud.starten());
        konto(cloud.adresse());
        const QString zeile = adresszeile(pruefen(1));
        QVERIFY2(
            zeile.contains(u", nimmt den Schlüssel aber nicht an: Die Cloud antwortet mit 401: "
                           "Der Schlüssel stimmt nicht. → "),
            qPrintable(zeile));
    }

    // What a server says reaches the terminal as plain text, on one line and without the key.
    void feindlicherServer()
    {
        Rohserver server;
        server.sonst(
            {.bytes = Rohserver::antwort(500, "{\"fehler\":\"\\u001b]0;x\\u0007\\n✓ Konto: "
                                              "\\u202e\\u009b31mdemo-schluessel\"}")});
        konto(server.adresse());
        const QStringList zeilen = pruefen(1);
        QVERIFY2(adresszeile(zeilen).contains(u" ]0;x  ✓ Konto:   31m••• → "),
                 qPrintable(adresszeile(zeilen)));
        QVERIFY(zeilen[1].startsWith(u"✓ Rechte"));
    }

    // Each address for itself: that one is good does not hide what the other one is.
    void stummeAdressenNebeneinander()
    {
        Democloud cloud;
        QVERIFY(cloud.starten());
        Rohserver stumm;
        stumm.sonst({.bytes = {}, .ende = Rohserver::Ende::Offenlassen});
        Rohserver troepfelnd;
        troepfelnd.dann(Rohserver::antwort(200, "{}"));
        troepfelnd.sonst(
            {.bytes = "HTTP/1.1 200 OK\r\n\r\n{", .ende = Rohserver::Ende::Offenlassen});
        Rohserver zu;
        const QString geschlossen = zu.adresse();
        zu.verweigern();
        konto(QStringList{stumm.adresse(), troepfelnd.adresse(), geschlossen, cloud.adresse()}.join(
            u"\",\""_s));
        QElapsedTimer zeit;
        zeit.start();
        const QStringList zeilen = pruefen(1);
        QVERIFY2(zeit.elapsed() < 12'000, qPrintable(QString::number(zeit.elapsed())));
        QVERIFY(zeilen[2].contains(u"Die Cloud hat nicht rechtzeitig geantwortet."));
        QVERIFY(zeilen[3].contains(u", dann aber nicht mehr: Die Cloud hat nicht rechtzeitig "));
        QVERIFY2(zeilen[4].contains(u"Die Verbindung wurde abgelehnt."), qPrintable(zeilen[4]));
        QVERIFY2(zeilen[5].startsWith(u"✓ Adresse"), qPrintable(zeilen[5]));
    }

    void fuerWerkzeuge()
    {
        Democloud cloud;
        QVERIFY(cloud.starten());
        konto(cloud.adresse());
        pruefen(1, {u"--json"_s, u"--pruefen"_s});
        QVERIFY(ausgabe.endsWith("}\n"));
        QJsonParseError fehler;
        const QJsonObject objekt = QJsonDocument::fromJson(ausgabe, &fehler).object();
        QCOMPARE(fehler.error, QJsonParseError::NoError);
        QCOMPARE(objekt.keys(),
                 (QStringList{u"befunde"_s, u"gut"_s, u"kalvaro"_s, u"qt"_s, u"system"_s}));
        QCOMPARE(objekt[u"gut"], QJsonValue(false)); // without a bus and rekordbox
        QCOMPARE(objekt[u"kalvaro"], QJsonValue(u"1.4"_s));
        QCOMPARE(objekt[u"befunde"].toArray().size(), 11);
        const QJsonObject konto = objekt[u"befunde"].toArray()[0].toObject();
        QCOMPARE(konto, (QJsonObject{{u"bereich"_s, u"konto"_s},
                                     {u"gut"_s, true},
                                     {u"name"_s, u"Konto"_s},
                                     {u"text"_s, u"Gerät „demo-mac“, eine Adresse"_s}}));
    }

    // The one that runs neither opens nor notices.
    void nebenDemLaufendenProgramm()
    {
        Democloud cloud;
        QVERIFY(cloud.starten());
        konto(cloud.adresse());
        Testbus bus;
        umgebung.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, bus.adresse());
        QProcessEnvironment mitAnzeige = umgebung;
        mitAnzeige.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
        Kindprogramm erstes(programm, {u"--hintergrund"_s}, mitAnzeige);
        QTRY_COMPARE_WITH_TIMEOUT(zuhause->protokoll().size(), 1, frist);

        QVERIFY(adresszeile(pruefen(1)).startsWith(u"✓ "));

        QVERIFY(erstes.laeuft());
        QCOMPARE(zuhause->protokoll().size(), 1);
        QCOMPARE(wege(cloud), (QStringList{u"GET /api/status"_s, u"GET /api/stand"_s}));
        QVERIFY(erstes.beenden(SIGTERM) >= 0);
    }

    void haengenderBus()
    {
        Testbus bus;
        bus.anhalten();
        umgebung.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, bus.adresse());
        QElapsedTimer zeit;
        zeit.start();
        QVERIFY(pruefen(1).join(u'\n').contains(u"✗ Sitzungsbus: antwortet nicht → "));
        QVERIFY2(zeit.elapsed() < 10'000, qPrintable(QString::number(zeit.elapsed())));
    }

    // Nor does an argument that nobody knows keep it from its work.
    void unbekanntesArgument()
    {
        Kindprogramm lauf(programm, {u"--pruefen"_s, u"--jsn"_s}, umgebung);
        QCOMPARE(lauf.ende(), 1);
        QVERIFY(lauf.fehlerausgabe().startsWith("kalvaro: Das Argument „--jsn“ "));
        QVERIFY(lauf.ausgabe().startsWith("✗ Konto: "));
    }

private:
    // The lines of the check-up, which must end with `ausgang`, say nothing else and keep the key.
    QStringList pruefen(int ausgang, const QStringList &argumente = {u"--pruefen"_s})
    {
        Kindprogramm lauf(programm, argumente, umgebung);
        // The bus's services live in this process.
        const bool geendet = QTest::qWaitFor([&lauf] { return !lauf.laeuft(); }, frist);
        if (!geendet || lauf.ende() != ausgang) {
            qWarning("The check-up ended with %d", geendet ? lauf.ende() : -1);
            ausgabe = lauf.ausgabe();
            return QStringList(20, QString::fromUtf8(ausgabe));
        }
        ausgabe = lauf.ausgabe();
        const QByteArray fehler = lauf.fehlerausgabe();
        if (!fehler.isEmpty() || ausgabe.contains(geheim) || ausgabe.contains('\x1b') ||
            !ausgabe.endsWith('\n')) {
            qWarning("It says what it must not: %s%s", ausgabe.constData(), fehler.constData());
            return QStringList(20);
        }
        return QString::fromUtf8(ausgabe).chopped(1).split(u'\n');
    }

    static QString adresszeile(const QStringList &zeilen) { return zeilen.value(2); }

    static QStringList wege(const Democloud &cloud)
    {
        QStringList liste;
        const auto anfragen = cloud.anfragen();
        for (const Anfrage &anfrage : anfragen) {
            liste.append(QString::fromLatin1(anfrage.methode) + u' ' + anfrage.pfad);
        }
        return liste;
    }

    void konto(const QString &server) const { kontodatei(demokonto(server), nurIch); }
    void kontodatei(const QByteArray &inhalt, QFile::Permissions rechte) const
    {
        const QString datei = zuhause->daten() + u"/konto.json"_s;
        dateiSchreiben(datei, inhalt);
        QFile::setPermissions(datei, rechte);
    }

    std::optional<Zuhause> zuhause;
    QProcessEnvironment umgebung;
    QByteArray ausgabe; // of the last run
};

KALVARO_TEST(TestPruefmodus)
#include "tst_pruefmodus.moc"
