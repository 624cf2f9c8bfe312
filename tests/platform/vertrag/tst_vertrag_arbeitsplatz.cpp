// What the desktop session promises.

#include "doubles/ereignisse.h"
#include "platform/arbeitsplatz.h"
#include "prueflinge.h"
#include "testlauf.h"

using namespace kalvaro;
using namespace Qt::StringLiterals;

using Antwort = std::optional<QString>;

class TestVertragArbeitsplatz final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data()
    {
        Vertrag<Arbeitsplatzpruefling>::zeilen({u"double"_s, u"linux"_s, u"macos"_s});
    }
    void init()
    {
        KALVARO_BRAUCHT(Vertrag<Arbeitsplatzpruefling>::braucht());
        antworten.clear();
        p = Vertrag<Arbeitsplatzpruefling>::neu();
    }
    void cleanup() { p.reset(); }

    void startetUndSagtEs()
    {
        QObject besitzer;
        starten(p->gutes(), besitzer);
        QVERIFY(antworten.isEmpty()); // from the event loop
        QTRY_COMPARE(antworten, QList<Antwort>{Antwort()});
        QTRY_COMPARE(p->starts(), 1);
        ereignisseAbarbeiten();
        QCOMPARE(antworten.size(), 1);
    }

    void nenntDenGrund()
    {
        QObject besitzer;
        starten(p->kaputtes(), besitzer);
        QVERIFY(antworten.isEmpty());
        QTRY_COMPARE(antworten.size(), 1);
        QVERIFY(!antworten.first().value_or(QString()).isEmpty());
        QCOMPARE(p->starts(), 0);
    }

    void werGehtHoertNichts()
    {
        {
            QObject besitzer;
            starten(p->kaputtes(), besitzer);
            starten(p->gutes(), besitzer);
        }
        QObject bleibt;
        starten(p->gutes(), bleibt);
        QTRY_VERIFY(!antworten.isEmpty());
        QTRY_COMPARE(p->starts(), 2); // it starts all the same
        ereignisseAbarbeiten();
        QCOMPARE(antworten.size(), 1);
    }

    void dieAntwortDarfDenBesitzerBeenden()
    {
        auto besitzer = std::make_unique<QObject>();
        p->arbeitsplatz().starten(p->gutes(), besitzer.get(), [&](const Antwort &antwort) {
            antworten.append(antwort);
            besitzer.reset();
        });
        QTRY_VERIFY(!besitzer);
        ereignisseAbarbeiten();
        QCOMPARE(antworten.size(), 1);
    }

    void oeffnetNurAdressenImNetz()
    {
        const QUrl gute(u"https://example.org/a?b=c&d#e"_s);
        const QUrl auch(u"HTTP://example.org"_s);
        for (const QString &adresse :
             {QString(), u"example.org"_s, u"file:///etc/passwd"_s, u"mailto:a@example.org"_s,
              u"javascript:alert(1)"_s, u"https://[kaputt"_s}) {
            p->arbeitsplatz().oeffnen(QUrl(adresse));
        }
        p->arbeitsplatz().oeffnen(gute);
        p->arbeitsplatz().oeffnen(auch);
        QTRY_COMPARE(p->geoeffnet().size(), 2);
        QCOMPARE(p->geoeffnet(), (QList<QUrl>{gute, auch}));
    }

    void wecktWerHoert()
    {
        int erster = 0;
        int zweiter = 0;
        p->wecken(); // nobody listens yet
        p->arbeitsplatz().beiAufwachen([&erster] { ++erster; });
        QTRY_VERIFY((p->wecken(), ereignisseAbarbeiten(), erster > 0));
        const int bisher = erster;
        QTRY_VERIFY((p->wecken(), ereignisseAbarbeiten(), erster > bisher)); // each time
        p->arbeitsplatz().beiAufwachen([&zweiter] { ++zweiter; });
        const int ersterAmEnde = erster;
        QTRY_VERIFY((p->wecken(), ereignisseAbarbeiten(), zweiter > 0));
        QCOMPARE(erster, ersterAmEnde);
        p->arbeitsplatz().beiAufwachen({});
        const int zweiterAmEnde = zweiter;
        p->wecken();
        ereignisseAbarbeiten();
        QCOMPARE(zweiter, zweiterAmEnde);
    }

    // As a window is closed while the message is shown.
    void werGewecktWirdDarfAufhoeren()
    {
        int gezaehlt = 0;
        p->arbeitsplatz().beiAufwachen([&] {
            ++gezaehlt;
            p->arbeitsplatz().beiAufwachen({});
        });
        QTRY_VERIFY((p->wecken(), ereignisseAbarbeiten(), gezaehlt > 0));
        p->wecken();
        ereignisseAbarbeiten();
        QCOMPARE(gezaehlt, 1);
    }

private:
    void starten(const QString &buendel, QObject &besitzer)
    {
        p->arbeitsplatz().starten(buendel, &besitzer,
                                  [this](const Antwort &antwort) { antworten.append(antwort); });
    }

    QList<Antwort> antworten;
    std::unique_ptr<Arbeitsplatzpruefling> p;
};

KALVARO_FENSTERTEST(TestVertragArbeitsplatz)
#include "tst_vertrag_arbeitsplatz.moc"
