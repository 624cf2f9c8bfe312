// What the watch sees of rekordbox and what it reports, tick by tick.

#include "ablauf/rekordboxwache.h"

#include "doubles/ereignisse.h"
#include "doubles/fakeprozesse.h"
#include "doubles/testuhr.h"
#include "rekordbox/rekordbox.h"
#include "testlauf.h"

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

constexpr auto programm = "/Applications/rekordbox 7/rekordbox.app";

// What runs at a moment.
struct Lage
{
    bool offen = false; // an application in a bundle named "rekordbox.app"
    int haupt = 0;      // processes "rekordbox"
    int agent = 0;      // processes "rekordboxAgent"
};

constexpr Lage zu{};
constexpr Lage offen{true, 1, 1};
constexpr Lage speichert{false, 0, 1};

// One tick: so many seconds after the one before, in that situation, and what it must report.
struct Schritt
{
    double danach = 3;
    Lage lage{};
    QStringList meldet{};
    bool laeuft = false; // lief() after the tick
};

const QStringList nichts;
const QStringList start{u"gestartet"_s};
const QStringList ende{u"geschlossen"_s};
const QStringList gespeichert{u"beendet"_s};
const QStringList sofort{u"geschlossen"_s, u"beendet"_s};

const Schritt ruhe{3, zu, nichts, false};
const Schritt gestartet{3, offen, start, true};
const Schritt laeuft{3, offen, nichts, true};

void zeile(const char *name, const Lage &anfang, const QList<Schritt> &schritte)
{
    QTest::newRow(name) << anfang << schritte;
}

} // namespace

class TestRekordboxwache final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void takte_data()
    {
        QTest::addColumn<Lage>("anfang");
        QTest::addColumn<QList<Schritt>>("schritte");
        zeile("idle: start-up without rekordbox", zu, {ruhe, ruhe});
        zeile("idle: an agent alone is no rekordbox that quit", speichert,
              {{3, speichert, nichts}, ruhe});
        zeile("idle: left when a tick sees rekordbox open", zu, {ruhe, gestartet, laeuft});
        zeile("running: already at start-up, its start is not reported", offen, {laeuft, laeuft});
        zeile("running: open without a process yet counts all the same", zu,
              {{3, {true, 0, 0}, start, true}, {3, {true, 0, 0}, nichts, true}});
        zeile("running: left when a tick sees it closed", zu,
              {gestartet, {3, speichert, ende}, {3, speichert, nichts}});
        zeile("running at start-up, quit later: reported like any other", offen,
              {{3, speichert, ende}, {3, zu, gespeichert}, ruhe});
        zeile("closed with nothing left to wait for: both in one tick", offen,
              {{3, zu, sofort}, ruhe});
    }
    void takte() { laufen(); }

    void takteBeimWarten_data()
    {
        QTest::addColumn<Lage>("anfang");
        QTest::addColumn<QList<Schritt>>("schritte");
        zeile("waiting: left at the first tick without a process", zu,
              {gestartet, {3, speichert, ende}, {3, speichert, nichts}, {3, zu, gespeichert}});
        zeile("waiting: rekordbox itself counts as well as its agent", offen,
              {{3, {false, 1, 0}, ende}, {3, {false, 2, 0}, nichts}, {3, zu, gespeichert}});
        zeile("waiting: left at the first tick after 90 s", offen,
              {{3, speichert, ende},
               {60, speichert, nichts},
               {27, speichert, nichts},
               {3, speichert, nichts},
               {3, speichert, gespeichert},
               {3, speichert, nichts}});
        zeile("waiting: 90.0 s are not more than 90 s", offen,
              {{3, speichert, ende}, {90, speichert, nichts}, {0.001, speichert, gespeichert}});
        zeile("waiting: no process left at 90 s", offen,
              {{3, speichert, ende}, {90, zu, gespeichert}});
        zeile("waiting: reopened, so no end is reported", offen,
              {{3, speichert, ende}, gestartet, laeuft, {95, offen, nichts, true}});
        zeile("waiting: reopened and quit again waits anew", offen,
              {{3, speichert, ende},
               {87, offen, start, true},
               {3, speichert, ende},
               {90, speichert, nichts},
               {3, speichert, gespeichert}});
        zeile("waiting: reopened on the tick that would have ended it", offen,
              {{3, speichert, ende}, {93, offen, start, true}});
        zeile("a whole session twice", zu,
              {gestartet,
               {3, zu, sofort},
               ruhe,
               gestartet,
               {3, speichert, ende},
               {3, zu, gespeichert}});
    }
    void takteBeimWarten() { laufen(); }

    // Somebody set the clock while the agent saved: the wait ended at once, or an hour late.
    void uhrSpringtBeimWarten()
    {
        stellen(offen);
        Rekordboxwache wache(uhr, prozesse, rekordbox);
        int beendet = 0;
        connect(&wache, &Rekordboxwache::beendet, this, [&] { ++beendet; });
        stellen(speichert);
        takt(wache);
        uhr.verstellen(Sekunden(3600));
        uhr.vor(Sekunden(3));
        takt(wache);
        QCOMPARE(beendet, 0);
        uhr.verstellen(Sekunden(-7200));
        uhr.vor(Sekunden(88));
        takt(wache);
        QCOMPARE(beendet, 1);
    }

    void istImmerFrisch()
    {
        Rekordboxwache wache(uhr, prozesse, rekordbox);
        QVERIFY(!wache.rekordboxOffen());

        stellen(offen);

        QVERIFY(wache.rekordboxOffen());
        QVERIFY(!wache.lief()); // no tick yet
    }

    // Only the last component of the bundle's path counts, exactly.
    void buendelnamen_data()
    {
        QTest::addColumn<QStringList>("buendel");
        QTest::addColumn<bool>("erwartet");
        const auto dies = [](const char *name, const QStringList &buendel, bool erwartet) {
            QTest::newRow(name) << buendel << erwartet;
        };
        dies("nothing runs", {}, false);
        dies("in its folder", {u"/Applications/rekordbox 7/rekordbox.app"_s}, true);
        dies("at the top", {u"/Applications/rekordbox.app"_s}, true);
        dies("anywhere", {u"/home/dj/Programme/rekordbox.app"_s}, true);
        dies("without a folder", {u"rekordbox.app"_s}, true);
        dies("among others", {u"/x/Finder.app"_s, u"/x/rekordbox.app"_s, u"/x/Mail.app"_s}, true);
        dies("upper case", {u"/Applications/Rekordbox.app"_s}, false);
        dies("upper case at the end", {u"/Applications/rekordbox.App"_s}, false);
        dies("more in front", {u"/Applications/myrekordbox.app"_s}, false);
        dies("more behind", {u"/Applications/rekordbox.app.old"_s}, false);
        dies("the agent's own bundle", {u"/Applications/rekordboxAgent.app"_s}, false);
        dies("with its version", {u"/Applications/rekordbox 7.app"_s}, false);
        dies("only a folder above has the name", {u"/x/rekordbox.app/Contents/Helper.app"_s},
             false);
        dies("an application without a bundle", {QString()}, false);
    }
    void buendelnamen()
    {
        QFETCH(const QStringList, buendel);
        QFETCH(const bool, erwartet);
        prozesse.buendelliste = buendel;

        const Rekordboxwache wache(uhr, prozesse, rekordbox);

        QCOMPARE(wache.rekordboxOffen(), erwartet);
        QCOMPARE(wache.lief(), erwartet);
    }

    // A tick while nothing is owed must not start a program to count processes.
    void imLeerlaufWirdNichtGezaehlt()
    {
        Rekordboxwache wache(uhr, prozesse, rekordbox);
        takt(wache);
        stellen(offen);
        takt(wache);
        takt(wache);
        QCOMPARE(prozesse.gefragt, QStringList());

        stellen(zu);
        takt(wache);

        QCOMPARE(prozesse.gefragt, (QStringList{u"rekordbox"_s, u"rekordboxAgent"_s}));
    }

    void init()
    {
        stellen(zu);
        prozesse.gefragt.clear();
        verlauf.clear();
    }

private:
    void laufen()
    {
        QFETCH(const Lage, anfang);
        QFETCH(const QList<Schritt>, schritte);
        stellen(anfang);
        Rekordboxwache wache(uhr, prozesse, rekordbox);
        const QStringList &gemeldet = horchen(wache);
        QCOMPARE(wache.lief(), anfang.offen);

        for (qsizetype i = 0; i < schritte.size(); ++i) {
            const Schritt &schritt = schritte.at(i);
            uhr.vor(Sekunden(schritt.danach));
            stellen(schritt.lage);
            verlauf.clear();
            takt(wache);
            QVERIFY2(gemeldet == schritt.meldet && wache.lief() == schritt.laeuft,
                     qPrintable(u"step %1: %2"_s.arg(i).arg(gemeldet.join(u' '))));
        }
    }

    static void takt(Rekordboxwache &wache)
    {
        wache.wachen();
        ereignisseAbarbeiten();
    }

    void stellen(const Lage &lage)
    {
        prozesse.buendelliste =
            lage.offen ? QStringList{QString::fromLatin1(programm)} : QStringList();
        prozesse.laufend = {{u"rekordbox"_s, lage.haupt}, {u"rekordboxAgent"_s, lage.agent}};
    }

    const QStringList &horchen(Rekordboxwache &wache)
    {
        connect(&wache, &Rekordboxwache::gestartet, &wache,
                [this] { verlauf.append(u"gestartet"_s); });
        connect(&wache, &Rekordboxwache::geschlossen, &wache,
                [this] { verlauf.append(u"geschlossen"_s); });
        connect(&wache, &Rekordboxwache::beendet, &wache, [this] { verlauf.append(u"beendet"_s); });
        return verlauf;
    }

    Testuhr uhr;
    FakeProzesse prozesse;
    const Rekordbox rekordbox{prozesse, u"/gibt/es/nicht"_s};
    QStringList verlauf;
};

KALVARO_TEST(TestRekordboxwache)
#include "tst_rekordboxwache.moc"
