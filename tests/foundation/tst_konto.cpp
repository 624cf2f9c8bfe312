#include "doubles/datenordner.h"
#include "doubles/einschraenkung.h"
#include "foundation/datenordner.h"
#include "foundation/konto.h"
#include "testlauf.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

using namespace kalvaro;
using namespace Qt::StringLiterals;

class TestKonto final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void neuesKontoIstLeer();
    void geladen_data();
    void geladen();
    void unvollstaendig_data();
    void unvollstaendig();
    void keinJson_data();
    void keinJson();
    void stelleImJsonZaehltZeichen();

    void fehlendeDatei();
    void fehlenderDatenordner();
    void leererVerweis();
    void nichtLesbareDatei();
    void nichtBetretbarerDatenordner();
    void verweisImKreis();
    void keineDateienMehrFrei();
    void keineGewoehnlicheDatei_data();
    void keineGewoehnlicheDatei();
    void verweisAufEineDatei();
    void verweiseImKreis();
    void riesigeDatei();

    void ladenAendertDieDateiNicht();

private:
    [[nodiscard]] static QString pfad() { return datei(u"konto.json"_s); }

    [[nodiscard]] static QString satz(const QString &ende)
    {
        return u"Die Datei „"_s + pfad() + u"“ "_s + ende;
    }

    [[nodiscard]] static QString meldung()
    {
        const auto konto = Konto::laden();
        return konto ? u"(geladen)"_s : konto.error();
    }

    Datenordner ordner;
};

void TestKonto::init()
{
    ordner.leeren();
}

void TestKonto::neuesKontoIstLeer()
{
    const Konto konto;

    QVERIFY(konto.name.isEmpty());
    QVERIFY(konto.geraet.isEmpty());
    QVERIFY(konto.schluessel.isEmpty());
    QVERIFY(konto.server.isEmpty());
}

void TestKonto::geladen_data()
{
    QTest::addColumn<QByteArray>("inhalt");
    QTest::addColumn<Konto>("erwartet");

    const Konto studio{u"Studio"_s, u"mac-1"_s, u"geheim"_s, {u"https://a"_s, u"http://b:8080"_s}};
    const auto mitServer = [](const QByteArray &liste) {
        return R"({"geraet":"mac-1","server":)" + liste + '}';
    };
    const auto nurServer = [](const QStringList &server) {
        return Konto{u"mac-1"_s, u"mac-1"_s, {}, server};
    };

    QTest::newRow("all four keys")
        << QByteArray(
               R"({"name":"Studio","geraet":"mac-1","schluessel":"geheim","server":["https://a","http://b:8080"]})")
        << studio;
    QTest::newRow("other keys are ignored")
        << QByteArray(
               R"({"v":3,"name":"Studio","geraet":"mac-1","schluessel":"geheim","x":{"geraet":"y"},"server":["https://a","http://b:8080"]})")
        << studio;
    QTest::newRow("a byte order mark and white space around it")
        << QByteArray("\xef\xbb\xbf\r\n "
                      "{\"name\":\"Studio\",\"geraet\":\"mac-1\",\"schluessel\":\"geheim\","
                      "\r\n\"server\":[\"https://a\",\"http://b:8080\"]}\r\n\n")
        << studio;
    QTest::newRow("name missing: name equals geraet")
        << QByteArray(R"({"geraet":"mac-1","schluessel":"k","server":["https://a"]})")
        << Konto{u"mac-1"_s, u"mac-1"_s, u"k"_s, {u"https://a"_s}};
    QTest::newRow("name empty: name equals geraet")
        << QByteArray(R"({"name":"","geraet":"mac-1","schluessel":"k","server":["https://a"]})")
        << Konto{u"mac-1"_s, u"mac-1"_s, u"k"_s, {u"https://a"_s}};
    QTest::newRow("name not a string: name equals geraet")
        << QByteArray(R"({"name":7,"geraet":"mac-1","schluessel":"k","server":["https://a"]})")
        << Konto{u"mac-1"_s, u"mac-1"_s, u"k"_s, {u"https://a"_s}};
    QTest::newRow("name of blanks is taken as it is")
        << QByteArray(R"({"name":" ","geraet":"mac-1","schluessel":"k","server":["https://a"]})")
        << Konto{u" "_s, u"mac-1"_s, u"k"_s, {u"https://a"_s}};
    QTest::newRow("schluessel missing: usable, schluessel is empty")
        << mitServer(R"(["https://a"])") << nurServer({u"https://a"_s});
    QTest::newRow("schluessel not a string: usable, schluessel is empty")
        << QByteArray(R"({"geraet":"mac-1","schluessel":["k"],"server":["https://a"]})")
        << nurServer({u"https://a"_s});
    QTest::newRow("texts are not trimmed")
        << QByteArray(
               R"({"name":" N ","geraet":" g ","schluessel":" k\n","server":[" https://a "]})")
        << Konto{u" N "_s, u" g "_s, u" k\n"_s, {u" https://a "_s}};
    QTest::newRow("texts with umlauts and escapes")
        << QByteArray(
               R"({"name":"Jörgs \u201eMac\u201c","geraet":"jörg","schluessel":"ß","server":["https://ä"]})")
        << Konto{u"Jörgs „Mac“"_s, u"jörg"_s, u"ß"_s, {u"https://ä"_s}};
    QTest::newRow("a server entry that ends in a slash is kept without it")
        << mitServer(R"(["https://a/"])") << nurServer({u"https://a"_s});
    QTest::newRow("a server entry without a trailing slash is kept as it is")
        << mitServer(R"(["https://a/b"])") << nurServer({u"https://a/b"_s});
    QTest::newRow("a server entry that ends in two slashes keeps one")
        << mitServer(R"(["https://a//"])") << nurServer({u"https://a/"_s});
    QTest::newRow("server entries are neither sorted, deduplicated nor checked")
        << mitServer(R"(["z","a","z","","/"])")
        << nurServer({u"z"_s, u"a"_s, u"z"_s, QString(), QString()});
}

void TestKonto::geladen()
{
    QFETCH(QByteArray, inhalt);
    ordner.schreiben(u"konto.json"_s, inhalt);

    const auto konto = Konto::laden();

    QVERIFY2(konto.has_value(), qPrintable(konto ? QString() : konto.error()));
    QFETCH(Konto, erwartet);
    QCOMPARE(konto->name, erwartet.name);
    QCOMPARE(konto->geraet, erwartet.geraet);
    QCOMPARE(konto->schluessel, erwartet.schluessel);
    QCOMPARE(konto->server, erwartet.server);
    QVERIFY(*konto == erwartet);
}

void TestKonto::unvollstaendig_data()
{
    QTest::addColumn<QByteArray>("inhalt");

    QTest::newRow("a JSON list instead of an object") << QByteArray("[]");
    QTest::newRow("a list that holds an account")
        << QByteArray(R"([{"geraet":"mac-1","server":["https://a"]}])");
    QTest::newRow("an empty object") << QByteArray("{}");
    QTest::newRow("server an empty list") << QByteArray(R"({"geraet":"mac-1","server":[]})");
    QTest::newRow("server a single string instead of a list")
        << QByteArray(R"({"geraet":"mac-1","server":"https://a"})");
    QTest::newRow("server a number among the strings")
        << QByteArray(R"({"geraet":"mac-1","server":["https://a",1,"https://b"]})");
    QTest::newRow("server null among the strings")
        << QByteArray(R"({"geraet":"mac-1","server":["https://a",null]})");
    QTest::newRow("server missing") << QByteArray(R"({"geraet":"mac-1"})");
    QTest::newRow("server a map") << QByteArray(R"({"geraet":"mac-1","server":{"a":"https://a"}})");
    QTest::newRow("geraet missing") << QByteArray(R"({"server":["https://a"]})");
    QTest::newRow("geraet empty") << QByteArray(R"({"geraet":"","server":["https://a"]})");
    QTest::newRow("geraet a number") << QByteArray(R"({"geraet":1,"server":["https://a"]})");
    QTest::newRow("geraet null") << QByteArray(R"({"geraet":null,"server":["https://a"]})");
    QTest::newRow("a name does not replace geraet")
        << QByteArray(R"({"name":"Studio","server":["https://a"]})");
    QTest::newRow("keys in capitals") << QByteArray(R"({"Geraet":"mac-1","Server":["https://a"]})");
}

void TestKonto::unvollstaendig()
{
    QFETCH(QByteArray, inhalt);
    ordner.schreiben(u"konto.json"_s, inhalt);

    QCOMPARE(meldung(), pfad() + u" ist unvollständig."_s);
}

void TestKonto::keinJson_data()
{
    QTest::addColumn<QByteArray>("inhalt");
    QTest::addColumn<QString>("stelle");

    QTest::newRow("an empty file") << QByteArray() << u"Zeile 1, Zeichen 1"_s;
    QTest::newRow("blanks only") << QByteArray("  \n ") << QString();
    QTest::newRow("a half-typed file")
        << QByteArray("{\n  \"geraet\": \"mac-1\",\n  \"serv") << u"Zeile 3"_s;
    QTest::newRow("a comma too much")
        << QByteArray("{\"geraet\":\"mac-1\",\n\"server\":[\"https://a\"],\n}") << u"Zeile 3"_s;
    QTest::newRow("a string") << QByteArray("\"mac-1\"") << u"Zeile 1"_s;
    QTest::newRow("a number") << QByteArray("42") << u"Zeile 1"_s;
    QTest::newRow("true") << QByteArray("true") << u"Zeile 1"_s;
    QTest::newRow("null") << QByteArray("null") << u"Zeile 1"_s;
    QTest::newRow("two objects") << QByteArray("{}{}") << u"Zeile 1"_s;
    QTest::newRow("broken UTF-8") << QByteArray(
                                         "{\"geraet\":\"mac-\xff\",\"server\":[\"https://a\"]}")
                                  << u"Zeile 1"_s;
    QTest::newRow("a property list") << QByteArray("<?xml version=\"1.0\"?>") << u"Zeile 1"_s;
    QTest::newRow("zero bytes") << QByteArray(64, '\0') << u"Zeile 1"_s;
    QTest::newRow("nested without end") << QByteArray(100'000, '[') << u"Zeile 1"_s;
}

void TestKonto::keinJson()
{
    QFETCH(QByteArray, inhalt);
    ordner.schreiben(u"konto.json"_s, inhalt);

    const QString text = meldung();

    QVERIFY2(text.startsWith(u"Die Datei „"_s + pfad() + u"“ ist kein gültiges JSON (Zeile "_s) &&
                 text.endsWith(u")."),
             qPrintable(text));
    QFETCH(QString, stelle);
    QVERIFY2(text.contains(stelle), qPrintable(text));
}

void TestKonto::stelleImJsonZaehltZeichen()
{
    ordner.schreiben(u"konto.json"_s, "{\n\"name\":\"Jorgs Gerat\" x}");
    const QString ohneUmlaute = meldung();
    ordner.schreiben(u"konto.json"_s, "{\n\"name\":\"Jörgs Gerät\" x}");

    QCOMPARE(meldung(), ohneUmlaute);
    QVERIFY2(ohneUmlaute.contains(u"Zeile 2, Zeichen 2"), qPrintable(ohneUmlaute));
}

void TestKonto::fehlendeDatei()
{
    QCOMPARE(meldung(), satz(u"existiert nicht."_s));
}

void TestKonto::fehlenderDatenordner()
{
    QVERIFY(QDir(appOrdner()).removeRecursively());

    QCOMPARE(meldung(), satz(u"existiert nicht."_s));
}

void TestKonto::leererVerweis()
{
    QVERIFY(QFile::link(appOrdner() + u"/nirgends"_s, pfad()));

    QCOMPARE(meldung(), satz(u"existiert nicht."_s));
}

void TestKonto::nichtLesbareDatei()
{
    ordner.schreiben(u"konto.json"_s, R"({"geraet":"mac-1","server":["https://a"]})");
    const Rechte oben(QFileInfo(appOrdner()).path(), lesbarFuerAlle | QFile::WriteOwner);
    const Rechte gesperrt(pfad(), {});
    QString text;

    {
        const OhneRechte niemand;
        text = meldung();
    }

    QCOMPARE(text, satz(u"lässt sich nicht öffnen: Es fehlen die Rechte."_s));
}

void TestKonto::nichtBetretbarerDatenordner()
{
    ordner.schreiben(u"konto.json"_s, R"({"geraet":"mac-1","server":["https://a"]})");
    const Rechte gesperrt(appOrdner(), {});
    QString text;

    {
        const OhneRechte niemand;
        text = meldung();
    }

    QCOMPARE(text, satz(u"lässt sich nicht öffnen: Es fehlen die Rechte."_s));
}

void TestKonto::verweisImKreis()
{
    QVERIFY(QFile::link(u"konto.json"_s, pfad()));

    const QString text = meldung();

    QVERIFY2(text.startsWith(satz(u"lässt sich nicht öffnen"_s)), qPrintable(text));
}

void TestKonto::keineDateienMehrFrei()
{
    ordner.schreiben(u"konto.json"_s, R"({"geraet":"mac-1","server":["https://a"]})");
    QString text;

    {
        const Grenze knapp(RLIMIT_NOFILE, 0);
        text = meldung();
    }

    QCOMPARE(text, satz(u"lässt sich nicht öffnen."_s));
}

void TestKonto::keineGewoehnlicheDatei_data()
{
    QTest::addColumn<QString>("art");

    QTest::newRow("a folder") << u"ordner"_s;
    QTest::newRow("a pipe that nobody writes must not block") << u"pipe"_s;
    QTest::newRow("a device without end") << u"geraet"_s;
}

void TestKonto::keineGewoehnlicheDatei()
{
    QFETCH(QString, art);
    if (art == u"ordner") {
        QVERIFY(QDir().mkdir(pfad()));
    } else if (art == u"pipe") {
        QCOMPARE(mkfifo(QFile::encodeName(pfad()).constData(), 0600), 0);
    } else {
        QVERIFY(QFile::link(u"/dev/zero"_s, pfad()));
    }

    QCOMPARE(meldung(), satz(u"ist keine gewöhnliche Datei."_s));
}

void TestKonto::verweiseImKreis()
{
    QVERIFY(QFile::link(pfad(), datei(u"anderer"_s)));
    QVERIFY(QFile::link(datei(u"anderer"_s), pfad()));

    QCOMPARE(meldung(), satz(u"lässt sich nicht öffnen: Die Verweise führen im Kreis."_s));
}

// It costs neither time nor memory.
void TestKonto::riesigeDatei()
{
    QFile riese(pfad());
    QVERIFY(riese.open(QIODevice::WriteOnly) && riese.resize(qint64{200} * 1024 * 1024 * 1024));
    riese.close();
    QCOMPARE(meldung(), satz(u"ist zu groß für eine Kontodatei."_s));
}

void TestKonto::verweisAufEineDatei()
{
    ordner.schreiben(u"echt.json"_s, R"({"geraet":"mac-1","server":["https://a"]})");
    QVERIFY(QFile::link(datei(u"echt.json"_s), pfad()));

    const auto konto = Konto::laden();

    QVERIFY(konto.has_value());
    QCOMPARE(konto->geraet, u"mac-1"_s);
}

void TestKonto::ladenAendertDieDateiNicht()
{
    const QByteArray inhalt = R"({"geraet":"mac-1","server":["https://a/"],"x":1})";
    ordner.schreiben(u"konto.json"_s, inhalt);

    QVERIFY(Konto::laden().has_value());

    QCOMPARE(ordner.inhalt(u"konto.json"_s), inhalt);
    QCOMPARE(QDir(appOrdner()).entryList(QDir::Files), QStringList{u"konto.json"_s});
}

KALVARO_TEST(TestKonto)
#include "tst_konto.moc"
