#include "mainwindow/fensterwelt.h"
#include "settingswindow/einstellungenfenster.h"
#include "testlauf.h"
#include "ui/beschriftung.h"
#include "ui/erscheinung.h"
#include "ui/karte.h"

#include <QApplication>
#include <QMenuBar>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>

using namespace kalvaro;
using namespace Qt::StringLiterals;

// How the window is laid out, and how large it is.
class TestHauptfensterAufbau final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        daten.leeren();
        QApplication::setFont(grundschrift);
        QApplication::setPalette(eigenePalette(false));
    }

    void fenster();
    void kopf();
    void langerName();
    void startbereich();
    void reihenfolgeUndAbstaende();
    void waechstMitDemUpdate();
    void countdownNimmtNurPlatzWennErZaehlt();
    void nieHoeherAlsDerSchirm();
    void rollbalkenHatDieFarbeDesFensters();
    void rueckVomUnterenRand();
    void menueleisteGehoertNichtZumBild();
    void erscheinungWechselt();
    void einstellungen_data();
    void einstellungen();
    void einstellungenNurEinmal();

private:
    // The place of a part in the content.
    static QRect ort(const Fensterwelt &p, const QString &name)
    {
        QWidget *const teil = p.teil(name);
        return {teil->mapTo(p.teil(u"ganz"_s), QPoint()), teil->size()};
    }

    static Transport::Ergebnis mitUpdate() { return Fensterwelt::gut(angebot(u"1.10"_s)); }

    // A failure with a long story, and an update.
    static Transport::Ergebnis fehler(const QString &text)
    {
        QJsonObject mehr = angebot(u"1.10"_s);
        mehr.insert(u"ergebnis"_s, QJsonObject{{u"fehler"_s, text}});
        return Fensterwelt::antwort(u"fehler"_s, mehr);
    }

    Datenordner &daten = Testumgebung::ordner();
    const QFont grundschrift = QApplication::font();
};

void TestHauptfensterAufbau::fenster()
{
    const Fensterwelt p;
    p.fenster->oeffnen(false);
    QCOMPARE(p.fenster->windowTitle(), u"kalvaro"_s);
    QVERIFY(!p.fenster->windowIcon().isNull());
    QCOMPARE(p.fenster->width(), 520);
    QCOMPARE(p.fenster->minimumSize(), p.fenster->maximumSize());
    QVERIFY(p.fenster->isWindow());
    // In the middle of the screen.
    const QPoint mitte = p.fenster->screen()->availableGeometry().center();
    QVERIFY((p.fenster->geometry().center() - mitte).manhattanLength() < 60);
}

void TestHauptfensterAufbau::kopf()
{
    const Fensterwelt p;
    QCOMPARE(p.text(u"lblKonto"_s), u"rekordbox-Bibliothek · Studio-Mac"_s);
    QCOMPARE(p.teil<Beschriftung>(u"lblKonto"_s)->farbe(), Farbe::sekundaer(p.fenster->palette()));
    const auto labels = p.fenster->findChildren<Beschriftung *>();
    const auto gross = std::find_if(labels.begin(), labels.end(), [](const Beschriftung *label) {
        return label->text() == u"kalvaro";
    });
    QVERIFY(gross != labels.end());
    QVERIFY(qAbs((*gross)->font().pointSizeF() * (*gross)->logicalDpiY() / 72 - 26) < 0.05);
    QCOMPARE((*gross)->font().weight(), QFont::Bold);
    QCOMPARE(p.text(u"lblVersion"_s), u"Version 1.4"_s);
}

void TestHauptfensterAufbau::langerName()
{
    const Fensterwelt p({.name = u"<b>"_s + QString(10'000, u'x')});
    p.fenster->oeffnen(false);
    Fensterwelt::ruhe();
    QCOMPARE(p.fenster->width(), 520);
    QVERIFY(ort(p, u"lblKonto"_s).right() <= 520 - 24);
    QVERIFY(p.teil(u"lblKonto"_s)->toolTip().contains(u"&lt;b&gt;xxx"_s));
}

void TestHauptfensterAufbau::startbereich()
{
    for (const bool an : {false, true}) {
        const Fensterwelt p({.autostart = an});
        p.fenster->oeffnen(false);
        QCOMPARE(p.knopf(u"cbAuto"_s)->isChecked(), an);
        QCOMPARE(p.knopf(u"cbAuto"_s)->text(), u"rekordbox beim Öffnen automatisch starten\n"
                                               "(5 Sekunden, nachdem der Abgleich fertig ist)"_s);
        QCOMPARE(p.knopf(u"knStart"_s)->height(), 38);
        QCOMPARE(ort(p, u"knStart"_s).left(), 24);
        QCOMPARE(ort(p, u"knStart"_s).width(), 472);
        QCOMPARE(p.knopf(u"knCountdown"_s)->text(), u"Abbrechen"_s);
        QVERIFY(p.teil(u"knCountdown"_s)->isHidden());
        QCOMPARE(p.knopf(u"lnkEinstellungen"_s)->text(), u"Einstellungen …"_s);
        QCOMPARE(p.knopf(u"lnkAbgleich"_s)->text(), u"Jetzt abgleichen"_s);
    }
}

void TestHauptfensterAufbau::reihenfolgeUndAbstaende()
{
    Fensterwelt p;
    p.abgeglichen(mitUpdate());
    const QStringList folge{u"karteUpdate"_s, u"karteStatus"_s, u"karteZahlen"_s, u"knStart"_s};
    for (const QString &name : folge) {
        QCOMPARE(ort(p, name).left(), 24);
        QCOMPARE(ort(p, name).width(), 472);
    }
    for (int i = 1; i < folge.size(); ++i) {
        QCOMPARE(ort(p, folge[i]).top() - ort(p, folge[i - 1]).bottom() - 1, 14);
    }
    QCOMPARE(ort(p, u"lblVersion"_s).right(), 520 - 24 - 1);
    QVERIFY(p.teil(u"ganz"_s)->height() - ort(p, u"lnkAbgleich"_s).bottom() - 1 >= 16);
    QVERIFY(ort(p, u"lnkEinstellungen"_s).right() < ort(p, u"lnkAbgleich"_s).left() - 12);
}

void TestHauptfensterAufbau::waechstMitDemUpdate()
{
    Fensterwelt p;
    p.abgeglichen();
    const int vorher = p.fenster->height();
    p.abgeglichen(mitUpdate());
    QCOMPARE(p.fenster->height(), vorher + p.teil(u"karteUpdate"_s)->height() + 14);
    QCOMPARE(p.fenster->width(), 520);
}

void TestHauptfensterAufbau::countdownNimmtNurPlatzWennErZaehlt()
{
    Fensterwelt p;
    p.abgeglichen();
    const int vorher = p.fenster->height();
    const QRect knopf = ort(p, u"knStart"_s);
    p.ablauf.einst.autostart = true;
    p.abgeglichen();
    QVERIFY(p.fenster->height() > vorher);
    QCOMPARE(ort(p, u"knStart"_s), knopf); // nothing above it jumps
    QVERIFY(qAbs(ort(p, u"countdown"_s).center().x() - 260) <= 1);
    p.knopf(u"knCountdown"_s)->click();
    Fensterwelt::ruhe();
    QCOMPARE(p.fenster->height(), vorher);
}

// Scrolling inside instead; the content keeps its width, and the keyboard reaches all of it.
void TestHauptfensterAufbau::nieHoeherAlsDerSchirm()
{
    QFont riesig = grundschrift;
    riesig.setPixelSize(36);
    QApplication::setFont(riesig);
    Fensterwelt p;
    p.abgeglichen(fehler(u"Zeile\n"_s.repeated(12).trimmed()));
    const int schirm = p.fenster->screen()->availableGeometry().height();
    QVERIFY(p.teil(u"ganz"_s)->height() > schirm);
    QVERIFY(p.fenster->frameGeometry().height() <= schirm);
    const auto *const rollen = p.fenster->findChild<QScrollArea *>();
    QVERIFY(rollen->verticalScrollBar()->isVisible());
    QVERIFY(!rollen->horizontalScrollBar()->isVisible());
    QCOMPARE(p.teil(u"ganz"_s)->width(), rollen->viewport()->width()); // nothing sticks out

    p.fenster->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(p.fenster.get()));
    p.teil(u"cbAuto"_s)->setFocus();
    QTest::keyClick(p.teil(u"cbAuto"_s), Qt::Key_Tab);
    QTest::keyClick(p.teil(u"lnkEinstellungen"_s), Qt::Key_Tab);
    QVERIFY(!p.teil(u"lnkAbgleich"_s)->visibleRegion().isEmpty());
}

// A white stripe stood beside the content.
void TestHauptfensterAufbau::rollbalkenHatDieFarbeDesFensters()
{
    erscheinungEinrichten(*qApp);
    QFont riesig = grundschrift;
    riesig.setPixelSize(36);
    QApplication::setFont(riesig);
    Fensterwelt p;
    p.abgeglichen(mitUpdate());
    QScrollBar *const balken = p.fenster->findChild<QScrollArea *>()->verticalScrollBar();
    QVERIFY(balken->isVisible());
    QCOMPARE(balken->grab().toImage().pixelColor(0, balken->height() - 1),
             Farbe::fenster(p.fenster->palette()));
}

void TestHauptfensterAufbau::rueckVomUnterenRand()
{
    Fensterwelt p;
    p.abgeglichen();
    const QRect frei = p.fenster->screen()->availableGeometry();
    p.fenster->move(10, frei.bottom() + 1 - p.fenster->height());
    p.abgeglichen(mitUpdate());
    QVERIFY(p.fenster->frameGeometry().bottom() <= frei.bottom());
    QCOMPARE(p.fenster->x(), 10);
}

void TestHauptfensterAufbau::menueleisteGehoertNichtZumBild()
{
    Fensterwelt p;
    p.abgeglichen();
    const QSize inhalt = p.teil(u"ganz"_s)->size();
    auto *const leiste = new QMenuBar;
    leiste->addMenu(u"kalvaro"_s)->addActions(p.fenster->actions());
    p.fenster->menueleisteSetzen(leiste);
    Fensterwelt::ruhe();
    QCOMPARE(p.teil(u"ganz"_s)->size(), inhalt);
    QVERIFY(p.fenster->height() > inhalt.height());
    QVERIFY(!p.fenster->findChild<QScrollArea *>()->verticalScrollBar()->isVisible());
}

// Everything that is open follows at once.
void TestHauptfensterAufbau::erscheinungWechselt()
{
    const auto zeigen = [](Fensterwelt &p) {
        p.abgeglichen(fehler(u"x"_s));
        p.teil<Beschriftung>(u"lblZeile1"_s)->textSetzen(u"Frei auf dem Mac: 214 GB"_s);
        p.fenster->activateWindow();
        Fensterwelt::ruhe();
        auto *const karte = p.teil<Karte>(u"karteStatus"_s);
        QTRY_COMPARE(karte->grab().toImage().pixelColor(20, 80).rgb(), karte->grundfarbe().rgb());
    };
    Fensterwelt offen({.autostart = true});
    zeigen(offen);
    const QImage hell = offen.fenster->grab().toImage();
    QApplication::setPalette(eigenePalette(true));
    Fensterwelt neu({.autostart = true});
    zeigen(neu);
    QTRY_COMPARE(offen.fenster->grab().toImage(), neu.fenster->grab().toImage());
    QVERIFY(offen.fenster->grab().toImage() != hell);
    QApplication::setPalette(eigenePalette(false));
    QTRY_COMPARE(offen.fenster->grab().toImage(), hell);
}

void TestHauptfensterAufbau::einstellungen_data()
{
    QTest::addColumn<int>("ergebnis");
    QTest::addColumn<bool>("haken");
    QTest::addColumn<QString>("knopf");
    QTest::newRow("changing the auto-start choice inside the settings and saving updates the main "
                  "window's check box at once")
        << 1 << true << u"rekordbox 6.8.5 starten"_s;
    QTest::newRow("cancelled: as they were") << 0 << false << u"rekordbox 7.1.4 starten"_s;
}

void TestHauptfensterAufbau::einstellungen()
{
    QFETCH(int, ergebnis);
    Fensterwelt p({.versionen = {u"6.8.5"_s, u"7.1.4"_s}});
    p.abgeglichen();
    p.knopf(u"lnkEinstellungen"_s)->click();
    auto *const blatt = p.fenster->findChild<EinstellungenFenster *>();
    QVERIFY(blatt != nullptr && blatt->isVisible());
    QVERIFY(blatt->isModal());
    p.ablauf.einst.autostart = true;
    p.ablauf.einst.version = u"6.8.5"_s;
    blatt->done(ergebnis);
    QTEST(p.knopf(u"cbAuto"_s)->isChecked(), "haken");
    Fensterwelt::ruhe();
    QTEST(p.knopf(u"knStart"_s)->text(), "knopf");
    QVERIFY(p.fenster->findChild<EinstellungenFenster *>() == nullptr);
}

void TestHauptfensterAufbau::einstellungenNurEinmal()
{
    Fensterwelt p;
    p.abgeglichen();
    p.knopf(u"lnkEinstellungen"_s)->click();
    p.knopf(u"lnkEinstellungen"_s)->click();
    QCOMPARE(p.fenster->findChildren<EinstellungenFenster *>().size(), 1);
}

KALVARO_FENSTERTEST(TestHauptfensterAufbau)
#include "tst_hauptfenster_aufbau.moc"
