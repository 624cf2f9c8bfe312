#include "democloud.h"
#include "doubles/datenordner.h"
#include "doubles/fakeanmeldestart.h"
#include "foundation/einstellungen.h"
#include "server/netztransport.h"
#include "settingswindow/baumansicht.h"
#include "settingswindow/einstellungenfenster.h"
#include "settingswindow/playlistenmodell.h"
#include "testlauf.h"
#include "ui/beschriftung.h"
#include "ui/erscheinung.h"

#include <QApplication>
#include <QLineEdit>
#include <QPointer>
#include <QSignalSpy>

using namespace kalvaro;
using namespace kalvaro::democloud;
using namespace Qt::StringLiterals;

namespace {

const QByteArray playlisten = R"([
    {"id":"1","uuid":"u-1","name":"Clubs","ordner":true,"titel":0,"eltern":"root","seq":1},
    {"id":"2","uuid":"u-2","name":"Warm-up","ordner":false,"titel":48,"eltern":"1","seq":1},
    {"id":"3","uuid":"u-3","name":"Höhepunkt","ordner":false,"titel":1208,"eltern":"1","seq":2},
    {"id":"4","uuid":"u-4","name":"Wünsche","ordner":false,"titel":19,"eltern":"root","seq":2}])";

Welt welt()
{
    Welt w;
    w.geraete = {Geraet{.name = u"demo-mac"_s, .lokal = {u"u-4"_s}}};
    w.playlisten = playlisten;
    return w;
}

} // namespace

// The sheet against a real server, over the network.
class TestEinstellungendemocloud final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void ganzMitDerTastatur();
    void cloudWegBeimLaden();
    void cloudWegBeimSichern();

private:
    void oeffnen();
    [[nodiscard]] QString info() const
    {
        return fenster->findChild<Beschriftung *>(u"lblInfo"_s)->text();
    }
    static void druecken(Qt::Key taste) { QTest::keyClick(QApplication::focusWidget(), taste); }

    Datenordner ordner;
    Systemuhr uhr;
    std::unique_ptr<Democloud> cloud;
    std::unique_ptr<Netztransport> weg;
    std::unique_ptr<Zentrale> zentrale;
    std::unique_ptr<Einstellungen> einst;
    std::unique_ptr<FakeAnmeldestart> anmeldestart;
    std::unique_ptr<EinstellungenFenster> fenster;
};

void TestEinstellungendemocloud::initTestCase()
{
    erscheinungEinrichten(*qApp);
}

void TestEinstellungendemocloud::init()
{
    fenster.reset();
    ordner.leeren();
    cloud = std::make_unique<Democloud>(DemocloudOptionen{.welt = welt()});
    QVERIFY(cloud->starten());
    weg = std::make_unique<Netztransport>(uhr);
    zentrale = std::make_unique<Zentrale>(
        Konto{u"Demo"_s, u"demo-mac"_s, u"demo-schluessel"_s, {cloud->adresse()}}, *weg);
    einst = std::make_unique<Einstellungen>();
    anmeldestart = std::make_unique<FakeAnmeldestart>();
}

void TestEinstellungendemocloud::oeffnen()
{
    const QList<Installation> installationen{{u"7.1.4"_s, {}}, {u"6.8.5"_s, {}}};
    fenster = std::make_unique<EinstellungenFenster>(
        EinstellungenFenster::Vorgaben{*zentrale, *einst, *anmeldestart, installationen,
                                       u"scharf"_s},
        nullptr);
    fenster->open();
    QVERIFY(QTest::qWaitForWindowActive(fenster.get()));
    fenster->laden();
}

void TestEinstellungendemocloud::ganzMitDerTastatur()
{
    oeffnen();
    QTRY_COMPARE(info(), u"1 Playlist ausgewählt (19 Einträge). Kopiert wird beim nächsten "
                         "Abgleich."_s);
    druecken(Qt::Key_Down); // version
    druecken(Qt::Key_Tab);
    druecken(Qt::Key_Space); // automatic start
    druecken(Qt::Key_Tab);
    druecken(Qt::Key_Tab);
    QTest::keyClicks(QApplication::focusWidget(), u"hohe"_s);
    druecken(Qt::Key_Down); // the folder on the way
    druecken(Qt::Key_Down);
    druecken(Qt::Key_Space);
    QCOMPARE(info(), u"2 Playlisten ausgewählt (1.227 Einträge). Kopiert wird beim nächsten "
                     "Abgleich."_s);
    QSignalSpy ende(fenster.get(), &QDialog::finished);
    druecken(Qt::Key_Return);
    QTRY_COMPARE(ende.size(), 1);

    QCOMPARE(fenster->result(), 1);
    QCOMPARE(cloud->welt().geraete.first().lokal, (QStringList{u"u-3"_s, u"u-4"_s}));
    QCOMPARE(Einstellungen().version, u"7.1.4"_s);
    QVERIFY(Einstellungen().autostart);
    QCOMPARE(ordner.protokollzeilen(), QStringList{u"lokal gespeicherte Playlisten: 2"_s});

    // Opened again, it shows what was saved.
    oeffnen();
    QTRY_VERIFY(info().startsWith(u"2 Playlisten ausgewählt"_s));
}

void TestEinstellungendemocloud::cloudWegBeimLaden()
{
    cloud->beenden();
    oeffnen();
    QTRY_VERIFY(info().startsWith(u"Playlisten nicht ladbar: "_s));
    QSignalSpy ende(fenster.get(), &QDialog::finished);
    druecken(Qt::Key_Return);
    QCOMPARE(ende.size(), 1);
}

void TestEinstellungendemocloud::cloudWegBeimSichern()
{
    oeffnen();
    QTRY_VERIFY(info().startsWith(u"1 Playlist"_s));
    auto &modell = fenster->findChild<Baumansicht *>()->modell();
    modell.setData(modell.zuStelle(0), Qt::Checked, Qt::CheckStateRole);
    cloud->setSzenario(Szenario::Serverfehler);
    fenster->sichern();
    QTRY_VERIFY(info().startsWith(u"Nicht gespeichert: Die Cloud antwortet mit 500"_s));
    cloud->beenden();
    fenster->sichern();
    QTRY_VERIFY(info().startsWith(u"Nicht gespeichert: "_s) && !info().contains(u"500"));
    QVERIFY(cloud->starten());
    cloud->setSzenario(Szenario::Keins);
    QSignalSpy ende(fenster.get(), &QDialog::finished);
    fenster->sichern();
    QTRY_COMPARE(ende.size(), 1);
    QCOMPARE(cloud->welt().geraete.first().lokal.size(), 4);
}

KALVARO_FENSTERTEST(TestEinstellungendemocloud)
#include "tst_einstellungendemocloud.moc"
