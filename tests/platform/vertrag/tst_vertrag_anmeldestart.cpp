// What "start at login" promises, whoever brings it about.

#include "doubles/dateien.h"
#include "doubles/datenordner.h"
#include "platform/anmeldestart.h"
#include "prueflinge.h"
#include "testlauf.h"

#include <QDir>
#include <QFileInfo>

using namespace kalvaro;
using namespace Qt::StringLiterals;

class TestVertragAnmeldestart final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data()
    {
        Vertrag<Anmeldestartpruefling>::zeilen({u"double"_s, u"linux"_s, u"macos"_s});
    }
    void init()
    {
        daten.leeren();
        p = Vertrag<Anmeldestartpruefling>::neu();
    }
    void cleanup() { p.reset(); }

    void schaltetAnUndAus()
    {
        QVERIFY(!p->start().an());
        p->start().setzen(true);
        QVERIFY(p->start().an());
        p->start().setzen(true);
        QVERIFY(p->start().an());
        p->start().setzen(false);
        QVERIFY(!p->start().an());
        p->start().setzen(false);
        QVERIFY(!p->start().an());
    }

    void wasNichtGehtZeigtSichAlsAus()
    {
        p->verhindern();
        p->start().setzen(true);
        QVERIFY(!p->start().an());
    }

    void jederWechselStehtImProtokoll()
    {
        p->verhindern();
        p->start().setzen(true);
        p->start().setzen(false);
        QCOMPARE(daten.protokollzeilen(), p->datei() ? QStringList({u"Start beim Anmelden: an"_s,
                                                                    u"Start beim Anmelden: aus"_s})
                                                     : QStringList());
    }

    void jedeDateiAmOrtGilt()
    {
        if (const auto datei = p->datei()) {
            dateiSchreiben(*datei, "by hand");
            QVERIFY(p->start().an());
            p->start().setzen(false);
            QVERIFY(!QFile::exists(*datei));
        }
    }

    void zweimalAnSchreibtDasselbe()
    {
        if (const auto datei = p->datei()) {
            p->start().setzen(true);
            const QByteArray erst = dateiLesen(*datei);
            QVERIFY(!erst.isEmpty());
            dateiSchreiben(*datei, "by hand");
            p->start().setzen(true);
            QCOMPARE(dateiLesen(*datei), erst);
            QCOMPARE(QDir(QFileInfo(*datei).path()).entryList(QDir::Files | QDir::Hidden).size(),
                     1);
        }
    }

private:
    Datenordner daten;
    std::unique_ptr<Anmeldestartpruefling> p;
};

KALVARO_TEST(TestVertragAnmeldestart)
#include "tst_vertrag_anmeldestart.moc"
