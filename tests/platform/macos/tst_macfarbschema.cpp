#include "doubles/ereignisse.h"
#include "doubles/systemfarben.h"
#include "platform/macos/macfarbschema.h"
#include "testlauf.h"

using namespace kalvaro;
using namespace Qt::StringLiterals;

class TestMacfarbschema final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The toolkit before 6.5 knows no such thing.
    void werNichtsSagtWillNichts()
    {
        const QObject stumm;
        MacFarbschema schema(stumm);
        schema.beiWechsel([] {});
        QCOMPARE(schema.wunsch(), Farbwunsch());
    }

    void unbekanntesIstOffen()
    {
        Systemfarben farben;
        farben.setzen(static_cast<Systemfarben::Schema>(7));
        const MacFarbschema schema(farben);
        QCOMPARE(schema.wunsch(), Farbwunsch());
    }

    // The palette changes around the signal: whoever draws anew at once draws the old one.
    void ruftErstDanach()
    {
        Systemfarben farben;
        MacFarbschema schema(farben);
        int gerufen = 0;
        schema.beiWechsel([&gerufen] { ++gerufen; });
        farben.setzen(Systemfarben::Schema::Dark);
        QCOMPARE(gerufen, 0);
        ereignisseAbarbeiten();
        QCOMPARE(gerufen, 1);
    }

    void hinUndZurueckIstKeinWechsel()
    {
        Systemfarben farben;
        MacFarbschema schema(farben);
        int gerufen = 0;
        schema.beiWechsel([&gerufen] { ++gerufen; });
        farben.setzen(Systemfarben::Schema::Dark);
        farben.setzen(Systemfarben::Schema::Unknown);
        ereignisseAbarbeiten();
        QCOMPARE(gerufen, 0);
    }

    // What it is asked by itself, of whichever Qt this is.
    void fragtDasWerkzeug()
    {
        const MacFarbschema schema;
        QVERIFY(schema.wunsch().thema == Helligkeit::Offen);
    }
};

KALVARO_FENSTERTEST(TestMacfarbschema)
#include "tst_macfarbschema.moc"
