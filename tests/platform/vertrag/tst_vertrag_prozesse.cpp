// What the process table promises.

#include "doubles/ereignisse.h"
#include "platform/prozesse.h"
#include "prueflinge.h"
#include "testlauf.h"

using namespace kalvaro;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class TestVertragProzesse final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data()
    {
        Vertrag<Prozesspruefling>::zeilen({u"double"_s, u"linux"_s, u"macos"_s});
    }
    void init()
    {
        antworten.clear();
        p = Vertrag<Prozesspruefling>::neu();
    }
    void cleanup() { p.reset(); }

    void zaehltWasGenauSoHeisst()
    {
        p->laufen(u"rekordbox"_s, 3);
        p->laufen(u"rekordboxAgent"_s, 1);
        for (const QString &name : {u"rekordbox"_s, u"rekordboxAgent"_s, u"rekord"_s}) {
            fragen(name, *this);
        }
        QVERIFY(antworten.isEmpty()); // from the event loop
        QTRY_COMPARE(antworten.size(), 3);
        antworten.sort();
        QCOMPARE(antworten, (QStringList{u"rekord 0"_s, u"rekordbox 3"_s, u"rekordboxAgent 1"_s}));
        ereignisseAbarbeiten();
        QCOMPARE(antworten.size(), 3);
        QCOMPARE(p->uhr.offen(), 0);
    }

    void eineSpaetereFrageSiehtDasNeue()
    {
        fragen(u"rekordbox"_s, *this);
        QTRY_COMPARE(antworten, QStringList{u"rekordbox 0"_s});
        p->laufen(u"rekordbox"_s, 1);
        fragen(u"rekordbox"_s, *this);
        QTRY_COMPARE(antworten.value(1), u"rekordbox 1"_s);
    }

    void werGehtHoertNichts()
    {
        p->laufen(u"rekordbox"_s, 1);
        {
            QObject besitzer;
            fragen(u"rekordbox"_s, besitzer);
        }
        fragen(u"anderes"_s, *this);
        QTRY_COMPARE(antworten.size(), 1);
        ereignisseAbarbeiten();
        QCOMPARE(antworten, QStringList{u"anderes 0"_s});
    }

    void dieAntwortDarfDenBesitzerBeenden()
    {
        int mal = 0;
        auto besitzer = std::make_unique<QObject>();
        p->prozesse().anzahl(u"rekordbox"_s, besitzer.get(), [&](qsizetype) {
            ++mal;
            besitzer.reset();
        });
        QTRY_VERIFY(!besitzer);
        ereignisseAbarbeiten();
        QCOMPARE(mal, 1);
    }

    void jedesBuendelEinmal()
    {
        QCOMPARE(p->prozesse().buendel(), QStringList());
        const QString sieben = u"/Applications/rekordbox 7 ü/rekordbox.app"_s;
        const QString agent = sieben + u"/Contents/MacOS/rekordboxAgent.app"_s;
        p->buendel({sieben, agent});
        QStringList orte = p->prozesse().buendel();
        orte.sort();
        QCOMPARE(orte, (QStringList{sieben, agent}));
    }

    // It would sync beside a rekordbox that runs.
    void ohneZaehlungZaehlenDieBuendel()
    {
        p->buendel({u"/A/rekordbox 7/rekordbox.app"_s, u"/A/rekordbox 6/rekordbox.app"_s,
                    u"/A/meinrekordbox.app"_s});
        if (!p->ohneZaehlung()) {
            return;
        }
        fragen(u"rekordbox"_s, *this);
        fragen(u"rekordboxAgent"_s, *this);
        QVERIFY(antworten.isEmpty());
        QTRY_COMPARE(antworten.size(), 2);
        antworten.sort();
        QCOMPARE(antworten, (QStringList{u"rekordbox 2"_s, u"rekordboxAgent 0"_s}));
    }

    void nachZweiSekundenZaehlenDieBuendel()
    {
        p->buendel({u"/A/rekordbox.app"_s});
        if (!p->zaehlungHaengt()) {
            return;
        }
        fragen(u"rekordbox"_s, *this);
        p->uhr.vor(1999ms);
        QVERIFY(antworten.isEmpty());
        p->uhr.vor(1ms);
        QCOMPARE(antworten, QStringList{u"rekordbox 1"_s});
        QCOMPARE(p->uhr.offen(), 0);
    }

private:
    void fragen(const QString &name, QObject &besitzer)
    {
        p->prozesse().anzahl(name, &besitzer, [this, name](qsizetype anzahl) {
            antworten.append(name + u' ' + QString::number(anzahl));
        });
    }

    QStringList antworten;
    std::unique_ptr<Prozesspruefling> p;
};

KALVARO_TEST(TestVertragProzesse)
#include "tst_vertrag_prozesse.moc"
