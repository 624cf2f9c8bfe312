#include "doubles/datenordner.h"
#include "doubles/einschraenkung.h"
#include "foundation/datenordner.h"
#include "foundation/protokoll.h"
#include "testlauf.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QLocale>
#include <QRegularExpression>

#include <array>
#include <functional>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

// Every tenth message is far longer than any buffer on the way.
QString nachricht(int schreiber, int nummer)
{
    const int laenge = nummer % 10 == 0 ? 40'000 : nummer % 97;
    return u"Schreiber %1 Nummer %2 "_s.arg(schreiber).arg(nummer) +
           QString(laenge, QChar(u'a' + schreiber)) + u'.';
}

// Waits until `tor` closes, so that all writers begin together, and writes.
[[noreturn]] void schreibprozess(int schreiber, int zeilen, const int (&tor)[2])
{
    close(tor[1]);
    char nichts = 0;
    while (read(tor[0], &nichts, 1) > 0) {
    }
    for (int i = 0; i < zeilen; ++i) {
        protokoll(nachricht(schreiber, i));
    }
    _exit(0);
}

} // namespace

class TestProtokoll final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void ordnerEntstehtMitElternordnern();
    void ordnerDerSchonDaIstBleibt();
    void ordnerDenEineDateiVersperrtStoertNicht();

    void zeileBestehtAusZeitZweiLeerzeichenUndText();
    void nachricht_data();
    void nachricht();
    void ersterAufrufLegtDieDateiMitEinerZeileAn();
    void spaetereAufrufeHaengenAn();
    void leereNachrichtIstZeitUndZweiLeerzeichen();
    void andereSpracheAendertDasFormatNicht();
    void einzelnesErsatzzeichenWirdNichtGeschrieben_data();
    void einzelnesErsatzzeichenWirdNichtGeschrieben();
    void schreibfehlerBleibtUnbemerkt_data();
    void schreibfehlerBleibtUnbemerkt();
    void volleFestplatteBleibtUnbemerkt();
    void nachEinemFehlerGehtEsWeiter();
    void mehrereProzesseZerreissenKeineZeile();
    void wasKeineDateiIstHaeltNichtAuf_data();
    void wasKeineDateiIstHaeltNichtAuf();
    void neuesLogHatDieUeblichenRechte();

private:
    [[nodiscard]] QString log() const { return QString::fromUtf8(ordner.inhalt(u"kalvaro.log"_s)); }

    Datenordner ordner;
};

void TestProtokoll::init()
{
    ordner.leeren();
    QTest::failOnWarning(QRegularExpression(u"."_s));
}

void TestProtokoll::cleanup()
{
    QLocale::setDefault(QLocale::c());
}

void TestProtokoll::ordnerEntstehtMitElternordnern()
{
    QVERIFY(QDir(QFileInfo(appOrdner()).path()).removeRecursively());

    ordnerAnlegen();

    QVERIFY(QFileInfo(appOrdner()).isDir());
}

void TestProtokoll::ordnerDerSchonDaIstBleibt()
{
    ordner.schreiben(u"konto.json"_s, "{}");

    ordnerAnlegen();

    QCOMPARE(ordner.inhalt(u"konto.json"_s), QByteArray("{}"));
}

void TestProtokoll::ordnerDenEineDateiVersperrtStoertNicht()
{
    QVERIFY(QDir().rmdir(appOrdner()));
    QFile sperre(appOrdner());
    QVERIFY(sperre.open(QIODevice::WriteOnly));

    ordnerAnlegen();
    protokoll(u"ohne Ordner"_s);

    QVERIFY(QFileInfo(appOrdner()).isFile());
    QCOMPARE(sperre.size(), 0);
    QVERIFY(sperre.remove());
}

void TestProtokoll::zeileBestehtAusZeitZweiLeerzeichenUndText()
{
    const QDateTime vorher = QDateTime::currentDateTime().addMSecs(-999);

    protokoll(u"kalvaro 1.4 gestartet"_s);

    static const QRegularExpression zeile(
        u"\\A(\\d{4}-\\d{2}-\\d{2} \\d{2}:\\d{2}:\\d{2})  kalvaro 1\\.4 gestartet\\n\\z"_s);
    const auto treffer = zeile.match(log());
    QVERIFY2(treffer.hasMatch(), qPrintable(log()));
    const auto zeit = QDateTime::fromString(treffer.captured(1), u"yyyy-MM-dd HH:mm:ss"_s);
    QVERIFY(zeit >= vorher && zeit <= QDateTime::currentDateTime());
}

void TestProtokoll::nachricht_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("a message containing a line feed is written as is, over two lines")
        << u"erste\nzweite"_s;
    QTest::newRow("blanks at both ends stay") << u"  Rand \t "_s;
    QTest::newRow("umlauts, quotation marks and dashes") << u"Auf „Studio“ – Grüße, ÄÖÜß …"_s;
    QTest::newRow("a character beyond the basic plane") << u"Platte 💿 voll"_s;
    QTest::newRow("backslashes and percent signs are not escaped") << u"\\n %1 %s %% \"'"_s;
    QTest::newRow("a carriage return") << u"a\r\nb"_s;
    QTest::newRow("a megabyte") << QString(1'000'000, u'x');
}

void TestProtokoll::nachricht()
{
    QFETCH(QString, text);

    protokoll(text);

    QCOMPARE(log().sliced(19), u"  "_s + text + u'\n');
}

void TestProtokoll::ersterAufrufLegtDieDateiMitEinerZeileAn()
{
    QVERIFY(!QFile::exists(datei(u"kalvaro.log"_s)));

    protokoll(u"eins"_s);

    QCOMPARE(log().count(u'\n'), 1);
    QCOMPARE(ordner.protokollzeilen(), QStringList{u"eins"_s});
}

void TestProtokoll::spaetereAufrufeHaengenAn()
{
    const QByteArray alt = "von früher, ohne Zeit\n";
    ordner.schreiben(u"kalvaro.log"_s, alt);

    protokoll(u"eins"_s);
    protokoll(u"zwei"_s);

    static const QRegularExpression rest(u"\\A.{19}  eins\\n.{19}  zwei\\n\\z"_s);
    QVERIFY(log().startsWith(QString::fromUtf8(alt)));
    QVERIFY(rest.match(log().sliced(QString::fromUtf8(alt).size())).hasMatch());
}

void TestProtokoll::leereNachrichtIstZeitUndZweiLeerzeichen()
{
    protokoll({});

    static const QRegularExpression zeile(
        u"\\A\\d{4}-\\d{2}-\\d{2} \\d{2}:\\d{2}:\\d{2}  \\n\\z"_s);
    QVERIFY(zeile.match(log()).hasMatch());
}

void TestProtokoll::andereSpracheAendertDasFormatNicht()
{
    QLocale::setDefault(QLocale(QLocale::Arabic, QLocale::Egypt));

    protokoll(u"eins"_s);

    static const QRegularExpression zeile(u"\\A[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9:]{8}  eins\\n\\z"_s);
    QVERIFY(zeile.match(log()).hasMatch());
}

void TestProtokoll::einzelnesErsatzzeichenWirdNichtGeschrieben_data()
{
    QTest::addColumn<QString>("text");

    const QChar hoch(0xd83d);
    const QChar tief(0xdcbf);
    QTest::newRow("a lone high surrogate") << u"vor"_s + hoch + u"nach"_s;
    QTest::newRow("a lone low surrogate") << u"vor"_s + tief + u"nach"_s;
    QTest::newRow("a high surrogate at the very end") << u"vor"_s + hoch;
    QTest::newRow("the two in the wrong order") << u"vor"_s + tief + hoch;
}

void TestProtokoll::einzelnesErsatzzeichenWirdNichtGeschrieben()
{
    QFETCH(QString, text);

    protokoll(u"davor"_s);
    protokoll(text);
    protokoll(u"danach"_s);

    QCOMPARE(ordner.protokollzeilen(), (QStringList{u"davor"_s, u"danach"_s}));
}

void TestProtokoll::schreibfehlerBleibtUnbemerkt_data()
{
    using Stoerung = std::function<void()>;
    QTest::addColumn<Stoerung>("stoeren");

    const QString pfad = datei(u"kalvaro.log"_s);
    QTest::newRow("a data folder that cannot be written")
        << Stoerung([] { QFile::setPermissions(appOrdner(), lesbarFuerAlle); });
    QTest::newRow("no data folder") << Stoerung([] { QDir(appOrdner()).removeRecursively(); });
    QTest::newRow("a log that is a folder") << Stoerung([pfad] { QDir().mkdir(pfad); });
    QTest::newRow("a log that must not be written") << Stoerung([pfad] {
        QFile(pfad).open(QIODevice::WriteOnly);
        QFile::setPermissions(pfad, QFile::ReadOwner);
    });
}

void TestProtokoll::schreibfehlerBleibtUnbemerkt()
{
    QFETCH(std::function<void()>, stoeren);
    stoeren();
    const auto vorher = QDir(appOrdner()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);

    {
        const OhneRechte niemand;
        protokoll(u"geht nicht"_s);
    }

    QCOMPARE(QDir(appOrdner()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), vorher);
    QVERIFY(!log().contains(u"geht nicht"));
}

void TestProtokoll::volleFestplatteBleibtUnbemerkt()
{
    protokoll(u"davor"_s);

    {
        const Grenze voll(RLIMIT_FSIZE,
                          static_cast<rlim_t>(QFileInfo(datei(u"kalvaro.log"_s)).size()));
        protokoll(u"geht nicht"_s);
    }
    protokoll(u"danach"_s);

    QCOMPARE(ordner.protokollzeilen(), (QStringList{u"davor"_s, u"danach"_s}));
}

void TestProtokoll::nachEinemFehlerGehtEsWeiter()
{
    QVERIFY(QDir(appOrdner()).removeRecursively());
    protokoll(u"geht nicht"_s);

    ordnerAnlegen();
    protokoll(u"geht wieder"_s);

    QCOMPARE(ordner.protokollzeilen(), QStringList{u"geht wieder"_s});
}

void TestProtokoll::mehrereProzesseZerreissenKeineZeile()
{
    constexpr int schreiber = 4;
    constexpr int zeilen = 300;
    int tor[2];
    QCOMPARE(pipe(tor), 0);
    QList<pid_t> kinder;
    for (int s = 0; s < schreiber; ++s) {
        const pid_t kind = fork();
        if (kind == 0) {
            schreibprozess(s, zeilen, tor);
        }
        QVERIFY(kind > 0);
        kinder.append(kind);
    }

    close(tor[0]);
    close(tor[1]);
    for (const pid_t kind : std::as_const(kinder)) {
        int ende = -1;
        QCOMPARE(waitpid(kind, &ende, 0), kind);
        QCOMPARE(ende, 0);
    }

    // All lines are there, whole, and those of one writer in its order.
    const QStringList alle = ordner.protokollzeilen();
    QCOMPARE(alle.size(), schreiber * zeilen);
    int naechste[schreiber] = {};
    for (const QString &zeile : alle) {
        const int s = zeile.section(u' ', 1, 1).toInt();
        QVERIFY2(s >= 0 && s < schreiber, qPrintable(zeile.left(80)));
        QCOMPARE(zeile, ::nachricht(s, naechste[s]++));
    }
    static const QRegularExpression stempel(u"^\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d  Schr"_s,
                                            QRegularExpression::MultilineOption);
    QCOMPARE(log().count(stempel), schreiber * zeilen);
}

void TestProtokoll::wasKeineDateiIstHaeltNichtAuf_data()
{
    QTest::addColumn<QString>("art");

    QTest::newRow("a pipe that nobody reads") << u"pipe"_s;
    QTest::newRow("a pipe that somebody has open") << u"offene pipe"_s;
    QTest::newRow("a pipe that is full") << u"volle pipe"_s;
    QTest::newRow("a device") << u"/dev/full"_s;
    QTest::newRow("a terminal") << u"/dev/ptmx"_s;
    QTest::newRow("a link loop") << datei(u"kalvaro.log"_s);
}

// In a process of its own, which the kernel ends where it waits.
void TestProtokoll::wasKeineDateiIstHaeltNichtAuf()
{
    QFETCH(QString, art);
    const QByteArray pfad = QFile::encodeName(datei(u"kalvaro.log"_s));
    int leser = -1;
    if (art.endsWith(u"pipe")) {
        QCOMPARE(mkfifo(pfad.constData(), 0600), 0);
        leser = art == u"pipe" ? -1 : open(pfad.constData(), O_RDWR | O_NONBLOCK);
    } else {
        QCOMPARE(symlink(QFile::encodeName(art).constData(), pfad.constData()), 0);
    }
    if (art == u"volle pipe") {
        const std::array<char, 4096> nichts{};
        while (write(leser, nichts.data(), nichts.size()) > 0) {
        }
    }

    const pid_t kind = fork();
    if (kind == 0) {
        alarm(5);
        protokoll(u"wartet nicht"_s);
        _exit(0);
    }
    int ausgang = -1;
    waitpid(kind, &ausgang, 0);

    QCOMPARE(ausgang, 0);
    std::array<char, 4096> bytes{};
    if (art == u"offene pipe") {
        QVERIFY2(read(leser, bytes.data(), bytes.size()) <= 0, "only plain files are written");
    }
    close(leser);
}

void TestProtokoll::neuesLogHatDieUeblichenRechte()
{
    const mode_t maske = umask(0027);

    protokoll(u"eins"_s);

    umask(maske);
    struct stat art = {};
    QCOMPARE(stat(QFile::encodeName(datei(u"kalvaro.log"_s)).constData(), &art), 0);
    QCOMPARE(art.st_mode & 0777U, 0640U);
}

KALVARO_TEST(TestProtokoll)
#include "tst_protokoll.moc"
