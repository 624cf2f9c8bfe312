#include "attrappen.h"
#include "platform/macos/arbeitsplatzzugang.h"
#include "platform/macos/hellesaussehen.h"
#include "platform/macos/laufendebuendel.h"
#include "testlauf.h"

#include <QGuiApplication>
#include <QThread>
#include <QWindow>

using namespace kalvaro;
using namespace Qt::StringLiterals;

class TestArbeitsplatzzugang final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { attrappen::arbeitsplatz() = {}; }

    void oeffnetVorn()
    {
        zugang.oeffnen(u"/Applications/rekordbox 7/rekordbox Ü.app"_s, ruf());
        attrappen::nachreichen();
        QCOMPARE(attrappen::arbeitsplatz().geoeffnet,
                 QStringList(u"/Applications/rekordbox 7/rekordbox Ü.app vorn"_s));
        QCOMPARE(antworten, QStringList(u"läuft"_s));
    }

    void dieAntwortKommtVonEinemAnderenThread()
    {
        const QThread *wo = QThread::currentThread();
        zugang.oeffnen(u"/a.app"_s, [&](const auto &) { wo = QThread::currentThread(); });
        attrappen::nachreichen();
        QVERIFY(wo != QThread::currentThread());
    }

    void derInnersteFehler_data()
    {
        QTest::addColumn<int>("tiefe");
        QTest::addColumn<QString>("fehler");
        QTest::newRow("alone") << 1 << u"NSCocoaErrorDomain 256"_s;
        QTest::newRow("one beneath") << 2 << u"NSOSStatusErrorDomain -10827"_s;
        QTest::newRow("two beneath") << 3 << u"NSPOSIXErrorDomain 13"_s;
    }

    void derInnersteFehler()
    {
        QFETCH(int, tiefe);
        attrappen::arbeitsplatz().fehler = {{u"NSCocoaErrorDomain"_s, 256},
                                            {u"NSOSStatusErrorDomain"_s, -10827},
                                            {u"NSPOSIXErrorDomain"_s, 13}};
        attrappen::arbeitsplatz().fehler.resize(static_cast<size_t>(tiefe));
        zugang.oeffnen(u"/a.app"_s, ruf());
        attrappen::nachreichen();
        QFETCH(QString, fehler);
        QCOMPARE(antworten, QStringList(fehler));
    }

    void werAntwortetHatBleibtNichtLiegen()
    {
        const auto zeuge = std::make_shared<int>();
        zugang.oeffnen(u"/a.app"_s, [zeuge](const auto &) {});
        QVERIFY(zeuge.use_count() > 1);
        attrappen::nachreichen();
        QCOMPARE(zeuge.use_count(), 1L);
    }

    void erwachen()
    {
        const auto zeuge = std::make_shared<int>(0);
        auto halter = zugang.wachen([zeuge] { ++*zeuge; });
        QCOMPARE(*zeuge, 0);
        attrappen::wecken();
        attrappen::wecken();
        QCOMPARE(*zeuge, 2);
        halter.reset();
        attrappen::wecken();
        QCOMPARE(*zeuge, 2);
        QCOMPARE(zeuge.use_count(), 1L);
    }

    void laufendeMitBuendel()
    {
        attrappen::arbeitsplatz().laufende = {u"/Applications/rekordbox 6/rekordbox.app"_s, u""_s,
                                              u"/Applications/Übung.app"_s};
        QCOMPARE(laufendeBuendel(), QStringList({u"/Applications/rekordbox 6/rekordbox.app"_s,
                                                 u"/Applications/Übung.app"_s}));
    }

    // There is one only where the toolkit draws for this system.
    void ohneAnwendungsobjekt()
    {
        zugang.auftreten(Arbeitsplatz::Auftritt::Zubehoer);
        hellesAussehen();
        QCOMPARE(attrappen::arbeitsplatz().auftritt, -1L);
        QCOMPARE(attrappen::arbeitsplatz().aussehen, QString());
    }

    // NSApplicationActivationPolicyRegular is 0, NSApplicationActivationPolicyAccessory 1.
    void auftritt()
    {
        attrappen::anwendungDa();
        zugang.auftreten(Arbeitsplatz::Auftritt::Zubehoer);
        QCOMPARE(attrappen::arbeitsplatz().auftritt, 1L);
        zugang.auftreten(Arbeitsplatz::Auftritt::Regulaer);
        QCOMPARE(attrappen::arbeitsplatz().auftritt, 0L);
    }

    void hell()
    {
        attrappen::anwendungDa();
        hellesAussehen();
        QCOMPARE(attrappen::arbeitsplatz().aussehen, u"NSAppearanceNameAqua"_s);
    }

    // A picture may be drawn by a platform whose windows are none of this system's.
    void nachVornOhneFensterDesSystems()
    {
        QWindow fenster;
        fenster.show();
        zugang.nachVorn(fenster);
        QTRY_VERIFY(fenster.isActive());
    }

private:
    Arbeitsplatzzugang::Oeffnungsruf ruf()
    {
        antworten.clear();
        return [this](const std::optional<Oeffnungsfehler> &fehler) {
            antworten.append(fehler
                                 ? u"%1 %2"_s.arg(fehler->bereich, QString::number(fehler->nummer))
                                 : u"läuft"_s);
        };
    }

    const Arbeitsplatzzugang zugang = Arbeitsplatzzugang::desSystems();
    QStringList antworten;
};

static const Testlauf
    laufTestArbeitsplatzzugang("TestArbeitsplatzzugang",
                               testAusfuehren<QGuiApplication, TestArbeitsplatzzugang>);
#include "tst_arbeitsplatzzugang.moc"
