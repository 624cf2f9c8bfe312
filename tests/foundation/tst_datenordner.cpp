#include "doubles/datenordner.h"
#include "foundation/datenordner.h"
#include "testlauf.h"

#include <QDir>

using namespace kalvaro;
using namespace Qt::StringLiterals;

// Where the data folder lies on a system that has $XDG_DATA_HOME.
class TestDatenordner final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void datenordnerLiegtImNutzerordner();
    void datenordnerWirdEinmalBestimmt();
    void nurAbsoluteDatenwurzelnGelten_data();
    void nurAbsoluteDatenwurzelnGelten();

private:
    Datenordner ordner;
};

void TestDatenordner::datenordnerLiegtImNutzerordner()
{
    const QString daten = qEnvironmentVariable("XDG_DATA_HOME");

    QCOMPARE(appOrdner(), daten + u"/kalvaro"_s);
    QCOMPARE(datei(u"konto.json"_s), daten + u"/kalvaro/konto.json"_s);
}

void TestDatenordner::datenordnerWirdEinmalBestimmt()
{
    const QByteArray daten = qgetenv("XDG_DATA_HOME");
    QVERIFY(!appOrdner().isEmpty());

    qputenv("XDG_DATA_HOME", "/anderswo");
    const bool bleibt = appOrdner() == QString::fromLocal8Bit(daten) + u"/kalvaro"_s;

    qputenv("XDG_DATA_HOME", daten);
    QVERIFY(bleibt);
}

void TestDatenordner::nurAbsoluteDatenwurzelnGelten_data()
{
    QTest::addColumn<QByteArray>("gesetzt");
    QTest::addColumn<QString>("soll");

    const QString vorgabe = QDir::homePath() + u"/.local/share"_s;
    QTest::newRow("empty") << QByteArray() << vorgabe;
    QTest::newRow("relative") << QByteArray("hier/drin") << vorgabe;
    QTest::newRow("the current folder") << QByteArray(".") << vorgabe;
    QTest::newRow("a tilde, which only shells know") << QByteArray("~/daten") << vorgabe;
    QTest::newRow("absolute") << QByteArray("/anderswo") << u"/anderswo"_s;
    QTest::newRow("with a slash at its end") << QByteArray("/anderswo/") << u"/anderswo"_s;
    QTest::newRow("with two") << QByteArray("/anderswo//") << u"/anderswo"_s;
    QTest::newRow("the root") << QByteArray("/") << u""_s;
}

void TestDatenordner::nurAbsoluteDatenwurzelnGelten()
{
    QFETCH(QByteArray, gesetzt);
    const QByteArray vorher = qgetenv("XDG_DATA_HOME");

    qputenv("XDG_DATA_HOME", gesetzt);
    const QString wurzel = datenwurzel();
    qputenv("XDG_DATA_HOME", vorher);

    QTEST(wurzel, "soll");
}

KALVARO_TEST(TestDatenordner)
#include "tst_datenordner.moc"
