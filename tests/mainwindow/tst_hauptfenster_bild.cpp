#include "mainwindow/bild.h"
#include "mainwindow/fensterwelt.h"
#include "testlauf.h"
#include "ui/farbe.h"

#include <QImage>
#include <QTemporaryDir>

using namespace kalvaro;
using namespace Qt::StringLiterals;

// Picture mode.
class TestHauptfensterBild final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void schreibtUndEndet();
    void erstNachVierZehntelsekunden();
    void auchWennRekordboxLaeuft();
    void auchWennEsSichNichtSchreibenLaesst();
    void ohnePfadGehtEsWeiter();
    void fensterVorherWeg();
    void zeigtDenGanzenInhalt();
    void ohneInhalt();

private:
    [[nodiscard]] QString pfad() const { return ordner.filePath(u"bild & mehr.png"_s); }

    Datenordner &daten = Testumgebung::ordner();
    QTemporaryDir ordner;
};

void TestHauptfensterBild::schreibtUndEndet()
{
    Fensterwelt p({.verbleib = Verbleib::Allein, .bild = pfad(), .autostart = true});
    p.abgleiche = {Fensterwelt::gut()};
    p.fenster->starten();
    QVERIFY(p.fenster->isVisible());
    Fensterwelt::ruhe();
    QCOMPARE(p.knopf(u"knStart"_s)->text(), u"rekordbox 7.1.4 starten"_s);
    QTRY_COMPARE(p.titel(), u"Bibliothek ist abgeglichen"_s);
    QVERIFY(p.netz.anfragen().last().body->contains(R"("anlass":"hand")"));
    QVERIFY(p.countdown().isEmpty());
    QVERIFY(p.arbeitsplatz.auftritte.isEmpty());
    QVERIFY(beendetDasProgramm([&] { p.uhr.vor(Sekunden(0.4)); }));

    const QImage bild(pfad(), "PNG");
    QCOMPARE(bild.width(), qRound(520 * p.fenster->devicePixelRatioF()));
    QVERIFY(bild.height() > 400);
    QCOMPARE(bild.pixelColor(2, 2), Farbe::fenster(p.fenster->palette()));
}

void TestHauptfensterBild::erstNachVierZehntelsekunden()
{
    QFile::remove(pfad());
    Fensterwelt p({.verbleib = Verbleib::Allein, .bild = pfad()});
    p.abgleiche = {Fensterwelt::gut()};
    p.fenster->starten();
    QTRY_COMPARE(p.titel(), u"Bibliothek ist abgeglichen"_s);
    QVERIFY(!beendetDasProgramm([&] { p.uhr.vor(Sekunden(0.399)); }));
    QVERIFY(!QFile::exists(pfad()));
    QVERIFY(beendetDasProgramm([&] { p.uhr.vor(Sekunden(0.001)); }));
    QVERIFY(QFile::exists(pfad()));
}

void TestHauptfensterBild::auchWennRekordboxLaeuft()
{
    QFile::remove(pfad());
    Fensterwelt p({.verbleib = Verbleib::Allein, .bild = pfad()});
    p.laeuft(1, 0);
    p.fenster->starten();
    Fensterwelt::ruhe();
    QCOMPARE(p.titel(), u"rekordbox läuft"_s);
    QVERIFY(beendetDasProgramm([&] { p.uhr.vor(Sekunden(0.4)); }));
    QVERIFY(p.standfragen().isEmpty());
    QVERIFY(QFile::exists(pfad()));
}

void TestHauptfensterBild::auchWennEsSichNichtSchreibenLaesst()
{
    const QString unmoeglich = ordner.filePath(u"gibt/es/nicht.png"_s);
    Fensterwelt p({.verbleib = Verbleib::Allein, .bild = unmoeglich});
    p.laeuft(1, 0);
    p.fenster->starten();
    QVERIFY(beendetDasProgramm([&] { p.uhr.vor(Sekunden(0.4)); }));
    QVERIFY(!QFile::exists(unmoeglich));
}

void TestHauptfensterBild::ohnePfadGehtEsWeiter()
{
    Fensterwelt p({.verbleib = Verbleib::Allein});
    p.laeuft(1, 0);
    p.fenster->starten();
    QVERIFY(!beendetDasProgramm([&] { p.uhr.vor(Sekunden(10)); }));
    QVERIFY(p.fenster->isVisible());
}

void TestHauptfensterBild::fensterVorherWeg()
{
    QFile::remove(pfad());
    Fensterwelt p({.verbleib = Verbleib::Allein, .bild = pfad()});
    p.laeuft(1, 0);
    p.fenster->starten();
    p.fenster.reset();
    QVERIFY(!beendetDasProgramm([&] { p.uhr.vor(Sekunden(1)); }));
    QVERIFY(!QFile::exists(pfad()));
}

// Also what a low screen would hide.
void TestHauptfensterBild::zeigtDenGanzenInhalt()
{
    Fensterwelt p;
    QJsonObject mehr = angebot(u"1.10"_s);
    mehr.insert(u"ergebnis"_s, QJsonObject{{u"fehler"_s, u"Zeile\n"_s.repeated(12).trimmed()}});
    p.abgeglichen(Fensterwelt::antwort(u"fehler"_s, mehr));
    QWidget *const ganz = p.teil(u"ganz"_s);
    QVERIFY(bildSpeichern(ganz, pfad()));
    const QImage bild(pfad(), "PNG");
    QCOMPARE(bild.size(), ganz->size() * ganz->devicePixelRatioF());
    QCOMPARE(ganz->width(), 520);
}

void TestHauptfensterBild::ohneInhalt()
{
    QFile::remove(pfad());
    QVERIFY(!bildSpeichern(nullptr, pfad()));
    QVERIFY(!QFile::exists(pfad()));
}

KALVARO_FENSTERTEST(TestHauptfensterBild)
#include "tst_hauptfenster_bild.moc"
