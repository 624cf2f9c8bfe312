// The real program where nothing can be shown, and what it says to arguments that it does not know.

#include "app/zuhause.h"
#include "doubles/kindprogramm.h"
#include "testlauf.h"

#include <QDir>
#include <QImage>

#include <csignal>
#include <optional>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

constexpr int frist = 20'000; // ms before a test gives up

const QString programm = QStringLiteral(KALVARO_PROGRAMM);
const QString niemand = u"127.0.0.1:7654"_s; // a display where nobody listens

QStringList inhalt(const QString &ordner)
{
    return QDir(ordner).entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::Hidden |
                                  QDir::System);
}

} // namespace

class TestOhneanzeige final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        zuhause.emplace();
        zuhause->kontoSchreiben(u"http://127.0.0.1:1"_s);
        umgebung = zuhause->umgebung();
        umgebung.remove(u"QT_QPA_PLATFORM"_s);
    }

    // Before the name of the only instance is taken and before anything is logged: a start over ssh
    // must not swallow those on the desktop.
    void sagtEsUndEndet_data()
    {
        QTest::addColumn<QStringList>("argumente");
        QTest::addColumn<QString>("variable"); // "NAME=value"
        QTest::addColumn<QString>("grund");
        const QString nichts = u"Weder DISPLAY noch WAYLAND_DISPLAY ist gesetzt."_s;
        const QString tot = u"Die Anzeige „127.0.0.1:7654“ (DISPLAY) antwortet nicht."_s;
        QTest::newRow("no display") << QStringList() << QString() << nichts;
        QTest::newRow("no display, in the background")
            << QStringList{u"--hintergrund"_s} << QString() << nichts;
        QTest::newRow("no display, xcb chosen")
            << QStringList() << u"QT_QPA_PLATFORM=xcb"_s << nichts;
        QTest::newRow("a dead X11") << QStringList() << u"DISPLAY="_s + niemand << tot;
        QTest::newRow("a dead X11, xcb chosen by argument")
            << QStringList{u"-platform"_s, u"xcb"_s} << u"DISPLAY="_s + niemand << tot;
        QTest::newRow("a dead Wayland")
            << QStringList() << u"WAYLAND_DISPLAY=wayland-7"_s
            << u"Die Anzeige „wayland-7“ (WAYLAND_DISPLAY) antwortet nicht."_s;
    }
    void sagtEsUndEndet()
    {
        QFETCH(const QStringList, argumente);
        QFETCH(const QString, variable);
        QFETCH(const QString, grund);
        if (!variable.isEmpty()) {
            umgebung.insert(variable.section(u'=', 0, 0), variable.section(u'=', 1));
        }
        Kindprogramm kalvaro(programm, argumente, umgebung);
        QCOMPARE(kalvaro.ende(), 1);
        QCOMPARE(QString::fromUtf8(kalvaro.fehlerausgabe()),
                 u"kalvaro kann hier nichts zeigen: "_s + grund +
                     u" Ohne Anzeige gehen nur „--pruefen“, „--bild PFAD“, „--help“ und "
                     "„--version“.\n"_s);
        QCOMPARE(kalvaro.ausgabe(), QByteArray());
        QCOMPARE(zuhause->protokoll(), QStringList());
        QCOMPARE(inhalt(zuhause->datei(u"lauf"_s)), QStringList());
    }

    void ohneKontoWieBisher()
    {
        QVERIFY(QFile::remove(zuhause->daten() + u"/konto.json"_s));
        Kindprogramm kalvaro(programm, {}, umgebung);
        QCOMPARE(kalvaro.ende(), 0);
        const QStringList zeilen = QString::fromUtf8(kalvaro.fehlerausgabe()).split(u'\n');
        QCOMPARE(zeilen.size(), 3);
        QCOMPARE(zeilen[0], u"kalvaro ist auf diesem Mac noch nicht eingerichtet."_s);
        QVERIFY(zeilen[1].contains(zuhause->daten() + u"/konto.json"_s));
        QCOMPARE(inhalt(zuhause->datei(u"lauf"_s)), QStringList());
    }

    void dasBildEntstehtTrotzToterAnzeige()
    {
        umgebung.insert(u"DISPLAY"_s, niemand);
        const QString pfad = zuhause->datei(u"bild.png"_s);
        Kindprogramm kalvaro(programm, {u"--bild"_s, pfad}, umgebung);
        QCOMPARE(kalvaro.ende(), 0);
        QCOMPARE(QImage(pfad).width(), 520);
    }

    void auskunftGehtOhneAnzeige_data()
    {
        QTest::addColumn<QString>("option");
        for (const QString &option : {u"-h"_s, u"--help"_s, u"-v"_s, u"--version"_s}) {
            QTest::newRow(qPrintable(option)) << option;
        }
    }
    void auskunftGehtOhneAnzeige()
    {
        QFETCH(const QString, option);
        Kindprogramm kalvaro(programm, {option}, umgebung);
        QCOMPARE(kalvaro.ende(), 0);
        QVERIFY(kalvaro.ausgabe().startsWith("kalvaro 1.4"));
        QCOMPARE(kalvaro.fehlerausgabe(), QByteArray());
    }

    // Named, and then ignored: the program lives on. The chosen platform is not asked for.
    void einTippfehlerWirdGenannt()
    {
        umgebung.insert(u"DISPLAY"_s, niemand);
        Kindprogramm kalvaro(programm, {u"-platform"_s, u"offscreen"_s, u"--hintergund"_s},
                             umgebung);
        QTRY_VERIFY_WITH_TIMEOUT(!zuhause->protokoll().isEmpty(), frist);
        QVERIFY(kalvaro.beenden(SIGTERM) >= 0); // and with it all that it has said has come
        QCOMPARE(QString::fromUtf8(kalvaro.fehlerausgabe()),
                 u"kalvaro: Das Argument „--hintergund“ ist unbekannt und wird ignoriert; "
                 "„kalvaro --help“ zeigt alle.\n"_s);
    }

private:
    std::optional<Zuhause> zuhause;
    QProcessEnvironment umgebung;
};

KALVARO_TEST(TestOhneanzeige)
#include "tst_ohneanzeige.moc"
