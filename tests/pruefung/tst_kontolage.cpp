// What the check-up makes of the account file.

#include "pruefung/kontolage.h"

#include "testlauf.h"

#include <QJsonDocument>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

// moc takes two slashes in a raw string for a comment, so JSON escapes them here.

const QString pfad = u"/daten/konto.json"_s;

QJsonObject objekt(const QByteArray &json)
{
    QJsonParseError fehler;
    const QJsonObject ergebnis = QJsonDocument::fromJson(json, &fehler).object();
    if (fehler.error != QJsonParseError::NoError) {
        qFatal("The test's JSON is wrong: %s", json.constData());
    }
    return ergebnis;
}

Kontolage lage(const QByteArray &json, QFile::Permissions rechte = QFile::Permissions(0x6600))
{
    const QJsonObject felder = objekt(json);
    return {pfad, false, true, true, true, rechte, felder, Konto::ausFeldern(felder)};
}

Kontolage gescheitert(bool da, bool lesbar)
{
    return {
        pfad, false, da, da, lesbar, {}, tl::unexpected(u"Grund."_s), tl::unexpected(u"Grund."_s)};
}

} // namespace

class TestKontolage final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void maengel_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QStringList>("erwartet");
        const auto zeile = [](const char *name, const QByteArray &json,
                              const QStringList &erwartet) {
            QTest::newRow(name) << json << erwartet;
        };
        // All is well but for the key that stands before it.
        const auto mit = [&zeile](const char *name, const QByteArray &statt, const QByteArray &feld,
                                  const QStringList &erwartet) {
            const QList<QByteArray> felder{R"("name":"N")", R"("geraet":"g")",
                                           R"("schluessel":"s")", R"("server":["http:\/\/a"])"};
            QByteArray json = "{" + feld;
            for (const QByteArray &f : felder) {
                if (!f.startsWith("\"" + statt + "\"")) {
                    json += (json.size() > 1 ? "," : "") + f;
                }
            }
            zeile(name, json + "}", erwartet);
        };

        mit("nothing", "", "", {});
        mit("other keys", "", R"("notiz":1,"farbe":"rot","Server2":[])", {});
        mit("no name", "name", "", {});
        mit("no device", "geraet", "", {u"„geraet“ fehlt"_s});
        mit("no key", "schluessel", "", {u"„schluessel“ fehlt"_s});
        mit("no server", "server", "", {u"„server“ fehlt"_s});
        zeile("nothing at all", "{}",
              {u"„geraet“ fehlt"_s, u"„schluessel“ fehlt"_s, u"„server“ fehlt"_s});

        mit("an umlaut", "geraet", R"("gerät":"g")", {u"„gerät“ heißt hier „geraet“"_s});
        mit("an umlaut in the key", "schluessel", R"("Schlüssel":"s")",
            {u"„Schlüssel“ heißt hier „schluessel“"_s});
        mit("upper case", "server", R"("SERVER":["http:\/\/a"])",
            {u"„SERVER“ heißt hier „server“"_s});
        mit("one letter too few", "geraet", R"("gerat":"g")", {u"„gerat“ heißt hier „geraet“"_s});
        mit("two letters swapped", "geraet", R"("greaet":"g")",
            {u"„greaet“ heißt hier „geraet“"_s});
        mit("two letters too many", "server", R"("servers_":[])",
            {u"„servers_“ heißt hier „server“"_s});
        mit("three letters off", "server", R"("servants":[])", {u"„server“ fehlt"_s});
        mit("a blank", "geraet", R"("geraet ":"g")", {u"„geraet “ heißt hier „geraet“"_s});
        mit("a name nearly", "name", R"("nam":"N")", {u"„nam“ heißt hier „name“"_s});
        mit("two letters of four are another word", "name", R"("note":"N")", {});
        mit("the nearest", "geraet", R"("gerxxt":1,"geraed":2)",
            {u"„geraed“ heißt hier „geraet“"_s});
        mit("a very long one", "geraet", "\"" + QByteArray(100'000, 'g') + "\":1",
            {u"„geraet“ fehlt"_s});

        mit("a text for the servers", "server", R"("server":"http:\/\/a")",
            {u"„server“ ist ein Text statt einer Liste von Texten"_s});
        mit("an object for the servers", "server", R"("server":{})",
            {u"„server“ ist ein Objekt statt einer Liste von Texten"_s});
        mit("no server in the list", "server", R"("server":[])",
            {u"„server“ ist eine leere Liste"_s});
        mit("a number among the servers", "server", R"("server":["http:\/\/a",5])",
            {u"an Stelle 2 von „server“ steht eine Zahl statt eines Textes"_s});
        mit("a number for the device", "geraet", R"("geraet":5)",
            {u"„geraet“ ist eine Zahl statt eines Textes"_s});
        mit("a list for the key", "schluessel", R"("schluessel":["geheim"])",
            {u"„schluessel“ ist eine Liste statt eines Textes"_s});
        mit("true for the device", "geraet", R"("geraet":true)",
            {u"„geraet“ ist ein Wahrheitswert statt eines Textes"_s});
        mit("null for the name", "name", R"("name":null)",
            {u"„name“ ist null statt eines Textes"_s});
        mit("an empty device", "geraet", R"("geraet":"")", {u"„geraet“ ist leer"_s});
        mit("an empty key", "schluessel", R"("schluessel":"")", {u"„schluessel“ ist leer"_s});
        mit("a blank behind the key", "schluessel", R"("schluessel":"s ")",
            {u"„schluessel“ beginnt oder endet mit einem Leerzeichen"_s});
    }
    void maengel()
    {
        QFETCH(const QByteArray, json);
        QTEST(feldmaengel(objekt(json)), "erwartet");
    }

    void konto_data()
    {
        QTest::addColumn<Kontolage>("wie");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("schritt");
        const QByteArray ganz =
            R"({"geraet":"studio","schluessel":"geheim","server":["http:\/\/a","http:\/\/b"]})";
        QTest::newRow("good") << lage(ganz) << u"Gerät „studio“, 2 Adressen"_s << QString();
        QTest::newRow("one address")
            << lage(R"({"geraet":"g","schluessel":"geheim","server":["http:\/\/a"]})")
            << u"Gerät „g“, eine Adresse"_s << QString();
        QTest::newRow("a remark is no fault")
            << lage(R"({"geraet":"g","schluesel":"geheim","server":["http:\/\/a"]})")
            << u"Gerät „g“, eine Adresse (Anmerkung: „schluesel“ heißt hier „schluessel“)"_s
            << QString();
        QTest::newRow("missing") << gescheitert(false, false) << u"Grund."_s
                                 << u"Lege die Datei dort an; ihren Inhalt kennt, wer die Cloud "
                                    "betreibt."_s;
        Kontolage zu = gescheitert(false, false);
        zu.ordnerZu = true;
        QTest::newRow("in a closed folder")
            << zu << u"Grund."_s
            << u"Gib deinem Benutzer den Zugang zu dem Ordner, in dem sie liegt."_s;
        Kontolage ordner = gescheitert(true, true);
        ordner.istDatei = false;
        QTest::newRow("a folder") << ordner << u"Grund."_s
                                  << u"Räume weg, was dort liegt, und lege die Datei an."_s;
        QTest::newRow("unreadable") << gescheitert(true, false) << u"Grund."_s
                                    << u"Mach die Datei für deinen Benutzer lesbar."_s;
        QTest::newRow("broken") << gescheitert(true, true) << u"Grund."_s
                                << u"Berichtige die Datei."_s;
        QTest::newRow("incomplete")
            << lage(R"({"gerät":"g","schluessel":"geheim","server":"http:\/\/a"})")
            << Konto::kontodatei() + u" ist unvollständig."_s
            << u"Berichtige die Datei: „gerät“ heißt hier „geraet“; „server“ ist ein Text statt "
               "einer Liste von Texten."_s;
    }
    void konto()
    {
        QFETCH(const Kontolage, wie);
        QFETCH(const QString, text);
        QFETCH(const QString, schritt);
        QCOMPARE(kontobefund(wie), (Befund{u"konto"_s, u"Konto"_s, text, schritt}));
    }

    void rechte_data()
    {
        QTest::addColumn<Kontolage>("wie");
        QTest::addColumn<QString>("text");
        const QByteArray mit = R"({"schluessel":"geheim"})";
        const QString offen =
            u"Andere Benutzer dieses Rechners können den Schlüssel lesen oder ändern."_s;
        const auto bits = [](int oktal) { return QFile::Permissions(oktal); };
        QTest::newRow("0600") << lage(mit, bits(0x6600)) << u"nur für dich"_s;
        QTest::newRow("0400") << lage(mit, bits(0x4400)) << u"nur für dich"_s;
        QTest::newRow("0644") << lage(mit, bits(0x6644)) << offen;
        QTest::newRow("0640") << lage(mit, bits(0x6640)) << offen;
        QTest::newRow("0604") << lage(mit, bits(0x6604)) << offen;
        QTest::newRow("0602") << lage(mit, bits(0x6602)) << offen;
        QTest::newRow("0620") << lage(mit, bits(0x6620)) << offen;
        QTest::newRow("0644 without a key")
            << lage(R"({"geraet":"g","server":["http:\/\/a"]})", bits(0x6644))
            << u"enthält keinen Schlüssel"_s;
        QTest::newRow("0644 with a number for a key")
            << lage(R"({"geraet":"g","schluessel":5,"server":["http:\/\/a"]})", bits(0x6644))
            << offen;
        QTest::newRow("0644 with something that may be one")
            << lage(R"({"geraet":"g","key":"k","server":["http:\/\/a"]})", bits(0x6644)) << offen;
        QTest::newRow("0644 with a misspelt key")
            << lage(R"({"Schlüssel":"geheim"})", bits(0x6644)) << offen;
        Kontolage kaputt = gescheitert(true, true);
        kaputt.rechte = bits(0x6644);
        QTest::newRow("0644 of a broken file, which may hold one") << kaputt << offen;
    }
    void rechte()
    {
        QFETCH(const Kontolage, wie);
        QFETCH(const QString, text);
        const bool gut = !text.startsWith(u"Andere");
        QCOMPARE(rechtebefund(wie), (Befund{u"kontorechte"_s, u"Rechte der Kontodatei"_s, text,
                                            gut ? QString() : u"chmod 600 '/daten/konto.json'"_s}));
    }

    void einPfadMitHochkomma()
    {
        Kontolage wie = lage("{}", QFile::Permissions(0x6644));
        wie.pfad = u"/it's/konto.json"_s;
        QCOMPARE(rechtebefund(wie).schritt, u"chmod 600 '/it'\\''s/konto.json'"_s);
    }

    void schluessel()
    {
        QCOMPARE(schluesselAus(objekt(R"({"schluessel":"a","schluesel":"b"})")), u"a"_s);
        QCOMPARE(schluesselAus(objekt(R"({"schluesel":"b"})")), u"b"_s);
        QCOMPARE(schluesselAus(objekt(R"({"schluessel":5})")), QString());
        QCOMPARE(schluesselAus({}), QString());
    }
};

KALVARO_TEST(TestKontolage)
#include "tst_kontolage.moc"
