// What the colours of a desktop promise.

#include "doubles/ereignisse.h"
#include "platform/farbschema.h"
#include "prueflinge.h"
#include "testlauf.h"

using namespace kalvaro;
using namespace Qt::StringLiterals;

class TestVertragFarbschema final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data()
    {
        Vertrag<Farbpruefling>::zeilen({u"double"_s, u"linux"_s, u"macos"_s});
    }
    void init()
    {
        KALVARO_BRAUCHT(Vertrag<Farbpruefling>::braucht());
        gesehen.clear();
        p = Vertrag<Farbpruefling>::neu();
    }
    void cleanup() { p.reset(); }

    void sagtWasGilt()
    {
        QCOMPARE(p->schema().wunsch(), Farbwunsch());
        p->wechseln(Helligkeit::Hell);
        QTRY_COMPARE(p->schema().wunsch(), (Farbwunsch{.ausdruecklich = Helligkeit::Hell}));
        p->wechseln(Helligkeit::Dunkel);
        QTRY_COMPARE(p->schema().wunsch(), (Farbwunsch{.ausdruecklich = Helligkeit::Dunkel}));
    }

    // The new one holds when the call comes.
    void ruftBeiJedemWechselEinmal()
    {
        p->schema().beiWechsel([this] { gesehen.append(p->schema().wunsch().ausdruecklich); });
        const QList<Helligkeit> folge{Helligkeit::Dunkel, Helligkeit::Dunkel, Helligkeit::Hell,
                                      Helligkeit::Hell, Helligkeit::Offen};
        for (const Helligkeit eine : folge) {
            p->wechseln(eine);
            QTRY_COMPARE(p->schema().wunsch().ausdruecklich, eine);
            ereignisseAbarbeiten();
        }
        QTRY_COMPARE(gesehen.size(), 3);
        QCOMPARE(gesehen,
                 (QList<Helligkeit>{Helligkeit::Dunkel, Helligkeit::Hell, Helligkeit::Offen}));
    }

    void niemandMussHoeren()
    {
        p->schema().beiWechsel([this] { gesehen.append(Helligkeit::Offen); });
        p->schema().beiWechsel({});
        p->wechseln(Helligkeit::Dunkel);
        QTRY_COMPARE(p->schema().wunsch().ausdruecklich, Helligkeit::Dunkel);
        ereignisseAbarbeiten();
        QVERIFY(gesehen.isEmpty());
    }

private:
    QList<Helligkeit> gesehen;
    std::unique_ptr<Farbpruefling> p;
};

KALVARO_FENSTERTEST(TestVertragFarbschema)
#include "tst_vertrag_farbschema.moc"
