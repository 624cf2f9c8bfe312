#include "doubles/datenordner.h"
#include "doubles/ereignisse.h"
#include "doubles/mitteilung.h"
#include "platform/macos/macmitteilungen.h"
#include "testlauf.h"

#include <QThread>

#include <memory>

using namespace kalvaro;
using namespace Qt::StringLiterals;

// What the notification centre is asked for, and how its calls come in.
class TestMacmitteilungen final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        daten.leeren();
        klicks.clear();
        gezeigt.clear();
        erlaubnis = 0;
        empfaenger = 0;
        klick = nullptr;
        mitteilungen = std::make_unique<MacMitteilungen>(
            Mitteilungszugang{.erlaubnisErbitten = [this] { ++erlaubnis; },
                              .zeigen =
                                  [this](const QString &titel, const QString &inhalt,
                                         const std::optional<QString> &ziel, auto gescheitert) {
                                      gezeigt.append({titel, inhalt, ziel});
                                      scheitern = std::move(gescheitert);
                                  },
                              .empfangen =
                                  [this](auto ruf) {
                                      ++empfaenger;
                                      klick = std::move(ruf);
                                  }});
    }
    void cleanup() { mitteilungen.reset(); }

    void reichtJedeGenauSoWeiter()
    {
        mitteilungen->mitteilen(u"Titel"_s, u"Inhalt\nzwei"_s, u"https://x.example/"_s);
        mitteilungen->mitteilen(u""_s, u"🎧"_s, {});
        QCOMPARE(gezeigt,
                 (QList<Mitteilung>{{u"Titel"_s, u"Inhalt\nzwei"_s, u"https://x.example/"_s},
                                    {u""_s, u"🎧"_s, {}}}));
        QVERIFY(daten.protokollzeilen().isEmpty());
    }

    // Whoever only draws a picture asks for nothing.
    void bittetEinmalUndErstWennJemandHoert()
    {
        mitteilungen->empfangen();
        mitteilungen->beiKlick({});
        QCOMPARE(erlaubnis, 0);
        mitteilungen->beiKlick([](const QString &) {});
        mitteilungen->beiKlick([](const QString &) {});
        QCOMPARE(erlaubnis, 1);
        QCOMPARE(empfaenger, 1);
    }

    void werZuerstHoertEmpfaengtAuch()
    {
        mitteilungen->beiKlick([](const QString &) {});
        QCOMPARE(empfaenger, 1);
        mitteilungen->empfangen();
        QCOMPARE(empfaenger, 1);
    }

    // One that was clicked while the program did not run starts it, and is told at once.
    void derKlickDerDasProgrammGestartetHatGehtNichtVerloren()
    {
        mitteilungen->empfangen();
        klick(u"eins"_s);
        klick(u"zwei"_s);
        ereignisseAbarbeiten();
        mitteilungen->beiKlick([this](const QString &ziel) { klicks.append(ziel); });
        QVERIFY(klicks.isEmpty()); // from the event loop
        ereignisseAbarbeiten();
        QCOMPARE(klicks, (QStringList{u"eins"_s, u"zwei"_s}));
        mitteilungen->beiKlick([this](const QString &ziel) { klicks.append(ziel); });
        ereignisseAbarbeiten();
        QCOMPARE(klicks.size(), 2);
    }

    void derKlickKommtAufUnserenFaden()
    {
        const QThread *faden = nullptr;
        mitteilungen->beiKlick([&](const QString &ziel) {
            faden = QThread::currentThread();
            klicks.append(ziel);
        });
        const std::unique_ptr<QThread> system(QThread::create([this] { klick(u"ziel"_s); }));
        system->start();
        QVERIFY(system->wait());
        QVERIFY(klicks.isEmpty());
        QTRY_COMPARE(klicks, QStringList{u"ziel"_s});
        QCOMPARE(faden, QThread::currentThread());
    }

    void werGegangenIstHoertNichts()
    {
        mitteilungen->beiKlick([this](const QString &ziel) { klicks.append(ziel); });
        klick(u"unterwegs"_s);
        mitteilungen.reset();
        klick(u"danach"_s);
        ereignisseAbarbeiten();
        QVERIFY(klicks.isEmpty());
    }

    // Also one that the system has kept for longer than this object lived.
    void wasScheitertStehtImProtokoll()
    {
        mitteilungen->mitteilen(u"Titel"_s, u"erste\nZeile"_s, u"ziel"_s);
        mitteilungen.reset();
        scheitern(u"nicht\nerlaubt"_s);
        QTRY_COMPARE(daten.protokollzeilen(),
                     QStringList{u"Mitteilung nicht zugestellt: Titel – erste Zeile "
                                 "(nicht erlaubt)"_s});
    }

private:
    Datenordner daten;
    QStringList klicks;
    QList<Mitteilung> gezeigt;
    int erlaubnis = 0;
    int empfaenger = 0;
    std::function<void(const QString &)> klick;
    std::function<void(const QString &)> scheitern;
    std::unique_ptr<MacMitteilungen> mitteilungen;
};

KALVARO_TEST(TestMacmitteilungen)
#include "tst_macmitteilungen.moc"
