// The settings sheet with a library that is read beside the event loop.

#include "antworten.h"
#include "fensterpruefstand.h"
#include "foundation/nebenarbeit.h"
#include "testlauf.h"

#include <QLineEdit>

#include <condition_variable>
#include <mutex>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

constexpr int anzahl = 20'000;

QJsonObject bibliothek(int wieviele = anzahl)
{
    QJsonArray liste{ordner(u"o"_s, u"root"_s)};
    for (int i = 0; i < wieviele; ++i) {
        liste.append(eintrag(QString::number(i), u"o"_s, {{u"seq"_s, wieviele - i}}));
    }
    return antwort(liste, {u"u7"_s});
}

// Keeps the thread busy until it is told to go on, so that nothing is read before.
class Aufenthalt
{
public:
    Aufenthalt()
    {
        new Nebenarbeit<int>(
            [z = zustand](const Abbruch &) {
                std::unique_lock sperre(z->schloss);
                z->weiter.wait(sperre, [&] { return z->offen; });
                return 0;
            },
            &besitzer, [](int) {});
    }
    Aufenthalt(const Aufenthalt &) = delete;
    Aufenthalt &operator=(const Aufenthalt &) = delete;
    ~Aufenthalt() { beenden(); }
    void beenden()
    {
        const std::lock_guard sperre(zustand->schloss);
        zustand->offen = true;
        zustand->weiter.notify_all();
    }

private:
    struct Zustand
    {
        std::mutex schloss;
        std::condition_variable weiter;
        bool offen = false;
    };
    const std::shared_ptr<Zustand> zustand = std::make_shared<Zustand>();
    QObject besitzer;
};

// Whether the thread has nothing left to do.
void abwarten()
{
    QObject besitzer;
    bool fertig = false;
    new Nebenarbeit<int>([](const Abbruch &) { return 0; }, &besitzer, [&](int) { fertig = true; });
    QTRY_VERIFY(fertig);
}

} // namespace

class TestEinstellungengross final : public Fensterpruefstand
{
    Q_OBJECT

private Q_SLOTS:
    void wirdNebenherGelesen();
    void sucheErstNachDemLesen();
    void schliessenMittenImLesen();
    void zweitesOeffnenWaehrendDesErstenLesens();
    void sichernVorDemEndeSchicktKeineAuswahl();
    void zentraleGehtMittenImLesen();
    void zuGross();
    void fehlertextEinerGrossenAntwort();
    void auswahlBleibtWieSieWar();

private:
    void beantworten(const QByteArray &daten, int status = 200);
};

// Opens a sheet whose question for the playlists has been answered.
void TestEinstellungengross::beantworten(const QByteArray &daten, int status)
{
    oeffnen();
    weg->dann(Scripttransport::antwort(200, "{}"));
    weg->dann(Scripttransport::antwort(status, daten));
    const qsizetype vorher = weg->anfragen().size();
    fenster->laden();
    QTRY_VERIFY(weg->anfragen().size() > vorher && weg->zeilen().last().endsWith(u"playlisten"));
    QCoreApplication::processEvents();
}

void TestEinstellungengross::wirdNebenherGelesen()
{
    Aufenthalt aufenthalt;
    beantworten(alsText(bibliothek()));
    for (int i = 0; i < 20; ++i) {
        QCoreApplication::processEvents();
    }
    QCOMPARE(info()->text(), u"Playlisten werden geladen …"_s);
    QCOMPARE(modell().rowCount(), 0);

    aufenthalt.beenden();
    QTRY_COMPARE(modell().alle().size(), size_t(anzahl) + 1);
    QCOMPARE(modell().alle()[1].name, u"N%1"_s.arg(anzahl - 1));
    QCOMPARE(modell().alle().back().name, u"N0"_s);
    QCOMPARE(info()->text(), u"1 Playlist ausgewählt (10 Einträge). "
                             "Kopiert wird beim nächsten Abgleich."_s);
}

void TestEinstellungengross::sucheErstNachDemLesen()
{
    Aufenthalt aufenthalt;
    beantworten(alsText(bibliothek()));
    auto *const suchfeld = feld<QLineEdit>(u"suchfeld"_s);
    QVERIFY(!suchfeld->isEnabled());
    suchfeld->setText(u"n1999"_s); // what was there before the tree came applies to it
    aufenthalt.beenden();
    QTRY_VERIFY(suchfeld->isEnabled());
    QCOMPARE(modell().rowCount(), 1);
    QCOMPARE(modell().rowCount(modell().index(0, 0)), 11);
}

void TestEinstellungengross::schliessenMittenImLesen()
{
    for (int runde = 0; runde < 20; ++runde) {
        beantworten(alsText(bibliothek(2'000)));
        for (int i = 0; i < runde % 4; ++i) {
            QCoreApplication::processEvents();
        }
        fenster->abbrechen();
        delete fenster;
        zentraleErneuern();
    }
    abwarten();
    QVERIFY(fenster.isNull());
}

void TestEinstellungengross::zweitesOeffnenWaehrendDesErstenLesens()
{
    Aufenthalt aufenthalt;
    beantworten(alsText(bibliothek()));
    fenster->abbrechen();
    delete fenster;
    zentraleErneuern();
    beantworten(alsText(bibliothek(3'000)));
    aufenthalt.beenden();
    QTRY_COMPARE(modell().alle().size(), size_t(3'001));
}

void TestEinstellungengross::sichernVorDemEndeSchicktKeineAuswahl()
{
    Aufenthalt aufenthalt;
    beantworten(alsText(bibliothek()));
    const qsizetype gefragt = weg->anfragen().size();
    fenster->sichern();
    QCOMPARE(fenster->result(), 1);
    aufenthalt.beenden();
    abwarten();
    QCOMPARE(weg->anfragen().size(), gefragt);
    QCOMPARE(modell().rowCount(), 0);
}

void TestEinstellungengross::zentraleGehtMittenImLesen()
{
    Aufenthalt aufenthalt;
    beantworten(alsText(bibliothek()));
    zentrale.reset();
    aufenthalt.beenden();
    abwarten();
    QCOMPARE(modell().rowCount(), 0);
    delete fenster;
}

void TestEinstellungengross::zuGross()
{
    beantworten("{\"playlisten\":[" + QByteArray("{},").repeated(3'000'000) + "{}]}");
    QTRY_COMPARE(info()->text(), u"Playlisten nicht ladbar: Die Antwort der Cloud ist zu groß."_s);
    QVERIFY(!feld<QLineEdit>(u"suchfeld"_s)->isEnabled());
}

void TestEinstellungengross::fehlertextEinerGrossenAntwort()
{
    const QByteArray ballast(200'000, 'x');
    beantworten("{\"fehler\":\"kaputt\",\"x\":\"" + ballast + "\"}", 500);
    QTRY_COMPARE(info()->text(), u"Playlisten nicht ladbar: Die Cloud antwortet mit 500: kaputt"_s);
}

void TestEinstellungengross::auswahlBleibtWieSieWar()
{
    laden(bibliothek());
    anhaken(0);
    QCOMPARE(info()->text(), u"20000 Playlisten ausgewählt (200.000 Einträge). "
                             "Kopiert wird beim nächsten Abgleich."_s);
    anhaken(0, false);
    const int sieben = anzahl - 7;
    QCOMPARE(modell().alle()[size_t(sieben)].uuid, u"u7"_s);
    anhaken(sieben);
    fenster->sichern(); // as it was loaded
    QCOMPARE(fenster->result(), 1);
    QVERIFY(weg->anfragen().isEmpty());
}

KALVARO_FENSTERTEST(TestEinstellungengross)
#include "tst_einstellungengross.moc"
