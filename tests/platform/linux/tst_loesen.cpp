#include "platform/linux/loesen.h"

#include "testlauf.h"

#include <QDir>

#include <cerrno>
#include <dlfcn.h>
#include <sys/wait.h>
#include <unistd.h>

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
