// Whether a folder can be written to, found out without writing.

#include "foundation/ordnerlage.h"

#include "doubles/dateien.h"
#include "doubles/einschraenkung.h"
#include "testlauf.h"

#include <QDir>
#include <QTemporaryDir>

#include <optional>

using namespace kalvaro;
using namespace Qt::StringLiterals;

class TestOrdnerlage final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        wurzel.emplace();
        QFile::setPermissions(wurzel->path(), QFile::Permissions(0x7777));
    }

    void daUndBeschreibbar()
    {
        const Ordnerlage lage = ordnerlage(wurzel->path(), {u"log"_s});
        QVERIFY(lage.da && lage.istOrdner && lage.beschreibbar);
        QCOMPARE(lage.gesperrt, QStringList());
        QVERIFY(lage.frei && *lage.frei > 0);
    }

    // Also two levels below what exists; and it is not made by looking.
    void fehltNoch()
    {
        const QString pfad = wurzel->filePath(u"a/b"_s);
        const Ordnerlage lage = ordnerlage(pfad, {});
        QVERIFY(!lage.da && !lage.istOrdner && lage.beschreibbar);
        QVERIFY(lage.frei);
        QCOMPARE(QDir(wurzel->path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries).size(), 0);
    }

    void istEineDatei()
    {
        dateiSchreiben(wurzel->filePath(u"a"_s), {});
        const Ordnerlage lage = ordnerlage(wurzel->filePath(u"a"_s), {});
        QVERIFY(lage.da && !lage.istOrdner && !lage.beschreibbar);
    }

    void unterEinerDatei()
    {
        dateiSchreiben(wurzel->filePath(u"a"_s), {});
        const Ordnerlage lage = ordnerlage(wurzel->filePath(u"a/b"_s), {});
        QVERIFY(!lage.da && !lage.beschreibbar);
    }

    void ohneSchreibrecht()
    {
        const Rechte nurLesen(wurzel->path(), lesbarFuerAlle);
        const OhneRechte niemand;
        QVERIFY(!ordnerlage(wurzel->path(), {}).beschreibbar);
        QVERIFY(!ordnerlage(wurzel->filePath(u"a/b"_s), {}).beschreibbar);
    }

    void ohneSuchrecht()
    {
        const Rechte ohne(wurzel->path(), QFile::Permissions(0x6666));
        const OhneRechte niemand;
        QVERIFY(!ordnerlage(wurzel->path(), {}).beschreibbar);
    }

    void gesperrteDatei()
    {
        const QString log = wurzel->filePath(u"log"_s);
        dateiSchreiben(log, {});
        const Rechte nurLesen(log, lesbarFuerAlle);
        const OhneRechte niemand;
        const Ordnerlage lage = ordnerlage(wurzel->path(), {u"log"_s, u"fehlt"_s});
        QCOMPARE(lage.gesperrt, QStringList{log});
    }

private:
    std::optional<QTemporaryDir> wurzel;
};

KALVARO_TEST(TestOrdnerlage)
#include "tst_ordnerlage.moc"
