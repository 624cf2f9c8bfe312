// What notifications promise.

#include "doubles/datenordner.h"
#include "doubles/ereignisse.h"
#include "platform/mitteilungen.h"
#include "prueflinge.h"
#include "testlauf.h"

using namespace kalvaro;
using namespace Qt::StringLiterals;

class TestVertragMitteilungen final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data()
    {
        Vertrag<Mitteilungspruefling>::zeilen({u"double"_s, u"linux"_s, u"macos"_s});
    }
    void init()
    {
        KALVARO_BRAUCHT(Vertrag<Mitteilungspruefling>::braucht());
        daten.leeren();
        klicks.clear();
        p = Vertrag<Mitteilungspruefling>::neu();
        p->mitteilungen().beiKlick([this](const QString &ziel) { klicks.append(ziel); });
    }
    void cleanup() { p.reset(); }

    void textIstText()
    {
        const QString titel = u"<b>„Titel“ &amp; %1 🎧"_s;
        const QString inhalt = u"<img src=x> – %2 & \"y\"\nzwei"_s;
        p->mitteilungen().mitteilen(titel, inhalt, {});
        QTRY_COMPARE(p->gezeigt().size(), 1);
        QCOMPARE(p->gezeigt().first().titel, titel);
        QCOMPARE(p->gezeigt().first().inhalt, inhalt);
    }

    void jedeIstEineFuerSich()
    {
        for (const QString &inhalt : {u"eins"_s, u"eins"_s, u"zwei"_s}) {
            p->mitteilungen().mitteilen(u"gleich"_s, inhalt, {});
        }
        QTRY_COMPARE(p->gezeigt().size(), 3);
        QCOMPARE(p->gezeigt().at(0).inhalt, u"eins"_s);
        QCOMPARE(p->gezeigt().at(1).inhalt, u"eins"_s);
        QCOMPARE(p->gezeigt().at(2).inhalt, u"zwei"_s);
    }

    void einKlickBringtSeinZiel()
    {
        p->mitteilungen().mitteilen(u"a"_s, u"1"_s, u"https://eins.example/?a=b&c"_s);
        p->mitteilungen().mitteilen(u"a"_s, u"2"_s, {});
        p->mitteilungen().mitteilen(u"a"_s, u"3"_s, u"https://drei.example/"_s);
        QTRY_COMPARE(p->gezeigt().size(), 3);
        ereignisseAbarbeiten();
        p->klicken(2);
        QTRY_COMPARE(klicks, QStringList{u"https://drei.example/"_s});
        p->klicken(1); // there is nothing to click
        p->klicken(0);
        QTRY_COMPARE(klicks.value(1), u"https://eins.example/?a=b&c"_s);
        ereignisseAbarbeiten();
        QCOMPARE(klicks.size(), 2);
    }

    void derLetzteHoert()
    {
        QStringList andere;
        p->mitteilungen().beiKlick([&andere](const QString &ziel) { andere.append(ziel); });
        p->mitteilungen().mitteilen(u"a"_s, u"1"_s, u"https://eins.example/"_s);
        QTRY_COMPARE(p->gezeigt().size(), 1);
        ereignisseAbarbeiten();
        p->klicken(0);
        QTRY_COMPARE(andere, QStringList{u"https://eins.example/"_s});
        QVERIFY(klicks.isEmpty());
    }

    void wasNichtAnkamStehtImProtokoll()
    {
        if (!p->verweigern()) {
            return; // it has nobody to post to
        }
        p->mitteilungen().mitteilen(u"Ti%1tel"_s, u"erste\nZeile %3"_s, u"https://x.example/"_s);
        QVERIFY(daten.protokollzeilen().isEmpty()); // nobody waited
        QTRY_COMPARE(daten.protokollzeilen().size(), 1);
        const QString zeile = daten.protokollzeilen().first();
        QVERIFY2(zeile.startsWith(u"Mitteilung nicht zugestellt: Ti%1tel – erste Zeile %3 ("_s) &&
                     zeile.endsWith(u')'),
                 qPrintable(zeile));
        p->mitteilungen().mitteilen(QString(100'000, u'x'), QString(1'000'000, u'y'), {});
        QTRY_COMPARE(daten.protokollzeilen().size(), 2);
        QVERIFY(daten.protokollzeilen().at(1).size() < 10'000);
    }

private:
    Datenordner daten;
    QStringList klicks;
    std::unique_ptr<Mitteilungspruefling> p;
};

KALVARO_TEST(TestVertragMitteilungen)
#include "tst_vertrag_mitteilungen.moc"
