// The program between start and end: its two ways of life, and what it does without an account.

#include "app/programm.h"

#include "app/mitschnitt.h"
#include "steuerungswelt.h"
#include "testlauf.h"

#include <QApplication>
#include <QImage>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTimer>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

const auto gut = abgleichAntwort(u"aktuell"_s);
const auto guterText = u"Bibliothek ist abgeglichen\nAuf dem neuesten Stand – es gab nichts zu "
                       "übertragen.\n"_s;
const QString startzeile = u"gestartet (1.4, Gerät Studio-Mac)"_s;
const QString nichtEingerichtet = u"kalvaro ist auf diesem Mac noch nicht eingerichtet."_s;

constexpr int verirrt = 99; // the event loop did not end by itself

const QList regulaer{Arbeitsplatz::Auftritt::Regulaer};
const QList zubehoer{Arbeitsplatz::Auftritt::Zubehoer};

} // namespace

class TestProgramm final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        p = std::make_unique<Steuerungswelt>();
        Steuerungswelt::ordner().schreiben(
            u"konto.json"_s, "{\"geraet\":\"Studio-Mac\",\"server\":[\"http://cloud\"]}");
        programm = std::make_unique<Programm>(p->umgebung);
        QApplication::setQuitOnLastWindowClosed(true);
    }
    void cleanup()
    {
        programm.reset();
        p.reset();
    }

    void imFenster()
    {
        programm->starten({});
        p->vor();

        QCOMPARE(Steuerungswelt::protokoll(),
                 (QStringList{startzeile, u"Abgleich (vorstart) ..."_s}));
        QCOMPARE(p->arbeitsplatz.auftritte, regulaer + regulaer);
        QVERIFY(fenster() && fenster()->isVisible());
        QVERIFY(p->statusobjekt.menue);
    }

    void imHintergrund()
    {
        programm->starten({.hintergrund = true});
        p->vor(14);

        QCOMPARE(Steuerungswelt::protokoll(), QStringList{startzeile});
        QCOMPARE(p->arbeitsplatz.auftritte, zubehoer);
        QVERIFY(!fenster());
        QVERIFY(p->statusobjekt.menue);
        p->vor(1);
        QCOMPARE(p->anlaesse(), QStringList{u"anmeldung"_s});
        QVERIFY(!fenster());
    }

    void ohneKonto_data()
    {
        QTest::addColumn<QByteArray>("datei");
        QTest::addColumn<QString>("grund"); // a part of it
        QTest::addColumn<Kommandozeile>("wie");
        const Kommandozeile bild{.bild = u"/gibt/es/nicht/bild.png"_s};
        QTest::newRow("missing") << QByteArray() << u"konto.json"_s << Kommandozeile{};
        QTest::newRow("missing, in the background")
            << QByteArray() << u"konto.json"_s << Kommandozeile{.hintergrund = true};
        QTest::newRow("missing, for a picture") << QByteArray() << u"konto.json"_s << bild;
        QTest::newRow("incomplete")
            << QByteArray("{}") << u"konto.json ist unvollständig."_s << Kommandozeile{};
        QTest::newRow("no JSON") << QByteArray("<b>{") << u"kein gültiges JSON"_s
                                 << Kommandozeile{};
    }
    void ohneKonto()
    {
        QFETCH(const QByteArray, datei);
        QFETCH(const QString, grund);
        QFETCH(const Kommandozeile, wie);
        kontoSetzen(datei);
        Mitschnitt fehlerausgabe(stderr);

        const int ausgang = laufenLassen([&] { programm->starten(wie); });

        const QStringList zeilen = fehlerausgabe.beenden().split(u'\n');
        QCOMPARE(ausgang, 0);
        QCOMPARE(zeilen.size(), 3);
        QCOMPARE(zeilen[0], nichtEingerichtet);
        QVERIFY2(zeilen[1].contains(grund), qPrintable(zeilen[1]));
        QCOMPARE(zeilen[1], Konto::laden().error());
        nichtsGeschah();
    }

    // With a display an alert says the same, literally, and closing it ends the program.
    void ohneKontoMitBildschirm()
    {
        kontoSetzen({});
        Programm sichtbar(p->umgebung, true);
        Mitschnitt fehlerausgabe(stderr);
        sichtbar.starten({});
        const QString geschrieben = fehlerausgabe.beenden();
        auto *const alarm = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());

        QVERIFY(alarm && alarm->isVisible());
        QCOMPARE(alarm->text(), nichtEingerichtet);
        QCOMPARE(alarm->informativeText(), Konto::laden().error());
        QCOMPARE(geschrieben, alarm->text() + u'\n' + alarm->informativeText() + u'\n');
        QCOMPARE(alarm->buttons().size(), 1);
        const auto labels = alarm->findChildren<QLabel *>();
        for (const QLabel *label : labels) {
            QVERIFY(label->text().isEmpty() || label->textFormat() == Qt::PlainText);
        }
        nichtsGeschah();

        QVERIFY(!alarm->windowIcon().isNull());
        QCOMPARE(p->arbeitsplatz.vorne, QList<const QWindow *>{alarm->windowHandle()});
        alarm->showMinimized();
        sichtbar.erfuellen(Wunsch::Oeffnen); // a second start
        QVERIFY(!alarm->isMinimized());
        QCOMPARE(p->arbeitsplatz.vorne.size(), 2);
        QCOMPARE(laufenLassen([&] { alarm->buttons().first()->click(); }), 0);
        sichtbar.erfuellen(Wunsch::Oeffnen); // it is about to end
        QCOMPARE(p->arbeitsplatz.vorne.size(), 2);
    }

    void bild_data()
    {
        QTest::addColumn<bool>("hintergrund");
        QTest::newRow("") << false;
        QTest::newRow("with --hintergrund") << true;
    }
    void bild()
    {
        QFETCH(const bool, hintergrund);
        const QString pfad = p->programme.pfad() + u"/bild.png"_s;
        p->abgleiche = {gut};
        Mitschnitt ausgabe(stdout);

        const int ausgang = laufenLassen([&] {
            programm->starten({.hintergrund = hintergrund, .bild = pfad});
            p->vor();
            QVERIFY(!QFile::exists(pfad));
            p->vor(0.4);
        });

        QCOMPARE(ausgabe.beenden(), guterText);
        QCOMPARE(ausgang, 0);
        QCOMPARE(QImage(pfad, "PNG").width(), 520);
        QCOMPARE(p->anlaesse(), QStringList{u"hand"_s});
        QCOMPARE(p->arbeitsplatz.auftritte, hintergrund ? zubehoer : regulaer);
        QCOMPARE(Steuerungswelt::protokoll(), QStringList{startzeile});
        QVERIFY(p->statusobjekt.verlauf.isEmpty());
        QVERIFY(p->mitteilungen.alle.isEmpty());
    }

    void bildEndetImmer_data()
    {
        QTest::addColumn<QString>("pfad");
        QTest::addColumn<bool>("laeuft");
        QTest::newRow("the picture cannot be written") << u"/gibt/es/nicht/bild.png"_s << false;
        QTest::newRow("an empty path") << QString(u""_s) << false;
        QTest::newRow("rekordbox runs: no sync") << u"/gibt/es/nicht/bild.png"_s << true;
    }
    void bildEndetImmer()
    {
        QFETCH(const QString, pfad);
        QFETCH(const bool, laeuft);
        p->abgleiche = {Scripttransport::fehler(u"Verbindung weg."_s)};
        p->rekordboxLaeuft(laeuft, laeuft, 0);
        Mitschnitt ausgabe(stdout);

        const int ausgang = laufenLassen([&] {
            programm->starten({.bild = pfad});
            p->vor(0.4);
        });

        // Nothing was printed while rekordbox ran.
        const QString verdikt =
            laeuft ? u"rekordbox läuft\nNach dem Beenden überträgt kalvaro deine Änderungen "
                     "automatisch.\n"_s
                   : u"Nicht abgeglichen\nKeine Verbindung zur Cloud – rekordbox startet mit dem "
                     "Stand dieses Macs. (Verbindung weg.)\n"_s;
        const QString gedruckt = ausgabe.beenden(); // Qt's own warnings may follow
        QVERIFY2(gedruckt.startsWith(verdikt), qPrintable(gedruckt));
        QCOMPARE(ausgang, 0);
        QCOMPARE(p->anlaesse().size(), laeuft ? 0 : 1);
    }

    // Starting the program again creates the window on first use, reuses it later, and always
    // starts a sync.
    void wiederOeffnen()
    {
        p->abgleiche = {gut, gut, gut};
        programm->starten({.hintergrund = true});
        p->vor();

        programm->erfuellen(Wunsch::Oeffnen);
        p->vor();
        const QWidget *const erstes = fenster();
        QVERIFY(erstes && erstes->isVisible());
        QCOMPARE(p->anlaesse(), QStringList{u"vorstart"_s});

        programm->erfuellen(Wunsch::Oeffnen); // while it is visible
        p->vor();
        QCOMPARE(p->anlaesse().size(), 2);

        fenster()->close();
        programm->erfuellen(Wunsch::Oeffnen);
        p->vor();
        QCOMPARE(fenster(), erstes);
        QVERIFY(erstes->isVisible());
        QCOMPARE(p->anlaesse(), QStringList(3, u"vorstart"_s));
    }

    void wiederOeffnenOhneSteuerung()
    {
        programm->erfuellen(Wunsch::Oeffnen); // too early
        QVERIFY(!fenster());

        programm->starten({.bild = u"/gibt/es/nicht/bild.png"_s});
        p->vor();
        programm->erfuellen(Wunsch::Oeffnen);
        QVERIFY(!p->arbeitsplatz.geweckt); // nobody listens
        p->vor(30);

        QCOMPARE(p->anlaesse(), QStringList{u"hand"_s});
    }

    // From the desktop's menu for the program, or by another start.
    void abgleichenAufWunsch()
    {
        p->abgleiche = {gut, gut};
        programm->starten({.hintergrund = true});
        p->vor(15);

        programm->erfuellen(Wunsch::Abgleichen);
        p->vor();

        QCOMPARE(p->anlaesse(), (QStringList{u"anmeldung"_s, u"hand"_s}));
        QVERIFY(!fenster());
    }

    void abgleichenBeimStartImHintergrund()
    {
        p->abgleiche = {gut};
        programm->starten({.hintergrund = true, .abgleichen = true});
        p->vor();

        QCOMPARE(p->anlaesse(), QStringList{u"hand"_s});
        QVERIFY(!fenster());
    }

    void beendenAufWunsch()
    {
        const int ausgang = laufenLassen([&] {
            programm->starten({.hintergrund = true});
            programm->erfuellen(Wunsch::Beenden);
        });

        QCOMPARE(ausgang, 0);
        QCOMPARE(Steuerungswelt::protokoll(), (QStringList{startzeile, u"beendet"_s}));
    }

    void beendenOhneKonto()
    {
        kontoSetzen({});
        Programm sichtbar(p->umgebung, true);
        Mitschnitt fehlerausgabe(stderr);
        sichtbar.starten({});
        fehlerausgabe.beenden();

        const int ausgang = laufenLassen([&] { sichtbar.erfuellen(Wunsch::Beenden); });

        QCOMPARE(ausgang, 0);
        nichtsGeschah();
        delete QApplication::activeModalWidget();
    }

    // A start by the bus does nothing until it knows what for.
    void dienst_data()
    {
        QTest::addColumn<Wunsch>("wunsch");
        QTest::newRow("to open") << Wunsch::Oeffnen;
        QTest::newRow("to sync") << Wunsch::Abgleichen;
    }
    void dienst()
    {
        QFETCH(const Wunsch, wunsch);
        p->abgleiche = {gut};
        programm->starten({.dienst = true});
        p->vor(9);
        nichtsGeschah();

        programm->erfuellen(wunsch);
        p->vor(5);

        QVERIFY(fenster() && fenster()->isVisible());
        QCOMPARE(p->anlaesse(), QStringList{u"vorstart"_s});
        QCOMPARE(Steuerungswelt::protokoll().first(), startzeile);
    }

    // A start at login that comes while another one waits for its wish must not be lost with it.
    void dienstUndStartImHintergrund()
    {
        programm->starten({.dienst = true});
        programm->erfuellen(Wunsch::Hintergrund);
        p->vor(15);

        QCOMPARE(p->anlaesse(), QStringList{u"anmeldung"_s});
        QVERIFY(!fenster());
        programm->erfuellen(Wunsch::Hintergrund); // it runs: nothing
        p->vor(1);
        QVERIFY(!fenster());
        QCOMPARE(p->anlaesse().size(), 1);
    }

    // The window brings no sync then.
    void abgleichenWaehrendRekordboxLaeuft()
    {
        p->rekordboxLaeuft(true, true, 0);
        programm->starten({.abgleichen = true});
        p->vor();

        QCOMPARE(p->anlaesse(), QStringList{u"hand"_s});
    }

    void dienstZumBeenden()
    {
        const int ausgang = laufenLassen([&] {
            programm->starten({.dienst = true});
            programm->erfuellen(Wunsch::Beenden);
        });

        QCOMPARE(ausgang, 0);
        nichtsGeschah();
    }

    void dienstOhneWunsch()
    {
        const int ausgang = laufenLassen([&] {
            programm->starten({.dienst = true});
            p->vor(10);
        });

        QCOMPARE(ausgang, 0);
        nichtsGeschah();
    }

    void aufgewacht()
    {
        p->abgleiche = {gut, gut};
        programm->starten({.hintergrund = true});
        p->vor(15);

        p->arbeitsplatz.geweckt();
        p->vor(20);

        QCOMPARE(p->anlaesse(), (QStringList{u"anmeldung"_s, u"aufgewacht"_s}));
    }

    // Closing the last window in controller mode does not quit; in picture mode it does.
    void letztesFenster_data()
    {
        QTest::addColumn<bool>("bild");
        QTest::newRow("with the controller") << false;
        QTest::newRow("picture mode") << true;
    }
    void letztesFenster()
    {
        QFETCH(const bool, bild);
        constexpr int vonHand = 7;
        programm->starten(
            {.bild = bild ? std::optional(u"/gibt/es/nicht/bild.png"_s) : std::nullopt});
        p->vor();

        const int ausgang = laufenLassen([&] {
            fenster()->close();
            QTimer::singleShot(100, qApp, [] { QCoreApplication::exit(vonHand); });
        });

        QCOMPARE(ausgang, bild ? 0 : vonHand);
        QVERIFY(!fenster()->isVisible());
    }

private:
    static QWidget *fenster()
    {
        const auto alle = QApplication::topLevelWidgets();
        for (QWidget *widget : alle) {
            if (widget->objectName() == u"hauptfenster") {
                return widget;
            }
        }
        return nullptr;
    }

    // Runs the event loop, in it `tat`, until something ends it; returns its exit code.
    static int laufenLassen(const std::function<void()> &tat)
    {
        QMetaObject::invokeMethod(qApp, tat, Qt::QueuedConnection);
        QTimer notbremse;
        notbremse.callOnTimeout(qApp, [] { QCoreApplication::exit(verirrt); });
        notbremse.start(20'000);
        return QCoreApplication::exec();
    }

    static void kontoSetzen(const QByteArray &inhalt)
    {
        Steuerungswelt::ordner().leeren();
        if (!inhalt.isEmpty()) {
            Steuerungswelt::ordner().schreiben(u"konto.json"_s, inhalt);
        }
    }

    void nichtsGeschah() const
    {
        QVERIFY(Steuerungswelt::protokoll().isEmpty());
        QVERIFY(p->statusobjekt.verlauf.isEmpty());
        QVERIFY(p->netz.anfragen().isEmpty());
        QVERIFY(!fenster());
    }

    std::unique_ptr<Steuerungswelt> p;
    std::unique_ptr<Programm> programm;
};

KALVARO_FENSTERTEST(TestProgramm)
#include "tst_programm.moc"
