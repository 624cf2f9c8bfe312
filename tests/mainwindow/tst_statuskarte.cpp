#include "doubles/testuhr.h"
#include "mainwindow/statuskarte.h"
#include "testlauf.h"
#include "ui/beschriftung.h"
#include "ui/erscheinung.h"
#include "ui/pille.h"
#include "ui/rad.h"
#include "ui/symbole.h"

#include <QApplication>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

const QString vergleicht = u"kalvaro vergleicht diesen Mac mit der Cloud"_s;

} // namespace

class TestStatuskarte final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { karte.reset(); }

    void arten_data();
    void arten();
    void radStattZeichen();
    void zaehler();
    void uhrSpringt();
    void zaehlerBeginntNeu();
    void zaehlerEndetMitDemErgebnis_data();
    void zaehlerEndetMitDemErgebnis();
    void zaehlerNachVerbergenUndZeigen();
    void zaehlerSchweigt();
    void zaehlerEndetMitDerKarte();
    void ansage();
    void pille_data();
    void pille();
    void pilleBleibt_data();
    void pilleBleibt();
    void hoehe();
    void langerTitelBrichtUm();
    void textVomServer();
    void erscheinungWechselt();
    void lesbarInFremdenFarben_data();
    void lesbarInFremdenFarben();

private:
    [[nodiscard]] QString titel() const { return lblTitel->text(); }
    [[nodiscard]] QString detail() const { return lblDetail->text(); }
    // As tall as it wants to be at the window's width.
    void setzen()
    {
        karte->show(); // what was never shown is not laid out
        QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
        karte->resize(472, karte->heightForWidth(472));
        karte->grab();
    }

    std::unique_ptr<Testuhr> uhr;
    std::unique_ptr<Statuskarte> karte;
    Beschriftung *lblTitel = nullptr;
    Beschriftung *lblDetail = nullptr;
    Zeichen *zeichen = nullptr;
    Rad *rad = nullptr;
    Pille *marke = nullptr;
};

void TestStatuskarte::init()
{
    QApplication::setPalette(eigenePalette(false));
    uhr = std::make_unique<Testuhr>();
    karte = std::make_unique<Statuskarte>(*uhr);
    lblTitel = karte->findChild<Beschriftung *>(u"lblTitel"_s);
    lblDetail = karte->findChild<Beschriftung *>(u"lblDetail"_s);
    zeichen = karte->findChild<Zeichen *>(u"bildZeichen"_s);
    rad = karte->findChild<Rad *>(u"rad"_s);
    marke = karte->findChild<Pille *>(u"pille"_s);
}

void TestStatuskarte::arten_data()
{
    QTest::addColumn<std::optional<Art>>("art");
    QTest::addColumn<QString>("symbol");
    QTest::addColumn<QColor>("toenung");
    QTest::addColumn<QColor>("fuellung");
    QTest::addColumn<QColor>("schrift");
    const QPalette p = eigenePalette(false);
    const QColor keine(0, 0, 0, 0);
    QTest::newRow("gut") << std::optional(Art::Gut) << u"checkmark.circle.fill"_s
                         << QColor(52, 199, 89) << Farbe::gutWeich(p) << QColor(36, 138, 61);
    QTest::newRow("warn") << std::optional(Art::Warn) << u"exclamationmark.circle.fill"_s
                          << QColor(255, 149, 0) << Farbe::warnWeich(p) << QColor(178, 80, 0);
    QTest::newRow("krit") << std::optional(Art::Krit) << u"exclamationmark.octagon.fill"_s
                          << QColor(255, 59, 48) << Farbe::kritWeich(p) << QColor(215, 0, 21);
    QTest::newRow("aus") << std::optional(Art::Aus) << u"play.circle.fill"_s << Farbe::akzent(p)
                         << keine << Farbe::schrift(p);
    QTest::newRow("laden") << std::optional<Art>() << QString() << Farbe::schrift(p) << keine
                           << Farbe::schrift(p);
}

void TestStatuskarte::arten()
{
    QFETCH(std::optional<Art>, art);
    QFETCH(QString, symbol);
    QFETCH(QColor, toenung);
    QFETCH(QColor, fuellung);
    QFETCH(QColor, schrift);
    if (art) {
        karte->zeige(*art, u"Titel"_s, u"Detail"_s);
    } else {
        karte->laden(u"Titel"_s, u"Detail"_s);
    }
    QCOMPARE(karte->art(), art);
    QCOMPARE(titel(), u"Titel"_s);
    QCOMPARE(detail(), u"Detail"_s);
    QCOMPARE(zeichen->name(), symbol);
    if (!symbol.isEmpty()) {
        QCOMPARE(zeichen->toenung(), toenung);
        QCOMPARE(zeichen->accessibleName(), u"Titel"_s);
    }
    QCOMPARE(karte->fuellung()(karte->palette()), fuellung);
    QCOMPARE(lblTitel->farbe(), schrift);
    QCOMPARE(lblDetail->farbe(), Farbe::sekundaer(karte->palette()));
}

void TestStatuskarte::radStattZeichen()
{
    karte->laden(u"Titel"_s, vergleicht);
    QVERIFY(zeichen->isHidden());
    QVERIFY(!rad->isHidden());
    karte->zeige(Art::Gut, u"Titel"_s, u"Detail"_s);
    QVERIFY(!zeichen->isHidden());
    QVERIFY(rad->isHidden());
    karte->laden(u"Titel"_s, vergleicht);
    QVERIFY(zeichen->isHidden());
    // Both in the same place.
    setzen();
    const QRect amRad = rad->geometry();
    karte->zeige(Art::Aus, u"Titel"_s, u"Detail"_s);
    setzen();
    QCOMPARE(zeichen->geometry(), amRad);
}

// A suffix of two blanks and the elapsed seconds in parentheses, renewed once per second.
void TestStatuskarte::zaehler()
{
    karte->laden(u"Titel"_s, vergleicht);
    QCOMPARE(detail(), vergleicht);
    uhr->vor(Sekunden(0.999));
    QCOMPARE(detail(), vergleicht);
    uhr->vor(Sekunden(0.001));
    QCOMPARE(detail(), vergleicht + u"  (1 s)"_s);
    uhr->vor(Sekunden(1));
    QCOMPARE(detail(), vergleicht + u"  (2 s)"_s);
    uhr->vor(Sekunden(0.9));
    QCOMPARE(detail(), vergleicht + u"  (2 s)"_s);
    uhr->vor(Sekunden(477.1));
    QCOMPARE(detail(), vergleicht + u"  (480 s)"_s);
}

// Somebody set the clock, or it found the right time: the counter once jumped or stood still.
void TestStatuskarte::uhrSpringt()
{
    karte->laden(u"Titel"_s, vergleicht);
    uhr->vor(Sekunden(3));
    uhr->verstellen(Sekunden(-3600));
    uhr->vor(Sekunden(1));
    QCOMPARE(detail(), vergleicht + u"  (4 s)"_s);
    uhr->verstellen(Sekunden(7200));
    uhr->vor(Sekunden(1));
    QCOMPARE(detail(), vergleicht + u"  (5 s)"_s);
}

void TestStatuskarte::zaehlerBeginntNeu()
{
    karte->laden(u"Verbinde"_s, u"Einen Moment"_s);
    uhr->vor(Sekunden(7.5));
    karte->laden(u"Titel"_s, vergleicht);
    QCOMPARE(uhr->offen(), 1);
    QCOMPARE(detail(), vergleicht);
    uhr->vor(Sekunden(1));
    QCOMPARE(detail(), vergleicht + u"  (1 s)"_s);
}

void TestStatuskarte::zaehlerEndetMitDemErgebnis_data()
{
    QTest::addColumn<Art>("art");
    for (const Art art : {Art::Gut, Art::Warn, Art::Krit, Art::Aus}) {
        QTest::addRow("%s", qPrintable(artname(art))) << art;
    }
}

void TestStatuskarte::zaehlerEndetMitDemErgebnis()
{
    QFETCH(Art, art);
    karte->laden(u"Titel"_s, vergleicht);
    uhr->vor(Sekunden(2));
    karte->zeige(art, u"Titel"_s, u"Detail"_s);
    QCOMPARE(uhr->offen(), 0);
    uhr->vor(Sekunden(10));
    QCOMPARE(detail(), u"Detail"_s);
}

void TestStatuskarte::zaehlerNachVerbergenUndZeigen()
{
    karte->show();
    karte->laden(u"Titel"_s, vergleicht);
    uhr->vor(Sekunden(2));
    karte->hide();
    uhr->vor(Sekunden(30));
    karte->show();
    QCOMPARE(detail(), vergleicht + u"  (32 s)"_s);
    uhr->vor(Sekunden(1));
    QCOMPARE(detail(), vergleicht + u"  (33 s)"_s);
}

void TestStatuskarte::zaehlerSchweigt()
{
    karte->laden(u"Titel"_s, vergleicht);
    const QString ansage = karte->accessibleName();
    uhr->vor(Sekunden(3));
    QCOMPARE(karte->accessibleName(), ansage);
    QCOMPARE(lblDetail->accessibleName(), vergleicht);
}

void TestStatuskarte::zaehlerEndetMitDerKarte()
{
    karte->show();
    karte->laden(u"Titel"_s, vergleicht);
    QVERIFY(uhr->offen() > 0);
    karte.reset();
    QCOMPARE(uhr->offen(), 0);
}

void TestStatuskarte::ansage()
{
    karte->zeige(Art::Gut, u"Bibliothek ist abgeglichen"_s, u"Es gab nichts zu übertragen."_s);
    QCOMPARE(karte->accessibleName(),
             u"Bibliothek ist abgeglichen. Es gab nichts zu übertragen."_s);
    karte->laden(u"Verbinde mit der Cloud …"_s, u"Einen Moment"_s);
    QCOMPARE(karte->accessibleName(), u"Verbinde mit der Cloud … Einen Moment"_s);
    karte->zeige(Art::Warn, u"Unbekannter Zustand"_s, {});
    QCOMPARE(karte->accessibleName(), u"Unbekannter Zustand"_s);
    karte->zeige(Art::Krit, u"Abgleich gestört"_s, QString(1'000'000, u'x'));
    QVERIFY(karte->accessibleName().startsWith(u"Abgleich gestört. xxx"_s));
    QVERIFY(karte->accessibleName().size() < 5000);
}

void TestStatuskarte::pille_data()
{
    QTest::addColumn<QString>("betrieb");
    QTest::addColumn<QString>("inhalt");
    QTest::addColumn<QColor>("schrift");
    QTest::addColumn<QColor>("grund");
    const QPalette p = eigenePalette(false);
    QTest::newRow("dry run") << u"schatten"_s << u"Probebetrieb"_s << Farbe::warn(p)
                             << Farbe::warnWeich(p);
    QTest::newRow("live") << u"scharf"_s << u"Aktiv"_s << Farbe::gut(p) << Farbe::gutWeich(p);
    QTest::newRow("none") << QString() << QString() << QColor() << QColor();
    QTest::newRow("unheard of") << u"Scharf"_s << QString() << QColor() << QColor();
}

void TestStatuskarte::pille()
{
    QFETCH(QString, betrieb);
    QFETCH(QString, inhalt);
    QFETCH(QColor, schrift);
    QFETCH(QColor, grund);
    QVERIFY(marke->isHidden());
    karte->betriebZeigen(betrieb);
    QCOMPARE(marke->isHidden(), inhalt.isEmpty());
    QCOMPARE(marke->label()->text(), inhalt);
    if (!inhalt.isEmpty()) {
        QCOMPARE(marke->label()->farbe(), schrift);
        QCOMPARE(marke->fuellung()(marke->palette()), grund);
    }
}

void TestStatuskarte::pilleBleibt_data()
{
    QTest::addColumn<QString>("danach");
    QTest::newRow("an outcome with an empty mode leaves the pill visible") << QString();
    QTest::newRow("an unknown mode as well") << u"probe"_s;
}

void TestStatuskarte::pilleBleibt()
{
    QFETCH(QString, danach);
    karte->betriebZeigen(u"schatten"_s);
    karte->betriebZeigen(danach);
    QVERIFY(!marke->isHidden());
    QCOMPARE(marke->label()->text(), u"Probebetrieb"_s);
    karte->betriebZeigen(u"scharf"_s);
    QCOMPARE(marke->label()->text(), u"Aktiv"_s);
}

// It does not jump between one line and two.
void TestStatuskarte::hoehe()
{
    karte->zeige(Art::Gut, u"Titel"_s, u"eine Zeile"_s);
    setzen();
    QCOMPARE(karte->height(), 96);
    karte->zeige(Art::Gut, u"Titel"_s, u"eine\nzweite"_s);
    setzen();
    QCOMPARE(karte->height(), 96);
    karte->zeige(Art::Gut, u"Titel"_s, u"eine\nzweite\ndritte\nvierte"_s);
    setzen();
    QVERIFY(karte->height() > 110);
    QVERIFY(lblDetail->toolTip().isEmpty());
}

// A headline beside the wider pill was once cut.
void TestStatuskarte::langerTitelBrichtUm()
{
    karte->betriebZeigen(u"schatten"_s);
    karte->zeige(Art::Warn, u"Die Cloud erreicht diesen Mac nicht"_s, u"Detail"_s);
    setzen();
    QVERIFY2(lblTitel->toolTip().isEmpty(), qPrintable(lblTitel->toolTip()));
    QVERIFY(lblTitel->height() >= lblTitel->heightForWidth(lblTitel->width()));
    QVERIFY(lblTitel->geometry().right() < marke->geometry().left());
    QVERIFY(lblDetail->y() >= lblTitel->geometry().bottom());
}

void TestStatuskarte::textVomServer()
{
    const QString fehler = u"<img src=x> &amp; "_s + QString(10'000, u'x');
    karte->zeige(Art::Krit, u"<b>Abgleich</b>"_s, fehler);
    setzen();
    QCOMPARE(titel(), u"<b>Abgleich</b>"_s);
    QCOMPARE(detail(), fehler);
    QVERIFY(karte->minimumSizeHint().width() <= 472);
    QVERIFY(karte->height() < 320);
    QVERIFY(lblDetail->toolTip().contains(u"&lt;img src=x&gt; &amp;amp;"_s));
}

void TestStatuskarte::erscheinungWechselt()
{
    karte->betriebZeigen(u"scharf"_s);
    karte->zeige(Art::Krit, u"Titel"_s, u"Detail"_s);
    setzen();
    const QImage hell = karte->grab().toImage();
    QApplication::setPalette(eigenePalette(true));
    Statuskarte neu(*uhr);
    neu.betriebZeigen(u"scharf"_s);
    neu.zeige(Art::Krit, u"Titel"_s, u"Detail"_s);
    neu.resize(karte->size());
    QTRY_COMPARE(karte->grab().toImage(), neu.grab().toImage());
    QVERIFY(karte->grab().toImage() != hell);
}

void TestStatuskarte::lesbarInFremdenFarben_data()
{
    QTest::addColumn<QPalette>("palette");
    const auto palette = [](QRgb fenster, QRgb flaeche, QRgb text, QRgb zart) {
        QPalette p = eigenePalette(false);
        p.setColor(QPalette::Window, fenster);
        p.setColor(QPalette::Base, flaeche);
        p.setColor(QPalette::WindowText, text);
        p.setColor(QPalette::Text, text);
        p.setColor(QPalette::PlaceholderText, zart);
        return p;
    };
    QTest::newRow("ours, light") << eigenePalette(false);
    QTest::newRow("ours, dark") << eigenePalette(true);
    QTest::newRow("Breeze dark, placeholder left black")
        << palette(0x2a2e32, 0x1b1e20, 0xfcfcfc, 0x000000);
    QTest::newRow("high contrast") << palette(0x000000, 0x000000, 0xffffff, 0xffffff);
    QTest::newRow("dark card in a light window") << palette(0xeeeeee, 0x202020, 0x101010, 0x808080);
    QTest::newRow("light card in a dark window") << palette(0x202020, 0xffffff, 0xf0f0f0, 0x808080);
    QTest::newRow("a card of middling grey") << palette(0x808080, 0x777777, 0x707070, 0x787878);
}

void TestStatuskarte::lesbarInFremdenFarben()
{
    QFETCH(QPalette, palette);
    QApplication::setPalette(palette);
    for (const Art art : {Art::Gut, Art::Warn, Art::Krit, Art::Aus}) {
        karte->zeige(art, u"Alles abgeglichen"_s, u"Der Stand passt."_s);
        for (const QString &betrieb : {u"schatten"_s, u"scharf"_s}) {
            karte->betriebZeigen(betrieb);
            const QColor grund = karte->grundfarbe();
            QVERIFY(Farbe::kontrast(lblTitel->stift(), grund) >= 4.5);
            QVERIFY(Farbe::kontrast(lblDetail->stift(), grund) >= 4.5);
            QVERIFY(Farbe::kontrast(marke->label()->stift(), marke->grundfarbe()) >= 4.5);
        }
    }
}

KALVARO_FENSTERTEST(TestStatuskarte)
#include "tst_statuskarte.moc"
