// What the simulation itself stands on: histories, their lines, and how they shrink.

#include "schrumpfen.h"
#include "testlauf.h"
#include "verlauf.h"
#include "welt.h"

#include <QSet>

using namespace kalvaro;
using namespace Qt::StringLiterals;

class TestSimulationWerkzeug final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Welt::vorbereiten(); }

    void verlaufIstImmerDerselbe()
    {
        QCOMPARE(verlauf(7, 50), verlauf(7, 50));
        QCOMPARE_NE(verlauf(7, 50), verlauf(8, 50));
        QCOMPARE(verlauf(7, 50).size(), 51U);
        QVERIFY(verlauf(7, 50).front() < beginne);
    }

    void jedesEreignisHatSeineZeile()
    {
        Verlauf alle;
        QSet<QString> zeilen;
        for (size_t i = 0; i < alleEreignisse().size(); ++i) {
            alle.push_back(static_cast<int>(i));
            zeilen.insert(alleEreignisse()[i].zeile);
        }

        QCOMPARE(ausZeilen(alsZeilen(alle).join(u'\n')), alle);
        QCOMPARE(zeilen.size(), alle.size());
    }

    void zeilenMitBemerkungen()
    {
        QCOMPARE(alsZeilen(*ausZeilen(u"\n  3 s vergehen   # and nothing happens\n# end\n"_s)),
                 QStringList{u"3 s vergehen"_s});
        QVERIFY(!ausZeilen(u"3 Jahre vergehen"_s));
    }

    void gleicherVerlaufGleicheMitschrift()
    {
        QStringList eine;
        QStringList andere;
        Welt::durchlaufen(verlauf(3, 200), &eine);
        Welt::durchlaufen(verlauf(3, 200), &andere);

        QCOMPARE(eine.size(), 202);
        QCOMPARE(andere, eine);
    }

    // Whatever lies around and between what it takes goes.
    void schrumpftAufDasNoetige()
    {
        Verlauf lang(200, 0);
        lang[20] = 1;
        lang[21] = 2;
        lang[150] = 3;
        const auto scheitert = [](const Verlauf &v) {
            const auto eins = std::find(v.begin(), v.end(), 1);
            return std::find(eins, v.end(), 3) != v.end();
        };

        QCOMPARE(geschrumpft(lang, scheitert), (Verlauf{1, 3}));
    }

    // One that can go only after a later one has gone.
    void schrumpftBisNichtsMehrGeht()
    {
        const auto scheitert = [](const Verlauf &v) {
            const auto wieviele = [&v](int was) { return std::count(v.begin(), v.end(), was); };
            return wieviele(9) == 1 && wieviele(1) >= wieviele(2);
        };

        QCOMPARE(geschrumpft(Verlauf{1, 9, 2}, scheitert), Verlauf{9});
    }
};

KALVARO_FENSTERTEST(TestSimulationWerkzeug)
#include "tst_simulation_werkzeug.moc"
