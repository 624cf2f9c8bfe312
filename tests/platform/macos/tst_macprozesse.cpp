#include "doubles/dateien.h"
#include "doubles/testuhr.h"
#include "platform/macos/macprozesse.h"
#include "testlauf.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>

#include <csignal>
#include <memory>
#include <optional>

using namespace kalvaro;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// A process that waits, from a copy of its program; ends with this object.
class Schlaefer
{
public:
    explicit Schlaefer(const QString &programm)
    {
        if (!QFile::exists(programm)) {
            QFile::copy(u"/bin/sleep"_s, programm);
        }
        prozess_.start(programm, {u"1000"_s});
        prozess_.waitForStarted();
    }
    ~Schlaefer()
    {
        prozess_.kill();
        prozess_.waitForFinished();
    }
    Schlaefer(const Schlaefer &) = delete;
    Schlaefer &operator=(const Schlaefer &) = delete;

private:
    QProcess prozess_;
};

} // namespace

class TestMacprozesse final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        ordner = std::make_unique<QTemporaryDir>();
        laufende.clear();
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
        laufende = {u"/A/x.app"_s};
        const MacProzesse prozesse(uhr, liste, werkzeug(skript));
        QCOMPARE(zahl(prozesse, u"x"_s), erwartet);
    }

    void argumente()
    {
        const MacProzesse prozesse(uhr, liste, werkzeug(R"(printf '%s|' "$@" > "$0.args")"));
        QCOMPARE(zahl(prozesse, u"a b'$(c)"_s), 0);
        QCOMPARE(dateiLesen(ordner->filePath(u"werkzeug.args"_s)), "-x|a b'$(c)|");
    }

    void keineAntwort_data()
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
    void keineAntwort()
    {
        QFETCH(const QByteArray, skript);
        laufende = {u"/A/rekordbox 7/rekordbox.app"_s, u"/A/meinrekordbox.app"_s};
        const QString ort = skript.isEmpty() ? u"/nirgends/pgrep"_s : werkzeug(skript);
        const MacProzesse prozesse(uhr, liste, ort);
        QCOMPARE(zahl(prozesse, u"rekordbox"_s), 1);
        QCOMPARE(zahl(prozesse, u"rekordboxAgent"_s), 0);
    }

    void haengendesBleibtNichtZurueck_data()
    {
        QTest::addColumn<QByteArray>("skript");
        QTest::newRow("silent") << QByteArray("exec sleep 1000");
        QTest::newRow("closes its output") << QByteArray("echo 12; exec sleep 1000 >&-");
        QTest::newRow("cannot be asked to end") << QByteArray("trap '' TERM; exec sleep 1000");
        QTest::newRow("stopped") << QByteArray("kill -STOP $$; sleep 1000");
    }
    void haengendesBleibtNichtZurueck()
    {
        QFETCH(const QByteArray, skript);
        const MacProzesse prozesse(uhr, liste, werkzeug("echo $$ > \"$0.pid\"\n" + skript));
        std::optional<qsizetype> antwort;
        prozesse.anzahl(u"x"_s, this, [&](qsizetype anzahl) { antwort = anzahl; });
        int pid = 0;
        QTRY_VERIFY((pid = werkzeugnummer()) > 0);
        uhr.vor(1999ms);
        QVERIFY(!antwort);
        uhr.vor(1ms);
        QCOMPARE(antwort, 0);
        QTRY_COMPARE(::kill(pid, 0), -1); // also no zombie
        QCOMPARE(uhr.offen(), 0);
    }

    void werGehtWartetNicht()
    {
        const MacProzesse prozesse(uhr, liste, werkzeug("echo $$ > \"$0.pid\"\nexec sleep 1000"));
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

    void zaehltEchteProzesse()
    {
        KALVARO_BRAUCHT(u"pgrep"_s);
        const MacProzesse prozesse(uhr, liste);
        const QString name = u"kv%1"_s.arg(QCoreApplication::applicationPid());
        const QString programm = ordner->filePath(name);
        QCOMPARE(zahl(prozesse, name), 0);
        const Schlaefer erster(programm);
        QTRY_COMPARE(zahl(prozesse, name), 1);
        const Schlaefer zweiter(programm);
        QTRY_COMPARE(zahl(prozesse, name), 2);
        QCOMPARE(zahl(prozesse, name.chopped(1)), 0);
        QCOMPARE(zahl(prozesse, name + u'x'), 0);
    }

    void buendelOhneWasKeineSind()
    {
        laufende = {u"/A/b.app/"_s, u"/A//b.app"_s, QString(), u"."_s, u"c.app"_s, u"/A/c.app"_s};
        const MacProzesse prozesse(uhr, liste);
        QCOMPARE(prozesse.buendel(), (QStringList{u"/A/b.app"_s, u"/A/c.app"_s}));
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

    QString werkzeug(const QByteArray &skript) const
    {
        QString name = ordner->filePath(u"werkzeug"_s);
        dateiSchreiben(name, "#!/bin/sh\n" + skript + "\n", true);
        return name;
    }

    [[nodiscard]] int werkzeugnummer() const
    {
        return dateiLesen(ordner->filePath(u"werkzeug.pid"_s)).trimmed().toInt();
    }

    Testuhr uhr;
    QStringList laufende;
    const MacProzesse::Buendelfrage liste = [this] { return laufende; };
    std::unique_ptr<QTemporaryDir> ordner;
};

KALVARO_TEST(TestMacprozesse)
#include "tst_macprozesse.moc"
