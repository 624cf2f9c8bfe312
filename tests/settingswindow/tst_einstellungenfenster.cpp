#include "doubles/vorlesehilfe.h"
#include "fensterpruefstand.h"
#include "testlauf.h"
#include "ui/farbe.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>

using namespace kalvaro;
using namespace Qt::StringLiterals;

// What the sheet shows, and loading.
class TestEinstellungenfenster final : public Fensterpruefstand
{
    Q_OBJECT

private Q_SLOTS:
    void texteUndFolge();
    void alleTexteSindWoertlich();
    void ladefehlerWirdEinmalAngesagt();
    void vomVerborgenenBlattKeineAnsage();
    void auswahlSagtIhrenWert();
    void leeresSuchfeldMeldetNurDenFokus();
    void vorleseNamen();
    void tabfolge();
    void versionen_data();
    void versionen();
    void anfangsstandDerHaken_data();
    void anfangsstandDerHaken();
    void ladenFragtNachDenPlaylisten();
    void ladenZweimalFragtEinmal();
    void geladenZeigtBaumUndZusammenfassung();
    void antwortOhneListen();
    void ladefehler_data();
    void ladefehler();
    void nachLadefehlerNochmalLaden();
    void ladefehlerLaesstOptionenSichern();
    void sichernVorDerAntwort();
};

void TestEinstellungenfenster::texteUndFolge()
{
    oeffnen();
    QCOMPARE(info()->text(), u"Playlisten werden geladen …"_s);
    QCOMPARE(feld<QCheckBox>(u"cbAuto"_s)->text(),
             u"Beim Öffnen von kalvaro automatisch starten\n"
             "(5 Sekunden, nachdem der Abgleich fertig ist)"_s);
    QCOMPARE(feld<QCheckBox>(u"cbAnmeldung"_s)->text(),
             u"kalvaro beim Anmelden im Hintergrund starten\n"
             "(Symbol in der Menüleiste – gleicht nach rekordbox sofort ab)"_s);
    QStringList texte;
    for (const Beschriftung *label : fenster->findChildren<Beschriftung *>()) {
        texte.append(label->text());
    }
    QVERIFY(texte.contains(u"Diese Version starten:"_s));
    QVERIFY(texte.contains(u"Playlisten lokal speichern"_s));
    QVERIFY(texte.contains(u"Angehakte Playlisten werden auf diesen Mac kopiert und spielen dann "
                           "auch ohne Verbindung zur Musikplatte. Ein Ordner nimmt alle seine "
                           "Playlisten mit."_s));
    QCOMPARE(feld<QPushButton>(u"knAbbrechen"_s)->text(), u"Abbrechen"_s);
    QCOMPARE(feld<QPushButton>(u"knSichern"_s)->text(), u"Sichern"_s);
    QVERIFY(feld<QPushButton>(u"knSichern"_s)->isDefault());

    // From top to bottom.
    int unten = -1;
    for (const char *name :
         {"popVersion", "cbAuto", "cbAnmeldung", "suchfeld", "baum", "lblInfo", "knSichern"}) {
        const auto *const widget = feld<QWidget>(QString::fromLatin1(name));
        const int oben = widget->mapTo(fenster.data(), QPoint()).y();
        QVERIFY2(oben > unten, name);
        unten = oben + widget->height() - 1;
    }
    QCOMPARE(fenster->width(), 480);
    QCOMPARE(feld<QWidget>(u"baum"_s)->height(), 280);
    QCOMPARE(fenster->windowModality(), Qt::WindowModal);
}

void TestEinstellungenfenster::ladefehlerWirdEinmalAngesagt()
{
    Vorlesehilfe hilfe;
    oeffnen();
    weg->dann(Scripttransport::fehler(u"Kein Netz."_s));
    fenster->laden();
    const QString meldung = u"Playlisten nicht ladbar: Kein Netz."_s;
    QTRY_COMPARE(info()->text(), meldung);
    QCOMPARE(hilfe.ansagen(), QStringList{meldung});
}

void TestEinstellungenfenster::vomVerborgenenBlattKeineAnsage()
{
    Vorlesehilfe hilfe;
    oeffnen();
    fenster->hide();
    weg->dann(Scripttransport::fehler(u"Kein Netz."_s));
    fenster->laden();
    QTRY_COMPARE(info()->text(), u"Playlisten nicht ladbar: Kein Netz."_s);
    QCOMPARE(hilfe.ansagen(), QStringList());
}

void TestEinstellungenfenster::auswahlSagtIhrenWert()
{
    Vorlesehilfe hilfe;
    oeffnen();
    auto *const feld = this->feld<QComboBox>(u"popVersion"_s);
    QAccessibleInterface *const zugang = QAccessible::queryAccessibleInterface(feld);
    QCOMPARE(zugang->text(QAccessible::Description), u"Immer die neueste (7.1.4)"_s);
    (void)hilfe.ereignisse();
    QTest::keyClick(feld, Qt::Key_Down);
    QCOMPARE(feld->accessibleName(), u"Diese Version starten"_s);
    QCOMPARE(zugang->text(QAccessible::Description), u"rekordbox 7.1.4"_s);
    QCOMPARE(hilfe.ereignisse().filter(u"Description"_s).size(), 1);
}

// A cursor that moves makes Orca think that it knows where it is.
void TestEinstellungenfenster::leeresSuchfeldMeldetNurDenFokus()
{
    Vorlesehilfe hilfe;
    laden(antwort(beispiel()));
    auto *const suche = feld<QLineEdit>(u"suchfeld"_s);
    QSignalSpy auswahl(suche, &QLineEdit::selectionChanged);
    feld<QWidget>(u"cbAnmeldung"_s)->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), suche);
    QCOMPARE(auswahl.size(), 0);
    suche->setText(u"n5"_s);
    feld<QWidget>(u"cbAnmeldung"_s)->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(suche->selectedText(), u"n5"_s);
}

void TestEinstellungenfenster::alleTexteSindWoertlich()
{
    installationen = {{u"<b>7</b>&1"_s, {}}};
    oeffnen();
    QCOMPARE(feld<QComboBox>(u"popVersion"_s)->currentText(), u"Immer die neueste (<b>7</b>&1)"_s);
    weg->dann(Scripttransport::fehler(u"<img src=x>"_s));
    fenster->laden();
    QTRY_COMPARE(info()->text(), u"Playlisten nicht ladbar: <img src=x>"_s);
    for (const QLabel *label : fenster->findChildren<QLabel *>()) {
        QCOMPARE(label->textFormat(), Qt::PlainText);
    }
}

void TestEinstellungenfenster::vorleseNamen()
{
    oeffnen();
    QCOMPARE(feld<QWidget>(u"popVersion"_s)->accessibleName(), u"Diese Version starten"_s);
    QCOMPARE(feld<QWidget>(u"suchfeld"_s)->accessibleName(), u"Playlisten suchen"_s);
    QCOMPARE(feld<QWidget>(u"baum"_s)->accessibleName(), u"Playlisten lokal speichern"_s);
    QCOMPARE(info()->accessibleName(), info()->text());
}

void TestEinstellungenfenster::tabfolge()
{
    laden(antwort(beispiel()));
    feld<QWidget>(u"popVersion"_s)->setFocus();
    QStringList folge;
    for (int i = 0; i < 7; ++i) {
        folge.append(fenster->focusWidget()->objectName());
        QTest::keyClick(fenster->focusWidget(), Qt::Key_Tab);
    }
    QCOMPARE(folge, (QStringList{u"popVersion"_s, u"cbAuto"_s, u"cbAnmeldung"_s, u"suchfeld"_s,
                                 u"baum"_s, u"knAbbrechen"_s, u"knSichern"_s}));
    QCOMPARE(fenster->focusWidget()->objectName(), u"popVersion"_s);
}

void TestEinstellungenfenster::versionen_data()
{
    QTest::addColumn<QStringList>("vorhanden");
    QTest::addColumn<QString>("gewaehlt");
    QTest::addColumn<QStringList>("eintraege");
    QTest::addColumn<int>("stelle");

    const QStringList zwei{u"7.1.4"_s, u"6.8.5"_s};
    const QStringList dreiZeilen{u"Immer die neueste (7.1.4)"_s, u"rekordbox 7.1.4"_s,
                                 u"rekordbox 6.8.5"_s};
    QTest::newRow("none installed")
        << QStringList{} << u""_s << QStringList{u"Immer die neueste"_s} << 0;
    QTest::newRow("none installed, one chosen")
        << QStringList{} << u"7.1.4"_s << QStringList{u"Immer die neueste"_s} << 0;
    QTest::newRow("no choice") << zwei << u""_s << dreiZeilen << 0;
    QTest::newRow("newest chosen by name") << zwei << u"7.1.4"_s << dreiZeilen << 1;
    QTest::newRow("older chosen") << zwei << u"6.8.5"_s << dreiZeilen << 2;
    QTest::newRow("chosen one is gone") << zwei << u"5.0.0"_s << dreiZeilen << 0;
    QTest::newRow("version unknown")
        << QStringList{u"0"_s} << u""_s << QStringList{u"Immer die neueste (0)"_s, u"rekordbox 0"_s}
        << 0;
    QTest::newRow("two of one version")
        << QStringList{u"7.1.4"_s, u"7.1.4"_s} << u"7.1.4"_s
        << QStringList{u"Immer die neueste (7.1.4)"_s, u"rekordbox 7.1.4"_s, u"rekordbox 7.1.4"_s}
        << 1;
}

void TestEinstellungenfenster::versionen()
{
    QFETCH(const QStringList, vorhanden);
    QFETCH(const QString, gewaehlt);
    QFETCH(const QStringList, eintraege);
    QFETCH(const int, stelle);

    installationen.clear();
    for (const QString &version : vorhanden) {
        installationen.append({version, {}});
    }
    einst->version = gewaehlt;
    oeffnen();

    const auto *const pop = feld<QComboBox>(u"popVersion"_s);
    QStringList zeilen;
    for (int i = 0; i < pop->count(); ++i) {
        zeilen.append(pop->itemText(i));
    }
    QCOMPARE(zeilen, eintraege);
    QCOMPARE(pop->currentIndex(), stelle);

    fenster->sichern();
    QCOMPARE(Einstellungen().version, stelle == 0 ? QString() : vorhanden[stelle - 1]);
}

void TestEinstellungenfenster::anfangsstandDerHaken_data()
{
    QTest::addColumn<bool>("autostart");
    QTest::addColumn<bool>("anmeldung");
    QTest::newRow("both off") << false << false;
    QTest::newRow("start on") << true << false;
    QTest::newRow("login on") << false << true;
}

void TestEinstellungenfenster::anfangsstandDerHaken()
{
    QFETCH(const bool, autostart);
    QFETCH(const bool, anmeldung);
    einst->autostart = autostart;
    anmeldestart = std::make_unique<FakeAnmeldestart>(anmeldung);
    oeffnen();
    QCOMPARE(feld<QCheckBox>(u"cbAuto"_s)->isChecked(), autostart);
    QCOMPARE(feld<QCheckBox>(u"cbAnmeldung"_s)->isChecked(), anmeldung);
    QVERIFY(anmeldestart->gesetzt().isEmpty());
}

void TestEinstellungenfenster::ladenFragtNachDenPlaylisten()
{
    oeffnen();
    QVERIFY(weg->anfragen().isEmpty());
    weg->dann(Scripttransport::antwort(200, "{}"));
    fenster->laden();
    QTRY_COMPARE(weg->anfragen().size(), 2);
    QCOMPARE(weg->zeilen().last(), u"GET http://cloud/api/playlisten"_s);
    QVERIFY(!weg->anfragen().last().body);
    QCOMPARE(weg->anfragen().last().limit.count(), 20.0);

    uhr->vor(Sekunden(20));
    QTRY_COMPARE(info()->text(),
                 u"Playlisten nicht ladbar: Die Cloud hat nicht rechtzeitig geantwortet."_s);
}

void TestEinstellungenfenster::ladenZweimalFragtEinmal()
{
    oeffnen();
    weg->dann(Scripttransport::antwort(200, "{}"));
    weg->dann(Scripttransport::antwort(200, alsText(antwort(beispiel()))));
    fenster->laden();
    fenster->laden();
    QTRY_COMPARE(modell().alle().size(), size_t(6));
    fenster->laden();
    ereignisseAbarbeiten();
    QCOMPARE(weg->anfragen().size(), 2);
}

void TestEinstellungenfenster::geladenZeigtBaumUndZusammenfassung()
{
    laden(antwort(beispiel(), {u"u2"_s, u"u4"_s}));
    QCOMPARE(modell().rowCount(), 2);
    QCOMPARE(info()->text(), u"1 Playlist ausgewählt (10 Einträge). "
                             "Kopiert wird beim nächsten Abgleich."_s);
    QCOMPARE(info()->farbe(), Farbe::sekundaer(info()->palette()));
}

void TestEinstellungenfenster::antwortOhneListen()
{
    for (const char *daten : {"{}", "[]", "kein JSON", R"({"playlisten":7,"lokal":{"a":1}})"}) {
        oeffnen();
        weg->dann(Scripttransport::antwort(200, "{}"));
        weg->dann(Scripttransport::antwort(200, daten));
        fenster->laden();
        QTRY_COMPARE(info()->text(),
                     u"Keine Playlist ausgewählt – alle Titel kommen von der Musikplatte."_s);
        fenster->sichern();
        QCOMPARE(fenster->result(), 1);
        zentraleErneuern();
    }
}

void TestEinstellungenfenster::ladefehler_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("daten");
    QTest::addColumn<QString>("meldung");
    QTest::newRow("not reached") << 0 << QByteArray() << u"Der Server verweigert die Verbindung."_s;
    QTest::newRow("refused") << 401 << QByteArray() << u"Die Cloud antwortet mit 401."_s;
    QTest::newRow("with a text") << 500 << QByteArray(R"({"fehler":"Wartung"})")
                                 << u"Die Cloud antwortet mit 500: Wartung"_s;
}

void TestEinstellungenfenster::ladefehler()
{
    QFETCH(const int, status);
    QFETCH(const QByteArray, daten);
    QFETCH(const QString, meldung);

    oeffnen();
    if (status == 0) {
        weg->dann(Scripttransport::fehler(meldung));
    } else {
        weg->dann(Scripttransport::antwort(200, "{}"));
        weg->dann(Scripttransport::antwort(status, daten));
    }
    fenster->laden();
    QTRY_COMPARE(info()->text(), u"Playlisten nicht ladbar: "_s + meldung);
    QCOMPARE(info()->farbe(), Farbe::warn(info()->palette()));
    QCOMPARE(modell().rowCount(), 0);
    QVERIFY(!feld<QLineEdit>(u"suchfeld"_s)->isEnabled());
    QVERIFY(feld<QPushButton>(u"knSichern"_s)->isEnabled());
}

void TestEinstellungenfenster::nachLadefehlerNochmalLaden()
{
    oeffnen();
    weg->dann(Scripttransport::fehler(u"weg"_s));
    fenster->laden();
    QTRY_VERIFY(info()->text().startsWith(u"Playlisten nicht ladbar"_s));
    laden(antwort(beispiel()));
    QCOMPARE(modell().rowCount(), 2);
    QCOMPARE(info()->farbe(), Farbe::sekundaer(info()->palette()));
}

void TestEinstellungenfenster::ladefehlerLaesstOptionenSichern()
{
    oeffnen();
    weg->dann(Scripttransport::fehler(u"weg"_s));
    fenster->laden();
    QTRY_VERIFY(info()->text().startsWith(u"Playlisten nicht ladbar"_s));
    weg->vergessen();
    feld<QCheckBox>(u"cbAuto"_s)->setChecked(true);
    fenster->sichern();
    QCOMPARE(ende->value(0).value(0).toInt(), 1);
    QVERIFY(Einstellungen().autostart);
    ereignisseAbarbeiten();
    QVERIFY(weg->anfragen().isEmpty());
}

void TestEinstellungenfenster::sichernVorDerAntwort()
{
    oeffnen();
    weg->dann(Scripttransport::antwort(200, "{}"));
    fenster->laden();
    QTRY_COMPARE(weg->haengend(), 1);
    feld<QCheckBox>(u"cbAuto"_s)->setChecked(true);
    fenster->sichern();
    QCOMPARE(ende->value(0).value(0).toInt(), 1);
    weg->beantworten(Scripttransport::antwort(200, alsText(antwort(beispiel()))));
    ereignisseAbarbeiten();
    QCOMPARE(modell().rowCount(), 0);
    QCOMPARE(ende->size(), 1);
}

KALVARO_FENSTERTEST(TestEinstellungenfenster)
#include "tst_einstellungenfenster.moc"
