#include "doubles/vorlesehilfe.h"
#include "fensterpruefstand.h"
#include "testlauf.h"
#include "ui/farbe.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>

using namespace kalvaro;
using namespace Qt::StringLiterals;

// Choosing and saving.
class TestEinstellungensichern final : public Fensterpruefstand
{
    Q_OBJECT

private Q_SLOTS:
    void hakenSchreibtDieZeileNeu();
    void schattenbetrieb();
    void ohneAenderungKeineAnfrage();
    void hinUndZurueckIstKeineAenderung();
    void fremdeKennungIstKeineAenderung();
    void andererReihenfolgeIstKeineAenderung();
    void sichernUebertraegtDieAuswahl();
    void waehrendDerUebertragung();
    void nichtGespeichert();
    void fehlerWirdEinmalAngesagt();
    void nachFehlerNochmalSichern();
    void optionenBleibenTrotzFehler();
    void anmeldestartNurBeiUnterschied_data();
    void anmeldestartNurBeiUnterschied();
    void versionWirdGesichert();
};

void TestEinstellungensichern::hakenSchreibtDieZeileNeu()
{
    laden(antwort(beispiel()));
    anhaken(0);
    QCOMPARE(info()->text(), u"3 Playlisten ausgewählt (30 Einträge). "
                             "Kopiert wird beim nächsten Abgleich."_s);
    anhaken(1, false);
    QCOMPARE(info()->text(), u"2 Playlisten ausgewählt (20 Einträge). "
                             "Kopiert wird beim nächsten Abgleich."_s);
}

void TestEinstellungensichern::schattenbetrieb()
{
    oeffnen(u"schatten"_s);
    laden(antwort(beispiel(), {u"u6"_s}));
    QCOMPARE(info()->text(), u"1 Playlist ausgewählt (10 Einträge). "
                             "Kopiert wird ab dem Ende des Probebetriebs."_s);
}

void TestEinstellungensichern::ohneAenderungKeineAnfrage()
{
    laden(antwort(beispiel(), {u"u2"_s}));
    fenster->sichern();
    QCOMPARE(ende->value(0).value(0).toInt(), 1);
    ereignisseAbarbeiten();
    QVERIFY(weg->anfragen().isEmpty());
    QVERIFY(ordner.protokollzeilen().isEmpty());
    QVERIFY(!ordner.inhalt(u"einstellungen.json"_s).isEmpty());
}

void TestEinstellungensichern::hinUndZurueckIstKeineAenderung()
{
    laden(antwort(beispiel(), {u"u2"_s}));
    anhaken(5);
    anhaken(5, false);
    fenster->sichern();
    ereignisseAbarbeiten();
    QVERIFY(weg->anfragen().isEmpty());
}

void TestEinstellungensichern::fremdeKennungIstKeineAenderung()
{
    // The server keeps a playlist that is no longer in the library.
    laden(antwort(beispiel(), {u"weg"_s, u"u2"_s}));
    fenster->sichern();
    ereignisseAbarbeiten();
    QVERIFY(weg->anfragen().isEmpty());
    QCOMPARE(ende->value(0).value(0).toInt(), 1);
}

void TestEinstellungensichern::andererReihenfolgeIstKeineAenderung()
{
    laden(antwort(beispiel(), {u"u6"_s, u"u2"_s, u"u6"_s}));
    fenster->sichern();
    ereignisseAbarbeiten();
    QVERIFY(weg->anfragen().isEmpty());
}

void TestEinstellungensichern::sichernUebertraegtDieAuswahl()
{
    laden(antwort(beispiel(), {u"u6"_s, u"weg"_s}));
    anhaken(3); // the folder N4 with N5
    weg->dann(Scripttransport::antwort(200, "nicht gelesen"));
    fenster->sichern();
    QTRY_COMPARE(ende->size(), 1);
    QCOMPARE(ende->value(0).value(0).toInt(), 1);
    QCOMPARE(weg->zeilen(), QStringList{u"POST http://cloud/api/einstellungen"_s});
    QCOMPARE(weg->anfragen().last().limit.count(), 20.0);
    QCOMPARE(gesendet(), (QJsonObject{{u"geraet"_s, u"demo-mac"_s},
                                      {u"lokal"_s, QJsonArray{u"u4"_s, u"u5"_s, u"u6"_s}}}));
    QCOMPARE(ordner.protokollzeilen(), QStringList{u"lokal gespeicherte Playlisten: 3"_s});
}

void TestEinstellungensichern::waehrendDerUebertragung()
{
    laden(antwort(beispiel()));
    anhaken(5);
    feld<QWidget>(u"baum"_s)->setFocus();
    fenster->sichern();
    QCOMPARE(info()->text(), u"Wird an die Cloud übertragen …"_s);
    QVERIFY(!feld<QPushButton>(u"knSichern"_s)->isEnabled());
    QVERIFY(feld<QPushButton>(u"knAbbrechen"_s)->isEnabled());
    QTRY_COMPARE(weg->haengend(), 1);

    // Nothing that is pressed now reaches the choice, the request or the buttons.
    QVERIFY(!feld<QWidget>(u"baum"_s)->isEnabled());
    for (const Qt::Key taste : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
        QTest::keyClick(QApplication::focusWidget(), taste);
    }
    fenster->sichern();
    QCOMPARE(weg->anfragen().size(), 1);
    QVERIFY(ende->isEmpty());
    QCOMPARE(info()->text(), u"Wird an die Cloud übertragen …"_s);

    weg->beantworten(Scripttransport::antwort(200, "{}"));
    QTRY_COMPARE(ende->size(), 1);
}

void TestEinstellungensichern::nichtGespeichert()
{
    laden(antwort(beispiel()));
    anhaken(5);
    feld<QWidget>(u"baum"_s)->setFocus();
    weg->dann(Scripttransport::antwort(500, R"({"fehler":"Wartung"})"));
    fenster->sichern();
    QTRY_COMPARE(info()->text(), u"Nicht gespeichert: Die Cloud antwortet mit 500: Wartung"_s);
    QCOMPARE(info()->farbe(), Farbe::warn(info()->palette()));
    QVERIFY(feld<QPushButton>(u"knSichern"_s)->isEnabled());
    QVERIFY(feld<QWidget>(u"baum"_s)->isEnabled());
    QCOMPARE(QApplication::focusWidget(), feld<QWidget>(u"baum"_s));
    QVERIFY(fenster->isVisible());
    QVERIFY(ende->isEmpty());
    QVERIFY(ordner.protokollzeilen().isEmpty());

    anhaken(5, false);
    QCOMPARE(info()->farbe(), Farbe::sekundaer(info()->palette()));
}

void TestEinstellungensichern::fehlerWirdEinmalAngesagt()
{
    Vorlesehilfe hilfe;
    laden(antwort(beispiel()));
    anhaken(5);
    weg->dann(Scripttransport::antwort(500, R"({"fehler":"Wartung"})"));
    fenster->sichern();
    const QString meldung = u"Nicht gespeichert: Die Cloud antwortet mit 500: Wartung"_s;
    QTRY_COMPARE(info()->text(), meldung);
    QCOMPARE(hilfe.ansagen(), QStringList{meldung});
    anhaken(5, false);
    QCOMPARE(hilfe.ansagen(), QStringList());
}

void TestEinstellungensichern::nachFehlerNochmalSichern()
{
    laden(antwort(beispiel()));
    anhaken(5);
    weg->dann(Scripttransport::antwort(503));
    fenster->sichern();
    QTRY_VERIFY(info()->text().startsWith(u"Nicht gespeichert"_s));
    anhaken(1);
    weg->dann(Scripttransport::antwort(200, "{}"));
    fenster->sichern();
    QTRY_COMPARE(ende->size(), 1);
    QCOMPARE(gesendet()[u"lokal"_s].toArray(), (QJsonArray{u"u2"_s, u"u6"_s}));
}

void TestEinstellungensichern::optionenBleibenTrotzFehler()
{
    laden(antwort(beispiel()));
    anhaken(5);
    feld<QCheckBox>(u"cbAuto"_s)->setChecked(true);
    feld<QCheckBox>(u"cbAnmeldung"_s)->setChecked(true);
    fenster->sichern();
    // Kept before the request leaves.
    QVERIFY(Einstellungen().autostart);
    QCOMPARE(anmeldestart->gesetzt(), QList<bool>{true});
    fenster->abbrechen();
    QCOMPARE(ende->value(0).value(0).toInt(), 0);
    QVERIFY(einst->autostart);
}

void TestEinstellungensichern::anmeldestartNurBeiUnterschied_data()
{
    QTest::addColumn<bool>("war");
    QTest::addColumn<bool>("wird");
    QTest::addColumn<QList<bool>>("gesetzt");
    QTest::newRow("stays off") << false << false << QList<bool>{};
    QTest::newRow("stays on") << true << true << QList<bool>{};
    QTest::newRow("on") << false << true << QList<bool>{true};
    QTest::newRow("off") << true << false << QList<bool>{false};
}

void TestEinstellungensichern::anmeldestartNurBeiUnterschied()
{
    QFETCH(const bool, war);
    QFETCH(const bool, wird);
    QFETCH(const QList<bool>, gesetzt);
    anmeldestart = std::make_unique<FakeAnmeldestart>(war);
    oeffnen();
    feld<QCheckBox>(u"cbAnmeldung"_s)->setChecked(wird);
    fenster->sichern();
    QCOMPARE(anmeldestart->gesetzt(), gesetzt);
}

void TestEinstellungensichern::versionWirdGesichert()
{
    oeffnen();
    feld<QComboBox>(u"popVersion"_s)->setCurrentIndex(2);
    fenster->sichern();
    QCOMPARE(einst->version, u"6.8.5"_s);
    QCOMPARE(Einstellungen().version, u"6.8.5"_s);
}

KALVARO_FENSTERTEST(TestEinstellungensichern)
#include "tst_einstellungensichern.moc"
