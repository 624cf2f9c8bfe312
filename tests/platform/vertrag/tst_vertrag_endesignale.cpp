// How the system tells the program to end.

#include "doubles/ereignisse.h"
#include "prueflinge.h"
#include "testlauf.h"

#include <QElapsedTimer>

#include <csignal>
#include <functional>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

// How a process ends in which this happens: its status, or 1000 and the signal that killed it. One
// that would never end is killed after a while.
int inEinemProzess(const std::function<void()> &was)
{
    constexpr unsigned geduld = 20; // seconds
    const pid_t kind = ::fork();
    if (kind == 0) {
        was();
        ::_exit(99);
    }
    const auto waechter = ::fork();
    if (waechter == 0) {
        ::sleep(geduld);
        ::kill(kind, SIGKILL);
        ::_exit(0);
    }
    int stand = 0;
    ::waitpid(kind, &stand, 0);
    ::kill(waechter, SIGKILL);
    ::waitpid(waechter, nullptr, 0);
    return WIFEXITED(stand) ? WEXITSTATUS(stand) : 1000 + WTERMSIG(stand);
}

// What a program may be doing when the signal comes.
void nieZurueckkommen()
{
    while (true) {
        ::pause();
    }
}

} // namespace

class TestVertragEndesignale final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data() { Vertrag<Endepruefling>::zeilen({u"linux"_s, u"macos"_s}); }
    void init()
    {
        gehoert = 0;
        std::signal(SIGHUP,
                    SIG_DFL); // whoever runs the tests may ignore it, and so does who has listened
        p = Vertrag<Endepruefling>::neu();
    }
    void cleanup()
    {
        p.reset();
        // The test goes on, and so does its process.
        const itimerval keine = {};
        ::setitimer(ITIMER_REAL, &keine, nullptr);
    }

    void rufenAusDerSchleife_data()
    {
        QTest::addColumn<int>("nummer");
        QTest::newRow("SIGTERM") << SIGTERM;
        QTest::newRow("SIGINT") << SIGINT;
        QTest::newRow("SIGHUP") << SIGHUP;
    }
    void rufenAusDerSchleife()
    {
        QFETCH(const int, nummer);
        const auto hoerer = p->hoeren([this] { ++gehoert; });
        QVERIFY(!p->wartet());
        std::raise(nummer);
        QCOMPARE(gehoert, 0);
        QVERIFY(p->wartet());
        QTRY_COMPARE(gehoert, 1);
        QVERIFY(!p->wartet());
    }

    void nohupGilt()
    {
        std::signal(SIGHUP, SIG_IGN);
        const auto hoerer = p->hoeren([this] { ++gehoert; });
        std::raise(SIGHUP);
        ereignisseAbarbeiten();
        QVERIFY(!p->wartet());
        QCOMPARE(gehoert, 0);
        std::raise(SIGTERM);
        QTRY_COMPARE(gehoert, 1);
    }

    void einZweitesBeimEndenStoertNicht()
    {
        QCOMPARE(inEinemProzess([this] {
                     p->hoeren([] {}).reset();
                     std::raise(SIGTERM);
                     std::raise(SIGINT);
                     ::_exit(7);
                 }),
                 7);
    }

    // Whatever the program then does or waits for, it ends well, and soon.
    void dasEndeKommtAuchWennNiemandHinsieht()
    {
        QElapsedTimer dauer;
        dauer.start();
        QCOMPARE(inEinemProzess([this] {
                     const auto hoerer = p->hoeren([] {});
                     std::raise(SIGTERM);
                     nieZurueckkommen();
                 }),
                 0);
        QVERIFY2(dauer.elapsed() >= 600, qPrintable(QString::number(dauer.elapsed())));
        QVERIFY2(dauer.elapsed() < 5000, qPrintable(QString::number(dauer.elapsed())));
    }

    void dasFruehereEndeGilt()
    {
        QElapsedTimer dauer;
        dauer.start();
        QCOMPARE(inEinemProzess([this] {
                     p->spaetestensEnden(50, 3);
                     p->spaetestensEnden(60'000, 4);
                     nieZurueckkommen();
                 }),
                 4); // the last status, at the first time
        QVERIFY2(dauer.elapsed() < 5000, qPrintable(QString::number(dauer.elapsed())));
        QCOMPARE(inEinemProzess([this] {
                     p->spaetestensEnden(60'000, 3);
                     p->spaetestensEnden(50, 0);
                     nieZurueckkommen();
                 }),
                 0);
        QVERIFY2(dauer.elapsed() < 10'000, qPrintable(QString::number(dauer.elapsed())));
    }

private:
    int gehoert = 0;
    std::unique_ptr<Endepruefling> p;
};

KALVARO_TEST(TestVertragEndesignale)
#include "tst_vertrag_endesignale.moc"
