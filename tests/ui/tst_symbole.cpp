#include "testlauf.h"
#include "ui/erscheinung.h"
#include "ui/symbole.h"
#include "ui/zeichnung.h"

#include <QApplication>
#include <QFile>
#include <QImageReader>
#include <QPainter>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

const QStringList namen{u"arrow.clockwise.icloud"_s,
                        u"checkmark.circle.fill"_s,
                        u"checkmark.icloud"_s,
                        u"exclamationmark.circle.fill"_s,
                        u"exclamationmark.icloud"_s,
                        u"exclamationmark.icloud.fill"_s,
                        u"exclamationmark.octagon.fill"_s,
                        u"icloud"_s,
                        u"icloud.slash"_s,
                        u"play.circle.fill"_s};

// How many pixels are neither empty nor full: soft edges.
int weiche(const QImage &bild)
{
    int anzahl = 0;
    for (int x = 0; x < bild.width(); ++x) {
        for (int y = 0; y < bild.height(); ++y) {
            const int alpha = bild.pixelColor(x, y).alpha();
            anzahl += alpha > 0 && alpha < 255 ? 1 : 0;
        }
    }
    return anzahl;
}

int tinte(const QImage &bild)
{
    int anzahl = 0;
    for (int x = 0; x < bild.width(); ++x) {
        for (int y = 0; y < bild.height(); ++y) {
            anzahl += bild.pixelColor(x, y).alpha() > 127 ? 1 : 0;
        }
    }
    return anzahl;
}

// The largest difference of any channel of any pixel.
int groessterAbstand(const QImage &eines, const QImage &anderes)
{
    int groesster = 0;
    for (int y = 0; y < eines.height(); ++y) {
        for (int x = 0; x < eines.width(); ++x) {
            const QRgb a = eines.pixel(x, y);
            const QRgb b = anderes.pixel(x, y);
            for (const int abstand : {qRed(a) - qRed(b), qGreen(a) - qGreen(b), qBlue(a) - qBlue(b),
                                      qAlpha(a) - qAlpha(b)}) {
                groesster = std::max(groesster, std::abs(abstand));
            }
        }
    }
    return groesster;
}

} // namespace

class TestSymbole final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QApplication::setPalette(eigenePalette(false)); }

    void zeichnung_data();
    void zeichnung();
    void wieQtSieZeichnet_data();
    void wieQtSieZeichnet();
    void alleSindVerschieden();
    void unbekannterName();
    void programmsymbol();
    void zeichenFolgtDerErscheinung();
    void zeichenOhneName();
};

void TestSymbole::zeichnung_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("groesse");
    QTest::addColumn<double>("faktor");
    for (const QString &name : namen) {
        for (const int groesse : {16, 22, 32, 44, 64}) {
            for (const double faktor : {1.0, 2.0}) {
                QTest::addRow("%s %d @%g", qPrintable(name), groesse, faktor)
                    << name << groesse << faktor;
            }
        }
    }
}

void TestSymbole::zeichnung()
{
    QFETCH(QString, name);
    QFETCH(int, groesse);
    QFETCH(double, faktor);
    const QPixmap pixmap = symbolbild(name, groesse, QColor(10, 120, 200), faktor);
    const QImage bild = pixmap.toImage();
    QCOMPARE(pixmap.devicePixelRatio(), faktor);
    QCOMPARE(bild.size(), QSize(1, 1) * qRound(groesse * faktor));

    // Every pixel has the tint, whatever its coverage.
    for (int x = 0; x < bild.width(); ++x) {
        for (int y = 0; y < bild.height(); ++y) {
            const QColor farbe = bild.pixelColor(x, y);
            if (farbe.alpha() > 200) {
                QVERIFY(qAbs(farbe.red() - 10) < 3 && qAbs(farbe.blue() - 200) < 3);
            }
        }
    }
    // A drawing, not a blot, and sharp: soft pixels lie along its edges only. Enlarged, the drawing
    // of half the size would have more of them.
    const int flaeche = bild.width() * bild.height();
    QVERIFY(tinte(bild) > flaeche / 20);
    QVERIFY(tinte(bild) < flaeche * 9 / 10);
    const QImage gestreckt =
        symbolbild(name, groesse / 2, Qt::black, faktor)
            .toImage()
            .scaled(bild.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    QVERIFY(weiche(bild) < weiche(gestreckt) * 8 / 10);
}

void TestSymbole::wieQtSieZeichnet_data()
{
    QTest::addColumn<QString>("name");
    for (const QString &name : namen) {
        QTest::newRow(qPrintable(name)) << name;
    }
    QTest::newRow("the program's icon") << u"de.kalvaro.kalvaro"_s;
}

// Our reader knows few parts of SVG; a drawing that uses another one would lack it.
void TestSymbole::wieQtSieZeichnet()
{
    QFETCH(const QString, name);
    // Qt takes the corners of a rectangle in whole percents of its sides.
    const int erlaubt = name == u"de.kalvaro.kalvaro" ? 32 : 0;
    for (const int groesse : {16, 22, 44, 128}) {
        QImageReader leser(u":/kalvaro/symbole/%1.svg"_s.arg(name), "svg");
        leser.setScaledSize({groesse, groesse});
        const QImage vorlage = leser.read().convertToFormat(QImage::Format_ARGB32_Premultiplied);
        QVERIFY2(!vorlage.isNull(), qPrintable(leser.errorString()));
        QImage unseres(vorlage.size(), vorlage.format());
        unseres.fill(Qt::transparent);
        QFile datei(leser.fileName());
        QVERIFY(datei.open(QIODevice::ReadOnly));
        QPainter maler(&unseres);
        Zeichnung(datei.readAll()).malen(maler, unseres.rect());
        maler.end();
        const int abstand = groessterAbstand(unseres, vorlage);
        QVERIFY2(abstand <= erlaubt, qPrintable(QString::number(abstand)));
    }
}

void TestSymbole::alleSindVerschieden()
{
    QList<QImage> bilder;
    for (const QString &name : namen) {
        const QImage bild = symbolbild(name, 22, Qt::black, 1).toImage();
        QVERIFY2(!bilder.contains(bild), qPrintable(name));
        bilder.append(bild);
    }
}

void TestSymbole::unbekannterName()
{
    QVERIFY(symbolbild(u"gibt.es.nicht"_s, 22, Qt::black, 1).isNull());
    QVERIFY(symbolbild({}, 22, Qt::black, 1).isNull());
}

void TestSymbole::programmsymbol()
{
    const QIcon symbol = kalvaro::programmsymbol();
    for (const int groesse : {16, 32, 48, 64, 128, 256}) {
        const QPixmap bild = symbol.pixmap(groesse, groesse);
        QCOMPARE(bild.size(), QSize(groesse, groesse));
        QVERIFY(tinte(bild.toImage()) > groesse * groesse / 2);
    }
}

void TestSymbole::zeichenFolgtDerErscheinung()
{
    Zeichen zeichen(44);
    zeichen.setzen(u"checkmark.circle.fill"_s, Farbe::systemGruen, u"Erledigt"_s);
    QCOMPARE(zeichen.size(), QSize(44, 44));
    QCOMPARE(zeichen.name(), u"checkmark.circle.fill"_s);
    QCOMPARE(zeichen.accessibleName(), u"Erledigt"_s);
    QCOMPARE(zeichen.toenung(), QColor(52, 199, 89));
    QApplication::setPalette(eigenePalette(true));
    QTRY_COMPARE(zeichen.toenung(), QColor(48, 209, 88));
    QCOMPARE(zeichen.grab().toImage().pixelColor(10, 22), QColor(48, 209, 88));
}

void TestSymbole::zeichenOhneName()
{
    Zeichen zeichen(44);
    zeichen.setzen({}, Farbe::schrift, {});
    const QImage bild = zeichen.grab().toImage();
    QImage leer = bild;
    leer.fill(bild.pixelColor(0, 0));
    QCOMPARE(bild, leer);
}

KALVARO_FENSTERTEST(TestSymbole)
#include "tst_symbole.moc"
