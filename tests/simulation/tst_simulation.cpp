// Thousands of random histories of user, rekordbox, servers and time, always the same ones: what
// must hold holds after each event. A history that breaks a law is shrunk to what it needs and
// printed, one event per line; KALVARO_VERLAUF, set to such lines, runs them again.

#include "schrumpfen.h"
#include "testlauf.h"
#include "verlauf.h"
#include "welt.h"

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

constexpr int laenge = 200;

// What breaks the law, shrunk as far as it goes.
QString bericht(const Verlauf &ganzer, const Welt::Bilanz &bilanz)
{
    const Verlauf kurz = geschrumpft(ganzer, [&](const Verlauf &teil) {
        return Welt::durchlaufen(teil).verstoss == bilanz.verstoss;
    });
    QStringList zeilen;
    const auto verstoss = Welt::durchlaufen(kurz, &zeilen).verstoss;
    return u"%1, %2 of %3 events:\n%4"_s.arg(verstoss.value_or(u"no breach again"_s))
        .arg(kurz.size())
        .arg(ganzer.size())
        .arg(zeilen.join(u'\n'));
}

} // namespace

class TestSimulation final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Welt::vorbereiten(); }

    void verlaeufe_data()
    {
        QTest::addColumn<int>("teil");
        for (int teil = 0; teil < KALVARO_TEILE; ++teil) {
            QTest::addRow("%d", teil) << teil;
        }
    }
    void verlaeufe()
    {
        QFETCH(const int, teil);
        Welt::Bilanz summe;
        for (int nummer = teil; nummer < KALVARO_VERLAEUFE; nummer += KALVARO_TEILE) {
            const Verlauf ganzer = verlauf(static_cast<quint64>(nummer), laenge);
            const Welt::Bilanz bilanz = Welt::durchlaufen(ganzer);
            if (bilanz.verstoss) {
                QFAIL(qPrintable(u"History %1: "_s.arg(nummer) + bericht(ganzer, bilanz)));
            }
            summe += bilanz;
        }
        // The histories were worth something.
        const int anzahl = KALVARO_VERLAEUFE / KALVARO_TEILE;
        QCOMPARE_GT(summe.abgleiche, 8 * anzahl);
        QCOMPARE_GT(summe.starts, anzahl);
        QCOMPARE_GT(summe.countdowns, anzahl / 50);
        QCOMPARE_GT(summe.versprechen, 8 * anzahl);
    }

    // A history that was printed, or part of one.
    void nachspielen()
    {
        const QString zeilen = qEnvironmentVariable("KALVARO_VERLAUF", u"Beginn: mit Fenster"_s);
        const auto einer = ausZeilen(zeilen);
        QVERIFY2(einer, "A line names no event");
        QStringList mitschrift;
        const Welt::Bilanz bilanz = Welt::durchlaufen(*einer, &mitschrift);
        QVERIFY2(!bilanz.verstoss,
                 qPrintable(bilanz.verstoss.value_or(QString()) + u'\n' + mitschrift.join(u'\n')));
    }
};

KALVARO_FENSTERTEST(TestSimulation)
#include "tst_simulation.moc"
