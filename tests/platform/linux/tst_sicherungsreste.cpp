#include "platform/linux/sicherungsreste.h"

#include "doubles/dateien.h"
#include "testlauf.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <memory>
#include <sys/stat.h>
#include <unistd.h>

using namespace kalvaro;
using namespace Qt::StringLiterals;

class TestSicherungsreste final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { ordner_ = std::make_unique<QTemporaryDir>(); }

    void nurWasGenauSoHeisst_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("geht");
        QTest::newRow("a leftover") << u"e.json.AbCdEf"_s << true;
        QTest::newRow("the file itself") << u"e.json"_s << false;
        QTest::newRow("five letters") << u"e.json.AbCdE"_s << false;
        QTest::newRow("seven letters") << u"e.json.AbCdEfg"_s << false;
        QTest::newRow("a digit") << u"e.json.AbCdE1"_s << false;
        QTest::newRow("an umlaut") << u"e.json.AbCdEü"_s << false;
        QTest::newRow("another dot") << u"e.json.AbC.Ef"_s << false;
        QTest::newRow("another file's") << u"f.json.AbCdEf"_s << false;
        QTest::newRow("the dot is no wildcard") << u"eXjson.AbCdEf"_s << false;
        QTest::newRow("put aside") << u"e.json.ungelesen"_s << false;
    }
    void nurWasGenauSoHeisst()
    {
        QFETCH(const QString, name);
        QFETCH(const bool, geht);
        dateiSchreiben(pfad(name), "x");
        sicherungsresteEntfernen(pfad(u"e.json"_s));
        QCOMPARE(QFile::exists(pfad(name)), !geht);
    }

    void wasKeineDateiIstBleibt()
    {
        QVERIFY(QDir().mkdir(pfad(u"e.json.Ordner"_s)));
        QCOMPARE(::mkfifo(QFile::encodeName(pfad(u"e.json.Roehre"_s)).constData(), 0600), 0);
        dateiSchreiben(pfad(u"ziel"_s), "x");
        QVERIFY(QFile::link(pfad(u"ziel"_s), pfad(u"e.json.Zeiger"_s)));

        sicherungsresteEntfernen(pfad(u"e.json"_s));

        QCOMPARE(
            QDir(ordner_->path())
                .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot, QDir::Name),
            (QStringList{u"e.json.Ordner"_s, u"e.json.Roehre"_s, u"e.json.Zeiger"_s, u"ziel"_s}));
    }

    void fremdesBleibt()
    {
        dateiSchreiben(pfad(u"e.json.Fremde"_s), "x");
        if (::chown(QFile::encodeName(pfad(u"e.json.Fremde"_s)).constData(), 65534, 65534) != 0) {
            QSKIP("needs root");
        }
        sicherungsresteEntfernen(pfad(u"e.json"_s));
        QVERIFY(QFile::exists(pfad(u"e.json.Fremde"_s)));
    }

    // Another kalvaro may be writing it.
    void wasJemandOffenHatBleibt_data()
    {
        QTest::addColumn<bool>("schreibend");
        QTest::newRow("to write") << true;
        QTest::newRow("to read") << false;
    }
    void wasJemandOffenHatBleibt()
    {
        QFETCH(const bool, schreibend);
        dateiSchreiben(pfad(u"e.json.AbCdEf"_s), "x");
        QFile offen(pfad(u"e.json.AbCdEf"_s));
        QVERIFY(offen.open(schreibend ? QIODevice::ReadWrite : QIODevice::ReadOnly));
        sicherungsresteEntfernen(pfad(u"e.json"_s));
        QVERIFY(offen.exists());

        offen.close();
        sicherungsresteEntfernen(pfad(u"e.json"_s));
        QVERIFY(!offen.exists());
    }

    void ohneOrdnerGeschiehtNichts() { sicherungsresteEntfernen(u"/gibt/es/nicht/e.json"_s); }

private:
    [[nodiscard]] QString pfad(const QString &name) const { return ordner_->filePath(name); }

    std::unique_ptr<QTemporaryDir> ordner_;
};

KALVARO_TEST(TestSicherungsreste)
#include "tst_sicherungsreste.moc"
