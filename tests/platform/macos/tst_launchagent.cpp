#include "doubles/dateien.h"
#include "doubles/datenordner.h"
#include "platform/macos/agentdatei.h"
#include "platform/macos/launchagent.h"
#include "testlauf.h"

#include <QDir>
#include <QTemporaryDir>

#include <cstdlib>
#include <memory>
#include <plist/plist.h>
#include <sys/stat.h>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

using Liste = std::unique_ptr<void, void (*)(plist_t)>;

Liste lesen(const QByteArray &bytes)
{
    plist_t wurzel = nullptr;
    plist_from_xml(bytes.constData(), static_cast<uint32_t>(bytes.size()), &wurzel);
    return {wurzel, plist_free};
}

QString text(plist_t knoten)
{
    char *wert = nullptr;
    plist_get_string_val(knoten, &wert);
    const QString kopie = QString::fromUtf8(wert);
    std::free(wert);
    return kopie;
}

// A property list with these lines in its dictionary.
QByteArray liste(const QByteArray &zeilen)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
           "<plist version=\"1.0\"><dict>" +
           zeilen + "</dict></plist>\n";
}

const QByteArray kennung = "<key>Label</key><string>de.kalvaro.kalvaro</string>";

QByteArray programm(const QByteArray &pfad)
{
    return "<key>ProgramArguments</key><array><string>" + pfad +
           "</string><string>--hintergrund</string></array>";
}

} // namespace

class TestLaunchagent final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        daten.leeren();
        heim = std::make_unique<QTemporaryDir>();
        datei = heim->filePath(u"Library/LaunchAgents/de.kalvaro.kalvaro.plist"_s);
    }

    // Every key that there is, and no other.
    void schreibtJedenWert()
    {
        const QString pfad = u"/Users/ich/Böse <Apps> & \"mehr\"/kalvaro"_s;
        LaunchAgent(pfad, heim->path()).setzen(true);
        const QByteArray bytes = dateiLesen(datei);
        const Liste agent = lesen(bytes);
        QVERIFY(agent);
        QCOMPARE(plist_get_node_type(agent.get()), PLIST_DICT);
        QCOMPARE(plist_dict_get_size(agent.get()), 5U);
        QCOMPARE(text(plist_dict_get_item(agent.get(), "Label")), u"de.kalvaro.kalvaro"_s);
        const plist_t argumente = plist_dict_get_item(agent.get(), "ProgramArguments");
        QCOMPARE(plist_get_node_type(argumente), PLIST_ARRAY);
        QCOMPARE(plist_array_get_size(argumente), 2U);
        QCOMPARE(text(plist_array_get_item(argumente, 0)), pfad);
        QCOMPARE(text(plist_array_get_item(argumente, 1)), u"--hintergrund"_s);
        const plist_t sofort = plist_dict_get_item(agent.get(), "RunAtLoad");
        QCOMPARE(plist_get_node_type(sofort), PLIST_BOOLEAN);
        QVERIFY(plist_bool_val_is_true(sofort));
        QCOMPARE(text(plist_dict_get_item(agent.get(), "ProcessType")), u"Interactive"_s);
        QCOMPARE(text(plist_dict_get_item(agent.get(), "LimitLoadToSessionType")), u"Aqua"_s);

        char *xml = nullptr;
        uint32_t laenge = 0;
        plist_to_xml(agent.get(), &xml, &laenge);
        QCOMPARE(bytes, QByteArray(xml, static_cast<qsizetype>(laenge)));
        PLIST_FREI(xml);
    }

    void ohneBekanntenPfad()
    {
        LaunchAgent(QString(), heim->path()).setzen(true);
        QCOMPARE(agentLesen(dateiLesen(datei)).programm,
                 u"/Applications/kalvaro.app/Contents/MacOS/kalvaro"_s);
    }

    // launchd refuses one that others may write.
    void andereSchreibenNicht()
    {
        const mode_t vorher = ::umask(022);
        LaunchAgent(u"/bin/sh"_s, heim->path()).setzen(true);
        ::umask(vorher);
        struct stat art = {};
        QCOMPARE(::stat(QFile::encodeName(datei).constData(), &art), 0);
        QCOMPARE(art.st_mode & 0022U, 0U);
    }

    void folgtDemProgramm_data()
    {
        QTest::addColumn<QByteArray>("vorher");
        QTest::addColumn<bool>("folgt");
        const QByteArray weg = programm("/private/var/folders/AppTranslocation/x/kalvaro");
        QTest::newRow("the program is gone") << liste(kennung + weg) << true;
        QTest::newRow("in another order") << liste(weg + kennung) << true;
        QTest::newRow("another program that is there")
            << liste(kennung + programm("/bin/cat")) << false;
        QTest::newRow("another's agent")
            << liste("<key>Label</key><string>de.anderer</string>" + weg) << false;
        QTest::newRow("no label") << liste(weg) << false;
        QTest::newRow("no program") << liste(kennung) << false;
        QTest::newRow("cut off") << liste(kennung + weg).chopped(20) << false;
        QTest::newRow("by hand") << QByteArray("by hand\n") << false;
        QTest::newRow("empty") << QByteArray() << false;
    }
    void folgtDemProgramm()
    {
        QFETCH(const QByteArray, vorher);
        QFETCH(const bool, folgt);
        dateiSchreiben(datei, vorher);
        LaunchAgent agent(u"/bin/sh"_s, heim->path());
        agent.nachfuehren();
        const QByteArray nachher = dateiLesen(datei);
        QCOMPARE(daten.protokollzeilen(), QStringList());
        agent.setzen(true);
        QCOMPARE(nachher, folgt ? dateiLesen(datei) : vorher);
    }

    // The running program is gone as well: moved while it runs.
    void einVerschwundenesErsetztKeines()
    {
        const QByteArray vorher = liste(kennung + programm("/weg/kalvaro"));
        dateiSchreiben(datei, vorher);
        LaunchAgent(u"/auch/weg/kalvaro"_s, heim->path()).nachfuehren();
        QCOMPARE(dateiLesen(datei), vorher);
    }

    void nachfuehrenLegtNichtsAn()
    {
        LaunchAgent agent(u"/bin/sh"_s, heim->path());
        agent.nachfuehren();
        QVERIFY(!agent.an());
        QVERIFY(QDir(heim->path()).isEmpty());
    }

    void gelesen_data()
    {
        QTest::addColumn<QByteArray>("inhalt");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("start");
        QTest::addColumn<bool>("abgeschaltet");
        const auto zeile = [](const char *was, const QByteArray &inhalt, const QString &name,
                              const QString &start, bool abgeschaltet = false) {
            QTest::newRow(was) << inhalt << name << start << abgeschaltet;
        };
        const QByteArray sh = programm("/bin/sh");
        const QString wir = u"de.kalvaro.kalvaro"_s;
        zeile("ours", liste(kennung + sh), wir, u"/bin/sh"_s);
        zeile("switched off", liste(kennung + sh + "<key>Disabled</key><true/>"), wir, u"/bin/sh"_s,
              true);
        zeile("not switched off", liste(kennung + sh + "<key>Disabled</key><false/>"), wir,
              u"/bin/sh"_s);
        zeile("a text that says so", liste(kennung + sh + "<key>Disabled</key><string>1</string>"),
              wir, u"/bin/sh"_s);
        zeile("no arguments", liste(kennung + "<key>ProgramArguments</key><array/>"), wir, {});
        zeile("arguments of another kind",
              liste(kennung + "<key>ProgramArguments</key><string>/bin/sh</string>"), wir, {});
        zeile("a number in the place of the program",
              liste(kennung + "<key>ProgramArguments</key><array><integer>7</integer></array>"),
              wir, {});
        zeile("no label", liste(sh), {}, {});
        zeile("binary", QByteArray("bplist00"), {}, {});
        zeile("nothing", {}, {}, {});
        zeile("a list", "<plist version=\"1.0\"><array/></plist>", {}, {});
        zeile("overly nested",
              liste(kennung + "<key>x</key>" + QByteArray("<array>").repeated(100'000)), {}, {});
    }
    void gelesen()
    {
        QFETCH(const QByteArray, inhalt);
        QFETCH(const QString, name);
        QFETCH(const QString, start);
        QFETCH(const bool, abgeschaltet);
        const Agentdatei erwartet{name, start, abgeschaltet};
        QVERIFY(agentLesen(inhalt) == erwartet);
    }

private:
    Datenordner daten;
    std::unique_ptr<QTemporaryDir> heim;
    QString datei;
};

KALVARO_TEST(TestLaunchagent)
#include "tst_launchagent.moc"
