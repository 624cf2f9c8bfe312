#include "app/farbfolge.h"
#include "doubles/fakefarbschema.h"
#include "testlauf.h"
#include "ui/farbe.h"

#include <QApplication>

using namespace kalvaro;
using namespace Qt::StringLiterals;

class TestFarbfolge final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QApplication::setStyle(u"fusion"_s);
        QApplication::setPalette(QPalette());
    }

    void folgtDemDesktop();
    void bilderFolgenNichts();
};

void TestFarbfolge::folgtDemDesktop()
{
    FakeFarbschema schema;
    schema.wechseln({.ausdruecklich = Helligkeit::Dunkel});
    {
        const Farbfolge folge(*qApp, &schema);
        QVERIFY(Farbe::istDunkel(QApplication::palette()));
        schema.wechseln({.ausdruecklich = Helligkeit::Hell});
        QVERIFY(!Farbe::istDunkel(QApplication::palette()));
        schema.wechseln({.thema = Helligkeit::Dunkel});
        QVERIFY(Farbe::istDunkel(QApplication::palette()));
    }
    schema.wechseln({.ausdruecklich = Helligkeit::Hell}); // nobody follows any more
    QVERIFY(Farbe::istDunkel(QApplication::palette()));
}

void TestFarbfolge::bilderFolgenNichts()
{
    const Farbfolge folge(*qApp, nullptr);
    QCOMPARE(QApplication::palette().color(QPalette::Window),
             eigenePalette(false).color(QPalette::Window));
}

KALVARO_FENSTERTEST(TestFarbfolge)
#include "tst_farbfolge.moc"
