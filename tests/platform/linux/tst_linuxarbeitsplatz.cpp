#include "doubles/buendel.h"
#include "doubles/dateien.h"
#include "doubles/einschraenkung.h"
#include "doubles/ereignisse.h"
#include "doubles/testuhr.h"
#include "platform/linux/linuxarbeitsplatz.h"
#include "testlauf.h"

#include <QDir>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <memory>
#include <sys/wait.h>
#include <unistd.h>

using namespace kalvaro;
using namespace Qt::StringLiterals;

using Antwort = std::optional<QString>;
using Umbau = std::function<void(const QString &)>; // does something to the file or folder

class TestLinuxarbeitsplatz final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { urspruenglich = qgetenv("HOME"); }
    void init();
    void cleanup();
    void startetUnabhaengig();
    void umgebung();
    void deskriptoren();
    void signale();
    void ohneStandardeingabe();
    void ohneHeimatordner();
    void ueberVerweis();
    void scheitertAmPaket_data();
    void scheitertAmPaket();
    void scheitertAmProgramm_data();
    void scheitertAmProgramm();
    void darfNicht_data();
    void darfNicht();
    void meldetEinmalUndSpaeter();
    void meldetEinmalAuchWennDieAntwortVerweilt();
    void meldetKeinemDerNichtMehrIst();

private:
    Testuhr uhr;
    [[nodiscard]] QString pfad(const QString &name) const { return ordner->filePath(name); }

    // The bundle with `name` as its CFBundleExecutable.
    [[nodiscard]] QString buendel(const QString &name = u"zeuge"_s) const
    {
        QString ort = pfad(u"rekordbox 7 ü/rekordbox.app"_s);
        buendelSchreiben(ort, plistBytes(Plistform::Xml, {{u"CFBundleExecutable"_s, name}}));
        return ort;
    }

    [[nodiscard]] QString zeugenbuendel() const
    {
        QString ort = buendel();
        QFile::copy(QStringLiteral(ZEUGE), ort + u"/Contents/MacOS/zeuge"_s);
        return ort;
    }

    // Starts and waits for the answer; empty when the program runs.
    QString starten(const QString &ort)
    {
        std::optional<QString> antwort;
        QObject besitzer;
        LinuxArbeitsplatz(uhr).starten(ort, &besitzer, [&antwort](const Antwort &fehler) {
            antwort = fehler.value_or(QString());
        });
        return QTest::qWaitFor([&antwort] { return antwort.has_value(); })
                   ? *antwort
                   : u"Es kam keine Antwort."_s;
    }

    // What the witness reported; empty when it did not.
    QMap<QString, QString> bericht() const
    {
        QFile datei(pfad(u"bericht"_s));
        (void)QTest::qWaitFor([&datei] { return datei.exists(); });
        QMap<QString, QString> felder;
        if (datei.open(QIODevice::ReadOnly)) {
            for (const QByteArray &zeile : datei.readAll().split('\n')) {
                const qsizetype gleich = zeile.indexOf('=');
                felder.insert(QString::fromUtf8(zeile.first(std::max<qsizetype>(gleich, 0))),
                              QString::fromUtf8(zeile.mid(gleich + 1)));
            }
        }
        return felder;
    }

    QByteArray urspruenglich;
    std::unique_ptr<QTemporaryDir> ordner;
};

void TestLinuxarbeitsplatz::init()
{
    ordner = std::make_unique<QTemporaryDir>();
    QVERIFY(ordner->isValid());
    QVERIFY(QDir().mkdir(pfad(u"heim"_s)));
    qputenv("HOME", QFile::encodeName(pfad(u"heim"_s)));
    qputenv("ZEUGE_BERICHT", QFile::encodeName(pfad(u"bericht"_s)));
}

void TestLinuxarbeitsplatz::cleanup()
{
    qputenv("HOME", urspruenglich);
}

void TestLinuxarbeitsplatz::startetUnabhaengig()
{
    qputenv("ZEUGE_BLEIBT", "1");
    const QString ort = zeugenbuendel();
    QCOMPARE(starten(ort), QString());
    qunsetenv("ZEUGE_BLEIBT");

    const auto zeuge = bericht();
    const int pid = zeuge[u"pid"_s].toInt();
    QVERIFY(pid > 0);
    QCOMPARE(zeuge[u"sid"_s].toInt(), pid);
    QCOMPARE(zeuge[u"pgid"_s].toInt(), pid);
    QCOMPARE(zeuge[u"exe"_s], ort + u"/Contents/MacOS/zeuge"_s);
    QCOMPARE(zeuge[u"argv0"_s], zeuge[u"exe"_s]);
    QCOMPARE(zeuge[u"argc"_s], u"1"_s);
    QCOMPARE(zeuge[u"cwd"_s], pfad(u"heim"_s));

    // It runs, and is no child that we would have to bury.
    QCOMPARE(::kill(pid, 0), 0);
    QCOMPARE(::waitpid(-1, nullptr, WNOHANG), -1);
    QCOMPARE(errno, ECHILD);
    QCOMPARE(::kill(pid, SIGKILL), 0);
    // Whoever is its parent now may take its time; a dead process has no executable.
    QTRY_VERIFY(QFile::symLinkTarget(u"/proc/%1/exe"_s.arg(pid)).isEmpty());
}

void TestLinuxarbeitsplatz::umgebung()
{
    for (const char *name :
         {"DESKTOP_STARTUP_ID", "XDG_ACTIVATION_TOKEN", "QT_SCALE_FACTOR", "KALVARO_APPLICATIONS",
          "KALVARO", "QTDIR", "AUCH_KALVARO_", "OLDPWD"}) {
        qputenv(name, "x=y");
    }
    qputenv("PWD", "/");
    QCOMPARE(starten(zeugenbuendel()), QString());
    QStringList namen;
    const auto zeuge = bericht();
    for (const QString &name : zeuge.keys()) {
        static const QRegularExpression fraglich(u"KALVARO|QT|DESKTOP_|XDG_ACT|PWD"_s);
        if (name.startsWith(u"env.") && name.contains(fraglich)) {
            namen.append(name.mid(4));
        }
    }
    QCOMPARE(namen, QStringList({u"AUCH_KALVARO_"_s, u"KALVARO"_s, u"QTDIR"_s}));
    QCOMPARE(zeuge[u"env.QTDIR"_s], u"x=y"_s);
    QCOMPARE(zeuge[u"env.HOME"_s], pfad(u"heim"_s));
    QCOMPARE(zeuge[u"env.PATH"_s], qEnvironmentVariable("PATH"));
}

void TestLinuxarbeitsplatz::deskriptoren()
{
    const QByteArray name = QFile::encodeName(pfad(u"offen"_s));
    const int unseres = ::open(name.constData(), O_RDWR | O_CREAT, 0600); // survives exec
    const int hoch = ::fcntl(unseres, F_DUPFD, 300);
    QVERIFY(hoch >= 300);
    QCOMPARE(starten(zeugenbuendel()), QString());
    QCOMPARE(bericht()[u"fds"_s].trimmed(), u"0:/dev/null 1:/dev/null 2:/dev/null"_s);
    QVERIFY(::fcntl(unseres, F_GETFD) == 0); // ours stay as they are
    ::close(hoch);
    ::close(unseres);
}

void TestLinuxarbeitsplatz::signale()
{
    struct sigaction ignorieren = {};
    struct sigaction vorher = {};
    ignorieren.sa_handler = SIG_IGN;
    ::sigaction(SIGPIPE, &ignorieren, &vorher);
    sigset_t maske;
    sigset_t alteMaske;
    ::sigemptyset(&maske);
    ::sigaddset(&maske, SIGUSR1);
    ::sigprocmask(SIG_BLOCK, &maske, &alteMaske);

    const QString antwort = starten(zeugenbuendel());

    sigset_t danach;
    ::sigprocmask(SIG_SETMASK, &alteMaske, &danach);
    ::sigaction(SIGPIPE, &vorher, nullptr);
    QCOMPARE(antwort, QString());
    const auto zeuge = bericht();
    QCOMPARE(zeuge[u"blockiert"_s].toULongLong(nullptr, 16), 0);
    // glibc keeps the signals 32 and 33 for itself and lets nobody reset what a parent left there.
    constexpr quint64 vonGlibc = 3ULL << 31U;
    QCOMPARE(zeuge[u"ignoriert"_s].toULongLong(nullptr, 16) & ~vonGlibc, 0);
    QCOMPARE(::sigismember(&danach, SIGUSR1), 1); // ours stay as they are
    QCOMPARE(::sigismember(&danach, SIGTERM), 0);
}

// The pipe to the child would then be a standard descriptor.
void TestLinuxarbeitsplatz::ohneStandardeingabe()
{
    const int eingabe = ::dup(0);
    ::close(0);
    const QString gut = starten(zeugenbuendel());
    const QString schlecht = starten(buendel(u"fehlt"_s));
    if (eingabe >= 0) {
        ::dup2(eingabe, 0);
        ::close(eingabe);
    }
    QCOMPARE(gut, QString());
    QVERIFY(schlecht.contains(u"fehlt"));
    QVERIFY(bericht()[u"fds"_s].startsWith(u"0:/dev/null"));
}

void TestLinuxarbeitsplatz::ohneHeimatordner()
{
    qputenv("HOME", "/nirgends");
    QCOMPARE(starten(zeugenbuendel()), QString());
    QCOMPARE(bericht()[u"cwd"_s], u"/"_s);
}

void TestLinuxarbeitsplatz::ueberVerweis()
{
    const QString ort = zeugenbuendel();
    QVERIFY(QFile::link(ort, pfad(u"rekordbox.app"_s)));
    QCOMPARE(starten(pfad(u"rekordbox.app"_s)), QString());
    QCOMPARE(bericht()[u"exe"_s], ort + u"/Contents/MacOS/zeuge"_s);
}

void TestLinuxarbeitsplatz::scheitertAmPaket_data()
{
    QTest::addColumn<Umbau>("umbau");
    QTest::addColumn<QString>("erwartet"); // %1: the bundle
    const QString info = u"/Contents/Info.plist"_s;
    const QString ohne = u"„%1/Contents/Info.plist“ wurde nicht gefunden."_s;
    const QString nennt = u"„%1/Contents/Info.plist“ ist nicht lesbar oder nennt kein Programm."_s;
    const auto plist = [](const QMap<QString, QVariant> &eintraege) {
        return Umbau([eintraege](const QString &ort) {
            buendelSchreiben(ort, plistBytes(Plistform::Binaer, eintraege));
        });
    };
    const Umbau entfernen = [](const QString &ort) { QDir(ort).removeRecursively(); };
    QTest::newRow("no bundle") << entfernen << u"„%1“ wurde nicht gefunden."_s;
    QTest::newRow("bundle a file") << Umbau([entfernen](const QString &ort) {
        entfernen(ort);
        dateiSchreiben(ort, "");
    }) << ohne;
    QTest::newRow("no Info.plist")
        << Umbau([info](const QString &ort) { QFile::remove(ort + info); }) << ohne;
    QTest::newRow("Info.plist a link to itself") << Umbau([info](const QString &ort) {
        QFile::remove(ort + info);
        QFile::link(ort + info, ort + info);
    }) << u"Die Verweise auf „%1/Contents/Info.plist“ führen im Kreis."_s;
    QTest::newRow("broken Info.plist")
        << Umbau([info](const QString &ort) { dateiSchreiben(ort + info, "<plist>"); }) << nennt;
    QTest::newRow("no executable named") << plist({{u"A"_s, u"x"_s}}) << nennt;
    QTest::newRow("a nameless executable") << plist({{u"CFBundleExecutable"_s, u""_s}}) << nennt;
    QTest::newRow("a name that is none") << plist({{u"CFBundleExecutable"_s, 7}}) << nennt;
}

void TestLinuxarbeitsplatz::scheitertAmPaket()
{
    QFETCH(const Umbau, umbau);
    QFETCH(QString, erwartet);
    const QString ort = zeugenbuendel();
    umbau(ort);
    QCOMPARE(starten(ort), erwartet.replace(u"%1"_s, ort));
}

void TestLinuxarbeitsplatz::scheitertAmProgramm_data()
{
    QTest::addColumn<QString>("name"); // the bundle's CFBundleExecutable
    QTest::addColumn<Umbau>("umbau");  // gets the path that this name leads to
    QTest::addColumn<QString>("erwartet");
    const auto fall = [](const char *zeile, const QString &erwartet, const Umbau &umbau) {
        QTest::newRow(zeile) << u"x"_s << umbau << erwartet;
    };
    const QString fehlt = u"„%1/Contents/MacOS/x“ wurde nicht gefunden."_s;
    const QString darfNicht = u"„%1/Contents/MacOS/x“ darf nicht ausgeführt werden."_s;
    const QString format =
        u"„%1/Contents/MacOS/x“ ist kein Programm, das auf diesem Rechner läuft."_s;
    const auto datei = [](const QByteArray &inhalt, bool ausfuehrbar = true) {
        return [=](const QString &programm) { dateiSchreiben(programm, inhalt, ausfuehrbar); };
    };
    const auto verweis = [](const QString &ziel) {
        return [=](const QString &programm) { QFile::link(ziel, programm); };
    };
    fall("no executable", fehlt, [](const QString &) {});
    fall("no Contents/MacOS", fehlt,
         [](const QString &programm) { QDir().rmdir(QFileInfo(programm).path()); });
    fall("link to nowhere", fehlt, verweis(u"/nirgends"_s));
    fall("link to itself", u"Die Verweise auf „%1/Contents/MacOS/x“ führen im Kreis."_s,
         verweis(u"x"_s));
    fall("not executable", darfNicht, datei("#!/bin/sh\n", false));
    fall("a folder", darfNicht, [](const QString &programm) { QDir().mkdir(programm); });
    fall("wrong format", format, datei("echo hallo\n"));
    fall("empty file", format, datei(""));
    fall("cut off program", format, datei("\177ELF\2\1\1"));
    fall("no interpreter", u"Zu „%1/Contents/MacOS/x“ fehlt das Programm, das es ausführt."_s,
         datei("#!/nirgends/sh\n"));
    fall("link out of the bundle", u"„/usr/bin/true“ liegt außerhalb von „%1“."_s,
         verweis(u"/usr/bin/true"_s));
    const Umbau nichts = [](const QString &) {};
    QTest::newRow("path out of the bundle") << u"../"_s.repeated(30) + u"usr/bin/true"_s << nichts
                                            << u"„/usr/bin/true“ liegt außerhalb von „%1“."_s;
    QTest::newRow("absolute path")
        << u"/bin/true"_s << nichts << u"„%1/Contents/MacOS//bin/true“ wurde nicht gefunden."_s;
    QTest::newRow("the folder itself")
        << u"."_s << nichts << u"„%1/Contents/MacOS“ liegt außerhalb von „%1“."_s;
    const QString lang(300, u'x');
    QTest::newRow("very long name")
        << lang << nichts << u"Der Name „%1/Contents/MacOS/"_s + lang + u"“ ist zu lang."_s;
}

void TestLinuxarbeitsplatz::scheitertAmProgramm()
{
    QFETCH(const QString, name);
    QFETCH(const Umbau, umbau);
    QFETCH(QString, erwartet);
    const QString ort = buendel(name);
    umbau(ort + u"/Contents/MacOS/"_s + name);
    QCOMPARE(starten(ort), erwartet.replace(u"%1"_s, ort));
}

void TestLinuxarbeitsplatz::darfNicht_data()
{
    QTest::addColumn<QString>("was"); // that only its owner, or nobody, may enter or read
    QTest::addColumn<QString>("erwartet");
    const QString info = u"„%1/Contents/Info.plist“ ist nicht lesbar oder nennt kein Programm."_s;
    QTest::newRow("the folder around") << u"/.."_s << u"„%1“ darf nicht ausgeführt werden."_s;
    QTest::newRow("Contents") << u"/Contents"_s << info;
    QTest::newRow("Info.plist") << u"/Contents/Info.plist"_s << info;
    QTest::newRow("executable") << u"/Contents/MacOS/zeuge"_s
                                << u"„%1/Contents/MacOS/zeuge“ darf nicht ausgeführt werden."_s;
}

void TestLinuxarbeitsplatz::darfNicht()
{
    QFETCH(const QString, was);
    QFETCH(QString, erwartet);
    const QString ort = zeugenbuendel();
    const QString gesperrt = QDir::cleanPath(ort + was);
    const bool root = ::geteuid() == 0;
    QVERIFY(QFile::setPermissions(ordner->path(), QFile::Permissions(0x7755)));
    QVERIFY(QFile::setPermissions(gesperrt, QFile::Permissions(root ? 0x7700 : 0)));
    QString antwort;
    {
        const OhneRechte niemand;
        antwort = starten(ort);
    }
    QFile::setPermissions(gesperrt, QFile::Permissions(0x7755)); // else it cannot be removed
    QCOMPARE(antwort, erwartet.replace(u"%1"_s, ort));
}

void TestLinuxarbeitsplatz::meldetEinmalUndSpaeter()
{
    for (const QString &ort : {zeugenbuendel(), pfad(u"fehlt.app"_s)}) {
        int mal = 0;
        QObject besitzer;
        LinuxArbeitsplatz(uhr).starten(ort, &besitzer, [&mal](const Antwort &) { ++mal; });
        QCOMPARE(mal, 0);
        QTRY_COMPARE(mal, 1);
        QTRY_VERIFY(besitzer.children().isEmpty()); // nothing left that could call again
        ereignisseAbarbeiten();
        QCOMPARE(mal, 1);
    }
}

// As with a message box: the call is not over, but the event loop goes on.
void TestLinuxarbeitsplatz::meldetEinmalAuchWennDieAntwortVerweilt()
{
    int mal = 0;
    QObject besitzer;
    LinuxArbeitsplatz(uhr).starten(zeugenbuendel(), &besitzer, [&](const Antwort &) {
        ++mal;
        QVERIFY(!starten(pfad(u"fehlt.app"_s)).isEmpty());
        QCOMPARE(starten(zeugenbuendel()), QString());
    });
    QTRY_COMPARE(mal, 1);
    QTRY_VERIFY(besitzer.children().isEmpty());
    QCOMPARE(mal, 1);
}

void TestLinuxarbeitsplatz::meldetKeinemDerNichtMehrIst()
{
    int mal = 0;
    auto besitzer = std::make_unique<QObject>();
    const auto zaehlen = [&mal](const Antwort &) { ++mal; };
    LinuxArbeitsplatz(uhr).starten(zeugenbuendel(), besitzer.get(), zaehlen);
    LinuxArbeitsplatz(uhr).starten(pfad(u"fehlt.app"_s), besitzer.get(), zaehlen);
    besitzer.reset();
    QVERIFY(!bericht().isEmpty()); // the program started all the same
    QVERIFY(!starten(pfad(u"fehlt.app"_s)).isEmpty());
    QCOMPARE(mal, 0);
}

KALVARO_TEST(TestLinuxarbeitsplatz)
#include "tst_linuxarbeitsplatz.moc"
