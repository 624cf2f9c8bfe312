#include "foundation/speicherplatz.h"
#include "testlauf.h"

#include <cmath>
#include <filesystem>

using namespace kalvaro;

using Zahl = std::optional<double>;

// As the C library tells it. Another system may count what it would make room for as well.
class TestSpeicherplatz final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void freierPlatz_data();
    void freierPlatz();
    void freierPlatzIstDerEinesNutzers();
};

void TestSpeicherplatz::freierPlatz_data()
{
    QTest::addColumn<QByteArray>("zuhause");
    QTest::addColumn<Zahl>("erwartet");

    QTest::newRow("a home folder that is not there") << QByteArray("/gibt/es/nicht") << Zahl();
    QTest::newRow("a file system without room") << QByteArray("/proc") << Zahl(0);
}

void TestSpeicherplatz::freierPlatz()
{
    const QByteArray vorher = qgetenv("HOME");
    QFETCH(QByteArray, zuhause);
    qputenv("HOME", zuhause);

    const Zahl frei = freiAufMac();

    qputenv("HOME", vorher);
    QTEST(frei, "erwartet");
}

void TestSpeicherplatz::freierPlatzIstDerEinesNutzers()
{
    const QByteArray vorher = qgetenv("HOME");
    qputenv("HOME", "/");
    const std::filesystem::space_info platz = std::filesystem::space("/");

    const Zahl frei = freiAufMac();

    qputenv("HOME", vorher);
    QVERIFY(frei.has_value());
    // Others write to the disk meanwhile.
    const double spielraum = 4e9;
    QVERIFY(std::abs(*frei - static_cast<double>(platz.available)) < spielraum);
    QVERIFY(*frei > 0 && *frei < static_cast<double>(platz.capacity));
}

KALVARO_TEST(TestSpeicherplatz)
#include "tst_speicherplatz.moc"
