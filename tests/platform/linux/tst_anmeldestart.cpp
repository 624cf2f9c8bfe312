#include "doubles/dateien.h"
#include "doubles/datenordner.h"
#include "platform/linux/xdganmeldestart.h"
#include "testlauf.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include <memory>
#include <sys/stat.h>

using namespace kalvaro;
using namespace Qt::StringLiterals;

class TestAnmeldestart final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        daten.leeren();
        ordner = std::make_unique<QTemporaryDir>();
        for (const char *name : {"APPIMAGE", "APPDIR", "XDG_CONFIG_HOME"}) {
            qunsetenv(name);
        }
    }

    void legtIhnInSeinenOrdner();
    void schreibtDenEintragZeileFuerZeile();
    void ohneSymbolFehltDieZeile();
    void eintragFolgtDemProgramm_data();
    void eintragFolgtDemProgramm();
    void eintragFolgtGenauDemPfad_data() { dieSitzungStartetGenauDenPfad_data(); }
    void eintragFolgtGenauDemPfad();
    void nachfuehrenLegtNichtsAn();
    void eineRoehreHaeltNichtAuf();
    void ordnerFolgtDerUmgebung();
    void einAppImageNenntSichSelbst();
    void einFremdesAppImageZaehltNicht();
    void dieSitzungStartetGenauDenPfad_data();
    void dieSitzungStartetGenauDenPfad();

private:
    [[nodiscard]] QString pfad(const QString &name) const { return ordner->filePath(name); }

    Datenordner daten;
    std::unique_ptr<QTemporaryDir> ordner;
};

void TestAnmeldestart::legtIhnInSeinenOrdner()
{
    XdgAnmeldestart(u"/opt/kalvaro"_s, pfad(u"fehlt/noch/autostart"_s)).setzen(true);
    QVERIFY(QFile::exists(pfad(u"fehlt/noch/autostart/de.kalvaro.kalvaro.desktop"_s)));
}

void TestAnmeldestart::schreibtDenEintragZeileFuerZeile()
{
    XdgAnmeldestart(u"/opt/mein \"Pro`gr$amm\\100"_s, pfad(u"a"_s)).setzen(true);
    QCOMPARE(QString::fromUtf8(dateiLesen(pfad(u"a/de.kalvaro.kalvaro.desktop"_s))),
             u"[Desktop Entry]\n"
             "Type=Application\n"
             "Version=1.5\n"
             "Name=kalvaro\n"
             "Comment=Hält die rekordbox-Bibliothek mit der Cloud im Gleichstand\n"
             "Icon=de.kalvaro.kalvaro\n"
             "TryExec=/opt/mein \"Pro`gr$amm\\\\100\n"
             "Exec=\"/opt/mein \\\\\"Pro\\\\`gr\\\\$amm\\\\\\\\100\" --hintergrund\n"
             "Terminal=false\n"
             "StartupNotify=false\n"_s);
}

void TestAnmeldestart::ohneSymbolFehltDieZeile()
{
    XdgAnmeldestart(u"/opt/kalvaro"_s, pfad(u"a"_s), {}).setzen(true);
    const QByteArray eintrag = dateiLesen(pfad(u"a/de.kalvaro.kalvaro.desktop"_s));
    QVERIFY(eintrag.contains("\nExec="));
    QVERIFY(!eintrag.contains("\nIcon"));
}

void TestAnmeldestart::eintragFolgtDemProgramm_data()
{
    // %1 is a program that is there, and not the running one.
    QTest::addColumn<QString>("vorhanden");
    QTest::addColumn<bool>("folgt");
    const QString anfang = u"[Desktop Entry]\nType=Application\nVersion=1.5\nName=kalvaro\n"
                           "Comment=Hält die rekordbox-Bibliothek mit der Cloud im Gleichstand\n"_s;
    const QString symbol = u"Icon=de.kalvaro.kalvaro\n"_s;
    const QString ende = u"\nTerminal=false\nStartupNotify=false\n"_s;
    const QString weg = u"Exec=\"/weg/kalvaro\" --hintergrund"_s;
    const QString versuch = u"TryExec=/weg/kalvaro\n"_s;
    const QString da = u"Exec=\"%1\" --hintergrund"_s;
    QTest::newRow("the program is gone") << anfang + symbol + versuch + weg + ende << true;
    QTest::newRow("and there was no icon") << anfang + versuch + weg + ende << true;
    QTest::newRow("written by 1.4") << anfang + symbol + weg + ende << true;
    QTest::newRow("no icon then, the same program")
        << anfang + u"TryExec=/bin/sh\nExec=\"/bin/sh\" --hintergrund"_s + ende << true;
    QTest::newRow("another program that is there")
        << anfang + symbol + u"TryExec=%1\n"_s + da + ende << false;
    QTest::newRow("1.4, another program that is there") << anfang + symbol + da + ende << false;
    QTest::newRow("switched off by the desktop")
        << anfang + symbol + versuch + weg + ende + u"X-GNOME-Autostart-enabled=false\n"_s << false;
    QTest::newRow("hidden") << anfang + symbol + versuch + weg + ende + u"Hidden=true\n"_s << false;
    QTest::newRow("another argument")
        << anfang + symbol + versuch + weg + u" --leise"_s + ende << false;
    QTest::newRow("TryExec names something else")
        << anfang + symbol + u"TryExec=/weg/anderes\n"_s + weg + ende << false;
    QTest::newRow("by hand") << u"von Hand\n"_s << false;
    QTest::newRow("a key and no more") << u"\nExec="_s << false;
    QTest::newRow("empty") << QString() << false;
}

void TestAnmeldestart::eintragFolgtDemProgramm()
{
    QFETCH(QString, vorhanden);
    QFETCH(bool, folgt);
    const QByteArray vorher =
        vorhanden.replace(u"%1"_s, QCoreApplication::applicationFilePath()).toUtf8();
    const QString datei = pfad(u"a/de.kalvaro.kalvaro.desktop"_s);
    dateiSchreiben(datei, vorher);
    XdgAnmeldestart start(u"/bin/sh"_s, pfad(u"a"_s));
    start.nachfuehren();
    const QByteArray nachher = dateiLesen(datei);
    QCOMPARE(daten.protokollzeilen(), QStringList());
    start.setzen(true);
    QCOMPARE(nachher, folgt ? dateiLesen(datei) : vorher);
}

void TestAnmeldestart::eintragFolgtGenauDemPfad()
{
    QFETCH(QString, name);
    XdgAnmeldestart(pfad(name), pfad(u"a"_s)).setzen(true);
    XdgAnmeldestart(u"/opt/kalvaro"_s, pfad(u"a"_s)).nachfuehren();
    QVERIFY(dateiLesen(pfad(u"a/de.kalvaro.kalvaro.desktop"_s))
                .contains("\nExec=\"/opt/kalvaro\" --hintergrund\n"));
}

void TestAnmeldestart::nachfuehrenLegtNichtsAn()
{
    XdgAnmeldestart start(u"/opt/kalvaro"_s, pfad(u"a"_s));
    start.nachfuehren();
    QVERIFY(!start.an());
    QVERIFY(!QFile::exists(pfad(u"a"_s)));
}

void TestAnmeldestart::eineRoehreHaeltNichtAuf()
{
    QVERIFY(QDir(ordner->path()).mkdir(u"a"_s));
    const QString datei = pfad(u"a/de.kalvaro.kalvaro.desktop"_s);
    QCOMPARE(mkfifo(QFile::encodeName(datei).constData(), 0600), 0);
    XdgAnmeldestart start(u"/opt/kalvaro"_s, pfad(u"a"_s));
    start.nachfuehren();
    QVERIFY(!QFileInfo(datei).isFile());
}

void TestAnmeldestart::ordnerFolgtDerUmgebung()
{
    QCOMPARE(autostartordner(), QDir::homePath() + u"/.config/autostart"_s);
    qputenv("XDG_CONFIG_HOME", "relativ");
    QCOMPARE(autostartordner(), QDir::homePath() + u"/.config/autostart"_s);
    qputenv("XDG_CONFIG_HOME", "/anderswo");
    QCOMPARE(autostartordner(), u"/anderswo/autostart"_s);
    qputenv("XDG_CONFIG_HOME", "/anderswo//");
    QCOMPARE(autostartordner(), u"/anderswo/autostart"_s);
}

void TestAnmeldestart::einAppImageNenntSichSelbst()
{
    qputenv("APPIMAGE", "/home/ich/kalvaro.AppImage");
    qputenv("APPDIR", "/tmp/.mount_kalvar");
    QCOMPARE(startprogramm(u"/tmp/.mount_kalvar/usr/bin/kalvaro"_s),
             u"/home/ich/kalvaro.AppImage"_s);
}

void TestAnmeldestart::einFremdesAppImageZaehltNicht()
{
    qputenv("APPIMAGE", "/home/ich/Terminal.AppImage");
    qputenv("APPDIR", "/tmp/.mount_Termin");
    QCOMPARE(startprogramm(u"/usr/bin/kalvaro"_s), u"/usr/bin/kalvaro"_s);
    QCOMPARE(startprogramm(u"/tmp/.mount_Termin2/kalvaro"_s), u"/tmp/.mount_Termin2/kalvaro"_s);
}

void TestAnmeldestart::dieSitzungStartetGenauDenPfad_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("plain") << u"kalvaro"_s;
    QTest::newRow("blanks") << u"meine  Programme/kal varo"_s;
    QTest::newRow("quotes") << u"der \"gute\" 'Ordner'/kalvaro"_s;
    QTest::newRow("percent") << u"100% %f %%/kalvaro"_s;
    QTest::newRow("dollar") << u"$HOME ${x}/kalvaro"_s;
    QTest::newRow("backslash") << u"a\\b\\\\c\\n/kalvaro\\"_s;
    QTest::newRow("backtick") << u"`id`/kalvaro"_s;
    QTest::newRow("equal sign") << u"a=b/kal=va\"ro"_s;
    QTest::newRow("tab and line feed") << u"a\tb\nc/kalvaro"_s;
    QTest::newRow("shell characters") << u"~;&|<>*?#()[]!/kalvaro"_s;
    QTest::newRow("umlauts") << u"Müßiggang „x“/kalvaro"_s;
}

// GLib is what most sessions read autostart entries with.
void TestAnmeldestart::dieSitzungStartetGenauDenPfad()
{
    KALVARO_BRAUCHT(u"gio"_s);
    QFETCH(QString, name);
    const QString programm = pfad(name);
    const QString zeuge = pfad(u"zeuge"_s);
    dateiSchreiben(programm, "#!/bin/sh\nprintf '%s\\0' \"$0\" \"$@\" > \"$ZEUGE.neu\"\n"
                             "mv \"$ZEUGE.neu\" \"$ZEUGE\"\n");
    QVERIFY(
        QFile::setPermissions(programm, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    XdgAnmeldestart(programm, pfad(u"autostart"_s)).setzen(true);

    QProcess sitzung;
    auto umgebung = QProcessEnvironment::systemEnvironment();
    umgebung.insert(u"ZEUGE"_s, zeuge);
    umgebung.insert(u"LC_ALL"_s, u"C.UTF-8"_s);
    umgebung.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"disabled:"_s);
    sitzung.setProcessEnvironment(umgebung);
    sitzung.start(u"gio"_s, {u"launch"_s, pfad(u"autostart/de.kalvaro.kalvaro.desktop"_s)});
    QVERIFY(sitzung.waitForFinished());
    QCOMPARE(sitzung.exitCode(), 0);
    QTRY_VERIFY(QFile::exists(zeuge));
    QCOMPARE(dateiLesen(zeuge), QFile::encodeName(programm) + '\0' + "--hintergrund" + '\0');
}

KALVARO_TEST(TestAnmeldestart)
#include "tst_anmeldestart.moc"
