#include "ansichten.h"
#include "bildvergleich.h"
#include "testlauf.h"

#include <QPainter>
#include <QPainterPath>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

// A small scene with what gets lost most easily.
struct Vorlage
{
    double versatz = 0;   // of the shapes, to the right
    int spalten = 0;      // of everything, to the right
    bool umrisse = false; // the text is drawn from its outlines
    bool haarlinie = true;
    bool dreieck = true;
    bool ring = true;
    int abstand = 20; // between the hairline and the text
    QColor flaeche{0xf2f2f4};
    QColor strich{0xe6e6ea};
    QColor tinte{Qt::black};

    [[nodiscard]] QImage gemalt() const
    {
        QImage bild(160, 90, QImage::Format_RGB32);
        bild.fill(flaeche);
        QPainter maler(&bild);
        maler.setRenderHint(QPainter::Antialiasing);
        maler.translate(spalten, 0);
        const QPointF ort(12, 30 + abstand);
        if (umrisse) {
            QPainterPath schrift;
            schrift.addText(ort, maler.font(), u"Playlisten"_s);
            maler.fillPath(schrift, tinte);
        } else {
            maler.setPen(tinte);
            maler.drawText(ort, u"Playlisten"_s);
        }
        maler.translate(versatz, 0);
        if (haarlinie) {
            maler.fillRect(QRectF(10, 10, 120, 1), strich);
        }
        if (dreieck) {
            QPainterPath pfad;
            pfad.moveTo(140, 14);
            pfad.lineTo(147, 14);
            pfad.lineTo(143.5, 19.5);
            pfad.closeSubpath();
            maler.fillPath(pfad, QColor(0xa0a0a4));
        }
        if (ring) {
            maler.setPen(QPen(QColor(10, 102, 216, 153), 2));
            maler.drawRoundedRect(QRectF(100, 40, 30, 20), 6, 6);
        }
        return bild;
    }
};

bool gleich(const QImage &a, const QImage &b)
{
    return abstand(a, b).gleich() && abstand(b, a).gleich();
}

} // namespace

// What counts as the same picture.
class TestBildvergleich final : public QObject
{
    Q_OBJECT

public:
    static void vorDerAnwendung() { umgebungFestlegen(); }

private Q_SLOTS:
    void selbesBild();
    void antialiasingDarfSichUnterscheiden_data();
    void antialiasingDarfSichUnterscheiden();
    void rundungJedesPunkts();
    void einzelnePunkte();
    void gefunden_data();
    void gefunden();
    void gefundenAufEinmalFarbe();
    void andereGroesse_data();
    void andereGroesse();
    void deckungUndMassstabZaehlenNicht();
    void unterschiedAlsBild();

private:
    const Vorlage vorlage{};
    const QImage soll = vorlage.gemalt();
};

void TestBildvergleich::selbesBild()
{
    QVERIFY(gleich(soll, soll));
    QCOMPARE(abstand(soll, soll).punkte, 0);
}

void TestBildvergleich::antialiasingDarfSichUnterscheiden_data()
{
    QTest::addColumn<double>("versatz");
    QTest::addColumn<bool>("umrisse");
    QTest::newRow("shapes a tenth of a pixel to the right") << 0.1 << false;
    QTest::newRow("shapes a tenth of a pixel to the left") << -0.1 << false;
    QTest::newRow("text from its outlines") << 0.0 << true;
}

void TestBildvergleich::antialiasingDarfSichUnterscheiden()
{
    QFETCH(double, versatz);
    QFETCH(bool, umrisse);
    Vorlage anders = vorlage;
    anders.umrisse = umrisse;
    anders.versatz = versatz;
    QVERIFY(anders.gemalt() != soll);
    QVERIFY(gleich(soll, anders.gemalt()));
}

void TestBildvergleich::rundungJedesPunkts()
{
    QImage anders = soll;
    for (int y = 0; y < anders.height(); ++y) {
        for (int x = 0; x < anders.width(); ++x) {
            const QColor farbe = anders.pixelColor(x, y);
            const int um = (x + y) % 2 == 0 ? 1 : -1;
            const auto neben = [um](int wert) { return qBound(0, wert + um, 255); };
            anders.setPixelColor(
                x, y, QColor(neben(farbe.red()), neben(farbe.green()), neben(farbe.blue())));
        }
    }
    QVERIFY(gleich(soll, anders));
}

void TestBildvergleich::einzelnePunkte()
{
    QImage anders = soll;
    anders.setPixelColor(3, 3, Qt::black);
    anders.setPixelColor(90, 80, Qt::black);
    QVERIFY(gleich(soll, anders));
    anders.setPixelColor(92, 80, Qt::black);
    QVERIFY(!gleich(soll, anders));
}

void TestBildvergleich::gefunden_data()
{
    QTest::addColumn<QImage>("ist");
    const auto zeile = [this](const char *name, auto aendern) {
        Vorlage anders = vorlage;
        aendern(anders);
        QTest::newRow(name) << anders.gemalt();
    };
    zeile("lost hairline", [](Vorlage &v) { v.haarlinie = false; });
    zeile("lost triangle", [](Vorlage &v) { v.dreieck = false; });
    zeile("lost focus ring", [](Vorlage &v) { v.ring = false; });
    zeile("spacing of a pixel less", [](Vorlage &v) { v.abstand -= 1; });
    zeile("spacing of a pixel more", [](Vorlage &v) { v.abstand += 1; });
    zeile("everything a pixel to the side", [](Vorlage &v) { v.spalten = 1; });
    zeile("shapes half a pixel to the side", [](Vorlage &v) { v.versatz = 0.5; });
    zeile("ground by two grey levels", [](Vorlage &v) { v.flaeche = QColor(0xf2f2f6); });
    zeile("text in a weaker black", [](Vorlage &v) { v.tinte = QColor(0x202020); });
    zeile("hairline in another grey", [](Vorlage &v) { v.strich = QColor(0xe0e0e4); });
}

void TestBildvergleich::gefunden()
{
    QFETCH(QImage, ist);
    QVERIFY(!abstand(soll, ist).gleich());
    QVERIFY(!abstand(ist, soll).gleich());
}

// Each channel counts for itself: a red that becomes a green of the same grey is found.
void TestBildvergleich::gefundenAufEinmalFarbe()
{
    QImage rot(20, 20, QImage::Format_RGB32);
    rot.fill(QColor(200, 50, 50));
    for (const QColor &farbe :
         {QColor(50, 200, 50), QColor(203, 50, 50), QColor(200, 53, 50), QColor(200, 50, 53)}) {
        QImage anders = rot;
        anders.fill(farbe);
        QVERIFY(!gleich(rot, anders));
    }
}

void TestBildvergleich::andereGroesse_data()
{
    QTest::addColumn<QSize>("groesse");
    QTest::newRow("a row more") << QSize(20, 21);
    QTest::newRow("a column less") << QSize(19, 20);
    QTest::newRow("nothing") << QSize(0, 0);
}

void TestBildvergleich::andereGroesse()
{
    QFETCH(QSize, groesse);
    QImage eines(1, 1, QImage::Format_RGB32);
    QImage anderes(groesse, QImage::Format_RGB32);
    eines.fill(Qt::white);
    anderes.fill(Qt::white);
    QVERIFY(!gleich(eines, anderes));
    QVERIFY(!gleich(eines.scaled(20, 20), anderes));
}

void TestBildvergleich::deckungUndMassstabZaehlenNicht()
{
    QImage anders = soll.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    anders.setDevicePixelRatio(2);
    QVERIFY(gleich(soll, anders));
}

void TestBildvergleich::unterschiedAlsBild()
{
    Vorlage anders = vorlage;
    anders.haarlinie = false;
    const QImage ist = anders.gemalt();
    const Bildabstand a = abstand(soll, ist);
    QCOMPARE(a.karte.size(), soll.size());
    QCOMPARE(a.karte.pixelColor(50, 10), QColor(Qt::red));
    QVERIFY(a.karte.pixelColor(50, 12) != QColor(Qt::red));
    QCOMPARE(a.punkte, 120);

    const QImage tafel = gegenueberstellung(soll, ist, a);
    QCOMPARE(tafel.size(), QSize(3 * 160 + 24, 90));
    QCOMPARE(tafel.copy(0, 0, 160, 90), soll);
    QCOMPARE(tafel.copy(172, 0, 160, 90), ist);
    QCOMPARE(tafel.copy(344, 0, 160, 90), a.karte);
}

KALVARO_FENSTERTEST(TestBildvergleich)
#include "tst_bildvergleich.moc"
