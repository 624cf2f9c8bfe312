#include "platform/linux/loesen.h"

#include "testlauf.h"

#include <QDir>

#include <cerrno>
#include <csignal>
#include <dlfcn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

int scheiternderFork = 0; // its number, counted from now on; 0: none fails

} // namespace

// Takes the place of the C library's, in this program only. A child goes on counting where its
// parent was.
extern "C" pid_t fork()
{
    if (scheiternderFork > 0 && --scheiternderFork == 0) {
        errno = EAGAIN;
        return -1;
    }
    static const auto echter = reinterpret_cast<pid_t (*)()>(::dlsym(RTLD_NEXT, "fork"));
    return echter();
}

// What starting leaves behind when the system refuses a process.
class TestLoesen final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { scheiternderFork = 0; }

    void keinProzess_data()
    {
        QTest::addColumn<int>("nummer");
        QTest::newRow("the first one, which ends at once") << 1;
        QTest::newRow("the second one, which becomes the program") << 2;
    }
    void keinProzess()
    {
        QFETCH(const int, nummer);
        const auto offen = [] { return QDir(u"/proc/self/fd"_s).entryList(QDir::System).size(); };
        const auto vorher = offen();
        scheiternderFork = nummer;

        const auto ergebnis = losgeloestStarten({"/bin/true", {}, "/"});

        QVERIFY(!ergebnis);
        QCOMPARE(ergebnis.error(), EAGAIN);
        QCOMPARE(offen(), vorher);
        QCOMPARE(::waitpid(-1, nullptr, WNOHANG), -1); // no child, dead or alive
        QCOMPARE(errno, ECHILD);
    }

    // Descriptors: a pipe takes two, its end above the standard ones a third.
    void zuWenigeDeskriptoren_data()
    {
        QTest::addColumn<int>("frei");
        QTest::newRow("none") << 0;
        QTest::newRow("one") << 1;
        QTest::newRow("two") << 2;
    }
    void zuWenigeDeskriptoren()
    {
        QFETCH(const int, frei);
        rlimit vorher = {};
        ::getrlimit(RLIMIT_NOFILE, &vorher);
        const rlimit knapp = {64, vorher.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, &knapp);
        std::vector<int> belegt;
        for (int fd = ::dup(0); fd >= 0; fd = ::dup(0)) {
            belegt.push_back(fd);
        }
        for (int i = 0; i < frei; ++i) {
            ::close(belegt.back());
            belegt.pop_back();
        }

        const auto ergebnis = losgeloestStarten({"/bin/true", {}, "/"});

        int wiederFrei = 0;
        for (int fd = ::dup(0); fd >= 0; fd = ::dup(0)) {
            belegt.push_back(fd);
            ++wiederFrei;
        }
        for (const int fd : belegt) {
            ::close(fd);
        }
        ::setrlimit(RLIMIT_NOFILE, &vorher);
        QVERIFY(!ergebnis);
        QCOMPARE(ergebnis.error(), EMFILE);
        QCOMPARE(wiederFrei, frei);
    }

    void unsereSignaleBleibenWieSieWaren()
    {
        sigset_t gesperrt;
        sigset_t vorher;
        ::sigemptyset(&gesperrt);
        ::sigaddset(&gesperrt, SIGUSR1);
        ::sigprocmask(SIG_BLOCK, &gesperrt, &vorher);

        const auto ergebnis = losgeloestStarten({"/bin/true", {}, "/"});

        sigset_t nachher;
        ::sigprocmask(SIG_SETMASK, &vorher, &nachher);
        QVERIFY(ergebnis);
        ::close(*ergebnis);
        QCOMPARE(::sigismember(&nachher, SIGUSR1), 1);
        QCOMPARE(::sigismember(&nachher, SIGUSR2), ::sigismember(&vorher, SIGUSR2));
        QCOMPARE(::sigismember(&nachher, SIGTERM), ::sigismember(&vorher, SIGTERM));
    }

    void derGrundKommtAn_data()
    {
        QTest::addColumn<QByteArray>("programm");
        QTest::addColumn<int>("grund");
        QTest::newRow("none") << QByteArray("/gibt/es/nicht") << ENOENT;
        QTest::newRow("a folder") << QByteArray("/bin") << EACCES;
        QTest::newRow("no program") << QByteArray("/etc/passwd") << EACCES;
    }
    void derGrundKommtAn()
    {
        QFETCH(const QByteArray, programm);
        QFETCH(const int, grund);
        const auto ergebnis = losgeloestStarten({programm, {}, "/gibt/es/auch/nicht"});
        QVERIFY(ergebnis);
        int meldung = 0;
        QCOMPARE(::read(*ergebnis, &meldung, sizeof meldung), ssize_t{sizeof meldung});
        QCOMPARE(meldung, grund);
        ::close(*ergebnis);
        QCOMPARE(::waitpid(-1, nullptr, WNOHANG), -1);
    }

    void gelingtSonst()
    {
        const auto ergebnis = losgeloestStarten({"/bin/true", {}, "/"});
        QVERIFY(ergebnis);
        int meldung = 0;
        QCOMPARE(::read(*ergebnis, &meldung, sizeof meldung), 0); // its end: the program runs
        ::close(*ergebnis);
    }
};

KALVARO_TEST(TestLoesen)
#include "tst_loesen.moc"
