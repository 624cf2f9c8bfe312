#include "testlauf.h"
#include "ui/beschriftung.h"
#include "ui/erscheinung.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QPainter>

#include <memory>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

std::unique_ptr<Beschriftung> label(const QString &inhalt, std::optional<int> umbruch = {})
{
    std::unique_ptr<Beschriftung> neu(
        beschriftung(inhalt, 12, QFont::Normal, Farbe::schrift, umbruch));
    neu->setZeilenhoehe(20);
    return neu;
}

// The label as it comes out at this width.
QImage bild(Beschriftung &was, int breite)
{
    was.resize(breite, was.hasHeightForWidth() ? was.heightForWidth(breite) : 20);
    return was.grab().toImage();
}

double tintenkontrast(const QImage &gezeichnet, const QColor &grund)
{
    double bester = 1;
    for (int x = 0; x < gezeichnet.width(); ++x) {
        for (int y = 0; y < gezeichnet.height(); ++y) {
            bester = std::max(bester, Farbe::kontrast(gezeichnet.pixelColor(x, y), grund));
        }
    }
    return bester;
}

// The first and the last column that holds ink; (width, -1) without any.
std::pair<int, int> tinte(const QImage &gezeichnet)
{
    std::pair<int, int> grenzen(gezeichnet.width(), -1);
    const QRgb grund = gezeichnet.pixel(gezeichnet.width() / 2, 0);
    for (int x = 0; x < gezeichnet.width(); ++x) {
        for (int y = 0; y < gezeichnet.height(); ++y) {
            if (gezeichnet.pixel(x, y) != grund) {
                grenzen = {std::min(grenzen.first, x), x};
            }
        }
    }
    return grenzen;
}

int tintenbreite(const QImage &gezeichnet)
{
    const auto [links, rechts] = tinte(gezeichnet);
    return rechts - links + 1;
}

const QString hebraeisch = u"השירים האהובים"_s;
const QString arabisch = u"الأغاني المفضلة"_s;

} // namespace

class TestBeschriftung final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QApplication::setPalette(eigenePalette(false)); }

    void woertlich_data();
    void woertlich();
    void zeilenwechsel();
    void ohneUmbruchNieZweiZeilen();
    void mitUmbruchBeiDerBreite();
    void zehnKilobyteOhneLeerzeichen();
    void einMegabyteIstSchnell();
    void hinweisNurWennGekuerzt();
    void hinweisIstWoertlich();
    void fordertKeineBreite();
    void schrumpfen();
    void zahlBleibtBeiDerEinheit();
    void mittelpunkteTrennenZeilen();
    void gemeinsamSchrumpfen();
    void vonRechtsNachLinks_data();
    void vonRechtsNachLinks();
    void vonRechtsGekuerzt();
    void schriftUndFarbe();
    void lesbarAufGrund_data();
    void lesbarAufGrund();
    void ansagen();
};

void TestBeschriftung::woertlich_data()
{
    QTest::addColumn<QString>("inhalt");
    QTest::newRow("bold") << u"<b>fett</b>"_s;
    QTest::newRow("image") << u"<img src=\"file:///etc/passwd\">"_s;
    QTest::newRow("entity") << u"&amp; &lt;"_s;
    QTest::newRow("ampersand") << u"Rock & Roll && &Soul"_s;
    QTest::newRow("page") << u"<!DOCTYPE html><html><body>x</body></html>"_s;
    QTest::newRow("link") << u"<a href='https://example.org'>hier</a>"_s;
}

// As wide as every sign of it, and drawn like that.
void TestBeschriftung::woertlich()
{
    QFETCH(QString, inhalt);
    const auto eines = label(inhalt);
    QCOMPARE(eines->text(), inhalt);
    QCOMPARE(eines->accessibleName(), inhalt);
    QCOMPARE(eines->textFormat(), Qt::PlainText);
    const int breite = eines->fontMetrics().horizontalAdvance(inhalt);
    QVERIFY(qAbs(eines->sizeHint().width() - breite) <= 1);

    QImage erwartet = bild(*label({}), breite + 2);
    QPainter maler(&erwartet);
    maler.setFont(eines->font());
    maler.setPen(eines->farbe());
    maler.drawText(QRect(0, 0, breite + 2, 20), Qt::AlignVCenter | Qt::TextSingleLine, inhalt);
    maler.end();
    QCOMPARE(bild(*eines, breite + 2), erwartet);
}

void TestBeschriftung::zeilenwechsel()
{
    const auto eine = label(u"eins\nzwei\r\ndrei"_s);
    QVERIFY(!eine->hasHeightForWidth());
    QCOMPARE(eine->sizeHint().height(), 20);
    QCOMPARE(bild(*eine, 200), bild(*label(u"eins zwei drei"_s), 200));

    const auto drei = label(u"eins\nzwei\r\ndrei"_s, 360);
    QCOMPARE(drei->heightForWidth(360), 60);
    QCOMPARE(drei->text(), u"eins\nzwei\r\ndrei"_s);
}

void TestBeschriftung::ohneUmbruchNieZweiZeilen()
{
    const auto lang = label(u"Wort "_s.repeated(80));
    bild(*lang, 100);
    QCOMPARE(lang->sizeHint().height(), 20);
    QCOMPARE(lang->heightForWidth(100), -1);
    QVERIFY(!lang->toolTip().isEmpty());
}

void TestBeschriftung::mitUmbruchBeiDerBreite()
{
    const auto lang = label(u"Wort "_s.repeated(16), 200);
    QVERIFY(lang->hasHeightForWidth());
    QVERIFY(lang->sizeHint().width() <= 200);
    QVERIFY(lang->heightForWidth(200) >= 40);
    // Given more room it still wraps at its width; given less, earlier.
    QCOMPARE(lang->heightForWidth(1000), lang->heightForWidth(200));
    QVERIFY(lang->heightForWidth(100) > lang->heightForWidth(200));
    QCOMPARE(label(u"kurz"_s, 200)->heightForWidth(200), 20);
}

void TestBeschriftung::zehnKilobyteOhneLeerzeichen()
{
    const QString inhalt(10'000, u'x');
    const auto umbrochen = label(inhalt, 360);
    QVERIFY(umbrochen->sizeHint().width() <= 360);
    QVERIFY(umbrochen->minimumSizeHint().width() < 20);
    bild(*umbrochen, 360);
    QCOMPARE(umbrochen->height(), 12 * 20);
    QVERIFY(!umbrochen->toolTip().isEmpty());

    const auto einzeilig = label(inhalt);
    QVERIFY(einzeilig->minimumSizeHint().width() < 20);
    QCOMPARE(einzeilig->sizeHint().height(), 20);
}

void TestBeschriftung::einMegabyteIstSchnell()
{
    for (const QString &inhalt :
         {QString(1'000'000, u'x'), u"Wort "_s.repeated(200'000), QString(1'000'000, u'\n')}) {
        QElapsedTimer seit;
        seit.start();
        const auto umbrochen = label({}, 360);
        const auto einzeilig = label({});
        for (int i = 0; i < 5; ++i) {
            umbrochen->textSetzen(inhalt);
            einzeilig->textSetzen(inhalt);
        }
        bild(*umbrochen, 360);
        bild(*einzeilig, 360);
        QVERIFY2(seit.elapsed() < 10'000, qPrintable(QString::number(seit.elapsed())));
        QCOMPARE(umbrochen->text().size(), inhalt.size());
    }
}

void TestBeschriftung::hinweisNurWennGekuerzt()
{
    const auto eines = label(u"Ein ganzer Satz"_s);
    bild(*eines, 300);
    QVERIFY(eines->toolTip().isEmpty());
    bild(*eines, 40);
    QVERIFY(!eines->toolTip().isEmpty());
    eines->textSetzen(u"Ja"_s);
    QVERIFY(eines->toolTip().isEmpty());
}

void TestBeschriftung::hinweisIstWoertlich()
{
    const auto eines = label(u"<b>fett</b> & <img src=x>"_s);
    bild(*eines, 30);
    QVERIFY(Qt::mightBeRichText(eines->toolTip()));
    QVERIFY(eines->toolTip().contains(u"&lt;b&gt;fett&lt;/b&gt; &amp; &lt;img"_s));
    QVERIFY(!eines->toolTip().contains(u"<img"_s));

    const QString lang = alsHinweis(QString(1'000'000, u'x'));
    QVERIFY(lang.size() < 3000);
    QVERIFY(lang.contains(u'…'));
}

void TestBeschriftung::fordertKeineBreite()
{
    QVERIFY(label(u"Ein langer Satz ohne Umbruch"_s)->minimumSizeHint().width() < 20);
    QVERIFY(label(u"Ein langer Satz mit Umbruch"_s, 360)->minimumSizeHint().width() < 20);
}

void TestBeschriftung::schrumpfen()
{
    const QString inhalt = u"Keine Verbindung zur Cloud – Zahlen folgen beim nächsten Abgleich."_s;
    const auto eines = label(inhalt, 1000);
    const int voll = eines->fontMetrics().horizontalAdvance(inhalt);
    const int knapp = voll * 93 / 100;
    QCOMPARE(eines->heightForWidth(knapp), 40);
    eines->setSchrumpfen(0.9);
    QCOMPARE(eines->heightForWidth(knapp), 20);
    QCOMPARE(eines->heightForWidth(voll * 99 / 100), 20);
    QVERIFY(eines->heightForWidth(voll / 2) >= 40);
    // What was squeezed in is whole.
    bild(*eines, knapp);
    QVERIFY(eines->toolTip().isEmpty());
}

void TestBeschriftung::zahlBleibtBeiDerEinheit()
{
    const auto eines = label(u"Vergleich läuft  (12 s)"_s, 1000);
    const int breite = eines->fontMetrics().horizontalAdvance(u"Vergleich läuft  (12 "_s);
    QCOMPARE(bild(*eines, breite), bild(*label(u"Vergleich läuft  \n(12 s)"_s, 1000), breite));
    const auto groesse = label(u"Es sind 214 GB frei"_s, 1000);
    const int bis = groesse->fontMetrics().horizontalAdvance(u"Es sind 214 "_s);
    QCOMPARE(bild(*groesse, bis), bild(*label(u"Es sind \n214 GB frei"_s, 1000), bis));
}

// A group moves to the next line whole, and no line ends with the dot.
void TestBeschriftung::mittelpunkteTrennenZeilen()
{
    const auto eines = label(u"Titel: 12 Stück   ·   Frei auf dem Mac: 214 GB"_s, 1000);
    const int breite =
        eines->fontMetrics().horizontalAdvance(u"Titel: 12 Stück   ·   Frei auf dem "_s);
    QCOMPARE(bild(*eines, breite),
             bild(*label(u"Titel: 12 Stück\nFrei auf dem Mac: 214 GB"_s, 1000), breite));
    QCOMPARE(eines->text(), u"Titel: 12 Stück   ·   Frei auf dem Mac: 214 GB"_s);
    // With room for all of it, nothing changes.
    QCOMPARE(eines->heightForWidth(1000), 20);
}

void TestBeschriftung::schriftUndFarbe()
{
    const std::unique_ptr<Beschriftung> einfach(beschriftung(u"x"_s, 13.5));
    QCOMPARE(einfach->font().weight(), QFont::Normal);
    QVERIFY(qAbs(einfach->font().pointSizeF() * einfach->logicalDpiY() / 72 - 13.5) < 0.05);
    QCOMPARE(einfach->farbe(), QColor(0x1d1d1f));
    const std::unique_ptr<Beschriftung> fett(
        beschriftung(u"x"_s, 26, QFont::Bold, Farbe::sekundaer));
    QCOMPARE(fett->font().weight(), QFont::Bold);
    QCOMPARE(fett->farbe(), QColor(0x6e6e73));
    QApplication::setPalette(eigenePalette(true));
    QTRY_COMPARE(fett->farbe(), QColor(0xa1a1a8));
}

void TestBeschriftung::lesbarAufGrund_data()
{
    QTest::addColumn<double>("groesse");
    QTest::addColumn<double>("mindestens");
    QTest::newRow("small") << 12.0 << 4.5;
    QTest::newRow("a headline, too") << 17.0 << 4.5;
}

void TestBeschriftung::lesbarAufGrund()
{
    QFETCH(double, groesse);
    QFETCH(double, mindestens);
    const QColor grund(0xffe0d8);
    const auto blass = [](const QPalette &) { return QColor(0xff8a80); };
    const std::unique_ptr<Beschriftung> eines(
        beschriftung(u"HHHHH"_s, groesse, QFont::Black, blass));
    QPalette palette = QApplication::palette();
    palette.setColor(QPalette::Window, grund);
    eines->setPalette(palette);
    eines->resize(eines->sizeHint());
    const double erreicht = tintenkontrast(eines->grab().toImage(), grund);
    QVERIFY2(erreicht > mindestens - 0.1, qPrintable(QString::number(erreicht)));
    QVERIFY2(erreicht < mindestens + 1, qPrintable(QString::number(erreicht)));
}

// Screen readers are told what the accessible name becomes.
void TestBeschriftung::ansagen()
{
    const auto eines = label(u"eins"_s);
    eines->textSetzen(u"zwei"_s);
    QCOMPARE(eines->accessibleName(), u"zwei"_s);
    eines->textLautlosSetzen(u"zwei  (1 s)"_s);
    QCOMPARE(eines->text(), u"zwei  (1 s)"_s);
    QCOMPARE(eines->accessibleName(), u"zwei"_s);
    eines->textSetzen(QString(1'000'000, u'x'));
    QVERIFY(eines->accessibleName().size() < 5000);
}

// Two lines one above the other looked like two sizes of type.
void TestBeschriftung::gemeinsamSchrumpfen()
{
    const QString langer = u"Keine Verbindung zur Cloud – Zahlen folgen beim nächsten Abgleich."_s;
    const QString kurzer = u"Frei auf dem Mac: 214 GB"_s;
    const int voll = label(langer)->fontMetrics().horizontalAdvance(langer);
    for (const int prozent : {98, 92}) { // by the letters' distance, by their size
        const auto oben = label(kurzer, 1000);
        const auto unten = label(langer, 1000);
        for (Beschriftung *eines : {oben.get(), unten.get()}) {
            eines->setSchrumpfen(0.9);
        }
        const int platz = voll * prozent / 100;
        const int allein = tintenbreite(bild(*oben, platz));
        Beschriftung::gemeinsamSchrumpfen(*oben, *unten);
        QCOMPARE(bild(*unten, platz).height(), 20);
        QVERIFY(tintenbreite(bild(*oben, platz)) < allein);
        // As large as before once the other fits.
        unten->textSetzen(kurzer);
        QCOMPARE(tintenbreite(bild(*oben, platz)), allein);
    }
}

void TestBeschriftung::vonRechtsNachLinks_data()
{
    QTest::addColumn<QString>("inhalt");
    QTest::addColumn<bool>("rechts");
    QTest::newRow("Hebrew") << hebraeisch << true;
    QTest::newRow("Arabic") << arabisch << true;
    QTest::newRow("Arabic with a number and signs") << arabisch + u" (2026)!"_s << true;
    QTest::newRow("German") << u"Alle Titel"_s << false;
    QTest::newRow("mixed, Hebrew first") << hebraeisch + u" Remix"_s << false;
    QTest::newRow("mixed, German first") << u"Mix: "_s + arabisch << false;
    QTest::newRow("only numbers") << u"12.345"_s << false;
    QTest::newRow("nothing") << QString() << false;
}

void TestBeschriftung::vonRechtsNachLinks()
{
    QFETCH(const QString, inhalt);
    QFETCH(const bool, rechts);
    constexpr int breite = 500;
    for (const auto umbruch : {std::optional<int>(), std::optional<int>(breite)}) {
        const auto eines = label(inhalt, umbruch);
        const auto [links, ende] = tinte(bild(*eines, breite));
        if (rechts) {
            QVERIFY2(ende >= breite - 4, qPrintable(QString::number(ende)));
            QVERIFY(links > breite / 2);
        } else if (!inhalt.isEmpty()) {
            QVERIFY2(links <= 4, qPrintable(QString::number(links)));
        }
    }
}

// What is cut is the end: at the left, where "…" stands.
void TestBeschriftung::vonRechtsGekuerzt()
{
    for (const QString &wort : {hebraeisch, arabisch}) {
        const QString lang = (wort + u' ').repeated(20).trimmed();
        const auto ganz = label(lang);
        const auto knapp = label(lang);
        constexpr int breite = 300;
        const int voll = ganz->sizeHint().width();
        const QImage daneben = bild(*ganz, voll);
        const QImage gekuerzt = bild(*knapp, breite);
        QVERIFY(!knapp->toolTip().isEmpty());
        constexpr int anfang = 200;
        QCOMPARE(gekuerzt.copy(breite - anfang, 0, anfang, 20),
                 daneben.copy(voll - anfang, 0, anfang, 20));
        QVERIFY(tinte(gekuerzt).first < 40);
    }
}

KALVARO_FENSTERTEST(TestBeschriftung)
#include "tst_beschriftung.moc"
