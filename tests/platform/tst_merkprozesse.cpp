#include "doubles/ereignisse.h"
#include "doubles/fakeprozesse.h"
#include "platform/merkprozesse.h"
#include "testlauf.h"

using namespace kalvaro;
using namespace Qt::StringLiterals;

class TestMerkprozesse final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        ganze = std::make_unique<FakeProzesse>();
        prozesse = std::make_unique<Merkprozesse>(*ganze);
        zahlen.clear();
    }

    void einmalJeDurchgang()
    {
        ganze->laufend[u"rekordbox"_s] = 1;
        fragen(u"rekordbox"_s);
        fragen(u"rekordboxAgent"_s);
        fragen(u"rekordbox"_s);
        fragen(u"rekordboxAgent"_s);
        QVERIFY(zahlen.isEmpty()); // from the event loop
        ereignisseAbarbeiten();
        zahlen.sort();
        QCOMPARE(zahlen, QStringList({u"rekordbox 1"_s, u"rekordbox 1"_s, u"rekordboxAgent 0"_s,
                                      u"rekordboxAgent 0"_s}));
        QCOMPARE(ganze->gefragt, QStringList({u"rekordbox"_s, u"rekordboxAgent"_s}));
    }

    void naechsterDurchgangFragtNeu()
    {
        fragen(u"rekordbox"_s);
        ereignisseAbarbeiten();
        ganze->laufend[u"rekordbox"_s] = 2;
        fragen(u"rekordbox"_s);
        ereignisseAbarbeiten();
        QCOMPARE(zahlen, QStringList({u"rekordbox 0"_s, u"rekordbox 2"_s}));
    }

    // A count that began before rekordbox came must not answer who asks after that.
    void keineAntwortAusEinerFrueherenZaehlung()
    {
        ganze->zoegert = true;
        fragen(u"rekordbox"_s);
        ereignisseAbarbeiten();
        ganze->laufend[u"rekordbox"_s] = 1;
        fragen(u"rekordbox"_s);
        ganze->antworten();
        ereignisseAbarbeiten();
        QCOMPARE(zahlen, QStringList({u"rekordbox 0"_s, u"rekordbox 1"_s}));
    }

    void werGehtHoertNichts()
    {
        auto besitzer = std::make_unique<QObject>();
        prozesse->anzahl(u"rekordbox"_s, besitzer.get(),
                         [this](qsizetype) { zahlen.append(u"gone"_s); });
        fragen(u"rekordbox"_s);
        besitzer.reset();
        ereignisseAbarbeiten();
        QCOMPARE(zahlen, {u"rekordbox 0"_s});
    }

    void buendelImmerNeu()
    {
        QCOMPARE(prozesse->buendel(), QStringList());
        ganze->buendelliste = {u"/Applications/rekordbox.app"_s};
        QCOMPARE(prozesse->buendel(), ganze->buendelliste);
    }

private:
    void fragen(const QString &name)
    {
        prozesse->anzahl(name, this, [this, name](qsizetype anzahl) {
            zahlen.append(name + u' ' + QString::number(anzahl));
        });
    }

    std::unique_ptr<FakeProzesse> ganze;
    std::unique_ptr<Merkprozesse> prozesse;
    QStringList zahlen;
};

KALVARO_TEST(TestMerkprozesse)
#include "tst_merkprozesse.moc"
