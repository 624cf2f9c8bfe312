#include "doubles/statushost.h"
#include "doubles/testbus.h"
#include "doubles/testuhr.h"
#include "platform/linux/traysymbol.h"
#include "platform/linux/traywache.h"
#include "testlauf.h"
#include "ui/farbe.h"
#include "ui/symbole.h"

#include <QDBusConnectionInterface>
#include <QIcon>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QSet>

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

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
    void einHostDerAbstuerztGiltNichtMehr_data();
    void einHostDerAbstuerztGiltNichtMehr();
    void einHostOhneNamenGiltNachEinemMitNamen();
    void einWaechterOhneObjektWirdNochmalsGefragt();
    void einWaechterDerNieAntwortetWirdInRuheGelassen();
    void ohneHostUndOhneBusWartetNichts();
    void dasSymbolIstScharf_data();
    void dasSymbolIstScharf();
    void aufJederLeisteZuErkennen_data();
    void aufJederLeisteZuErkennen();
    void einUnbekanntesSymbolIstLeer();

private:
    void wachen();
    [[nodiscard]] static QImage gezeichnet(const QString &name, int seite);
    // Pixels of the largest part that hangs together and has that contrast with the ground.
    [[nodiscard]] static int groessteFlaeche(const QImage &bild, const QColor &grund,
                                             double mindestens);

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

void TestTray::einHostDerAbstuerztGiltNichtMehr_data()
{
    QTest::addColumn<bool>("schonDa");
    QTest::newRow("that was there before") << true;
    QTest::newRow("that came later") << false;
}

// KDE's watcher went on saying that there is one; a window that was closed then was lost.
void TestTray::einHostDerAbstuerztGiltNichtMehr()
{
    QFETCH(const bool, schonDa);
    const QString erster = u"org.kde.StatusNotifierHost-1"_s;
    const QString zweiter = u"org.kde.StatusNotifierHost-2"_s;
    const Plaetze da{Trayart::StatusNotifier};
    QDBusConnection leiste = bus->verbindung();
    host = std::make_unique<Statushost>(bus->verbindung(), schonDa);
    if (!schonDa) {
        wachen();
    }
    QVERIFY(leiste.registerService(erster));
    if (schonDa) {
        wachen();
    } else {
        host->hostAnmelden();
    }
    QTRY_COMPARE(gefunden, da);
    int gefragt = schonDa ? 1 : 3; // at the start; for its name, for its word
    QTRY_COMPARE(host->fragen(), gefragt);
    QVERIFY(leiste.registerService(zweiter));
    ++gefragt;
    QTRY_COMPARE(host->fragen(), gefragt);
    QVERIFY(leiste.unregisterService(erster));
    QVERIFY(leiste.registerService(u"org.kde.StatusNotifierItem-1-1"_s)); // no host
    QVERIFY(leiste.unregisterService(zweiter));
    QTRY_COMPARE(gefunden, da + Plaetze({{}}));
    host->hostAnmelden(); // of which there is none
    QTRY_COMPARE(host->fragen(), gefragt + 1);
    host->hostAbmelden();
    QTRY_COMPARE(host->fragen(), gefragt + 2);
    host->hostAnmelden();
    QVERIFY(leiste.registerService(erster));
    QTRY_COMPARE(gefunden, da + Plaetze({{}}) + da);
}

void TestTray::einHostOhneNamenGiltNachEinemMitNamen()
{
    const QString name = u"org.kde.StatusNotifierHost-1"_s;
    QDBusConnection leiste = bus->verbindung();
    host = std::make_unique<Statushost>(bus->verbindung());
    QVERIFY(leiste.registerService(name));
    wachen();
    QTRY_COMPARE(gefunden.size(), 1);
    QVERIFY(leiste.unregisterService(name));
    QTRY_COMPARE(gefunden, Plaetze({Trayart::StatusNotifier, {}}));
    host.reset();
    host = std::make_unique<Statushost>(bus->verbindung());
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

int TestTray::groessteFlaeche(const QImage &bild, const QColor &grund, double mindestens)
{
    QSet<std::pair<int, int>> offen;
    for (int y = 0; y < bild.height(); ++y) {
        for (int x = 0; x < bild.width(); ++x) {
            if (Farbe::kontrast(bild.pixelColor(x, y), grund) >= mindestens) {
                offen.insert({x, y});
            }
        }
    }
    int groesste = 0;
    while (!offen.isEmpty()) {
        QList<std::pair<int, int>> rand{*offen.constBegin()};
        offen.remove(rand.first());
        int anzahl = 0;
        for (; !rand.isEmpty(); ++anzahl) {
            const auto [x, y] = rand.takeLast();
            for (int i = 0; i < 9; ++i) { // also where only corners touch, as in a slanting line
                const std::pair da(x + i % 3 - 1, y + i / 3 - 1);
                if (offen.remove(da)) {
                    rand.append(da);
                }
            }
        }
        groesste = std::max(groesste, anzahl);
    }
    return groesste;
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
    const QIcon symbol = traysymbol(u"exclamationmark.icloud.fill"_s, Leistentinte::gesagt(farbe));
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

void TestTray::aufJederLeisteZuErkennen_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QColor>("strich");
    const QColor striche[] = {
        {0x1d, 0x1d, 0x1f}, {0x23, 0x26, 0x29}, {0xf2, 0xf2, 0xf4}, Qt::white};
    for (const QString &name :
         {u"icloud"_s, u"arrow.clockwise.icloud"_s, u"checkmark.icloud"_s,
          u"exclamationmark.icloud"_s, u"exclamationmark.icloud.fill"_s, u"icloud.slash"_s}) {
        for (const QColor &strich : striche) {
            QTest::addRow("%s in %s", qPrintable(name), qPrintable(strich.name()))
                << name << strich;
        }
    }
}

// Black on black it was nowhere to be found in bars that do not say what colour they have.
void TestTray::aufJederLeisteZuErkennen()
{
    QFETCH(const QString, name);
    QFETCH(const QColor, strich);
    for (const QColor &leiste : {QColor(Qt::black), QColor(Qt::white), QColor(0x80, 0x80, 0x80)}) {
        for (const int seite : {16, 22, 24, 32, 48, 64}) {
            QImage bild(seite, seite, QImage::Format_RGB32);
            bild.fill(leiste);
            QPainter maler(&bild);
            traysymbol(name, Leistentinte::geraten(strich)).paint(&maler, bild.rect());
            maler.end();
            const int groesste = groessteFlaeche(bild, leiste, Farbe::erkennbarerKontrast);
            const auto wo = leiste.name() + u' ' + QString::number(seite);
            QVERIFY2(groesste > seite / 2, qPrintable(wo + u": "_s + QString::number(groesste)));
        }
    }
}

void TestTray::einUnbekanntesSymbolIstLeer()
{
    QVERIFY(
        traysymbol(u"gibt.es.nicht"_s, Leistentinte::geraten(Qt::black)).pixmap(22, 22).isNull());
    QCOMPARE(symbolImThema(u"gibt.es.nicht"_s), QString());
}

KALVARO_FENSTERTEST(TestTray)
#include "tst_tray.moc"
