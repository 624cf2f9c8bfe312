#include "platform/macos/resteentfernen.h"

#include "doubles/dateien.h"
#include "testlauf.h"

#include <QDir>
#include <QTemporaryDir>

#include <memory>
#include <sys/stat.h>

using namespace kalvaro;
using namespace Qt::StringLiterals;

class TestResteentfernen final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { ordner = std::make_unique<QTemporaryDir>(); }

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
        QTest::newRow("another file's") << u"f.json.AbCdEf"_s << false;
        QTest::newRow("more before it") << u"xe.json.AbCdEf"_s << false;
        QTest::newRow("the dot is no wildcard") << u"eXjson.AbCdEf"_s << false;
        QTest::newRow("a line feed behind it") << u"e.json.AbCdEf\n"_s << false;
    }
    void nurWasGenauSoHeisst()
    {
        QFETCH(const QString, name);
        QFETCH(const bool, geht);
        dateiSchreiben(pfad(name), "x");
        resteEntfernen(pfad(u"e.json"_s), inEinerStunde());
        QCOMPARE(QFile::exists(pfad(name)), !geht);
    }

    // Another kalvaro may be writing it.
    void wasFrischIstBleibt()
    {
        dateiSchreiben(pfad(u"e.json.AbCdEf"_s), "x");
        const QDateTime geschrieben = QFileInfo(pfad(u"e.json.AbCdEf"_s)).lastModified();
        resteEntfernen(pfad(u"e.json"_s), geschrieben.addSecs(3599));
        resteEntfernen(pfad(u"e.json"_s), geschrieben.addSecs(-86'400)); // the clock was wrong
        QVERIFY(QFile::exists(pfad(u"e.json.AbCdEf"_s)));
        resteEntfernen(pfad(u"e.json"_s), geschrieben.addSecs(3600));
        QVERIFY(!QFile::exists(pfad(u"e.json.AbCdEf"_s)));
    }

    void wasKeineDateiIstBleibt()
    {
        QVERIFY(QDir().mkdir(pfad(u"e.json.Ordner"_s)));
        QCOMPARE(::mkfifo(QFile::encodeName(pfad(u"e.json.Roehre"_s)).constData(), 0600), 0);
        dateiSchreiben(pfad(u"ziel"_s), "x");
        QVERIFY(QFile::link(pfad(u"ziel"_s), pfad(u"e.json.Zeiger"_s)));

        resteEntfernen(pfad(u"e.json"_s), inEinerStunde());

        QCOMPARE(
            QDir(ordner->path())
                .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot, QDir::Name),
            (QStringList{u"e.json.Ordner"_s, u"e.json.Roehre"_s, u"e.json.Zeiger"_s, u"ziel"_s}));
    }

    void ohneOrdnerGeschiehtNichts()
    {
        resteEntfernen(u"/gibt/es/nicht/e.json"_s, inEinerStunde());
    }

private:
    [[nodiscard]] QString pfad(const QString &name) const { return ordner->filePath(name); }
    [[nodiscard]] static QDateTime inEinerStunde()
    {
        return QDateTime::currentDateTime().addSecs(3601);
    }

    std::unique_ptr<QTemporaryDir> ordner;
};

KALVARO_TEST(TestResteentfernen)
#include "tst_resteentfernen.moc"
