#include "doubles/statushost.h"
#include "doubles/testbus.h"
#include "doubles/testuhr.h"
#include "platform/linux/traysymbol.h"
#include "platform/linux/traywache.h"
#include "testlauf.h"
#include "ui/symbole.h"

#include <QDBusConnectionInterface>
#include <QIcon>
#include <QImage>
#include <QPixmap>

#include <memory>
#include <optional>

using namespace kalvaro;
using namespace Qt::StringLiterals;

using Plaetze = QList<std::optional<Trayart>>;

class TestTray final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { KALVARO_BRAUCHT(u"dbus-daemon"_s); }
    void init();
    void cleanup();

    void einHostVonAnfangAnWirdGefunden();
    void einHostNachDreissigSekundenWirdGefunden();
    void einHostWirdNurEinmalGemeldet();
    void einHostDerNeuStartetWirdNeuGemeldet();
    void einHostDerGehtWirdGemeldet();
    void einWaechterOhneObjektWirdNochmalsGefragt();
    void einWaechterDerNieAntwortetWirdInRuheGelassen();
    void ohneHostUndOhneBusWartetNichts();
    void dasSymbolIstScharf_data();
    void dasSymbolIstScharf();
    void einUnbekanntesSymbolIstLeer();

private:
    void wachen();
    [[nodiscard]] static QImage gezeichnet(const QString &name, int seite);

    Testuhr uhr;
    std::unique_ptr<Testbus> bus;
    std::unique_ptr<XEmbedtray> xembed;
    std::unique_ptr<Statushost> host;
    std::unique_ptr<Traywache> wache;
    Plaetze gefunden;
};

void TestTray::init()
{
    gefunden.clear();
    xembed = std::make_unique<XEmbedtray>();
    bus = std::make_unique<Testbus>();
}

void TestTray::cleanup()
{
    wache.reset();
    host.reset();
    bus.reset();
}

void TestTray::wachen()
{
    wache = std::make_unique<Traywache>(uhr, bus->verbindung(), *xembed,
                                        [this](auto art) { gefunden.append(art); });
}

void TestTray::einHostVonAnfangAnWirdGefunden()
{
    host = std::make_unique<Statushost>(bus->verbindung());
    wachen();
    QTRY_COMPARE(gefunden, Plaetze({Trayart::StatusNotifier}));
}

void TestTray::einHostNachDreissigSekundenWirdGefunden()
{
    wachen();
    uhr.vor(Sekunden(30));
    QVERIFY(gefunden.isEmpty());
    host = std::make_unique<Statushost>(bus->verbindung());
    QTRY_COMPARE(gefunden, Plaetze({Trayart::StatusNotifier}));
}

void TestTray::einHostWirdNurEinmalGemeldet()
{
    host = std::make_unique<Statushost>(bus->verbindung());
    wachen();
    QTRY_COMPARE(gefunden.size(), 1);
    host->hostAnmelden();
    host->hostAnmelden();
    host.reset();
    QTRY_COMPARE(gefunden, Plaetze({Trayart::StatusNotifier, {}}));
}

// Another watcher knows nothing of what the last one had.
void TestTray::einHostDerNeuStartetWirdNeuGemeldet()
{
    host = std::make_unique<Statushost>(bus->verbindung());
    wachen();
    QTRY_COMPARE(gefunden.size(), 1);
    host.reset();
    host = std::make_unique<Statushost>(bus->verbindung());
    QTRY_COMPARE(gefunden, Plaetze({Trayart::StatusNotifier, {}, Trayart::StatusNotifier}));
}

// The watcher stays, as it does in Plasma when the panel with the tray is removed.
void TestTray::einHostDerGehtWirdGemeldet()
{
    host = std::make_unique<Statushost>(bus->verbindung());
    wachen();
    QTRY_COMPARE(gefunden.size(), 1);
    host->hostAbmelden();
    QTRY_COMPARE(gefunden, Plaetze({Trayart::StatusNotifier, {}}));
    host->hostAnmelden();
    QTRY_COMPARE(gefunden, Plaetze({Trayart::StatusNotifier, {}, Trayart::StatusNotifier}));
}

void TestTray::einWaechterOhneObjektWirdNochmalsGefragt()
{
    QDBusConnection frueh = bus->verbindung();
    QVERIFY(frueh.registerService(u"org.kde.StatusNotifierWatcher"_s));
    wachen();
    QTRY_COMPARE(uhr.offen(), 1);
    QVERIFY(frueh.unregisterService(u"org.kde.StatusNotifierWatcher"_s));
    host = std::make_unique<Statushost>(frueh);
    uhr.vor(Sekunden(1));
    QTRY_COMPARE(gefunden, Plaetze({Trayart::StatusNotifier}));
}

void TestTray::einWaechterDerNieAntwortetWirdInRuheGelassen()
{
    QDBusConnection leer = bus->verbindung();
    QVERIFY(leer.registerService(u"org.kde.StatusNotifierWatcher"_s));
    wachen();
    for (int i = 0; i < 4; ++i) {
        QTRY_COMPARE(uhr.offen(), 1);
        uhr.vor(Sekunden(1));
    }
    QTRY_COMPARE(uhr.offen(), 0);
    QVERIFY(gefunden.isEmpty());
    // Another one is asked as often.
    QVERIFY(leer.unregisterService(u"org.kde.StatusNotifierWatcher"_s));
    QVERIFY(leer.registerService(u"org.kde.StatusNotifierWatcher"_s));
    for (int i = 0; i < 4; ++i) {
        QTRY_COMPARE(uhr.offen(), 1);
        uhr.vor(Sekunden(1));
    }
    QTRY_COMPARE(uhr.offen(), 0);
}

void TestTray::ohneHostUndOhneBusWartetNichts()
{
    const Traywache ohne(uhr, QDBusConnection(u"gibt es nicht"_s), *xembed,
                         [this](auto art) { gefunden.append(art); });
    QCOMPARE(uhr.offen(), 0);
    uhr.vor(Sekunden(60));
    QVERIFY(gefunden.isEmpty());
}

// The drawing as it ought to be at `seite` pixels: the mean of a much larger one.
QImage TestTray::gezeichnet(const QString &name, int seite)
{
    constexpr int fach = 8;
    const QImage gross = symbolbild(name, seite * fach, Qt::black, 1)
                             .toImage()
                             .convertToFormat(QImage::Format_ARGB32);
    QImage klein(seite, seite, QImage::Format_ARGB32);
    for (int y = 0; y < seite; ++y) {
        for (int x = 0; x < seite; ++x) {
            int summe = 0;
            for (int i = 0; i < fach * fach; ++i) {
                summe += qAlpha(gross.pixel(x * fach + i % fach, y * fach + i / fach));
            }
            klein.setPixel(x, y, qRgba(0, 0, 0, summe / (fach * fach)));
        }
    }
    return klein;
}

void TestTray::dasSymbolIstScharf_data()
{
    QTest::addColumn<int>("groesse");
    QTest::addColumn<double>("faktor");
    for (const int groesse : {22, 24, 32, 48, 64}) {
        for (const double faktor : {1.0, 2.0}) {
            QTest::addRow("%d at %gx", groesse, faktor) << groesse << faktor;
        }
    }
}

void TestTray::dasSymbolIstScharf()
{
    QFETCH(int, groesse);
    QFETCH(double, faktor);
    const QColor farbe(0x12, 0x34, 0x56);
    const QIcon symbol = traysymbol(u"exclamationmark.icloud.fill"_s, farbe);
    const QPixmap bild = symbol.pixmap(QSize(groesse, groesse), faktor);
    QCOMPARE(bild.size(), QSize(groesse, groesse) * faktor);
    QCOMPARE(bild.devicePixelRatio(), faktor);
    const QImage pixel = bild.toImage().convertToFormat(QImage::Format_ARGB32);
    const QImage soll = gezeichnet(u"exclamationmark.icloud.fill"_s, pixel.width());
    int deckend = 0;
    double abweichung = 0;
    for (int y = 0; y < pixel.height(); ++y) {
        for (int x = 0; x < pixel.width(); ++x) {
            const int alpha = qAlpha(pixel.pixel(x, y));
            abweichung += std::abs(alpha - qAlpha(soll.pixel(x, y)));
            if (alpha == 255) {
                QCOMPARE(pixel.pixel(x, y), farbe.rgba());
                ++deckend;
            }
        }
    }
    QVERIFY(deckend > groesse); // at the least a stroke
    abweichung /= deckend;
    QVERIFY2(abweichung < 6, qPrintable(QString::number(abweichung)));
}

void TestTray::einUnbekanntesSymbolIstLeer()
{
    QVERIFY(traysymbol(u"gibt.es.nicht"_s, Qt::black).pixmap(22, 22).isNull());
    QCOMPARE(symbolImThema(u"gibt.es.nicht"_s), QString());
}

KALVARO_FENSTERTEST(TestTray)
#include "tst_tray.moc"
