#include "doubles/dateien.h"
#include "platform/linux/linuxprozesse.h"
#include "testlauf.h"

#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>

#include <csignal>
#include <memory>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace kalvaro;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// A process that waits, from a copy of its program at `programm`; ends with this object.
class Schlaefer
{
public:
    explicit Schlaefer(const QString &programm)
    {
        if (!QFile::exists(programm)) {
            QDir().mkpath(QFileInfo(programm).path());
            QFile::copy(u"/bin/sleep"_s, programm);
        }
        prozess.start(programm, {u"1000"_s});
        prozess.waitForStarted();
    }

    ~Schlaefer()
    {
        prozess.kill();
        prozess.waitForFinished();
    }

    Schlaefer(const Schlaefer &) = delete;
    Schlaefer &operator=(const Schlaefer &) = delete;

    [[nodiscard]] bool laeuft() const { return prozess.state() == QProcess::Running; }

private:
    QProcess prozess;
};

// A child with a name; dead, it stays a zombie until this object ends.
class Kind
{
public:
    explicit Kind(const QByteArray &name)
        : pid_(::fork())
    {
        if (pid_ == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            ::prctl(PR_SET_NAME, name.constData());
            for (;;) {
                ::pause();
            }
        }
    }

    ~Kind()
    {
        toeten();
        ::waitpid(pid_, nullptr, 0);
    }

    Kind(const Kind &) = delete;
    Kind &operator=(const Kind &) = delete;

    void toeten() const
    {
        ::kill(pid_, SIGKILL);
        siginfo_t ende = {};
        ::waitid(P_PID, static_cast<id_t>(pid_), &ende, WEXITED | WNOWAIT);
    }

    // As the kernel tells it: "name", and the letter of its state.
    [[nodiscard]] QByteArray name() const { return angabe("comm"); }
    [[nodiscard]] QByteArray zustand() const { return angabe("stat").split(')').last().mid(1, 1); }

private:
    [[nodiscard]] QByteArray angabe(const char *datei) const
    {
        return dateiLesen(u"/proc/%1/%2"_s.arg(pid_).arg(QLatin1String(datei))).trimmed();
    }

    const pid_t pid_;
};

} // namespace

class TestLinuxprozesse final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        ordner = std::make_unique<QTemporaryDir>();
        QVERIFY(ordner->isValid());
    }

    void ausgabeDesWerkzeugs_data()
    {
        QTest::addColumn<QByteArray>("skript");
        QTest::addColumn<qsizetype>("erwartet");
        const auto zeile = [](const char *name, const QByteArray &skript, qsizetype anzahl) {
            QTest::newRow(name) << skript << anzahl;
        };
        zeile("three processes", "printf '12\\n345\\n6\\n'", 3);
        zeile("no line feed at the end", "printf '12\\n345'", 2);
        zeile("empty lines", "printf '\\n\\n12\\n\\n345\\n\\n'", 2);
        zeile("none", "exit 1", 0);
        zeile("lines and a failure", "echo 12; exit 3", 1);
        zeile("lines and a crash", "echo 12; kill -SEGV $$", 1);
        zeile("not UTF-8", "printf '12\\n\\377\\n'", 0);
        zeile("UTF-8 cut off", "printf '12\\n\\303'", 0);
        zeile("garbage, but lines", "printf 'a b\\n\\000\\n'", 2);
        zeile("errors only", "echo 12 >&2", 0);
        zeile("reads its input", "cat; echo 12", 1);
        zeile("many", "seq 20000", 20000);
    }

    void ausgabeDesWerkzeugs()
    {
        QFETCH(const QByteArray, skript);
        QFETCH(const qsizetype, erwartet);
        QCOMPARE(LinuxProzesse(werkzeug(skript)).anzahl(u"x"_s), erwartet);
    }

    void argumente()
    {
        const LinuxProzesse prozesse(werkzeug(R"(printf '%s|' "$@" > "$0.args")"));
        QCOMPARE(prozesse.anzahl(u"a b'$(c)"_s), 0);
        QCOMPARE(dateiLesen(ordner->filePath(u"werkzeug.args"_s)),
                 "-x|--runstates|DIKPRSTWt|a b'$(c)|");
    }

    void werkzeugFehlt_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("missing") << u"/nirgends/pgrep"_s;
        QTest::newRow("a folder") << QDir::tempPath();
    }

    void werkzeugFehlt()
    {
        QFETCH(const QString, name);
        QCOMPARE(LinuxProzesse(name).anzahl(u"x"_s), 0);
    }

    void werkzeugOhneEnde_data()
    {
        QTest::addColumn<QByteArray>("skript");
        QTest::addColumn<std::chrono::milliseconds>("frist");
        const auto still = 500ms;
        const auto bald = 60000ms; // what ends these is the amount, not the time
        QTest::newRow("silent") << QByteArray("exec sleep 1000") << still;
        QTest::newRow("silent after a line") << QByteArray("echo 12; exec sleep 1000") << still;
        QTest::newRow("closes its output") << QByteArray("echo 12; exec sleep 1000 >&-") << still;
        QTest::newRow("endless") << QByteArray("exec yes") << bald;
        QTest::newRow("endless without line feeds") << QByteArray("exec cat /dev/zero") << bald;
        QTest::newRow("cannot be asked to end")
            << QByteArray("trap '' TERM; exec sleep 1000") << still;
    }

    // Counts as 0, in time, and does not stay behind.
    void werkzeugOhneEnde()
    {
        QFETCH(const QByteArray, skript);
        QFETCH(const std::chrono::milliseconds, frist);
        const LinuxProzesse prozesse(werkzeug("echo $$ > \"$0.pid\"\n" + skript), "/proc", frist);
        QElapsedTimer uhr;
        uhr.start();
        QCOMPARE(prozesse.anzahl(u"x"_s), 0);
        QVERIFY2(uhr.elapsed() < 10000, QByteArray::number(uhr.elapsed()).constData());
        const int pid = dateiLesen(ordner->filePath(u"werkzeug.pid"_s)).trimmed().toInt();
        if (pid > 0) { // else it was given up before it could tell
            QTRY_COMPARE(::kill(pid, 0), -1);
        }
    }

    void zaehltEchteProzesse()
    {
        const LinuxProzesse prozesse;
        const QString name = u"kv%1"_s.arg(QCoreApplication::applicationPid());
        const QString programm = ordner->filePath(name);
        QCOMPARE(prozesse.anzahl(name), 0);
        {
            const Schlaefer erster(programm);
            QVERIFY(erster.laeuft());
            QTRY_COMPARE(prozesse.anzahl(name), 1);
            const Schlaefer zweiter(programm);
            QTRY_COMPARE(prozesse.anzahl(name), 2);
            QCOMPARE(prozesse.anzahl(name.chopped(1)), 0);
            QCOMPARE(prozesse.anzahl(name + u'x'), 0);
        }
        QCOMPARE(prozesse.anzahl(name), 0);
    }

    void einZombieLaeuftNicht()
    {
        const LinuxProzesse prozesse;
        const QString name = u"kz%1"_s.arg(QCoreApplication::applicationPid());
        const Kind kind(name.toLatin1());
        QTRY_COMPARE(prozesse.anzahl(name), 1);
        kind.toeten();
        QCOMPARE(kind.name(), name.toLatin1());
        QCOMPARE(kind.zustand(), "Z");
        QCOMPARE(prozesse.anzahl(name), 0);
    }

    void buendelEchterProzesse()
    {
        const QString wo = QDir(ordner->path()).canonicalPath();
        const QString rekordbox = wo + u"/rekordbox 7 ü/rekordbox.app"_s;
        const QString agent = rekordbox + u"/Contents/MacOS/rekordboxAgent.app"_s;
        const Schlaefer erster(rekordbox + u"/Contents/MacOS/kvHaupt"_s);
        const Schlaefer zweiter(rekordbox + u"/Contents/MacOS/kvHaupt"_s);
        const Schlaefer inneres(agent + u"/Contents/MacOS/kvAgent"_s);
        const Schlaefer blank(wo + u"/Contents/kvOhne"_s);
        const LinuxProzesse prozesse;
        QTRY_COMPARE(hier(prozesse.buendel()), QSet<QString>({rekordbox, agent}));
        QCOMPARE(prozesse.buendel().count(rekordbox), 1);
    }

    void buendelImLaufGeloescht()
    {
        const QString buendel = QDir(ordner->path()).canonicalPath() + u"/rekordbox.app"_s;
        const LinuxProzesse prozesse;
        {
            const Schlaefer laufend(buendel + u"/Contents/MacOS/kvWeg"_s);
            QTRY_COMPARE(hier(prozesse.buendel()), QSet<QString>{buendel});
            QVERIFY(QDir(buendel).removeRecursively());
            QCOMPARE(hier(prozesse.buendel()), QSet<QString>{buendel});
        }
        QCOMPARE(hier(prozesse.buendel()), QSet<QString>());
    }

    void prozessordner()
    {
        const auto prozess = [this](const QString &nummer, const QString &programm) {
            QVERIFY(QDir(ordner->path()).mkpath(nummer));
            QVERIFY(QFile::link(programm, ordner->filePath(nummer + u"/exe"_s)));
        };
        prozess(u"1"_s, u"/A/Eins.app/Contents/MacOS/eins"_s);
        prozess(u"23"_s, u"/A/Eins.app/Contents/MacOS/zwei (deleted)"_s);
        prozess(u"24"_s, u"/usr/bin/Contents/MacOS"_s);
        prozess(u"25"_s, u"/Contents/MacOS/ohne Buendel"_s);
        prozess(u"self"_s, u"/A/Selbst.app/Contents/MacOS/x"_s);
        QVERIFY(QDir(ordner->path()).mkpath(u"26"_s));
        dateiSchreiben(ordner->filePath(u"27/exe"_s), "/A/Datei.app/Contents/MacOS/x");
        dateiSchreiben(ordner->filePath(u"28"_s), "");
        const LinuxProzesse prozesse(u"/bin/false"_s, QFile::encodeName(ordner->path()));
        QCOMPARE(prozesse.buendel(), QStringList{u"/A/Eins.app"_s});
    }

    // A process that was long there is not read each time, but never forgotten.
    void prozessWechseltSpaetInEinBuendel()
    {
        const QString exe = ordner->filePath(u"23/exe"_s);
        const auto wechseln = [&exe](const QString &programm) {
            QFile::remove(exe);
            QVERIFY(QFile::link(programm, exe));
        };
        QVERIFY(QDir(ordner->path()).mkpath(u"23"_s));
        wechseln(u"/bin/sh"_s);
        const LinuxProzesse prozesse(u"/bin/false"_s, QFile::encodeName(ordner->path()));
        for (int i = 0; i < 20; ++i) {
            QCOMPARE(prozesse.buendel(), QStringList());
        }
        wechseln(u"/A/Eins.app/Contents/MacOS/eins"_s);
        int blicke = 1;
        while (blicke <= 8 && prozesse.buendel().isEmpty()) {
            ++blicke;
        }
        QVERIFY(blicke <= 8);
        for (int i = 0; i < 20; ++i) {
            QCOMPARE(prozesse.buendel(), QStringList{u"/A/Eins.app"_s});
        }
        wechseln(u"/bin/sh"_s);
        QCOMPARE(prozesse.buendel(), QStringList());
    }

    void prozessordnerFehlt()
    {
        QCOMPARE(LinuxProzesse(u"/bin/false"_s, "/nirgends").buendel(), QStringList());
    }

private:
    QString werkzeug(const QByteArray &skript) const
    {
        QString name = ordner->filePath(u"werkzeug"_s);
        dateiSchreiben(name, "#!/bin/sh\n" + skript + "\n", true);
        return name;
    }

    // Of the bundles those of this test: others may run on this machine.
    QSet<QString> hier(const QStringList &liste) const
    {
        const QString anfang = QDir(ordner->path()).canonicalPath() + u'/';
        QSet<QString> eigene;
        for (const QString &buendel : liste) {
            if (buendel.startsWith(anfang)) {
                eigene.insert(buendel);
            }
        }
        return eigene;
    }

    std::unique_ptr<QTemporaryDir> ordner;
};

KALVARO_TEST(TestLinuxprozesse)
#include "tst_linuxprozesse.moc"
