#include "doubles/ereignisse.h"
#include "platform/macos/macarbeitsplatz.h"
#include "testlauf.h"

#include <QDesktopServices>
#include <QThread>
#include <QUrl>
#include <QWindow>

#include <memory>

using namespace kalvaro;
using namespace Qt::StringLiterals;

using Antwort = std::optional<QString>;

// What the system is asked for, and how its answers come in.
class TestMacarbeitsplatz final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        buendel.clear();
        vorne.clear();
        auftritte.clear();
        antworten.clear();
        sitzung = std::make_unique<MacArbeitsplatz>(Arbeitsplatzzugang{
            .oeffnen =
                [this](const QString &was, auto fertig) {
                    buendel.append(was);
                    antwort = std::move(fertig);
                },
            .nachVorn = [this](QWindow &fenster) { vorne.append(&fenster); },
            .auftreten = [this](auto auftritt) { auftritte.append(auftritt); },
            .wachen =
                [this](std::function<void()> ruf) {
                    auto halter = std::make_shared<std::function<void()>>(std::move(ruf));
                    wache = halter;
                    return halter;
                }});
    }
    void cleanup() { sitzung.reset(); }

    void fragtNachGenauDemBuendel()
    {
        QObject besitzer;
        starten(u"/Applications/rekordbox 7 ü/rekordbox.app"_s, besitzer);
        QCOMPARE(buendel, QStringList{u"/Applications/rekordbox 7 ü/rekordbox.app"_s});
    }

    // The system answers on a thread of its own; ours is told on its own.
    void dieAntwortKommtAufUnserenFaden()
    {
        QObject besitzer;
        const QThread *faden = nullptr;
        sitzung->starten(u"/A/x.app"_s, &besitzer, [&](const Antwort &was) {
            faden = QThread::currentThread();
            antworten.append(was);
        });
        inEinemFaden([this] { antwort(std::nullopt); });
        QVERIFY(antworten.isEmpty());
        QTRY_COMPARE(antworten, QList<Antwort>{Antwort()});
        QCOMPARE(faden, QThread::currentThread());
    }

    void derGrundNenntDasBuendel()
    {
        QObject besitzer;
        starten(u"/A/x.app"_s, besitzer);
        antwort(Oeffnungsfehler{u"NSOSStatusErrorDomain"_s, -10660});
        QTRY_COMPARE(antworten, QList<Antwort>{u"„/A/x.app“ liegt im Papierkorb."_s});
    }

    // The user was asked whether to trust it, and took longer than the window lived.
    void eineSpaeteAntwortErreichtNiemanden()
    {
        auto besitzer = std::make_unique<QObject>();
        starten(u"/A/x.app"_s, *besitzer);
        besitzer.reset();
        antwort(std::nullopt);
        ereignisseAbarbeiten();
        QVERIFY(antworten.isEmpty());
    }

    void derArbeitsplatzIstWegUndDieAntwortKommt()
    {
        QObject besitzer;
        starten(u"/A/x.app"_s, besitzer);
        sitzung.reset();
        antwort(std::nullopt);
        QTRY_COMPARE(antworten.size(), 1);
    }

    void eineZweiteAntwortZaehltNicht()
    {
        QObject besitzer;
        starten(u"/A/x.app"_s, besitzer);
        antwort(std::nullopt);
        antwort(Oeffnungsfehler{u"NSCocoaErrorDomain"_s, 4});
        ereignisseAbarbeiten();
        QCOMPARE(antworten, QList<Antwort>{Antwort()});
    }

    void holtUndZeigt()
    {
        QWindow fenster;
        sitzung->nachVorn(fenster);
        QCOMPARE(vorne, QList<const QWindow *>{&fenster});
        sitzung->auftreten(Arbeitsplatz::Auftritt::Regulaer);
        sitzung->auftreten(Arbeitsplatz::Auftritt::Zubehoer);
        QCOMPARE(auftritte, (QList<Arbeitsplatz::Auftritt>{Arbeitsplatz::Auftritt::Regulaer,
                                                           Arbeitsplatz::Auftritt::Zubehoer}));
    }

    // The system is listened to only while somebody wants to know.
    void hoertNurSolange()
    {
        QVERIFY(wache.expired());
        int gezaehlt = 0;
        sitzung->beiAufwachen([&gezaehlt] { ++gezaehlt; });
        QVERIFY(!wache.expired());
        (*wache.lock())();
        QCOMPARE(gezaehlt, 0); // from the event loop
        QTRY_COMPARE(gezaehlt, 1);
        (*wache.lock())();
        sitzung->beiAufwachen({});
        QVERIFY(wache.expired());
        ereignisseAbarbeiten();
        QCOMPARE(gezaehlt, 1);
        sitzung->beiAufwachen([] {});
        sitzung.reset();
        QVERIFY(wache.expired());
    }

private:
    void starten(const QString &was, QObject &besitzer)
    {
        sitzung->starten(was, &besitzer, [this](const Antwort &grund) { antworten.append(grund); });
    }

    static void inEinemFaden(const std::function<void()> &was)
    {
        const std::unique_ptr<QThread> faden(QThread::create(was));
        faden->start();
        faden->wait();
    }

    QStringList buendel;
    QList<const QWindow *> vorne;
    QList<Arbeitsplatz::Auftritt> auftritte;
    Arbeitsplatzzugang::Oeffnungsruf antwort;
    std::weak_ptr<std::function<void()>> wache;
    QList<Antwort> antworten;
    std::unique_ptr<MacArbeitsplatz> sitzung;
};

KALVARO_FENSTERTEST(TestMacarbeitsplatz)
#include "tst_macarbeitsplatz.moc"
