#include "doubles/datenordner.h"
#include "doubles/ereignisse.h"
#include "foundation/datenordner.h"
#include "platform/macos/endesignale.h"
#include "platform/macos/ordnereinzelinstanz.h"
#include "testlauf.h"

#include <QEvent>
#include <QLocalSocket>
#include <QTemporaryDir>

#include <csignal>
#include <memory>
#include <sys/time.h>

using namespace kalvaro;
using namespace Qt::StringLiterals;

// What goes on in the first one. What starts say to each other is in the contract.
class TestOrdnereinzelinstanz final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        daten.leeren();
        gewollt.clear();
        instanz = std::make_unique<OrdnerEinzelinstanz>();
    }
    void cleanup()
    {
        instanz.reset();
        const itimerval keine = {}; // that a signal has set
        ::setitimer(ITIMER_REAL, &keine, nullptr);
    }

    void werDenPlatzHatWeissEs()
    {
        QVERIFY(!instanz->belegt());
        QCOMPARE(instanz->belegen(Wunsch::Oeffnen), Belegung::Erste);
        QVERIFY(instanz->belegt());
        QVERIFY(QFile::exists(datei(u"de.kalvaro.kalvaro.lock"_s)));
        QVERIFY(daten.protokollzeilen().isEmpty());
    }

    void zweiDatenordnerSindZweiProgramme()
    {
        const QTemporaryDir anderswo;
        OrdnerEinzelinstanz andere(anderswo.path());
        QCOMPARE(instanz->belegen({}), Belegung::Erste);
        QCOMPARE(andere.belegen({}), Belegung::Erste);
    }

    // A folder on a disk without locks, or one that cannot be written.
    void ohneSperreLaeuftJeder()
    {
        const QString nirgends = u"/proc/hier/nicht"_s;
        OrdnerEinzelinstanz eine(nirgends);
        OrdnerEinzelinstanz andere(nirgends);
        QCOMPARE(eine.belegen(Wunsch::Oeffnen), Belegung::Erste);
        QCOMPARE(andere.belegen(Wunsch::Oeffnen), Belegung::Erste);
        QVERIFY(andere.belegt());
        QCOMPARE(daten.protokollzeilen(),
                 QStringList(2, u"Keine Sperre in /proc/hier/nicht möglich"_s));
        QVERIFY(andere.bitten(Wunsch::Beenden)); // and it ends like any other
    }

    void wuensche_data()
    {
        QTest::addColumn<QByteArray>("wort");
        QTest::addColumn<QList<Wunsch>>("erwartet");
        QTest::newRow("open") << QByteArray("oeffnen") << QList{Wunsch::Oeffnen};
        QTest::newRow("sync") << QByteArray("abgleichen") << QList{Wunsch::Abgleichen};
        QTest::newRow("quit") << QByteArray("beenden") << QList{Wunsch::Beenden};
        QTest::newRow("background") << QByteArray("hintergrund") << QList{Wunsch::Hintergrund};
        QTest::newRow("nothing") << QByteArray("nichts") << QList<Wunsch>();
        QTest::newRow("of a later version") << QByteArray("zaubern") << QList{Wunsch::Oeffnen};
        QTest::newRow("an empty line") << QByteArray() << QList{Wunsch::Oeffnen};
    }
    void wuensche()
    {
        QFETCH(const QByteArray, wort);
        QFETCH(const QList<Wunsch>, erwartet);
        QCOMPARE(instanz->belegen({}), Belegung::Erste);
        hoeren();
        QVERIFY(zugesagt(wort));
        ereignisseAbarbeiten();
        QCOMPARE(gewollt, erwartet);
    }

    void wasVorherKamGehtNichtVerloren()
    {
        QCOMPARE(instanz->belegen({}), Belegung::Erste);
        QVERIFY(instanz->bitten(Wunsch::Oeffnen));
        QVERIFY(instanz->bitten(Wunsch::Abgleichen));
        ereignisseAbarbeiten();
        instanz->beiWunsch({});
        hoeren();
        QVERIFY(gewollt.isEmpty()); // from the event loop
        ereignisseAbarbeiten();
        QCOMPARE(gewollt, (QList{Wunsch::Oeffnen, Wunsch::Abgleichen}));
    }

    void werEndenSollSagtNichtsMehrZu()
    {
        QCOMPARE(instanz->belegen({}), Belegung::Erste);
        hoeren();
        QVERIFY(instanz->bitten(Wunsch::Beenden));
        QVERIFY(!instanz->bitten(Wunsch::Oeffnen));
        QVERIFY(!instanz->bitten({}));
        // It did not end after all.
        QVERIFY(QTest::qWaitFor([this] { return instanz->bitten(Wunsch::Oeffnen); }));
        QTRY_COMPARE(gewollt, (QList{Wunsch::Beenden, Wunsch::Oeffnen}));
    }

    // The menu, or the session.
    void auchWennDieAnwendungEsWill()
    {
        QCOMPARE(instanz->belegen({}), Belegung::Erste);
        hoeren();
        QEvent ende(QEvent::Quit);
        instanz->eventFilter(QCoreApplication::instance(), &ende);
        QVERIFY(!instanz->bitten(Wunsch::Oeffnen));
        QVERIFY(QTest::qWaitFor([] { return zugesagt("oeffnen"); }));
        QTRY_COMPARE(gewollt, QList{Wunsch::Oeffnen});
    }

    // It is the application that is watched, once this one is the first.
    void dieAnwendungWirdBeobachtet()
    {
        QCOMPARE(instanz->belegen({}), Belegung::Erste);
        QEvent anderes(QEvent::ApplicationActivate);
        QCoreApplication::sendEvent(QCoreApplication::instance(), &anderes);
        QVERIFY(instanz->bitten({}));
        QMetaObject::invokeMethod(QCoreApplication::instance(), &QCoreApplication::quit,
                                  Qt::QueuedConnection);
        QCOMPARE(QCoreApplication::exec(), 0);
        QVERIFY(!instanz->bitten({}));
    }

    void einSignalGiltBevorDieSchleifeEsSieht()
    {
        QCOMPARE(instanz->belegen({}), Belegung::Erste);
        int signale = 0;
        const Endesignale hoerer([&signale] { ++signale; });
        QVERIFY(instanz->bitten(Wunsch::Abgleichen));
        std::raise(SIGTERM);
        QCOMPARE(signale, 0);
        QVERIFY(!instanz->bitten(Wunsch::Abgleichen));
        QTRY_COMPARE(signale, 1);
        QVERIFY(instanz->bitten(Wunsch::Abgleichen)); // it did not end after all
    }

private:
    void hoeren()
    {
        instanz->beiWunsch([this](Wunsch wunsch) { gewollt.append(wunsch); });
    }

    // Says a word as another start does; whether it is promised.
    [[nodiscard]] static bool zugesagt(const QByteArray &wort)
    {
        QLocalSocket start;
        start.connectToServer(Ordnersperre::socketort(appOrdner()));
        start.write(wort + '\n');
        (void)QTest::qWaitFor([&start] {
            return start.bytesAvailable() > 0 || start.state() == QLocalSocket::UnconnectedState;
        });
        return start.readAll() == QByteArray(1, '\1');
    }

    Datenordner daten;
    QList<Wunsch> gewollt;
    std::unique_ptr<OrdnerEinzelinstanz> instanz;
};

KALVARO_TEST(TestOrdnereinzelinstanz)
#include "tst_ordnereinzelinstanz.moc"
