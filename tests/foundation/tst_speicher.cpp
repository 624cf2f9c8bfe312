#include "foundation/nebenarbeit.h"
#include "foundation/speicher.h"
#include "testlauf.h"

#include <QFile>

#include <optional>
#include <vector>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

using Baum = std::vector<QByteArray>;

constexpr int bloecke = 300;
constexpr int jeder = 60'000; // bytes

// After a large block has been freed, glibc keeps more back.
Baum gewachsen()
{
    QByteArray(16 << 20, 'x').clear();
    Baum baum;
    for (int i = 0; i < bloecke; ++i) {
        baum.emplace_back(jeder, 'x');
    }
    return baum;
}

// What this process has for itself in memory, in bytes, as proc(5) tells it.
qint64 eigener()
{
    QFile datei(u"/proc/self/smaps_rollup"_s);
    if (!datei.open(QIODevice::ReadOnly)) {
        return -1;
    }
    for (const QByteArray &zeile : datei.readAll().split('\n')) {
        if (zeile.startsWith("Anonymous:")) {
            return zeile.simplified().split(' ').at(1).toLongLong() * 1024;
        }
    }
    return -1;
}

} // namespace

class TestSpeicher final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { speicherTeilen(); }

    void wasEinFadenHinterliessGehtZurueck();
};

// A thread with a heap of its own kept all of it.
void TestSpeicher::wasEinFadenHinterliessGehtZurueck()
{
    const qint64 vorher = eigener();
    QVERIFY(vorher > 0);
    std::optional<Baum> baum;
    new Nebenarbeit<Baum>([](const Abbruch &) { return gewachsen(); }, this,
                          [&baum](Baum fertig) { baum = std::move(fertig); });
    QTRY_VERIFY(baum);
    QVERIFY(eigener() - vorher > qint64{bloecke} * jeder);

    baum.reset();
    aufraeumen();

    QTRY_VERIFY2(eigener() - vorher < qint64{1} << 20, qPrintable(QString::number(eigener())));
}

KALVARO_TEST(TestSpeicher)
#include "tst_speicher.moc"
