#include "doubles/vorlesehilfe.h"
#include "testlauf.h"
#include "ui/ansage.h"

#include <QApplication>
#include <QWidget>

#include <optional>

using namespace kalvaro;
using namespace Qt::StringLiterals;

class TestAnsage final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        fenster = std::make_unique<QWidget>();
        teil = new QWidget(fenster.get());
        hilfe.emplace();
    }
    void cleanup()
    {
        hilfe.reset();
        fenster.reset();
    }

    void sagtEsEinmal();
    void dieselbenWorteSindNeu();
    void nichtsAusVerborgenem_data();
    void nichtsAusVerborgenem();
    void nichtsOhneWorte();
    void kostetNichtsOhneZuhoerer();
    void dieLetztenBleibenLesbar();

private:
    std::unique_ptr<QWidget> fenster;
    QWidget *teil = nullptr;
    std::optional<Vorlesehilfe> hilfe;
};

void TestAnsage::sagtEsEinmal()
{
    fenster->show();
    ansagen(*teil, u"Nicht gespeichert: 5 & <b>6</b>"_s);
    QCOMPARE(hilfe->ansagen(), QStringList{u"Nicht gespeichert: 5 & <b>6</b>"_s});
}

void TestAnsage::dieselbenWorteSindNeu()
{
    fenster->show();
    ansagen(*teil, u"fertig"_s);
    ansagen(*teil, u"fertig"_s);
    QCOMPARE(hilfe->ansagen(), (QStringList{u"fertig"_s, u"fertig"_s}));
}

void TestAnsage::nichtsAusVerborgenem_data()
{
    QTest::addColumn<int>("fall");
    QTest::newRow("never shown") << 0;
    QTest::newRow("hidden again") << 1;
    QTest::newRow("a hidden part") << 2;
    QTest::newRow("minimised") << 3;
}

void TestAnsage::nichtsAusVerborgenem()
{
    QFETCH(int, fall);
    switch (fall) {
    case 1:
        fenster->show();
        fenster->hide();
        break;
    case 2:
        fenster->show();
        teil->hide();
        break;
    case 3:
        fenster->showMinimized();
        QVERIFY(fenster->isVisible());
        break;
    default:
        break;
    }
    ansagen(*teil, u"fertig"_s);
    QCOMPARE(hilfe->ansagen(), QStringList());
}

void TestAnsage::nichtsOhneWorte()
{
    fenster->show();
    ansagen(*teil, {});
    QCOMPARE(hilfe->ansagen(), QStringList());
}

void TestAnsage::kostetNichtsOhneZuhoerer()
{
    fenster->show();
    hilfe->weghoeren();
    ansagen(*teil, u"fertig"_s);
    QCOMPARE(fenster->children(), QObjectList{teil});
}

// Screen readers ask for the words later; but nothing piles up.
void TestAnsage::dieLetztenBleibenLesbar()
{
    fenster->show();
    ansagen(*teil, u"eins"_s);
    const qsizetype eine = fenster->children().size();
    for (int i = 0; i < 100; ++i) {
        ansagen(*teil, QString::number(i));
    }
    QVERIFY(fenster->children().size() <= eine + 3);
    QCOMPARE(hilfe->ansagen().size(), 101);
}

KALVARO_FENSTERTEST(TestAnsage)
#include "tst_ansage.moc"
