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
    void einmalJeDurchgang()
    {
        FakeProzesse ganze;
        const Merkprozesse prozesse(ganze);
        ganze.laufend[u"rekordbox"_s] = 1;

        QCOMPARE(prozesse.anzahl(u"rekordbox"_s), 1);
        QCOMPARE(prozesse.anzahl(u"rekordboxAgent"_s), 0);
        ganze.laufend[u"rekordbox"_s] = 2;
        ganze.laufend[u"rekordboxAgent"_s] = 1;
        QCOMPARE(prozesse.anzahl(u"rekordbox"_s), 1);
        QCOMPARE(prozesse.anzahl(u"rekordboxAgent"_s), 0);
    }

    void naechsterDurchgangFragtNeu()
    {
        FakeProzesse ganze;
        const Merkprozesse prozesse(ganze);
        QCOMPARE(prozesse.anzahl(u"rekordbox"_s), 0);
        ganze.laufend[u"rekordbox"_s] = 2;
        ereignisseAbarbeiten();
        QCOMPARE(prozesse.anzahl(u"rekordbox"_s), 2);
        ganze.laufend[u"rekordbox"_s] = 0;
        ereignisseAbarbeiten();
        QCOMPARE(prozesse.anzahl(u"rekordbox"_s), 0);
    }

    void buendelImmerNeu()
    {
        FakeProzesse ganze;
        const Merkprozesse prozesse(ganze);
        QCOMPARE(prozesse.buendel(), QStringList());
        ganze.buendelliste = {u"/Applications/rekordbox.app"_s};
        QCOMPARE(prozesse.buendel(), ganze.buendelliste);
    }
};

KALVARO_TEST(TestMerkprozesse)
#include "tst_merkprozesse.moc"
