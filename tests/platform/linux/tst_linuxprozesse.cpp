#include "doubles/dateien.h"
#include "doubles/testuhr.h"
#include "platform/linux/linuxprozesse.h"
#include "testlauf.h"

#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>

#include <csignal>
#include <memory>
#include <optional>
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
        zeile("lines, though it found none", "echo 12; exit 1", 1);
        zeile("garbage, but lines", "printf 'a b\\n\\000\\n'", 2);
        zeile("errors only", "echo 12 >&2", 0);
        zeile("reads its input", "cat; echo 12", 1);
        zeile("many", "seq 20000", 20000);
        zeile("its output is held open by another", "echo 12; sleep 9 2>&- &", 1);
    }

    // What is an answer is one, whatever bundles run.
    void ausgabeDesWerkzeugs()
    {
        QFETCH(const QByteArray, skript);
        QFETCH(const qsizetype, erwartet);
        laufend(u"/A/x.app"_s);
        const LinuxProzesse prozesse(uhr, werkzeug(skript), proc());
        QCOMPARE(zahl(prozesse, u"x"_s), erwartet);
    }

    void argumente()
    {
        const LinuxProzesse prozesse(uhr, werkzeug(R"(printf '%s|' "$@" > "$0.args")"));
        QCOMPARE(zahl(prozesse, u"a b'$(c)"_s), 0);
        QCOMPARE(dateiLesen(ordner->filePath(u"werkzeug.args"_s)),
                 "-x|--runstates|DIKPRSTWt|a b'$(c)|");
    }

    void ohnePgrepAntwortenDieBuendel_data()
    {
        QTest::addColumn<QByteArray>("skript");
        QTest::newRow("missing") << QByteArray();
        QTest::newRow("lines and a failure") << QByteArray("echo 12; exit 3");
        QTest::newRow("lines and a crash") << QByteArray("echo 12; kill -SEGV $$");
        QTest::newRow("a crash that looks like exit 1") << QByteArray("kill -HUP $$");
        QTest::newRow("not UTF-8") << QByteArray("printf '12\\n\\377\\n'");
        QTest::newRow("UTF-8 cut off") << QByteArray("printf '12\\n\\303'");
        QTest::newRow("endless") << QByteArray("exec yes");
        QTest::newRow("endless without line feeds") << QByteArray("exec cat /dev/zero");
    }

    // It counted 0, and a sync began beside a running rekordbox.
    void ohnePgrepAntwortenDieBuendel()
    {
        QFETCH(const QByteArray, skript);
        laufend(u"/A/rekordbox 7/rekordbox.app"_s);
        laufend(u"/A/rekordbox 7/rekordbox.app"_s);
        laufend(u"/A/rekordbox 6/rekordbox.app"_s);
        laufend(u"/A/meinrekordbox.app"_s);
        const QString ort = skript.isEmpty() ? u"/nirgends/pgrep"_s : werkzeug(skript);
        const LinuxProzesse prozesse(uhr, ort, proc());
        QCOMPARE(zahl(prozesse, u"rekordbox"_s), 2);
        QCOMPARE(zahl(prozesse, u"rekordboxAgent"_s), 0);
        laufend(u"/A/rekordbox 7/rekordboxAgent.app"_s);
        QCOMPARE(zahl(prozesse, u"rekordboxAgent"_s), 1);
    }

    void werkzeugIstEinOrdner()
    {
        QCOMPARE(zahl(LinuxProzesse(uhr, QDir::tempPath(), proc()), u"x"_s), 0);
    }

    void haengendesPgrepHaeltNichtsAuf_data()
    {
        QTest::addColumn<QByteArray>("skript");
        QTest::newRow("silent") << QByteArray("exec sleep 1000");
        QTest::newRow("silent after a line") << QByteArray("echo 12; exec sleep 1000");
        QTest::newRow("closes its output") << QByteArray("echo 12; exec sleep 1000 >&-");
        QTest::newRow("cannot be asked to end") << QByteArray("trap '' TERM; exec sleep 1000");
        QTest::newRow("stopped") << QByteArray("kill -STOP $$; sleep 1000");
    }

    // Nobody waits but for the answer, and that comes after 2 s. It does not stay behind.
    void haengendesPgrepHaeltNichtsAuf()
    {
        QFETCH(const QByteArray, skript);
        laufend(u"/A/x.app"_s);
        const LinuxProzesse prozesse(uhr, werkzeug("echo $$ > \"$0.pid\"\n" + skript), proc());
        std::optional<qsizetype> antwort;
        prozesse.anzahl(u"x"_s, this, [&](qsizetype anzahl) { antwort = anzahl; });
        int pid = 0;
        QTRY_VERIFY((pid = werkzeugnummer()) > 0);
        uhr.vor(1999ms);
        QVERIFY(!antwort);
        uhr.vor(1ms);
        QCOMPARE(antwort, 1);
        QTRY_COMPARE(::kill(pid, 0), -1); // also no zombie
        QCOMPARE(uhr.offen(), 0);
    }

    // Who asked goes, for example because the program ends: neither is that delayed, nor does the
    // tool stay.
    void werGehtWartetNichtAufPgrep()
    {
        const LinuxProzesse prozesse(uhr, werkzeug("echo $$ > \"$0.pid\"\nexec sleep 1000"));
        auto besitzer = std::make_unique<QObject>();
        prozesse.anzahl(u"x"_s, besitzer.get(), [](qsizetype) { QFAIL("answers nobody"); });
        int pid = 0;
        QTRY_VERIFY((pid = werkzeugnummer()) > 0);
        QElapsedTimer dauer;
        dauer.start();
        besitzer.reset();
        QVERIFY2(dauer.elapsed() < 1000, QByteArray::number(dauer.elapsed()).constData());
        QTRY_COMPARE(::kill(pid, 0), -1);
        QCOMPARE(uhr.offen(), 0);
    }

    // Two slow ones take no longer than one.
    void zweiFragenZugleich()
    {
        // Each ends only when the other one has begun.
        const LinuxProzesse prozesse(
            uhr, werkzeug("ort=\"${0%/*}\"; touch \"$ort/$4\"\n"
                          "while [ ! -e \"$ort/a\" ] || [ ! -e \"$ort/b\" ]; do :; done; echo 1"));
        QStringList antworten;
        for (const QString &name : {u"a"_s, u"b"_s}) {
            prozesse.anzahl(name, this, [&, name](qsizetype n) {
                antworten.append(name + QString::number(n));
            });
        }
        QTRY_COMPARE(antworten.size(), 2);
        antworten.sort();
        QCOMPARE(antworten, QStringList({u"a1"_s, u"b1"_s}));
    }

    void zaehltEchteProzesse()
    {
        const LinuxProzesse prozesse(uhr);
        const QString name = u"kv%1"_s.arg(QCoreApplication::applicationPid());
        const QString programm = ordner->filePath(name);
        QCOMPARE(zahl(prozesse, name), 0);
        {
            const Schlaefer erster(programm);
            QVERIFY(erster.laeuft());
            QTRY_COMPARE(zahl(prozesse, name), 1);
            const Schlaefer zweiter(programm);
            QTRY_COMPARE(zahl(prozesse, name), 2);
            QCOMPARE(zahl(prozesse, name.chopped(1)), 0);
            QCOMPARE(zahl(prozesse, name + u'x'), 0);
        }
        QCOMPARE(zahl(prozesse, name), 0);
    }

    void einZombieLaeuftNicht()
    {
        const LinuxProzesse prozesse(uhr);
        const QString name = u"kz%1"_s.arg(QCoreApplication::applicationPid());
        const Kind kind(name.toLatin1());
        QTRY_COMPARE(zahl(prozesse, name), 1);
        kind.toeten();
        QCOMPARE(kind.name(), name.toLatin1());
        QCOMPARE(kind.zustand(), "Z");
        QCOMPARE(zahl(prozesse, name), 0);
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
        const LinuxProzesse prozesse(uhr);
        QTRY_COMPARE(hier(prozesse.buendel()), QSet<QString>({rekordbox, agent}));
        QCOMPARE(prozesse.buendel().count(rekordbox), 1);
    }

    void buendelImLaufGeloescht()
    {
        const QString buendel = QDir(ordner->path()).canonicalPath() + u"/rekordbox.app"_s;
        const LinuxProzesse prozesse(uhr);
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
        const LinuxProzesse prozesse(uhr, u"/bin/false"_s, QFile::encodeName(ordner->path()));
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
        const LinuxProzesse prozesse(uhr, u"/bin/false"_s, QFile::encodeName(ordner->path()));
        for (int i = 0; i < 20; ++i) {
            QCOMPARE(prozesse.buendel(), QStringList());
            uhr.vor(3s);
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

    // Many looks in a row, as questions bring them, had made a process old that was about to become
    // rekordbox.
    void vieleBlickeMachenKeinenProzessAlt()
    {
        const QString exe = ordner->filePath(u"23/exe"_s);
        QVERIFY(QDir(ordner->path()).mkpath(u"23"_s));
        QVERIFY(QFile::link(u"/bin/sh"_s, exe));
        const LinuxProzesse prozesse(uhr, u"/bin/false"_s, QFile::encodeName(ordner->path()));
        for (int i = 0; i < 20; ++i) {
            QCOMPARE(prozesse.buendel(), QStringList());
        }
        QFile::remove(exe);
        QVERIFY(QFile::link(u"/A/Eins.app/Contents/MacOS/eins"_s, exe));
        QCOMPARE(prozesse.buendel(), QStringList{u"/A/Eins.app"_s});
    }

    // Whose turn it is does not matter where the bundles answer in pgrep's place.
    void ohnePgrepWerdenAlleGelesen()
    {
        for (int nummer = 100; nummer < 108; ++nummer) {
            const QString exe = ordner->filePath(u"%1/exe"_s.arg(nummer));
            QVERIFY(QDir(ordner->path()).mkpath(QString::number(nummer)));
            QVERIFY(QFile::link(u"/bin/sh"_s, exe));
        }
        const LinuxProzesse prozesse(uhr, u"/nirgends/pgrep"_s, QFile::encodeName(ordner->path()));
        for (int i = 0; i < 20; ++i) {
            QCOMPARE(prozesse.buendel(), QStringList());
            uhr.vor(3s);
        }
        for (int nummer = 100; nummer < 108; ++nummer) {
            const QString exe = ordner->filePath(u"%1/exe"_s.arg(nummer));
            QFile::remove(exe);
            QVERIFY(QFile::link(u"/A/%1/x.app/Contents/MacOS/x"_s.arg(nummer), exe));
        }
        QCOMPARE(zahl(prozesse, u"x"_s), 8);
    }

    void prozessordnerFehlt()
    {
        QCOMPARE(LinuxProzesse(uhr, u"/bin/false"_s, "/nirgends").buendel(), QStringList());
    }

private:
    // Asks and waits for the answer; no virtual time passes.
    qsizetype zahl(const Prozesse &prozesse, const QString &name)
    {
        std::optional<qsizetype> antwort;
        prozesse.anzahl(name, this, [&](qsizetype anzahl) { antwort = anzahl; });
        const bool sofort = antwort.has_value();
        if (sofort || !QTest::qWaitFor([&] { return antwort.has_value(); }, 10'000)) {
            return -1;
        }
        return *antwort;
    }

    [[nodiscard]] int werkzeugnummer() const
    {
        return dateiLesen(ordner->filePath(u"werkzeug.pid"_s)).trimmed().toInt();
    }

    // A process system of this test's own, and one more process in it that runs from a bundle.
    [[nodiscard]] QByteArray proc() const { return QFile::encodeName(ordner->filePath(u"proc"_s)); }
    void laufend(const QString &buendel)
    {
        const QString prozess = ordner->filePath(u"proc/%1"_s.arg(++prozesszahl));
        QVERIFY(QDir().mkpath(prozess));
        QVERIFY(QFile::link(buendel + u"/Contents/MacOS/programm"_s, prozess + u"/exe"_s));
    }

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

    Testuhr uhr;
    int prozesszahl = 0;
    std::unique_ptr<QTemporaryDir> ordner;
};

KALVARO_TEST(TestLinuxprozesse)
#include "tst_linuxprozesse.moc"
