#include "platform/macos/leistenobjekt.h"
#include "platform/macos/leistenzeichen.h"
#include "testlauf.h"

#include <QIcon>
#include <QImage>
#include <QMenu>

using namespace kalvaro;
using namespace Qt::StringLiterals;

class TestLeistenobjekt final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void zeichen_data()
    {
        QTest::addColumn<QString>("name");
        for (const QString &name :
             {u"checkmark.icloud"_s, u"exclamationmark.icloud"_s, u"exclamationmark.icloud.fill"_s,
              u"icloud.slash"_s, u"arrow.clockwise.icloud"_s, u"icloud"_s}) {
            QTest::newRow(qPrintable(name)) << name;
        }
    }
    // The bar takes the largest that has room in it, and what counts is how much of each pixel is
    // covered.
    void zeichen()
    {
        QFETCH(const QString, name);
        const QIcon zeichen = leistenzeichen(name);
        QVERIFY(zeichen.isMask());
        QList<QSize> groessen = zeichen.availableSizes();
        QCOMPARE(groessen, (QList<QSize>{{18, 18}, {36, 36}}));
        for (const QSize &groesse : groessen) {
            const QImage bild = zeichen.pixmap(groesse).toImage();
            QCOMPARE(bild.size(), groesse);
            int gefaerbt = 0;
            for (int y = 0; y < bild.height(); ++y) {
                for (int x = 0; x < bild.width(); ++x) {
                    const QColor pixel = bild.pixelColor(x, y);
                    QVERIFY(pixel.alpha() == 0 || pixel.rgb() == qRgb(0, 0, 0));
                    gefaerbt += pixel.alpha() > 200 ? 1 : 0;
                }
            }
            QVERIFY(gefaerbt > bild.width()); // there is a drawing
            QVERIFY(gefaerbt < bild.width() * bild.height() / 2 + bild.width());
        }
    }

    void jedesZeichenIstEinAnderes()
    {
        const auto bild = [](const QString &name) {
            return leistenzeichen(name).pixmap(QSize(36, 36)).toImage();
        };
        QVERIFY(bild(u"icloud"_s) != bild(u"checkmark.icloud"_s));
        QVERIFY(bild(u"exclamationmark.icloud"_s) != bild(u"exclamationmark.icloud.fill"_s));
    }

    void einUnbekanntesGibtEsNicht() { QVERIFY(leistenzeichen(u"gibt es nicht"_s).isNull()); }

    void reichtWeiterWasEsBekommt()
    {
        QMenu menue;
        Leistenobjekt objekt;
        objekt.menueSetzen(&menue);
        objekt.hinweisSetzen(u"kalvaro – <b>„x“</b> & y"_s);
        objekt.symbolSetzen(u"icloud"_s);
        objekt.symbolSetzen(u"icloud.slash"_s);
        QCOMPARE(objekt.eintrag().contextMenu(), &menue);
        QCOMPARE(objekt.eintrag().toolTip(), u"kalvaro – <b>„x“</b> & y"_s);
        QVERIFY(objekt.eintrag().icon().isMask());
        QCOMPARE(objekt.eintrag().icon().pixmap(QSize(36, 36)).toImage(),
                 leistenzeichen(u"icloud.slash"_s).pixmap(QSize(36, 36)).toImage());
    }

    // Here the toolkit has no bar to put it in.
    void sagtWasDasWerkzeugSagt()
    {
        const Leistenobjekt objekt;
        QCOMPARE(objekt.erreichbar(), QSystemTrayIcon::isSystemTrayAvailable());
    }
};

KALVARO_FENSTERTEST(TestLeistenobjekt)
#include "tst_leistenobjekt.moc"
