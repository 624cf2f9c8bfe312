#include "mainwindow/bild.h"
#include "mainwindow/fensterprobe.h"
#include "ui/farbe.h"

#include <QImage>
#include <QTemporaryDir>
#include <QTest>

using namespace kalvaro;
using namespace Qt::StringLiterals;

// Picture mode.
class TstHauptfensterBild : public QObject
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

    Datenordner daten;
    QTemporaryDir ordner;
};

void TstHauptfensterBild::schreibtUndEndet()
{
    Fensterprobe p({.mitTreiber = false, .bild = pfad(), .autostart = true});
    p.antwort = R"({"betrieb":"scharf","ergebnis":{"zustand":"aktuell"}})";
    p.fenster->starten();
    QVERIFY(p.fenster->isVisible());
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

void TstHauptfensterBild::erstNachVierZehntelsekunden()
{
    QFile::remove(pfad());
    Fensterprobe p({.mitTreiber = false, .bild = pfad()});
    p.antwort = R"({"ergebnis":{"zustand":"aktuell"}})";
    p.fenster->starten();
    QTRY_COMPARE(p.titel(), u"Bibliothek ist abgeglichen"_s);
    QVERIFY(!beendetDasProgramm([&] { p.uhr.vor(Sekunden(0.399)); }));
    QVERIFY(!QFile::exists(pfad()));
    QVERIFY(beendetDasProgramm([&] { p.uhr.vor(Sekunden(0.001)); }));
    QVERIFY(QFile::exists(pfad()));
}

void TstHauptfensterBild::auchWennRekordboxLaeuft()
{
    QFile::remove(pfad());
    Fensterprobe p({.mitTreiber = false, .bild = pfad()});
    p.laeuft(1, 0);
    p.fenster->starten();
    QCOMPARE(p.titel(), u"rekordbox läuft"_s);
    QVERIFY(beendetDasProgramm([&] { p.uhr.vor(Sekunden(0.4)); }));
    QVERIFY(p.anfragen().isEmpty());
    QVERIFY(QFile::exists(pfad()));
}

void TstHauptfensterBild::auchWennEsSichNichtSchreibenLaesst()
{
    const QString unmoeglich = ordner.filePath(u"gibt/es/nicht.png"_s);
    Fensterprobe p({.mitTreiber = false, .bild = unmoeglich});
    p.laeuft(1, 0);
    p.fenster->starten();
    QVERIFY(beendetDasProgramm([&] { p.uhr.vor(Sekunden(0.4)); }));
    QVERIFY(!QFile::exists(unmoeglich));
}

void TstHauptfensterBild::ohnePfadGehtEsWeiter()
{
    Fensterprobe p({.mitTreiber = false});
    p.laeuft(1, 0);
    p.fenster->starten();
    QVERIFY(!beendetDasProgramm([&] { p.uhr.vor(Sekunden(10)); }));
    QVERIFY(p.fenster->isVisible());
}

void TstHauptfensterBild::fensterVorherWeg()
{
    QFile::remove(pfad());
    Fensterprobe p({.mitTreiber = false, .bild = pfad()});
    p.laeuft(1, 0);
    p.fenster->starten();
    p.fenster.reset();
    QVERIFY(!beendetDasProgramm([&] { p.uhr.vor(Sekunden(1)); }));
    QVERIFY(!QFile::exists(pfad()));
}

// Also what a low screen would hide.
void TstHauptfensterBild::zeigtDenGanzenInhalt()
{
    Fensterprobe p;
    Bewertung b = Fensterprobe::gut();
    b.detail = u"Zeile\n"_s.repeated(12).trimmed();
    b.neueVersion = u"1.10"_s;
    b.updateAdresse = u"https://cloud/x"_s;
    p.abgeglichen(b);
    QWidget *const ganz = p.teil(u"ganz"_s);
    QVERIFY(bildSpeichern(ganz, pfad()));
    const QImage bild(pfad(), "PNG");
    QCOMPARE(bild.size(), ganz->size() * ganz->devicePixelRatioF());
    QCOMPARE(ganz->width(), 520);
}

void TstHauptfensterBild::ohneInhalt()
{
    QFile::remove(pfad());
    QVERIFY(!bildSpeichern(nullptr, pfad()));
    QVERIFY(!QFile::exists(pfad()));
}

QTEST_MAIN(TstHauptfensterBild)
#include "tst_hauptfenster_bild.moc"
