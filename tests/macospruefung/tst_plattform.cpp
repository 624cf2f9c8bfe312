#include "attrappen.h"
#include "foundation/uhr.h"
#include "platform/einzelinstanz.h"
#include "platform/mitteilungen.h"
#include "platform/plattform.h"
#include "testlauf.h"

#include <QTemporaryDir>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

// 'aevt' and 'rapp' of "Apple Event Manager".
bool wiederoeffnen()
{
    return attrappen::ereignis(0x61657674, 0x72617070);
}

} // namespace

class TestPlattform final : public QObject
{
    Q_OBJECT

public:
    static void vorDerAnwendung()
    {
        static const QTemporaryDir heim;
        qputenv("HOME", heim.path().toLocal8Bit());
        qputenv("XDG_DATA_HOME", heim.filePath(u"daten"_s).toLocal8Bit());
        QDir().mkpath(heim.filePath(u"daten/kalvaro"_s));
    }

private Q_SLOTS:
    void init()
    {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        attrappen::system().sitzung = true;
        attrappen::arbeitsplatz().aussehen.clear();
        attrappen::mitteilungen() = {.buendelkennung = u"de.kalvaro.kalvaro"_s};
    }

    void woGezeichnetWird_data()
    {
        QTest::addColumn<QString>("kommandozeile");
        QTest::addColumn<QByteArray>("umgebung");
        QTest::addColumn<bool>("sitzung");
        QTest::addColumn<bool>("mangel");
        QTest::newRow("session") << u""_s << QByteArray() << true << false;
        QTest::newRow("no session") << u""_s << QByteArray() << false << true;
        QTest::newRow("no session, cocoa") << u"cocoa"_s << QByteArray() << false << true;
        QTest::newRow("no session, cocoa by environment")
            << u""_s << QByteArray("cocoa") << false << true;
        QTest::newRow("no session, offscreen")
            << u"offscreen"_s << QByteArray("cocoa") << false << false;
        QTest::newRow("no session, offscreen by environment")
            << u""_s << QByteArray("offscreen") << false << false;
    }

    void woGezeichnetWird()
    {
        QFETCH(QString, kommandozeile);
        QFETCH(QByteArray, umgebung);
        QFETCH(bool, sitzung);
        QFETCH(bool, mangel);
        qputenv("QT_QPA_PLATFORM", umgebung);
        attrappen::system().sitzung = sitzung;
        const Startlage lage(kommandozeile, Startlage::Farben::Desktop);
        QCOMPARE(lage.anzeigemangel().has_value(), mangel);
        QCOMPARE(qgetenv("QT_QPA_PLATFORM"), mangel ? QByteArray("offscreen") : umgebung);
    }

    // What is drawn for a picture looks the same whatever the desktop's appearance.
    void eigeneFarbenSindHell()
    {
        attrappen::anwendungDa();
        const Startlage desktop({}, Startlage::Farben::Desktop);
        const Plattform folgsam(desktop, uhr);
        QCOMPARE(attrappen::arbeitsplatz().aussehen, QString());
        const Startlage eigene({}, Startlage::Farben::Eigene);
        const Plattform bild(eigene, uhr);
        QCOMPARE(attrappen::arbeitsplatz().aussehen, u"NSAppearanceNameAqua"_s);
    }

    void wiederGeoeffnetWieEinZweiterStart()
    {
        std::vector<Wunsch> wuensche;
        {
            const Startlage lage({}, Startlage::Farben::Desktop);
            Plattform plattform(lage, uhr);
            QCOMPARE(plattform.einzelinstanz().belegen(std::nullopt), Belegung::Erste);
            plattform.einzelinstanz().beiWunsch([&](Wunsch w) { wuensche.push_back(w); });
            [[maybe_unused]] const auto anschluesse = plattform.anschluesse();
            // The application object sets handlers of its own as it finishes launching.
            QVERIFY(!wiederoeffnen());
            QCoreApplication::processEvents();
            QVERIFY(wiederoeffnen());
            QTRY_COMPARE(wuensche, std::vector{Wunsch::Oeffnen});
        }
        QVERIFY(!wiederoeffnen());
    }

    void einKlickVonVorherWartet()
    {
        const Startlage lage({}, Startlage::Farben::Desktop);
        Plattform plattform(lage, uhr);
        QCOMPARE(plattform.einzelinstanz().belegen(std::nullopt), Belegung::Erste);
        const auto anschluesse = plattform.anschluesse();
        QCOMPARE(attrappen::anfassen(u"url"_s, u"http://a"_s, true), 1);
        QStringList ziele;
        anschluesse.mitteilungen.beiKlick([&](const QString &ziel) { ziele.append(ziel); });
        QTRY_COMPARE(ziele, QStringList(u"http://a"_s));
        QCOMPARE(attrappen::mitteilungen().erlaubnisse.size(), 1U);
    }

    // Whoever only draws leaves clicks and the Dock to the one that runs.
    void werNurZeichnetHoertNichts()
    {
        const Startlage lage({}, Startlage::Farben::Desktop);
        Plattform plattform(lage, uhr);
        [[maybe_unused]] const auto anschluesse = plattform.anschluesse();
        QCoreApplication::processEvents();
        QVERIFY(!wiederoeffnen());
        QVERIFY(attrappen::mitteilungen().erlaubnisse.empty());
    }

private:
    Systemuhr uhr;
};

KALVARO_FENSTERTEST(TestPlattform)
#include "tst_plattform.moc"
