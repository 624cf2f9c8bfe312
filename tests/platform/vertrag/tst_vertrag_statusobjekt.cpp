// What the item in the menu bar or tray promises.

#include "doubles/ereignisse.h"
#include "platform/statusobjekt.h"
#include "prueflinge.h"
#include "testlauf.h"

#include <QMenu>
#include <QSignalSpy>

using namespace kalvaro;
using namespace Qt::StringLiterals;

class TestVertragStatusobjekt final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data()
    {
        Vertrag<Statuspruefling>::zeilen({u"double"_s, u"linux"_s, u"macos"_s});
    }
    void init()
    {
        KALVARO_BRAUCHT(Vertrag<Statuspruefling>::braucht());
        menue = std::make_unique<QMenu>();
        menue->addAction(u"eins"_s);
        p = Vertrag<Statuspruefling>::neu();
    }
    void cleanup()
    {
        p.reset();
        menue.reset();
    }

    // Picture mode sets none.
    void erstMitEinemSymbolIstEsDa()
    {
        p->objekt().menueSetzen(menue.get());
        p->objekt().hinweisSetzen(u"früher gesetzt"_s);
        ereignisseAbarbeiten();
        QVERIFY(!p->sichtbar());
        p->objekt().symbolSetzen(u"icloud"_s);
        QTRY_VERIFY(p->sichtbar());
        QCOMPARE(p->hinweis(), u"früher gesetzt"_s);
    }

    void derLetzteHinweisGiltUndIstText()
    {
        p->objekt().symbolSetzen(u"icloud"_s);
        QTRY_VERIFY(p->sichtbar());
        for (const QString &hinweis :
             {u"kalvaro"_s, u"<b>„neu“</b> &amp; <i>%1"_s, u"zuletzt – 🎧"_s}) {
            p->objekt().hinweisSetzen(hinweis);
            QTRY_COMPARE(p->hinweis(), hinweis);
        }
    }

    void dasMenueKuendigtSichAn()
    {
        const QSignalSpy oeffnet(menue.get(), &QMenu::aboutToShow);
        p->objekt().symbolSetzen(u"icloud"_s);
        p->objekt().menueSetzen(menue.get());
        QTRY_VERIFY(p->sichtbar());
        p->menueOeffnen();
        QTRY_COMPARE(oeffnet.size(), 1);
        p->menueOeffnen();
        QTRY_COMPARE(oeffnet.size(), 2);
    }

    void einPlatzKommtUndGeht()
    {
        if (!p->leiste(false)) {
            return;
        }
        QTRY_VERIFY(!p->objekt().erreichbar());
        int gewechselt = 0;
        p->objekt().beiWechsel([&gewechselt] { ++gewechselt; });
        QVERIFY(p->leiste(true));
        QTRY_VERIFY(p->objekt().erreichbar());
        QTRY_COMPARE(gewechselt, 1);
        QVERIFY(p->leiste(false));
        QTRY_COMPARE(gewechselt, 2);
        QTRY_VERIFY(!p->objekt().erreichbar());
        p->objekt().beiWechsel({});
        QVERIFY(p->leiste(true));
        QTRY_VERIFY(p->objekt().erreichbar());
        QCOMPARE(gewechselt, 2);
    }

    void werSpaeterKommtZeigtDasLetzte()
    {
        if (!p->leiste(false)) {
            return;
        }
        p->objekt().symbolSetzen(u"icloud"_s);
        p->objekt().hinweisSetzen(u"inzwischen"_s);
        ereignisseAbarbeiten();
        QVERIFY(p->leiste(true));
        QTRY_VERIFY(p->sichtbar());
        QTRY_COMPARE(p->hinweis(), u"inzwischen"_s);
    }

private:
    std::unique_ptr<QMenu> menue;
    std::unique_ptr<Statuspruefling> p;
};

KALVARO_FENSTERTEST(TestVertragStatusobjekt)
#include "tst_vertrag_statusobjekt.moc"
