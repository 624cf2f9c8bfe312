#include "testlauf.h"
#include "ui/schrift.h"
#include "ui/tabellenzahl.h"

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

// Columns that hold ink, as a text of "#" and ".".
QString spalten(Tabellenzahl &zahl)
{
    const QImage bild = zahl.grab().toImage();
    const QRgb grund = bild.pixel(0, 0);
    QString ergebnis;
    for (int x = 0; x < bild.width(); ++x) {
        bool tinte = false;
        for (int y = 0; y < bild.height(); ++y) {
            tinte = tinte || bild.pixel(x, y) != grund;
        }
        ergebnis += tinte ? u'#' : u'.';
    }
    return ergebnis;
}

} // namespace

class TestTabellenzahl final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ziffernSindGleichBreit();
    void schrumpftStattZuKuerzen();
    void nachbarnSchrumpfenMit();
    void kuerztErstAmEnde();
};

void TestTabellenzahl::ziffernSindGleichBreit()
{
    Tabellenzahl schmal(u"11.111"_s);
    Tabellenzahl breit(u"88.888"_s);
    for (Tabellenzahl *zahl : {&schmal, &breit}) {
        zahl->setFont(systemschrift(22, QFont::DemiBold));
    }
    QCOMPARE(schmal.sizeHint(), breit.sizeHint());
}

void TestTabellenzahl::schrumpftStattZuKuerzen()
{
    Tabellenzahl zahl(u"1.234.567"_s);
    zahl.setFont(systemschrift(22, QFont::DemiBold));
    zahl.resize(zahl.sizeHint());
    QCOMPARE(zahl.passend(), 1.0);
    zahl.resize(zahl.width() * 2 / 3, zahl.height());
    QVERIFY(zahl.passend() < 0.7);
    QVERIFY(zahl.passend() > 0.5);
    const QString tinte = spalten(zahl);
    QVERIFY(tinte.count(u'#') > tinte.size() / 2);
    QVERIFY2(tinte.endsWith(u'.'), "the last digit is cut");
}

void TestTabellenzahl::nachbarnSchrumpfenMit()
{
    Tabellenzahl kurz(u"321"_s);
    Tabellenzahl lang(u"12.345.678"_s);
    const QList<Tabellenzahl *> reihe{&kurz, &lang};
    for (Tabellenzahl *zahl : reihe) {
        zahl->setFont(systemschrift(22, QFont::DemiBold));
        zahl->resize(90, 30);
    }
    const auto allein = spalten(kurz).lastIndexOf(u'#');
    kurz.setReihe(&reihe);
    const auto daneben = spalten(kurz).lastIndexOf(u'#');
    QVERIFY(daneben < allein);
    QVERIFY(daneben > 0);
}

// Too long even at half its size: cut between two digits, not through one.
void TestTabellenzahl::kuerztErstAmEnde()
{
    Tabellenzahl zahl(u"8.888.888.888.888.888"_s);
    zahl.setFont(systemschrift(22, QFont::DemiBold));
    zahl.resize(90, 30);
    QCOMPARE(zahl.passend(), 0.5);
    const QString ganz = spalten(zahl);
    QVERIFY2(ganz.endsWith(u'.'), "the last digit is cut");
    QVERIFY(!zahl.toolTip().isEmpty());
}

KALVARO_FENSTERTEST(TestTabellenzahl)
#include "tst_tabellenzahl.moc"
