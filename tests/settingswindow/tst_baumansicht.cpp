#include "antworten.h"
#include "doubles/ereignisse.h"
#include "doubles/vorlesehilfe.h"
#include "foundation/werte.h"
#include "settingswindow/baumansicht.h"
#include "settingswindow/baumzugang.h"
#include "settingswindow/playlistenmodell.h"
#include "settingswindow/playlistenzeile.h"
#include "testlauf.h"
#include "ui/ansage.h"
#include "ui/erscheinung.h"
#include "ui/farbe.h"
#include "ui/schrift.h"
#include "ui/stil.h"

#include <QAccessible>
#include <QApplication>
#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QLabel>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QSignalSpy>
#include <QToolTip>
#include <QTreeView>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

// What describes a row on this level that is not checked.
QString ohneHaken(int ebene)
{
    return (zeilenSindZellen() ? QString() : u"nicht angehakt, "_s) + u"Ebene %1"_s.arg(ebene);
}

} // namespace

class TestBaumansicht final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void klickAufDenKastenHaktAn();
    void klickAufDenTitelHaktAn();
    void klickDanebenHaktNichtAn();
    void rechteTasteHaktNichtAn();
    void doppelklickKlapptNicht();
    void leertasteHaktAn();
    void pfeiltastenKlappen();
    void plusMinusUndStern();
    void gehalteneLeertasteHaktEinmal();
    void gesperrteAnsichtHaktNicht();

    void hakenLaesstAufgeklapptesUndRollstand();
    void filterKlapptAufUndStelltWiederHer();
    void filterBehaeltDieAktuelleZeile();
    void filterOhneDieAktuelleZeileStelltSieWiederHer();
    void gefundenesBleibtNachDemFilterZuSehen();
    void nichtsGefunden();
    void buchstabenWollenGesuchtWerden();
    void kontextmenue();
    void kontextmenueMitTasten_data();
    void kontextmenueMitTasten();
    void kontextmenueVonRechts();
    void alleZuklappenBehaeltDieZeile();
    void zugeklapptSagtWieVieleGewaehltSind();
    void zeilenringNurMitTasten();
    void tiefeKetteAufklappen();

    void langerNameBehaeltDieZahl();
    void nameStehtInEinerZeile();
    void hinweisNurWoGekuerzt();
    void zeilenhoehe();
    void nameVonRechts();
    void gespiegelt();
    void gewaehltBleibtGeordnet();

    void vorgelesenWirdJedeZeile();
    void vorgeleseneZeilenStehenUeberallAmOrt();
    void ersterTabNenntDieZeile();
    void bewegenHakenUndKlappenWerdenGemeldet();
    void hakenAmOrdnerWirdAngesagt();
    void vorlesehilfeHaktAn();
    void vorlesehilfeUeberlebtDenFilter();
    void vorlesehilfeFragtNachUngueltigen();
    void vorlesehilfeFremderFelderIstQtsEigene();

private:
    [[nodiscard]] QModelIndex zeile(const QString &name) const;
    [[nodiscard]] bool an(const QString &name) const
    {
        return zeile(name).data(Qt::CheckStateRole).toInt() == Qt::Checked;
    }
    [[nodiscard]] QRect titel(const QString &name) const
    {
        const auto *const maler = qobject_cast<Playlistenzeile *>(ansicht->itemDelegate());
        return maler->tastflaeche(ansicht->visualRect(zeile(name)), zeile(name));
    }
    [[nodiscard]] QPoint kasten(const QString &name) const
    {
        return QPoint(titel(name).left() + 12, titel(name).center().y());
    }
    void klicken(const QPoint &ort, Qt::MouseButton taste = Qt::LeftButton) const
    {
        QTest::mouseClick(ansicht->viewport(), taste, {}, ort);
    }

    std::unique_ptr<PlaylistenModell> modell;
    std::unique_ptr<Baumansicht> ansicht;
};

void TestBaumansicht::initTestCase()
{
    erscheinungEinrichten(*qApp);
}

void TestBaumansicht::init()
{
    QApplication::setLayoutDirection(Qt::LeftToRight);
    ansicht.reset();
    modell = std::make_unique<PlaylistenModell>();
    ansicht = std::make_unique<Baumansicht>(*modell);
    modell->setKnoten(baumAus(antwort(beispiel())));
    ansicht->resize(436, 280);
    ansicht->expandAll();
    ansicht->show();
    ansicht->setFocus();
    QVERIFY(QTest::qWaitForWindowActive(ansicht.get()));
}

QModelIndex TestBaumansicht::zeile(const QString &name) const
{
    for (int i = 0; i < std::ssize(modell->alle()); ++i) {
        if (modell->alle()[size_t(i)].name == name) {
            return modell->zuStelle(i);
        }
    }
    return {};
}

void TestBaumansicht::klickAufDenKastenHaktAn()
{
    klicken(kasten(u"N5"_s));
    QVERIFY(an(u"N5"_s));
    QVERIFY(!an(u"N4"_s));
    klicken(kasten(u"N5"_s));
    QVERIFY(!an(u"N5"_s));
}

void TestBaumansicht::klickAufDenTitelHaktAn()
{
    klicken(QPoint(titel(u"N2"_s).right() - 6, titel(u"N2"_s).center().y()));
    QVERIFY(an(u"N2"_s));
}

void TestBaumansicht::klickDanebenHaktNichtAn()
{
    klicken(QPoint(400, titel(u"N2"_s).center().y()));
    QVERIFY(!an(u"N2"_s));
    QCOMPARE(ansicht->currentIndex(), zeile(u"N2"_s));

    // Pressed on the box, released beside it.
    QTest::mousePress(ansicht->viewport(), Qt::LeftButton, {}, kasten(u"N2"_s));
    QTest::mouseRelease(ansicht->viewport(), Qt::LeftButton, {},
                        QPoint(400, titel(u"N2"_s).center().y()));
    QVERIFY(!an(u"N2"_s));
}

void TestBaumansicht::rechteTasteHaktNichtAn()
{
    klicken(kasten(u"N2"_s), Qt::RightButton);
    QVERIFY(!an(u"N2"_s));
}

void TestBaumansicht::doppelklickKlapptNicht()
{
    const int hoehe = titel(u"N1"_s).center().y();
    const QPoint aufDemTitel(titel(u"N1"_s).right() - 6, hoehe);
    const QPoint daneben(400, hoehe); // where a click toggles nothing
    for (const bool offen : {true, false}) {
        ansicht->setExpanded(zeile(u"N1"_s), offen);
        for (const QPoint &ort : {kasten(u"N1"_s), aufDemTitel, daneben}) {
            QTest::mouseDClick(ansicht->viewport(), Qt::LeftButton, {}, ort);
            QCOMPARE(ansicht->isExpanded(zeile(u"N1"_s)), offen);
        }
    }
}

void TestBaumansicht::leertasteHaktAn()
{
    ansicht->setCurrentIndex(zeile(u"N1"_s));
    QTest::keyClick(ansicht.get(), Qt::Key_Space);
    QVERIFY(an(u"N1"_s) && an(u"N2"_s) && an(u"N5"_s) && !an(u"N6"_s));
    QTest::keyClick(ansicht.get(), Qt::Key_Down);
    QTest::keyClick(ansicht.get(), Qt::Key_Space);
    QVERIFY(!an(u"N1"_s) && !an(u"N2"_s) && an(u"N3"_s));
}

void TestBaumansicht::pfeiltastenKlappen()
{
    ansicht->setCurrentIndex(zeile(u"N1"_s));
    QTest::keyClick(ansicht.get(), Qt::Key_Left);
    QVERIFY(!ansicht->isExpanded(zeile(u"N1"_s)));
    QTest::keyClick(ansicht.get(), Qt::Key_Right);
    QVERIFY(ansicht->isExpanded(zeile(u"N1"_s)));
}

void TestBaumansicht::plusMinusUndStern()
{
    QSignalSpy getippt(ansicht.get(), &Baumansicht::getippt);
    ansicht->setCurrentIndex(zeile(u"N1"_s));
    QTest::keyClick(ansicht.get(), Qt::Key_Minus);
    QVERIFY(!ansicht->isExpanded(zeile(u"N1"_s)));
    ansicht->collapseAll();
    QTest::keyClick(ansicht.get(), Qt::Key_Plus, Qt::KeypadModifier);
    QVERIFY(ansicht->isExpanded(zeile(u"N1"_s)));
    QVERIFY(!ansicht->isExpanded(zeile(u"N4"_s)));
    QTest::keyClick(ansicht.get(), Qt::Key_Asterisk, Qt::ShiftModifier);
    QVERIFY(ansicht->isExpanded(zeile(u"N4"_s)));
    QCOMPARE(ansicht->currentIndex(), zeile(u"N1"_s));
    QVERIFY(getippt.isEmpty()); // nobody searches for them
}

void TestBaumansicht::gehalteneLeertasteHaktEinmal()
{
    ansicht->setCurrentIndex(zeile(u"N5"_s));
    QTest::keyClick(ansicht.get(), Qt::Key_Space);
    QKeyEvent gehalten(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, u" "_s, true);
    QApplication::sendEvent(ansicht.get(), &gehalten);
    QVERIFY(an(u"N5"_s));
}

void TestBaumansicht::gesperrteAnsichtHaktNicht()
{
    const QPoint ort = kasten(u"N2"_s);
    ansicht->setEnabled(false);
    klicken(ort);
    QTest::keyClick(ansicht.get(), Qt::Key_Space);
    QVERIFY(!an(u"N2"_s));
}

void TestBaumansicht::hakenLaesstAufgeklapptesUndRollstand()
{
    QJsonArray liste;
    for (int i = 0; i < 40; ++i) {
        const QString id = QString::number(i);
        liste.append(ordner(id, u""_s));
        liste.append(eintrag(id + u"k"_s, id));
    }
    modell->setKnoten(baumAus(antwort(liste)));
    for (int i = 0; i < 40; i += 2) {
        ansicht->expand(modell->index(i, 0));
    }
    ereignisseAbarbeiten(); // lays the rows out
    ansicht->verticalScrollBar()->setValue(333);

    klicken(kasten(u"N14"_s));
    QVERIFY(an(u"N14k"_s));
    klicken(kasten(u"N14k"_s));
    QVERIFY(!an(u"N14"_s));
    ereignisseAbarbeiten();
    QCOMPARE(ansicht->verticalScrollBar()->value(), 333);
    for (int i = 0; i < 40; ++i) {
        QCOMPARE(ansicht->isExpanded(modell->index(i, 0)), i % 2 == 0);
    }
}

void TestBaumansicht::filterKlapptAufUndStelltWiederHer()
{
    ansicht->collapseAll();
    ansicht->expand(zeile(u"N1"_s));
    ansicht->filtern(u"n5"_s);
    QVERIFY(ansicht->isExpanded(zeile(u"N4"_s)));
    QVERIFY(ansicht->visualRect(zeile(u"N5"_s)).isValid());
    ansicht->filtern(u"n"_s);
    QVERIFY(ansicht->isExpanded(zeile(u"N4"_s)));
    ansicht->filtern({});
    QVERIFY(ansicht->isExpanded(zeile(u"N1"_s)));
    QVERIFY(!ansicht->isExpanded(zeile(u"N4"_s)));
}

void TestBaumansicht::filterBehaeltDieAktuelleZeile()
{
    ansicht->setCurrentIndex(zeile(u"N5"_s));
    ansicht->filtern(u"n5"_s);
    QCOMPARE(ansicht->currentIndex(), zeile(u"N5"_s));
    ansicht->filtern({});
    QCOMPARE(ansicht->currentIndex(), zeile(u"N5"_s));
}

void TestBaumansicht::filterOhneDieAktuelleZeileStelltSieWiederHer()
{
    ansicht->setCurrentIndex(zeile(u"N5"_s));
    ansicht->filtern(u"gibt es nicht"_s);
    QVERIFY(!ansicht->currentIndex().isValid());
    ansicht->filtern({});
    QCOMPARE(ansicht->currentIndex(), zeile(u"N5"_s));
}

void TestBaumansicht::gefundenesBleibtNachDemFilterZuSehen()
{
    ansicht->collapseAll();
    ansicht->filtern(u"n5"_s);
    klicken(kasten(u"N5"_s));
    ansicht->filtern({});
    QVERIFY(an(u"N5"_s));
    QVERIFY(ansicht->viewport()->rect().contains(ansicht->visualRect(zeile(u"N5"_s)).center()));
}

void TestBaumansicht::nichtsGefunden()
{
    const auto bild = [this] { return ansicht->viewport()->grab().toImage(); };
    const QImage voll = bild();
    QImage leer = voll;
    leer.fill(ansicht->palette().color(QPalette::Base));
    QImage hinweis = leer;
    QPainter maler(&hinweis);
    maler.setFont(systemschrift(13));
    maler.setPen(Farbe::sekundaer(ansicht->palette()));
    maler.drawText(ansicht->viewport()->rect(), Qt::AlignCenter, u"Nichts gefunden"_s);
    maler.end();

    ansicht->filtern(u"gibt es nicht"_s);
    QCOMPARE(bild(), hinweis);
    ansicht->filtern({});
    QCOMPARE(bild(), voll);
    modell->setKnoten({});
    QCOMPARE(bild(), leer); // nothing is said where nothing is searched for
}

void TestBaumansicht::buchstabenWollenGesuchtWerden()
{
    QSignalSpy getippt(ansicht.get(), &Baumansicht::getippt);
    ansicht->setCurrentIndex(zeile(u"N1"_s));
    QTest::keyClicks(ansicht.get(), u"te"_s);
    QCOMPARE(getippt.size(), 2);
    QCOMPARE(getippt[0][0].toString(), u"t"_s);
    QCOMPARE(ansicht->currentIndex(), zeile(u"N1"_s));
}

void TestBaumansicht::kontextmenue()
{
    const auto menue = [this] {
        QContextMenuEvent ruf(QContextMenuEvent::Mouse, QPoint(5, 5),
                              ansicht->viewport()->mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(ansicht->viewport(), &ruf);
        return qobject_cast<QMenu *>(QApplication::activePopupWidget());
    };
    QMenu *zu = menue();
    QVERIFY(zu != nullptr);
    QCOMPARE(zu->actions().size(), 2);
    QCOMPARE(zu->actions()[0]->text(), u"Alle aufklappen"_s);
    QCOMPARE(zu->actions()[1]->text(), u"Alle zuklappen"_s);
    zu->actions()[1]->trigger();
    QVERIFY(!ansicht->isExpanded(zeile(u"N1"_s)) && !ansicht->isExpanded(zeile(u"N4"_s)));
    zu->close();

    QMenu *auf = menue();
    QVERIFY(auf != nullptr);
    auf->actions()[0]->trigger();
    QVERIFY(ansicht->isExpanded(zeile(u"N1"_s)) && ansicht->isExpanded(zeile(u"N4"_s)));
    auf->close();
}

void TestBaumansicht::kontextmenueMitTasten_data()
{
    QTest::addColumn<Qt::Key>("taste");
    QTest::addColumn<bool>("mitRuf"); // the system asks for a menu as well
    QTest::newRow("Shift+F10") << Qt::Key_F10 << false;
    QTest::newRow("menu key") << Qt::Key_Menu << false;
    QTest::newRow("menu key and the system's wish") << Qt::Key_Menu << true;
}

void TestBaumansicht::kontextmenueMitTasten()
{
    QFETCH(Qt::Key, taste);
    QFETCH(bool, mitRuf);
    ansicht->setCurrentIndex(zeile(u"N4"_s));
    QTest::keyClick(ansicht.get(), taste,
                    taste == Qt::Key_F10 ? Qt::ShiftModifier : Qt::NoModifier);
    if (mitRuf) {
        QContextMenuEvent ruf(QContextMenuEvent::Keyboard, QPoint(5, 5), QPoint(5, 5));
        QApplication::sendEvent(ansicht->viewport(), &ruf);
    }
    QCOMPARE(ansicht->findChildren<QMenu *>().size(), 1);
    auto *const menue = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    QVERIFY(menue != nullptr);
    // Below the row that it was called from.
    const QRect reihe = ansicht->visualRect(zeile(u"N4"_s));
    const QPoint unten = ansicht->viewport()->mapToGlobal(reihe.bottomLeft());
    QVERIFY(qAbs(menue->y() - unten.y()) <= 2);
    QTest::keyClick(menue, Qt::Key_Escape);
    QVERIFY(QApplication::activePopupWidget() == nullptr);
    QVERIFY(ansicht->hasFocus());
}

// It hangs below the title, to the left, where that goes.
void TestBaumansicht::kontextmenueVonRechts()
{
    QApplication::setLayoutDirection(Qt::RightToLeft);
    ereignisseAbarbeiten();
    ansicht->setCurrentIndex(zeile(u"N4"_s));
    QTest::keyClick(ansicht.get(), Qt::Key_Menu);
    auto *const menue = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    QVERIFY(menue != nullptr);
    const QRect reihe = ansicht->visualRect(zeile(u"N4"_s));
    const int rechts = ansicht->viewport()->mapToGlobal(reihe.bottomRight()).x();
    const int ende = menue->geometry().right();
    QVERIFY2(ende < rechts && ende > rechts - 40, qPrintable(u"%1, %2"_s.arg(ende).arg(rechts)));
    menue->close();
}

// A check that is out of sight is still known of.
void TestBaumansicht::zugeklapptSagtWieVieleGewaehltSind()
{
    const auto wort = [this](const QString &name) {
        return QAccessible::queryAccessibleInterface(ansicht.get())
            ->child(zeile(name).row())
            ->text(QAccessible::Description)
            .remove(zeilenSindZellen() ? QString() : hakenwort(zeile(name)) + u", "_s)
            .remove(u", Ebene 1"_s);
    };
    const auto rechts = [this](const QString &name) { // what is drawn at the row's right
        const QRect reihe = ansicht->visualRect(zeile(name));
        const QImage bild = ansicht->viewport()->grab().toImage();
        int tinte = 0;
        for (int y = reihe.top(); y <= reihe.bottom(); ++y) {
            for (int x = reihe.right() - 80; x <= reihe.right(); ++x) {
                tinte += bild.pixelColor(x, y) == bild.pixelColor(200, reihe.center().y()) ? 0 : 1;
            }
        }
        return tinte > 0;
    };
    modell->setData(zeile(u"N2"_s), Qt::Checked, Qt::CheckStateRole);
    modell->setData(zeile(u"N5"_s), Qt::Checked, Qt::CheckStateRole);
    QCOMPARE(wort(u"N1"_s), u"Ebene 1"_s); // open: it is to be seen
    QVERIFY(!rechts(u"N1"_s));
    ansicht->collapse(zeile(u"N1"_s));
    QCOMPARE(wort(u"N1"_s), u"2 gewählt"_s);
    QVERIFY(rechts(u"N1"_s));
    QVERIFY(!rechts(u"N6"_s));
    modell->setData(zeile(u"N5"_s), Qt::Unchecked, Qt::CheckStateRole);
    QCOMPARE(wort(u"N1"_s), u"1 gewählt"_s);
    modell->setData(zeile(u"N1"_s), Qt::Checked, Qt::CheckStateRole);
    QCOMPARE(wort(u"N1"_s), u"Ebene 1"_s); // its own check says all
    QVERIFY(!rechts(u"N1"_s));
    modell->setData(zeile(u"N1"_s), Qt::Unchecked, Qt::CheckStateRole);
    QCOMPARE(wort(u"N1"_s), u"Ebene 1"_s);
    QVERIFY(!rechts(u"N1"_s));
}

void TestBaumansicht::zeilenringNurMitTasten()
{
    const auto bild = [this] { return ansicht->viewport()->grab().toImage(); };
    ansicht->setCurrentIndex({});
    const QImage ohne = bild();
    klicken(QPoint(400, titel(u"N2"_s).center().y())); // beside the title
    QCOMPARE(ansicht->currentIndex(), zeile(u"N2"_s));
    QCOMPARE(bild(), ohne);
    QTest::keyClick(ansicht.get(), Qt::Key_Down);
    QVERIFY(bild() != ohne);
}

void TestBaumansicht::alleZuklappenBehaeltDieZeile()
{
    ansicht->setCurrentIndex(zeile(u"N5"_s));
    ansicht->alleZuklappen();
    QCOMPARE(ansicht->currentIndex(), zeile(u"N1"_s));
}

void TestBaumansicht::tiefeKetteAufklappen()
{
    constexpr int tiefe = 100'000;
    constexpr int klappbar = PlaylistenModell::meisteEbenen - 1; // what lies deeper is shown flat
    modell->setKnoten(baumAus(antwort(kette(tiefe))));
    const auto zuSehen = [this](int stelle) {
        return ansicht->viewport()->rect().intersects(
            ansicht->visualRect(modell->zuStelle(stelle)));
    };
    const auto offene = [this] {
        int anzahl = 0;
        for (int i = 0; i < tiefe; ++i) {
            anzahl += ansicht->isExpanded(modell->zuStelle(i)) ? 1 : 0;
        }
        return anzahl;
    };
    QCOMPARE(offene(), 0);
    ansicht->alleAufklappen();
    QCOMPARE(offene(), klappbar);
    ansicht->setCurrentIndex(modell->zuStelle(tiefe));
    QTest::keyClick(ansicht.get(), Qt::Key_Asterisk);
    QVERIFY(zuSehen(tiefe) && !zuSehen(0));
    QTest::keyClick(ansicht.get(), Qt::Key_Space);
    QVERIFY(modell->alle().back().haken);

    ansicht->filtern(u"blatt"_s);
    QCOMPARE(offene(), klappbar);
    QVERIFY(zuSehen(tiefe));
    ansicht->alleZuklappen();
    QCOMPARE(ansicht->currentIndex(), modell->zuStelle(0));
    QCOMPARE(offene(), 0);
    ansicht->filtern({});
    QCOMPARE(offene(), klappbar); // as before the search
    QCOMPARE(ansicht->currentIndex(), modell->zuStelle(0));
    QVERIFY(zuSehen(0));
}

void TestBaumansicht::langerNameBehaeltDieZahl()
{
    const QString lang(2'000'000, u'W');
    modell->setKnoten(
        baumAus(antwort({eintrag(u"1"_s, u""_s, {{u"name"_s, lang}, {u"titel"_s, 76}})})));
    const QRect ganz = titel(gekuerzt(lang));
    QVERIFY(ganz.right() <= ansicht->viewport()->width() + 4);
    QVERIFY(ganz.width() > 300);
    // The number stands at the right end: something is drawn in the secondary colour there.
    const QImage bild = ansicht->viewport()->grab().toImage();
    int punkte = 0;
    for (int x = bild.width() - 24; x < bild.width(); ++x) {
        for (int y = 0; y < 26; ++y) {
            punkte += bild.pixelColor(x, y) != ansicht->palette().color(QPalette::Base) ? 1 : 0;
        }
    }
    QVERIFY(punkte > 5);
}

void TestBaumansicht::nameStehtInEinerZeile()
{
    modell->setKnoten(
        baumAus(antwort({eintrag(u"1"_s, u""_s, {{u"name"_s, u"<b>a</b>\nzwei"_s}}),
                         eintrag(u"2"_s, u""_s, {{u"name"_s, u"<b>a</b> zwei"_s}})})));
    const QImage bild = ansicht->viewport()->grab().toImage();
    const QRect erste = ansicht->visualRect(modell->index(0, 0));
    const QRect zweite = ansicht->visualRect(modell->index(1, 0));
    QCOMPARE(erste.height(), zweite.height());
    QCOMPARE(bild.copy(erste), bild.copy(zweite));
}

void TestBaumansicht::hinweisNurWoGekuerzt()
{
    const QString lang = u"<img src=x> "_s + QString(100, u'W');
    modell->setKnoten(
        baumAus(antwort({eintrag(u"1"_s, u""_s), eintrag(u"2"_s, u""_s, {{u"name"_s, lang}})})));
    const auto zeigen = [this](int nummer) {
        const QPoint ort = ansicht->visualRect(modell->index(nummer, 0)).center();
        QHelpEvent ruf(QEvent::ToolTip, ort, ansicht->viewport()->mapToGlobal(ort));
        QApplication::sendEvent(ansicht->viewport(), &ruf);
        return QToolTip::text();
    };
    QCOMPARE(zeigen(0), u""_s);
    QVERIFY(zeigen(1).contains(u"&lt;img src=x&gt;"_s));
    QToolTip::hideText();
}

void TestBaumansicht::zeilenhoehe()
{
    QCOMPARE(ansicht->visualRect(zeile(u"N1"_s)).height(), 26);
}

// A name in Hebrew begins at the right end of its row, its number follows on the left; the box
// stays.
void TestBaumansicht::nameVonRechts()
{
    const QString kurz = u"שירים"_s;
    const QString lang = (kurz + u' ').repeated(30).trimmed();
    modell->setKnoten(baumAus(
        antwort({eintrag(u"1"_s, {}, {{u"name"_s, kurz}}), eintrag(u"2"_s, {}, {{u"name"_s, lang}}),
                 eintrag(u"3"_s, {}, {{u"name"_s, kurz + u" Remix"_s}})})));
    ereignisseAbarbeiten();
    // The first and the last column with ink behind the box.
    const auto tinte = [this](const QString &name) {
        const QRect ort = ansicht->visualRect(zeile(name));
        const QImage bild = ansicht->viewport()->grab(ort).toImage();
        std::pair<int, int> grenzen(bild.width(), -1);
        for (int x = 30; x < bild.width(); ++x) {
            for (int y = 4; y < bild.height() - 4; ++y) {
                if (bild.pixel(x, y) != bild.pixel(bild.width() / 2, 1)) {
                    grenzen = {std::min(grenzen.first, x), x};
                }
            }
        }
        return grenzen;
    };
    const int breite = ansicht->visualRect(zeile(kurz)).width();
    QVERIFY(tinte(kurz).second >= breite - 8);
    QVERIFY(tinte(kurz).first > breite / 2);
    QVERIFY(tinte(lang).second >= breite - 8);
    QVERIFY(tinte(lang).first < 40);
    QVERIFY(tinte(kurz + u" Remix"_s).second < breite / 2);

    // What is cut is the end: both begin alike.
    const auto anfang = [this](const QString &name) {
        const QRect ort = ansicht->visualRect(zeile(name));
        constexpr int seite = 30;
        return ansicht->viewport()
            ->grab({ort.right() - seite, ort.top(), seite, ort.height()})
            .toImage();
    };
    QCOMPARE(anfang(lang), anfang(kurz));
    klicken(titel(kurz).center());
    QVERIFY(an(kurz));
}

// On a desktop that is read from right to left: the box at the right, the title left of it.
void TestBaumansicht::gespiegelt()
{
    modell->setKnoten(baumAus(antwort({ordner(u"1"_s, {}, {{u"name"_s, u"Ordner (2)"_s}}),
                                       eintrag(u"2"_s, u"1"_s, {{u"name"_s, u"(3) Titel …"_s}}),
                                       eintrag(u"3"_s, u"1"_s, {{u"name"_s, u"Andere"_s}})})));
    modell->setData(zeile(u"Andere"_s), Qt::Checked, Qt::CheckStateRole);
    ansicht->setCurrentIndex({});
    const QStringList namen{u"Ordner (2)"_s, u"(3) Titel …"_s};
    const auto schirm = [this] { return ansicht->viewport()->grab().toImage(); };
    for (const bool offen : {false, true}) {
        ansicht->setExpanded(zeile(namen[0]), offen);
        QApplication::setLayoutDirection(Qt::LeftToRight);
        ereignisseAbarbeiten();
        const QImage links = schirm();
        QList<QRect> flaechen;
        for (const QString &name : namen) {
            flaechen.append(titel(name));
        }
        QApplication::setLayoutDirection(Qt::RightToLeft);
        ereignisseAbarbeiten();
        const QImage rechts = schirm();
        for (int i = 0; i < (offen ? 2 : 1); ++i) {
            const auto drueben = [&](const QRect &stueck) {
                return QStyle::visualRect(Qt::RightToLeft, ansicht->viewport()->rect(), stueck);
            };
            QCOMPARE(titel(namen[i]), drueben(flaechen[i]));
            const QRect kasten(flaechen[i].left() + 4, flaechen[i].top(), 16, 26);
            QCOMPARE(rechts.copy(drueben(kasten)), links.copy(kasten));
            // Name, then number, from the box on; each of them in its own order.
            const QFontMetricsF mass(systemschrift(13, i == 0 ? QFont::DemiBold : QFont::Normal));
            const int breite = qCeil(mass.horizontalAdvance(namen[i]));
            const QRect name(kasten.right() + 8, kasten.top(), breite, 26);
            QCOMPARE(rechts.copy(drueben(name)), links.copy(name));
        }
    }
    const QRect flaeche = titel(namen[1]);
    klicken(QPoint(flaeche.right() - 12, flaeche.center().y())); // the box
    QVERIFY(an(namen[1]));
    klicken(QPoint(flaeche.left() + 6, flaeche.center().y()));
    QVERIFY(!an(namen[1]));
    klicken(QPoint(20, flaeche.center().y()));
    QVERIFY(!an(namen[1]));
}

// "2 gewählt" reads so beside a Hebrew name and on the other side as well.
void TestBaumansicht::gewaehltBleibtGeordnet()
{
    const QString hebraeisch = u"שירים"_s;
    modell->setKnoten(
        baumAus(antwort({ordner(u"1"_s, {}, {{u"name"_s, u"Ordner"_s}}), eintrag(u"2"_s, u"1"_s),
                         ordner(u"3"_s, {}, {{u"name"_s, hebraeisch}}), eintrag(u"4"_s, u"3"_s)})));
    ansicht->collapseAll();
    for (const QString &name : {u"N2"_s, u"N4"_s}) {
        modell->setData(zeile(name), Qt::Checked, Qt::CheckStateRole);
    }
    ansicht->setCurrentIndex({});
    ansicht->collapseAll();
    const QString wort = u"1 gewählt"_s;
    const int breite = qCeil(QFontMetricsF(systemschrift(13)).horizontalAdvance(wort));
    const auto ende = [&](const QString &name, bool rechts) {
        const QRect reihe = ansicht->visualRect(zeile(name));
        const int ab = rechts ? reihe.right() + 1 - 4 - breite : reihe.left() + 4;
        return ansicht->viewport()->grab({ab, reihe.top(), breite, reihe.height()}).toImage();
    };
    ereignisseAbarbeiten();
    const QImage erwartet = ende(u"Ordner"_s, true);
    // A name that begins at the right stands left of it.
    QCOMPARE(ende(hebraeisch, true), erwartet);
    QApplication::setLayoutDirection(Qt::RightToLeft);
    ereignisseAbarbeiten();
    QCOMPARE(ende(u"Ordner"_s, false), erwartet);
    QCOMPARE(ende(hebraeisch, false), erwartet);
}

void TestBaumansicht::vorgelesenWirdJedeZeile()
{
    QAccessibleInterface *const baum = QAccessible::queryAccessibleInterface(ansicht.get());
    QVERIFY(baum != nullptr);
    QCOMPARE(baum->role(), QAccessible::Tree);
    QCOMPARE(baum->childCount(), 6);
    QAccessibleInterface *const oben = baum->child(0);
    QCOMPARE(oben->role(), QAccessible::TreeItem);
    QCOMPARE(oben->text(QAccessible::Name), u"N1"_s);
    QCOMPARE(oben->text(QAccessible::Description), ohneHaken(1));
    QCOMPARE(oben->parent(), baum);
    QCOMPARE(oben->childCount(), 0); // what a row holds would be taken for its text
    QVERIFY(oben->state().expandable && oben->state().expanded);
    QAccessibleInterface *const liste = baum->child(2);
    QCOMPARE(liste->text(QAccessible::Name), u"N3   10"_s);
    QCOMPARE(liste->text(QAccessible::Description), ohneHaken(2));
    QCOMPARE(liste->parent(), baum);
    QCOMPARE(baum->child(4)->text(QAccessible::Description), ohneHaken(3));
    for (int i = 0; i < 6; ++i) {
        QCOMPARE(baum->indexOfChild(baum->child(i)), i);
    }
    QVERIFY(liste->state().checkable && !liste->state().checked && !liste->state().expandable);
    QVERIFY(liste->rect().isValid());
    QCOMPARE(baum->childAt(liste->rect().center().x(), liste->rect().center().y()), liste);
    QVERIFY(baum->child(6) == nullptr);

    ansicht->setCurrentIndex(zeile(u"N3"_s));
    QCOMPARE(baum->focusChild(), liste);
    QVERIFY(liste->state().focused);
    ansicht->collapse(zeile(u"N1"_s));
    QCOMPARE(baum->childCount(), 2);
    QCOMPARE(baum->indexOfChild(liste), -1);
    QVERIFY(liste->state().invisible);
    QVERIFY(oben->state().collapsed && !oben->state().invisible);
}

// Rows are found by their place on screen, however far it has been scrolled.
void TestBaumansicht::vorgeleseneZeilenStehenUeberallAmOrt()
{
    modell->setKnoten(baumAus(antwort(kette(3'000))));
    ansicht->alleAufklappen();
    QAccessibleInterface *const baum = QAccessible::queryAccessibleInterface(ansicht.get());
    for (const int stand : {0, 333, 100'000}) {
        ansicht->verticalScrollBar()->setValue(stand);
        QCOMPARE(baum->childCount(), 3'001);
        for (const int nummer : {0, 1, 1'500, 3'000}) {
            QCOMPARE(ansicht->nummer(ansicht->zeile(nummer)), nummer);
            QCOMPARE(baum->indexOfChild(baum->child(nummer)), nummer);
        }
    }
    QCOMPARE(baum->child(3'000)->text(QAccessible::Name), u"Nblatt   10"_s);
}

void TestBaumansicht::ersterTabNenntDieZeile()
{
    ansicht->setCurrentIndex({});
    ansicht->clearFocus();
    Vorlesehilfe hilfe;
    ansicht->setFocus(Qt::TabFocusReason);
    QCOMPARE(ansicht->currentIndex(), zeile(u"N1"_s));
    QVERIFY(QAccessible::queryAccessibleInterface(ansicht.get())->child(0)->state().focused);
    ereignisseAbarbeiten();
    const QStringList gemeldet = hilfe.ereignisse(); // Qt itself tells of the tree
    QCOMPARE(gemeldet.value(gemeldet.size() - 1), u"Focus N1"_s);
}

void TestBaumansicht::bewegenHakenUndKlappenWerdenGemeldet()
{
    ansicht->setCurrentIndex(zeile(u"N1"_s));
    Vorlesehilfe hilfe;
    QTest::keyClick(ansicht.get(), Qt::Key_Down);
    QCOMPARE(hilfe.ereignisse(), QStringList{u"Focus N2   10"_s});
    QTest::keyClick(ansicht.get(), Qt::Key_Space);
    QCOMPARE(hilfe.ereignisse(), QStringList{u"checked N2   10"_s});
    QCOMPARE(hilfe.ansagen(), zeilenSindZellen() ? QStringList() : QStringList{u"angehakt"_s});

    ansicht->setCurrentIndex(zeile(u"N1"_s));
    (void)hilfe.ereignisse();
    QTest::keyClick(ansicht.get(), Qt::Key_Left);
    QTest::keyClick(ansicht.get(), Qt::Key_Right);
    QCOMPARE(hilfe.ereignisse(), (QStringList{u"expanded N1"_s, u"collapsed N1"_s, u"expanded N1"_s,
                                              u"collapsed N1"_s}));
}

// Orca is silent about check boxes of what can be opened.
void TestBaumansicht::hakenAmOrdnerWirdAngesagt()
{
    ansicht->setCurrentIndex(zeile(u"N1"_s));
    Vorlesehilfe hilfe;
    QTest::keyClick(ansicht.get(), Qt::Key_Space);
    QCOMPARE(hilfe.ansagen(), QStringList{u"angehakt"_s});
    QTest::keyClick(ansicht.get(), Qt::Key_Space);
    QCOMPARE(hilfe.ansagen(), QStringList{u"nicht angehakt"_s});
    klicken(kasten(u"N5"_s)); // what follows for the folders around it stays silent
    klicken(kasten(u"N5"_s));
    QCOMPARE(hilfe.ansagen(), QStringList());
}

void TestBaumansicht::vorlesehilfeHaktAn()
{
    Vorlesehilfe hilfe;
    QAccessibleInterface *const baum = QAccessible::queryAccessibleInterface(ansicht.get());
    QAccessibleInterface *const oben = baum->child(0);
    QAccessibleActionInterface *const tun = oben->actionInterface();
    if (tun == nullptr) {
        QFAIL("The row offers no action");
    }
    QCOMPARE(tun->actionNames().value(0), u"toggle"_s); // by this name Orca knows a check box
    tun->doAction(u"toggle"_s);
    QVERIFY(an(u"N1"_s) && an(u"N5"_s));
    QVERIFY(oben->state().checked && baum->child(1)->state().checked);
    baum->child(1)->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    QVERIFY(!an(u"N1"_s) && an(u"N5"_s));

    baum->child(2)->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    QCOMPARE(ansicht->currentIndex(), zeile(u"N3"_s));
    ansicht->setEnabled(false);
    tun->doAction(u"toggle"_s);
    QVERIFY(!an(u"N1"_s));
}

void TestBaumansicht::vorlesehilfeUeberlebtDenFilter()
{
    Vorlesehilfe hilfe;
    QAccessibleInterface *const baum = QAccessible::queryAccessibleInterface(ansicht.get());
    QAccessibleInterface *const sechs = baum->child(5);
    ansicht->filtern(u"n5"_s);
    QVERIFY(!sechs->isValid());
    QVERIFY(sechs->state().invalid);
    QCOMPARE(sechs->text(QAccessible::Name), u""_s);
    sechs->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    QVERIFY(!modell->alle().back().haken);
    QCOMPARE(baum->childCount(), 3);
    ansicht->filtern({});
    QVERIFY(sechs->isValid());
    modell->setKnoten({});
    QCOMPARE(baum->childCount(), 0);
    QVERIFY(!sechs->isValid());
}

void TestBaumansicht::vorlesehilfeFragtNachUngueltigen()
{
    QAccessibleInterface *const baum = QAccessible::queryAccessibleInterface(ansicht.get());
    QAccessibleInterface *const oben = baum->child(0);
    QAccessibleInterface *const liste = baum->child(2);
    for (const int nummer : {-1, 6, 1000}) {
        QVERIFY(baum->child(nummer) == nullptr);
    }
    for (const int nummer : {-1, 0, 1000}) {
        QVERIFY(oben->child(nummer) == nullptr);
    }
    QVERIFY(liste->child(0) == nullptr);
    QCOMPARE(baum->indexOfChild(nullptr), -1);
    QCOMPARE(oben->indexOfChild(nullptr), -1);
    QCOMPARE(oben->indexOfChild(baum), -1);
    QCOMPARE(liste->indexOfChild(oben), -1);
    QVERIFY(baum->childAt(-1000, -1000) == nullptr);

    ansicht->filtern(u"gibt es nicht"_s); // now none of the rows is there
    QVERIFY(!oben->isValid() && !liste->isValid());
    QCOMPARE(oben->childCount(), 0);
    QVERIFY(oben->child(0) == nullptr);
    QCOMPARE(baum->indexOfChild(oben), -1);
    QCOMPARE(oben->indexOfChild(liste), -1);
    QCOMPARE(liste->parent(), baum);
    QCOMPARE(liste->rect(), QRect());
    QVERIFY(baum->focusChild() == nullptr);
}

// The factory is asked for every class of every widget.
void TestBaumansicht::vorlesehilfeFremderFelderIstQtsEigene()
{
    QTreeView fremd;
    fremd.setModel(modell.get());
    fremd.setHeaderHidden(true);
    QAccessibleInterface *const baum = QAccessible::queryAccessibleInterface(&fremd);
    QVERIFY(baum != nullptr);
    QVERIFY(baum->tableInterface() != nullptr); // Qt's tree view has one, ours has not
    QVERIFY(QAccessible::queryAccessibleInterface(ansicht.get())->tableInterface() == nullptr);

    QLabel text(u"Text"_s);
    QCOMPARE(QAccessible::queryAccessibleInterface(&text)->role(), QAccessible::StaticText);
    QWidget blank;
    QCOMPARE(QAccessible::queryAccessibleInterface(&blank)->role(), QAccessible::Client);
}

KALVARO_FENSTERTEST(TestBaumansicht)
#include "tst_baumansicht.moc"
