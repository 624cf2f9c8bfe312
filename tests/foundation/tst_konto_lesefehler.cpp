#include "doubles/datenordner.h"
#include "foundation/datenordner.h"
#include "foundation/konto.h"
#include "testlauf.h"

#include <QFile>

using namespace kalvaro;
using namespace Qt::StringLiterals;

class TestKontoLesefehler final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lesefehlerUnterwegs();

private:
    Datenordner ordner;
};

void TestKontoLesefehler::lesefehlerUnterwegs()
{
    const QString pfad = datei(u"konto.json"_s);
    // The one file of every Linux that opens well and then fails to be read at its beginning.
    QVERIFY(QFile::link(u"/proc/self/mem"_s, pfad));

    const auto konto = Konto::laden();

    QVERIFY(!konto.has_value());
    QCOMPARE(konto.error(), u"Die Datei „%1“ lässt sich nicht lesen."_s.arg(pfad));
}

KALVARO_TEST(TestKontoLesefehler)
#include "tst_konto_lesefehler.moc"
