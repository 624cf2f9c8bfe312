#include "ablauf/ablauf.h"
#include "doubles/testumgebung.h"
#include "testlauf.h"

using namespace kalvaro;
using namespace Qt::StringLiterals;

// The one queue, and what it owes.
class TestAbgleicher final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        ablauf.reset();
        welt = std::make_unique<Testumgebung>();
        ablauf = std::make_unique<Ablauf>(welt->konto, welt->umgebung);
    }
    void cleanup()
    {
        ablauf.reset();
        welt.reset();
    }

    // Those who report and those who watch hear of it before those who asked.
    void reihenfolge()
    {
        QStringList verlauf;
        connect(&queue(), &Abgleicher::begonnen, this, [&](Anlass anlass) {
            verlauf.append(u"begonnen "_s + anlassname(anlass));
            QVERIFY(queue().laeuftGerade());
            QVERIFY(welt->anlaesse().isEmpty()); // not sent yet
        });
        connect(&queue(), &Abgleicher::fertig, this, [&](const Bewertung &b, Anlass anlass) {
            verlauf.append(u"fertig "_s + anlassname(anlass) + u' ' + artname(b.art));
            QVERIFY(!queue().laeuftGerade());
        });
        queue().abgleich(Anlass::Hand, this, [&](const Bewertung &) { verlauf.append(u"1"_s); });
        queue().abgleich(Anlass::Nachholen, this,
                         [&](const Bewertung &) { verlauf.append(u"2"_s); });
        beantworten(u"aktuell"_s);

        QCOMPARE(verlauf, QStringList({u"begonnen hand"_s, u"fertig hand gut"_s, u"1"_s, u"2"_s}));
        QCOMPARE(welt->anlaesse(), {u"hand"_s});
        QCOMPARE(queue().laeufe(), 1);
    }

    void werBeimErgebnisFragtWartetAufDasNaechste()
    {
        QStringList verlauf;
        connect(&queue(), &Abgleicher::fertig, this, [&](const Bewertung &b) {
            if (b.art == Art::Krit) {
                queue().abgleich(Anlass::Nachholen, this, [&](const Bewertung &spaeter) {
                    verlauf.append(artname(spaeter.art));
                });
            }
        });
        queue().abgleich(Anlass::Hand);
        beantworten(u"fehler"_s);
        QVERIFY(verlauf.isEmpty());
        beantworten(u"aktuell"_s);
        QCOMPARE(verlauf, {u"gut"_s});
    }

    void werGehtHoertNichts()
    {
        auto besitzer = std::make_unique<QObject>();
        int gerufen = 0;
        queue().abgleich(Anlass::Hand, besitzer.get(), [&](const Bewertung &) { ++gerufen; });
        queue().abgleich(Anlass::Hand, this, [&](const Bewertung &) { ++gerufen; });
        besitzer.reset();
        beantworten(u"aktuell"_s);
        QCOMPARE(gerufen, 1);
    }

    void geschuldet_data()
    {
        QTest::addColumn<QString>("zustand");
        QTest::addColumn<bool>("laeuft"); // rekordbox, while the sync begins
        QTest::addColumn<bool>("erwartet");
        QTest::newRow("in step") << u"aktuell"_s << false << false;
        QTest::newRow("failed") << u"fehler"_s << false << false;
        QTest::newRow("the cloud is busy") << u"laeuft_schon"_s << false << true;
        QTest::newRow("rekordbox was open there") << u"rekordbox_offen"_s << false << true;
        QTest::newRow("rekordbox ran beside it") << u"aktuell"_s << true << true;
    }
    void geschuldet()
    {
        QFETCH(const QString, zustand);
        QFETCH(const bool, laeuft);
        QVERIFY(!queue().geschuldet());
        welt->rekordboxLaeuft(false, 0, laeuft ? 1 : 0);
        queue().abgleich(Anlass::Hand);
        beantworten(zustand);
        QTEST(queue().geschuldet(), "erwartet");

        welt->rekordboxZu();
        queue().abgleich(Anlass::Hand);
        beantworten(u"aktuell"_s);
        QVERIFY(!queue().geschuldet());
    }

    void wasWaehrendEinesLaufsGeschahBleibtGeschuldet()
    {
        queue().abgleich(Anlass::Hand);
        queue().schulden();
        beantworten(u"aktuell"_s);
        QVERIFY(queue().geschuldet());
    }

    void moeglich_data()
    {
        QTest::addColumn<int>("haupt");
        QTest::addColumn<int>("agent");
        QTest::newRow("nothing runs") << 0 << 0;
        QTest::newRow("rekordbox runs") << 1 << 0;
        QTest::newRow("its agent runs") << 0 << 1;
    }
    // Held back is owed.
    void moeglich()
    {
        QFETCH(const int, haupt);
        QFETCH(const int, agent);
        welt->rekordboxLaeuft(false, haupt, agent);
        const bool frei = haupt + agent == 0;
        std::optional<bool> antwort;
        queue().moeglich(this, [&](bool ja) { antwort = ja; });
        QVERIFY(!antwort); // from the event loop
        welt->vor();
        QCOMPARE(antwort, frei);
        QCOMPARE(queue().geschuldet(), !frei);
    }

    // The process that was asked for is not counted yet.
    void nichtWaehrendRekordboxStartet()
    {
        welt->programme.installieren(u"7.1.4"_s);
        welt->staende = {jsonAntwort({})};
        std::optional<bool> moeglich;
        std::optional<bool> danach;
        connect(&ablauf->starter, &Rekordboxstarter::laeuft, this, [&] {
            QCOMPARE(ablauf->starter.schritt(), Startschritt::Startet);
            ablauf->abgleichMoeglich(this, [&](bool ja) { moeglich = ja; });
        });
        ablauf->starter.installationenLesen();
        ablauf->starter.starten(Rekordboxstarter::Herkunft::Fenster);
        welt->vor();
        QCOMPARE(moeglich, false);
        QVERIFY(queue().geschuldet());
        ablauf->abgleichMoeglich(this, [&](bool ja) { danach = ja; });
        welt->vor();
        QCOMPARE(danach, true);
    }

private:
    [[nodiscard]] Abgleicher &queue() const { return ablauf->abgleicher; }

    void beantworten(const QString &zustand)
    {
        welt->vor();
        welt->netz.beantworten(abgleichAntwort(zustand));
        welt->vor();
    }

    std::unique_ptr<Testumgebung> welt;
    std::unique_ptr<Ablauf> ablauf;
};

KALVARO_TEST(TestAbgleicher)
#include "tst_abgleicher.moc"
