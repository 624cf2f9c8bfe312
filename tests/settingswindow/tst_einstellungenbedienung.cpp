#include "fensterpruefstand.h"
#include "testlauf.h"
#include "ui/erscheinung.h"
#include "ui/knoepfe.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>

using namespace kalvaro;
using namespace Qt::StringLiterals;

// Ending the sheet, keyboard and mouse, and its look.
class TestEinstellungenbedienung final : public Fensterpruefstand
{
    Q_OBJECT

private Q_SLOTS:
    void abbrechenSichertNichts();
    void schliessenIstAbbrechen();
    void escapeUndReturn_data();
    void escapeUndReturn();
    void escapeSchliesstZuerstDieListe();
    void ringAnDenKnoepfen();
    void ringNachDemGescheitertenSichern();
    void schliessenWaehrendDesLadens();
    void schliessenWaehrendDerUebertragung();
    void elternfensterVerschwindet();
    void zentraleVerschwindet();
    void zweitesEndeZaehltNicht();
    void suchfeldFiltert();
    void buchstabenImBaumSuchen();
    void pfeilFuehrtZumGefundenen();
    void ganzMitDerTastatur();
    void mitDerMaus();
    void hellUndDunkelFolgen();
    void groessereSchriftWirdNichtGekuerzt();
    void bleibtGleichHoch();
};

void TestEinstellungenbedienung::abbrechenSichertNichts()
{
    laden(antwort(beispiel()));
    anhaken(5);
    feld<QCheckBox>(u"cbAuto"_s)->setChecked(true);
    feld<QCheckBox>(u"cbAnmeldung"_s)->setChecked(true);
    QTest::mouseClick(feld<QPushButton>(u"knAbbrechen"_s), Qt::LeftButton);
    QCOMPARE(ende->value(0).value(0).toInt(), 0);
    ereignisseAbarbeiten();
    QVERIFY(weg->anfragen().isEmpty());
    QVERIFY(!einst->autostart);
    QVERIFY(anmeldestart->gesetzt().isEmpty());
    QVERIFY(ordner.inhalt(u"einstellungen.json"_s).isEmpty());
}

void TestEinstellungenbedienung::schliessenIstAbbrechen()
{
    oeffnen();
    QVERIFY(fenster->close());
    QCOMPARE(ende->value(0).value(0).toInt(), 0);
    QVERIFY(!fenster->isVisible());
}

void TestEinstellungenbedienung::escapeUndReturn_data()
{
    QTest::addColumn<QString>("fokus");
    QTest::addColumn<int>("eingabe");
    for (const char *name :
         {"popVersion", "cbAuto", "cbAnmeldung", "suchfeld", "baum", "knSichern"}) {
        QTest::newRow(name) << QString::fromLatin1(name) << 1;
    }
    QTest::newRow("knAbbrechen") << u"knAbbrechen"_s << 0;
}

void TestEinstellungenbedienung::escapeUndReturn()
{
    QFETCH(const QString, fokus);
    QFETCH(const int, eingabe);
    for (const auto &[taste, ergebnis] :
         {std::pair(Qt::Key_Return, eingabe), std::pair(Qt::Key_Enter, eingabe),
          std::pair(Qt::Key_Escape, 0)}) {
        delete fenster;
        laden(antwort(beispiel()));
        feld<QWidget>(fokus)->setFocus();
        feld<Baumansicht>(u"baum"_s)->zeileWaehlen();
        QKeyEvent gehalten(QEvent::KeyPress, taste, Qt::NoModifier, {}, true);
        QApplication::sendEvent(feld<QWidget>(fokus), &gehalten);
        QCOMPARE(ende->size(), 0);
        QTest::keyClick(feld<QWidget>(fokus), taste);
        QCOMPARE(ende->size(), 1);
        QVERIFY(!feld<QCheckBox>(u"cbAuto"_s)->isChecked());
        QVERIFY(!feld<QCheckBox>(u"cbAnmeldung"_s)->isChecked());
        QVERIFY(auswahlliste(modell().alle()).isEmpty());
        QCOMPARE(ende->value(0).value(0).toInt(), ergebnis);
        zentraleErneuern();
    }
}

// The list of versions closes; the sheet stays.
void TestEinstellungenbedienung::escapeSchliesstZuerstDieListe()
{
    laden(antwort(beispiel()));
    auto *const version = feld<QComboBox>(u"popVersion"_s);
    version->setFocus();
    QTest::keyClick(version, Qt::Key_Space);
    QTRY_VERIFY(version->view()->isVisible());
    QTest::keyClick(version->view(), Qt::Key_Escape);
    QTRY_VERIFY(!version->view()->isVisible());
    QVERIFY(ende->isEmpty());

    auto *const baum = feld<Baumansicht>(u"baum"_s);
    baum->setFocus();
    QTest::keyClick(baum, Qt::Key_F10, Qt::ShiftModifier);
    QWidget *const menue = QApplication::activePopupWidget();
    QVERIFY(menue != nullptr);
    QTest::keyClick(menue, Qt::Key_Escape);
    QVERIFY(ende->isEmpty());
    QCOMPARE(QApplication::focusWidget(), baum);
    QTest::keyClick(baum, Qt::Key_Escape);
    QCOMPARE(ende->value(0).value(0).toInt(), 0);
}

// Our own style draws them; where the desktop brings one, that does.
void TestEinstellungenbedienung::ringAnDenKnoepfen()
{
    laden(antwort(beispiel()));
    const auto bild = [](QWidget *knopf) { return knopf->grab().toImage(); };
    auto *const abbrechen = feld<QPushButton>(u"knAbbrechen"_s);
    auto *const sichern = feld<QPushButton>(u"knSichern"_s);
    const QImage abbrechenOhne = bild(abbrechen);
    const QImage sichernOhne = bild(sichern);
    feld<QWidget>(u"baum"_s)->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), abbrechen);
    QVERIFY(bild(abbrechen) != abbrechenOhne);
    QTest::keyClick(abbrechen, Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), sichern);
    QVERIFY(bild(sichern) != sichernOhne);
    QCOMPARE(bild(abbrechen), abbrechenOhne);
}

// Locked and unlocked again, the control that had the keyboard shows so as before.
void TestEinstellungenbedienung::ringNachDemGescheitertenSichern()
{
    for (const auto grund : {Qt::TabFocusReason, Qt::MouseFocusReason}) {
        delete fenster;
        zentraleErneuern();
        laden(antwort(beispiel()));
        anhaken(5);
        auto *const haken = feld<Haken>(u"cbAuto"_s);
        haken->setFocus(grund);
        const bool vorher = haken->fokusSichtbar();
        QCOMPARE(vorher, grund == Qt::TabFocusReason);
        weg->dann(Scripttransport::antwort(500, "{}"));
        QTest::keyClick(haken, Qt::Key_Return);
        QTRY_VERIFY(info()->text().startsWith(u"Nicht gespeichert"_s));
        QCOMPARE(QApplication::focusWidget(), haken);
        QCOMPARE(haken->fokusSichtbar(), vorher);
    }
}

void TestEinstellungenbedienung::schliessenWaehrendDesLadens()
{
    oeffnen();
    weg->dann(Scripttransport::antwort(200, "{}"));
    fenster->laden();
    QTRY_COMPARE(weg->haengend(), 1);
    fenster->close();
    weg->beantworten(Scripttransport::antwort(200, alsText(antwort(beispiel()))));
    ereignisseAbarbeiten();
    QCOMPARE(modell().rowCount(), 0);
    QCOMPARE(ende->size(), 1);

    delete fenster;
    oeffnen();
    fenster->laden();
    QTRY_COMPARE(weg->haengend(), 1);
    delete fenster;
    QCOMPARE(weg->haengend(), 0);
}

void TestEinstellungenbedienung::schliessenWaehrendDerUebertragung()
{
    for (const int status : {200, 500}) {
        delete fenster;
        ende.reset();
        zentraleErneuern();
        laden(antwort(beispiel()));
        anhaken(5);
        fenster->sichern();
        QTRY_COMPARE(weg->haengend(), 1);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
        QCOMPARE(ende->value(0).value(0).toInt(), 0);
        weg->beantworten(Scripttransport::antwort(status, "{}"));
        ereignisseAbarbeiten();
        QCOMPARE(ende->size(), 1);
        QVERIFY(ordner.protokollzeilen().isEmpty());
    }
}

void TestEinstellungenbedienung::elternfensterVerschwindet()
{
    laden(antwort(beispiel()));
    anhaken(5);
    fenster->sichern();
    QTRY_COMPARE(weg->haengend(), 1);
    eltern.reset();
    QVERIFY(fenster.isNull());
    QCOMPARE(weg->haengend(), 0);
    ereignisseAbarbeiten();
}

void TestEinstellungenbedienung::zentraleVerschwindet()
{
    laden(antwort(beispiel()));
    anhaken(5);
    fenster->sichern();
    QTRY_COMPARE(weg->haengend(), 1);
    zentrale.reset();
    QCOMPARE(weg->haengend(), 0);
    fenster->abbrechen();
    QCOMPARE(ende->value(0).value(0).toInt(), 0);
}

void TestEinstellungenbedienung::zweitesEndeZaehltNicht()
{
    oeffnen();
    fenster->sichern();
    fenster->abbrechen();
    fenster->close();
    fenster->sichern();
    fenster->laden();
    QCOMPARE(ende->size(), 1);
    QCOMPARE(fenster->result(), 1);
    ereignisseAbarbeiten();
    QVERIFY(weg->anfragen().isEmpty());
}

void TestEinstellungenbedienung::suchfeldFiltert()
{
    laden(antwort(beispiel(), {u"u2"_s}));
    const QString vorher = info()->text();
    QTest::keyClicks(feld<QLineEdit>(u"suchfeld"_s), u"n5"_s);
    QVERIFY(modell().zuStelle(4).isValid());
    QVERIFY(!modell().zuStelle(1).isValid());
    QCOMPARE(info()->text(), vorher);
    fenster->sichern();
    ereignisseAbarbeiten();
    QVERIFY(weg->anfragen().isEmpty()); // what is hidden is still chosen
}

void TestEinstellungenbedienung::buchstabenImBaumSuchen()
{
    laden(antwort(beispiel()));
    feld<QWidget>(u"baum"_s)->setFocus();
    QTest::keyClick(feld<QWidget>(u"baum"_s), Qt::Key_N);
    QCOMPARE(QApplication::focusWidget(), feld<QWidget>(u"suchfeld"_s));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_6);
    QCOMPARE(feld<QLineEdit>(u"suchfeld"_s)->text(), u"n6"_s);
    QCOMPARE(modell().rowCount(), 1);
}

void TestEinstellungenbedienung::pfeilFuehrtZumGefundenen()
{
    laden(antwort(beispiel()));
    auto *const suchfeld = feld<QLineEdit>(u"suchfeld"_s);
    suchfeld->setFocus();
    QTest::keyClicks(suchfeld, u"n6"_s);
    QTest::keyClick(suchfeld, Qt::Key_Down);
    QCOMPARE(QApplication::focusWidget(), feld<QWidget>(u"baum"_s));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    QVERIFY(modell().alle().back().haken);
}

// Version, options, search, tree and button, without the mouse.
void TestEinstellungenbedienung::ganzMitDerTastatur()
{
    laden(antwort(beispiel()));
    const auto druecken = [](Qt::Key taste) {
        QTest::keyClick(QApplication::focusWidget(), taste);
    };
    QCOMPARE(QApplication::focusWidget(), feld<QWidget>(u"popVersion"_s));
    druecken(Qt::Key_Down);
    druecken(Qt::Key_Down);
    druecken(Qt::Key_Tab);
    druecken(Qt::Key_Space);
    druecken(Qt::Key_Tab);
    druecken(Qt::Key_Space);
    druecken(Qt::Key_Tab);
    QTest::keyClicks(QApplication::focusWidget(), u"n4"_s);
    druecken(Qt::Key_Down); // the folder on the way, N1
    druecken(Qt::Key_Down);
    druecken(Qt::Key_Space);
    druecken(Qt::Key_Backtab);
    druecken(Qt::Key_Backspace);
    druecken(Qt::Key_Backspace);
    druecken(Qt::Key_Tab);
    druecken(Qt::Key_End);
    druecken(Qt::Key_Space);
    weg->dann(Scripttransport::antwort(200, "{}"));
    druecken(Qt::Key_Return);

    QTRY_COMPARE(ende->value(0).value(0).toInt(), 1);
    QCOMPARE(gesendet()[u"lokal"_s].toArray(), (QJsonArray{u"u4"_s, u"u5"_s, u"u6"_s}));
    QCOMPARE(Einstellungen().version, u"6.8.5"_s);
    QVERIFY(Einstellungen().autostart);
    QCOMPARE(anmeldestart->gesetzt(), QList<bool>{true});
}

void TestEinstellungenbedienung::mitDerMaus()
{
    laden(antwort(beispiel()));
    auto *const baum = feld<Baumansicht>(u"baum"_s);
    const QRect letzte = baum->visualRect(modell().zuStelle(5));
    QTest::mouseClick(baum->viewport(), Qt::LeftButton, {},
                      QPoint(letzte.left() + 12, letzte.center().y()));
    QTest::mouseClick(feld<QWidget>(u"cbAuto"_s), Qt::LeftButton, {}, QPoint(8, 10));
    weg->dann(Scripttransport::antwort(200, "{}"));
    QTest::mouseClick(feld<QWidget>(u"knSichern"_s), Qt::LeftButton);
    QTRY_COMPARE(ende->value(0).value(0).toInt(), 1);
    QCOMPARE(gesendet()[u"lokal"_s].toArray(), (QJsonArray{u"u6"_s}));
    QVERIFY(Einstellungen().autostart);
}

void TestEinstellungenbedienung::hellUndDunkelFolgen()
{
    laden(antwort(beispiel()));
    const QPalette vorher = QApplication::palette();
    for (const bool dunkel : {true, false}) {
        const QPalette palette = eigenePalette(dunkel);
        QApplication::setPalette(palette);
        ereignisseAbarbeiten();
        const QImage bild = fenster->grab().toImage();
        QCOMPARE(bild.pixelColor(4, 4), palette.color(QPalette::Window));
        const QPoint imBaum = feld<QWidget>(u"baum"_s)->mapTo(fenster.data(), QPoint(300, 200));
        QCOMPARE(bild.pixelColor(imBaum * bild.devicePixelRatio()), palette.color(QPalette::Base));
    }
    QApplication::setPalette(vorher);
}

void TestEinstellungenbedienung::groessereSchriftWirdNichtGekuerzt()
{
    const QFont vorher = QApplication::font();
    QFont gross = vorher;
    gross.setPixelSize(17);
    QApplication::setFont(gross);
    laden(antwort(beispiel()));
    QVERIFY(fenster->width() > 600);
    for (const Beschriftung *label : fenster->findChildren<Beschriftung *>()) {
        QVERIFY2(label->toolTip().isEmpty(), qPrintable(label->text())); // nothing is cut
        QVERIFY(label->height() >= label->heightForWidth(label->width()));
    }
    for (const QAbstractButton *knopf : fenster->findChildren<QAbstractButton *>()) {
        if (knopf->isVisible()) {
            QVERIFY2(knopf->width() >= knopf->sizeHint().width(), qPrintable(knopf->text()));
            QVERIFY2(knopf->height() >= knopf->sizeHint().height(), qPrintable(knopf->text()));
        }
    }
    auto *const baum = feld<Baumansicht>(u"baum"_s);
    QVERIFY(baum->visualRect(modell().zuStelle(0)).height() >= 34);
    delete fenster;
    QApplication::setFont(vorher);
}

void TestEinstellungenbedienung::bleibtGleichHoch()
{
    oeffnen();
    const int vorher = fenster->height();
    laden(antwort(beispiel(), {u"u2"_s}));
    ereignisseAbarbeiten();
    QCOMPARE(fenster->height(), vorher);
    anhaken(5);
    weg->dann(Scripttransport::antwort(
        500,
        alsText({{u"fehler"_s, u"Die Festplatte der Cloud ist voll, bitte räumen Sie auf."_s}})));
    fenster->sichern();
    QTRY_VERIFY(info()->text().startsWith(u"Nicht gespeichert"_s));
    ereignisseAbarbeiten();
    QCOMPARE(fenster->height(), vorher);
}

KALVARO_FENSTERTEST(TestEinstellungenbedienung)
#include "tst_einstellungenbedienung.moc"
