#include "abruf.h"
#include "testlauf.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

using namespace kalvaro::democloud;
using namespace Qt::StringLiterals;

// The real program as a process: its output, exit codes and end.
class TestDemocloudProgramm : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nenntDenPortUndDient();
    void endetAufSignale_data();
    void endetAufSignale();
    void hilfe();
    void falscheOption();
    void schlechteWeltdatei();
    void belegterPort();
    void grosseBibliothekStartetSchnell();
};

namespace {

constexpr int frist = 20'000;     // ms before a test gives up
constexpr qint64 bruchteil = 900; // ms within which the program ends

// A program in a bare environment: no German locale, whatever the machine's is.
class Programm : public QProcess
{
public:
    explicit Programm(const QStringList &argumente)
    {
        QProcessEnvironment umgebung = QProcessEnvironment::systemEnvironment();
        umgebung.insert(u"LC_ALL"_s, u"C"_s);
        setProcessEnvironment(umgebung);
        start(QStringLiteral(DEMOCLOUD_PROGRAMM), argumente);
    }
    Programm(const Programm &) = delete;
    Programm &operator=(const Programm &) = delete;
    ~Programm() override
    {
        if (state() != NotRunning) {
            kill();
            waitForFinished(frist);
        }
    }

    // The port of the first line, or 0.
    [[nodiscard]] int port()
    {
        while (!canReadLine()) {
            if (!waitForReadyRead(frist)) {
                return 0;
            }
        }
        static const QRegularExpression muster(u"^port=(\\d+)\n$"_s);
        return muster.match(QString::fromLatin1(readLine())).captured(1).toInt();
    }

    // Standard error of a program that has ended with `ausgang`, or why it has not.
    [[nodiscard]] QString meldung(int ausgang)
    {
        if (!waitForFinished(frist) || exitStatus() != NormalExit) {
            return u"nicht ordentlich beendet"_s;
        }
        return exitCode() == ausgang ? QString::fromUtf8(readAllStandardError())
                                     : u"Ausgang %1"_s.arg(exitCode());
    }
};

QString adresse(int port)
{
    return u"http://127.0.0.1:%1"_s.arg(port);
}

} // namespace

void TestDemocloudProgramm::nenntDenPortUndDient()
{
    Programm programm({u"--dauer"_s, u"0"_s, u"--geraet"_s, u"Küche"_s, u"--update"_s, u"2.0"_s});
    const int port = programm.port();
    QVERIFY(port > 0);
    Abruf abruf(adresse(port));

    const QJsonObject antwort = abruf.abgleichen(u"Küche"_s);

    QCOMPARE(zustandVon(antwort), u"abgeglichen"_s);
    QCOMPARE(wertBei(antwort, {u"app"_s, u"version"_s}), QJsonValue(u"2.0"_s));
    QCOMPARE(zustandVon(abruf.abgleichen(u"Küche"_s)), u"aktuell"_s);
}

void TestDemocloudProgramm::endetAufSignale_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGHUP") << SIGHUP;
}

void TestDemocloudProgramm::endetAufSignale()
{
    QFETCH(const int, signal);
    Programm programm({u"--dauer=3600"_s, u"--geraet=demo-mac"_s, u"--geraet=zweites"_s});
    Abruf abruf(adresse(programm.port()));
    const auto antwort = abruf.abgleichSenden();
    const auto laeuft = [&] { // as the second device sees the first one
        const QJsonObject stand = abruf.holen(u"/api/stand?geraet=zweites"_s).json();
        return stand.value(u"andere"_s).toArray().last().toObject().value(u"laeuft"_s).toBool();
    };
    QTRY_VERIFY(laeuft());
    QElapsedTimer zeit;
    zeit.start();

    QCOMPARE(::kill(static_cast<pid_t>(programm.processId()), signal), 0);

    QVERIFY(programm.waitForFinished(frist));
    QVERIFY(zeit.elapsed() < bruchteil);
    QCOMPARE(programm.exitStatus(), QProcess::NormalExit);
    QCOMPARE(programm.exitCode(), 0);
    QCOMPARE(Abruf::warten(*antwort).status, 503);
}

void TestDemocloudProgramm::hilfe()
{
    Programm programm({u"--help"_s});

    QCOMPARE(programm.meldung(0), QString());
    const QString text = QString::fromUtf8(programm.readAllStandardOutput());
    QVERIFY(text.startsWith(u"Aufruf: kalvaro-democloud [Optionen]\n"_s));
    QVERIFY(text.contains(u"lädt die Welt aus einer JSON-Datei"_s));
}

void TestDemocloudProgramm::falscheOption()
{
    Programm programm({u"--größe"_s});

    QCOMPARE(programm.meldung(2), u"kalvaro-democloud: „--größe“ ist keine bekannte Option. "
                                  "„--help“ zeigt alle Optionen.\n"_s);
    QCOMPARE(programm.readAllStandardOutput(), QByteArray());
}

void TestDemocloudProgramm::schlechteWeltdatei()
{
    const QTemporaryDir ordner;
    QFile datei(ordner.filePath(u"Wält.json"_s));
    QVERIFY(datei.open(QIODevice::WriteOnly));
    datei.write("{\"betrieb\": 1}");
    datei.close();
    Programm programm({u"--welt"_s, datei.fileName()});

    QCOMPARE(programm.meldung(1),
             u"kalvaro-democloud: Welt „%1“, betrieb: ein Text wird erwartet.\n"_s.arg(
                 datei.fileName()));
}

void TestDemocloudProgramm::belegterPort()
{
    Programm erstes({});
    const QString port = QString::number(erstes.port());
    Programm zweites({u"--port"_s, port});

    QCOMPARE(zweites.meldung(1), u"kalvaro-democloud: Port %1 ist auf 127.0.0.1 nicht zu bekommen "
                                 "(belegt oder nicht erlaubt).\n"_s.arg(port));
}

void TestDemocloudProgramm::grosseBibliothekStartetSchnell()
{
    QElapsedTimer zeit;
    zeit.start();
    Programm programm({u"--playlisten"_s, u"100000"_s});
    Abruf abruf(adresse(programm.port()));
    QVERIFY(zeit.elapsed() < 10'000); // about 0.15 s in a release build

    const QJsonArray playlisten =
        abruf.holen(u"/api/playlisten"_s).json().value(u"playlisten"_s).toArray();

    QVERIFY(playlisten.size() > 100'000);
}

KALVARO_TEST(TestDemocloudProgramm)
#include "tst_democloud_programm.moc"
