#include "testlauf.h"
#include "ui/erscheinung.h"
#include "ui/farbe.h"

#include <QRandomGenerator>

using namespace kalvaro;
using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(kalvaro::Farbton)

namespace {

const QPalette &hell()
{
    static const QPalette palette = eigenePalette(false);
    return palette;
}

const QPalette &dunkel()
{
    static const QPalette palette = eigenePalette(true);
    return palette;
}

// Everything that a card may show.
const QList<Farbton> fuellungen{Farbe::durchsichtig, Farbe::gutWeich, Farbe::warnWeich,
                                Farbe::kritWeich};

QColor karte(Farbton fuellung, const QPalette &palette)
{
    return Farbe::ueber(fuellung(palette), Farbe::flaeche(palette));
}

} // namespace

class TestFarbe final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void gesperrtesWirdNichtZweimalBlasser();
    void werte_data();
    void werte();
    void weicheBleibenGleich_data();
    void weicheBleibenGleich();
    void dynamisch();
    void ueber();
    void kontrast();
    void lesbarLaesstWasLesbarIst();
    void lesbarGehtNurSoWeitWieNoetig();
    void lesbarAufMittlererFarbe();
    void textAufKarten_data();
    void textAufKarten();
    void pillenAufKarten_data();
    void pillenAufKarten();
    void durchscheinendesSekundaer();
    void verweisEinesDunklenDesktops();
    void haarlinieBleibtSichtbar();
    void schwarzesSekundaerImDunkeln();
    void eigenePaletteIstLesbar();
    void jedePaletteWirdLesbar();
};

void TestFarbe::werte_data()
{
    QTest::addColumn<Farbton>("ton");
    QTest::addColumn<QColor>("inHell");
    QTest::addColumn<QColor>("inDunkel");
    QTest::newRow("gut") << Farbton(Farbe::gut) << QColor(36, 138, 61) << QColor(48, 209, 88);
    QTest::newRow("warn") << Farbton(Farbe::warn) << QColor(178, 80, 0) << QColor(255, 159, 10);
    QTest::newRow("krit") << Farbton(Farbe::krit) << QColor(215, 0, 21) << QColor(255, 69, 58);
    QTest::newRow("system green") << Farbton(Farbe::systemGruen) << QColor(52, 199, 89)
                                  << QColor(48, 209, 88);
    QTest::newRow("system orange")
        << Farbton(Farbe::systemOrange) << QColor(255, 149, 0) << QColor(255, 159, 10);
    QTest::newRow("system red") << Farbton(Farbe::systemRot) << QColor(255, 59, 48)
                                << QColor(255, 69, 58);
    QTest::newRow("window") << Farbton(Farbe::fenster) << QColor(0xf2f2f4) << QColor(0x1e1e20);
    QTest::newRow("card") << Farbton(Farbe::flaeche) << QColor(0xffffff) << QColor(0x2a2a2d);
    QTest::newRow("text") << Farbton(Farbe::schrift) << QColor(0x1d1d1f) << QColor(0xf2f2f4);
    QTest::newRow("secondary") << Farbton(Farbe::sekundaer) << QColor(0x6e6e73) << QColor(0xa1a1a8);
    QTest::newRow("hairline") << Farbton(Farbe::haarlinie) << QColor(0xe6e6ea) << QColor(0x3a3a3e);
    QTest::newRow("accent") << Farbton(Farbe::akzent) << QColor(0x0a66d8) << QColor(0x2470ea);
    QTest::newRow("text on the accent")
        << Farbton(Farbe::akzentSchrift) << QColor(Qt::white) << QColor(Qt::white);
    QTest::newRow("link") << Farbton(Farbe::verweis) << QColor(0x0a5cc8) << QColor(0x5aa2ff);
}

void TestFarbe::werte()
{
    QFETCH(Farbton, ton);
    QFETCH(QColor, inHell);
    QFETCH(QColor, inDunkel);
    QCOMPARE(ton(hell()).rgba(), inHell.rgba());
    QCOMPARE(ton(dunkel()).rgba(), inDunkel.rgba());
}

void TestFarbe::weicheBleibenGleich_data()
{
    QTest::addColumn<Farbton>("ton");
    QTest::addColumn<QColor>("farbe");
    QTest::addColumn<float>("deckung");
    QTest::newRow("gutWeich") << Farbton(Farbe::gutWeich) << QColor(52, 199, 89) << 0.14F;
    QTest::newRow("warnWeich") << Farbton(Farbe::warnWeich) << QColor(255, 149, 0) << 0.15F;
    QTest::newRow("kritWeich") << Farbton(Farbe::kritWeich) << QColor(255, 59, 48) << 0.13F;
}

void TestFarbe::weicheBleibenGleich()
{
    QFETCH(Farbton, ton);
    QFETCH(QColor, farbe);
    QFETCH(float, deckung);
    QCOMPARE(ton(hell()), ton(dunkel()));
    QCOMPARE(ton(hell()).rgb(), farbe.rgb());
    QVERIFY(qAbs(ton(hell()).alphaF() - deckung) < 0.0001F);
}

void TestFarbe::dynamisch()
{
    QVERIFY(!Farbe::istDunkel(hell()));
    QVERIFY(Farbe::istDunkel(dunkel()));
    QCOMPARE(Farbe::dynamisch(hell(), Qt::red, Qt::blue), QColor(Qt::red));
    QCOMPARE(Farbe::dynamisch(dunkel(), Qt::red, Qt::blue), QColor(Qt::blue));

    // Neither the one nor the other: light.
    QPalette grau(hell());
    grau.setColor(QPalette::Window, Qt::gray);
    grau.setColor(QPalette::WindowText, Qt::gray);
    QCOMPARE(Farbe::dynamisch(grau, Qt::red, Qt::blue), QColor(Qt::red));
}

void TestFarbe::ueber()
{
    QCOMPARE(Farbe::ueber(QColor(0, 0, 0, 0), QColor(10, 20, 30)).rgba(),
             QColor(10, 20, 30).rgba());
    QCOMPARE(Farbe::ueber(QColor(1, 2, 3), QColor(10, 20, 30)).rgba(), QColor(1, 2, 3).rgba());
    QColor halb(Qt::black);
    halb.setAlphaF(0.5F);
    const QColor grau = Farbe::ueber(halb, Qt::white);
    QVERIFY(qAbs(grau.redF() - 0.5F) < 0.001F);
    QCOMPARE(grau.alphaF(), 1.0F);
}

void TestFarbe::kontrast()
{
    QVERIFY(qAbs(Farbe::kontrast(Qt::black, Qt::white) - 21) < 0.001);
    QVERIFY(qAbs(Farbe::kontrast(Qt::white, Qt::black) - 21) < 0.001);
    QCOMPARE(Farbe::kontrast(Qt::red, Qt::red), 1.0);
    // The well-known greys on either side of 4.5.
    QVERIFY(Farbe::kontrast(QColor(0x767676), Qt::white) >= 4.5);
    QVERIFY(Farbe::kontrast(QColor(0x777777), Qt::white) < 4.5);
}

void TestFarbe::lesbarLaesstWasLesbarIst()
{
    QCOMPARE(Farbe::lesbar(QColor(0x1d1d1f), Qt::white, 4.5).rgb(), QColor(0x1d1d1f).rgb());
    QCOMPARE(Farbe::lesbar(QColor(0x767676), Qt::white, 4.5).rgb(), QColor(0x767676).rgb());
}

void TestFarbe::lesbarGehtNurSoWeitWieNoetig()
{
    const QColor grund = karte(Farbe::kritWeich, hell());
    const QColor schwach = Farbe::sekundaer(hell());
    QVERIFY(Farbe::kontrast(schwach, grund) < 4.5);
    const QColor dunkler = Farbe::lesbar(schwach, grund, 4.5);
    QVERIFY(Farbe::kontrast(dunkler, grund) >= 4.5);
    QVERIFY(Farbe::kontrast(dunkler, grund) < 5.2);

    // On a dark ground it becomes lighter.
    const QColor heller = Farbe::lesbar(QColor(0x505050), Qt::black, 4.5);
    QVERIFY(heller.lightness() > 0x50);
    QVERIFY(Farbe::kontrast(heller, Qt::black) >= 4.5);
}

void TestFarbe::lesbarAufMittlererFarbe()
{
    for (int stufe = 0; stufe < 256; ++stufe) {
        const QColor grund(stufe, stufe, stufe);
        QVERIFY2(Farbe::kontrast(Farbe::lesbar(grund, grund, 4.5), grund) >= 4.5,
                 qPrintable(grund.name()));
    }
}

void TestFarbe::textAufKarten_data()
{
    QTest::addColumn<bool>("istDunkel");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

void TestFarbe::textAufKarten()
{
    QFETCH(bool, istDunkel);
    const QPalette &palette = istDunkel ? dunkel() : hell();
    for (const Farbton fuellung : fuellungen) {
        const QColor grund = karte(fuellung, palette);
        const QColor zeile = Farbe::lesbar(Farbe::sekundaer(palette), grund, 4.5);
        QVERIFY(Farbe::kontrast(zeile, grund) >= 4.5);
        QVERIFY(Farbe::kontrast(Farbe::schrift(palette), grund) >= 4.5);
    }
    // Headlines need no help.
    const QList<QPair<Farbton, Farbton>> titel{{Farbe::gut, Farbe::gutWeich},
                                               {Farbe::warn, Farbe::warnWeich},
                                               {Farbe::krit, Farbe::kritWeich},
                                               {Farbe::schrift, Farbe::durchsichtig}};
    for (const auto &[ton, fuellung] : titel) {
        const QColor grund = karte(fuellung, palette);
        QVERIFY2(Farbe::kontrast(ton(palette), grund) >= 3, qPrintable(grund.name()));
    }
    QVERIFY(Farbe::kontrast(Farbe::verweis(palette), Farbe::fenster(palette)) >= 4.5);
    QVERIFY(Farbe::kontrast(Farbe::sekundaer(palette), Farbe::fenster(palette)) >= 4.5);
}

void TestFarbe::pillenAufKarten_data()
{
    textAufKarten_data();
}

void TestFarbe::pillenAufKarten()
{
    QFETCH(bool, istDunkel);
    const QPalette &palette = istDunkel ? dunkel() : hell();
    const QList<QPair<Farbton, Farbton>> pillen{{Farbe::gut, Farbe::gutWeich},
                                                {Farbe::warn, Farbe::warnWeich}};
    for (const Farbton fuellung : fuellungen) {
        for (const auto &[ton, weich] : pillen) {
            const QColor grund = Farbe::ueber(weich(palette), karte(fuellung, palette));
            QVERIFY(Farbe::kontrast(Farbe::lesbar(ton(palette), grund, 4.5), grund) >= 4.5);
        }
    }
}

// Most desktops have a placeholder text that is a translucent text colour.
void TestFarbe::durchscheinendesSekundaer()
{
    for (QPalette palette : {hell(), dunkel()}) {
        QColor halb = palette.color(QPalette::WindowText);
        halb.setAlpha(128);
        palette.setColor(QPalette::PlaceholderText, halb);
        const QColor sekundaer = Farbe::sekundaer(palette);
        QCOMPARE(sekundaer.alpha(), 255);
        QVERIFY(Farbe::kontrast(sekundaer, Farbe::flaeche(palette)) <
                Farbe::kontrast(Farbe::schrift(palette), Farbe::flaeche(palette)) / 2);
        QVERIFY(Farbe::kontrast(Farbe::tertiaer(palette), Farbe::flaeche(palette)) <=
                Farbe::kontrast(sekundaer, Farbe::flaeche(palette)));
    }
}

void TestFarbe::verweisEinesDunklenDesktops()
{
    QPalette palette = dunkel();
    palette.setColor(QPalette::Link, QColor(0, 0, 255));
    QVERIFY(Farbe::kontrast(QColor(0, 0, 255), Farbe::fenster(palette)) < 2.5);
    QVERIFY(Farbe::kontrast(Farbe::verweis(palette), Farbe::fenster(palette)) >= 4.5);
}

void TestFarbe::haarlinieBleibtSichtbar()
{
    for (QPalette palette : {hell(), dunkel()}) {
        palette.setColor(QPalette::Midlight, palette.color(QPalette::Base));
        QVERIFY(Farbe::kontrast(Farbe::haarlinie(palette), Farbe::flaeche(palette)) > 1.15);
        QVERIFY(Farbe::kontrast(Farbe::haarlinie(palette), Farbe::flaeche(palette)) < 2);
    }
}

// The KDE theme of some versions of Qt leaves it black.
void TestFarbe::schwarzesSekundaerImDunkeln()
{
    QPalette palette = dunkel();
    palette.setColor(QPalette::PlaceholderText, Qt::black);
    for (const QColor &grund : {Farbe::fenster(palette), Farbe::flaeche(palette)}) {
        const double text = Farbe::kontrast(Farbe::auf(grund, Farbe::schrift, palette), grund);
        const double zweiter = Farbe::kontrast(Farbe::auf(grund, Farbe::sekundaer, palette), grund);
        QVERIFY(zweiter >= 4.5);
        QVERIFY(zweiter < text * 0.75);
    }
    const QPalette geheilt = Farbe::lesbarePalette(palette);
    QVERIFY(Farbe::kontrast(geheilt.color(QPalette::PlaceholderText),
                            geheilt.color(QPalette::Base)) >= 4.5);
}

void TestFarbe::eigenePaletteIstLesbar()
{
    for (const QPalette &palette : {hell(), dunkel()}) {
        QCOMPARE(Farbe::lesbarePalette(palette), palette);
        for (const QColor &grund : {Farbe::fenster(palette), Farbe::flaeche(palette)}) {
            for (const Farbton ton :
                 {Farbe::schrift, Farbe::sekundaer, Farbe::tertiaer, Farbe::verweis}) {
                QVERIFY(Farbe::kontrast(Farbe::auf(grund, ton, palette), grund) >= 4.5);
            }
            QVERIFY(Farbe::kontrast(Farbe::kontur(grund, Farbe::flaeche(palette)), grund) >= 3);
            QVERIFY(Farbe::kontrast(Farbe::fokus(palette, grund, grund), grund) >= 3);
            QVERIFY(Farbe::kontrast(Farbe::akzent(palette), grund) >= 3);
        }
        QVERIFY(Farbe::kontrast(Farbe::akzentSchrift(palette), Farbe::akzent(palette)) >= 4.5);
        QCOMPARE(Farbe::akzentSchrift(palette).rgb(), QColor(Qt::white).rgb());
    }
}

// Every colour of a palette at random: texts can be read on window, card, field, soft cards and
// badges, and the weaker ones stay the weaker ones; outlines are seen.
void TestFarbe::jedePaletteWirdLesbar()
{
    QRandomGenerator zufall(20261122);
    const auto farbe = [&zufall] { return QColor(zufall.bounded(1U << 24U)); };
    const QList<Farbton> texte{Farbe::schrift, Farbe::sekundaer, Farbe::tertiaer, Farbe::verweis,
                               Farbe::gut,     Farbe::warn,      Farbe::krit};
    constexpr double rundung = 0.001;
    for (int runde = 0; runde < 1000; ++runde) {
        QPalette palette;
        for (int rolle = 0; rolle < QPalette::NColorRoles; ++rolle) {
            palette.setColor(static_cast<QPalette::ColorRole>(rolle), farbe());
        }
        palette.setCurrentColorGroup(runde % 2 == 0 ? QPalette::Active : QPalette::Inactive);
        const QColor karte = Farbe::flaeche(palette);
        QList<QColor> gruende{Farbe::fenster(palette), karte};
        const QColor gefuellt = Farbe::ueber(fuellungen[1 + runde % 3](palette), karte);
        gruende << gefuellt << Farbe::ueber(fuellungen[1 + runde % 2](palette), gefuellt);
        for (const QColor &grund : gruende) {
            QList<double> erreicht;
            for (const Farbton ton : texte) {
                erreicht << Farbe::kontrast(Farbe::auf(grund, ton, palette), grund);
                QVERIFY2(erreicht.last() >= 4.5, qPrintable(grund.name()));
            }
            QVERIFY(erreicht[1] <= erreicht[0] + rundung);
            QVERIFY(erreicht[2] <= erreicht[1] + rundung);
            QVERIFY(Farbe::kontrast(Farbe::fokus(palette, grund, grund), grund) >= 3);
            QVERIFY(Farbe::kontrast(Farbe::kontur(grund, grund), grund) >= 3);
            QVERIFY(Farbe::kontrast(Farbe::kontur(grund, karte), grund) >= 3);
            QPalette tot(palette);
            tot.setCurrentColorGroup(QPalette::Disabled);
            QVERIFY(Farbe::kontrast(Farbe::auf(grund, Farbe::gesperrt, tot), grund) >= 3);
        }
        QVERIFY(Farbe::kontrast(Farbe::akzentSchrift(palette), Farbe::akzent(palette)) >= 4.5);

        const QPalette geheilt = Farbe::lesbarePalette(palette);
        QCOMPARE(Farbe::lesbarePalette(geheilt), geheilt);
        for (const auto &[text, grund] :
             std::initializer_list<std::pair<QPalette::ColorRole, QPalette::ColorRole>>{
                 {QPalette::WindowText, QPalette::Window},
                 {QPalette::Text, QPalette::Base},
                 {QPalette::PlaceholderText, QPalette::Base},
                 {QPalette::ButtonText, QPalette::Button},
                 {QPalette::ToolTipText, QPalette::ToolTipBase},
                 {QPalette::HighlightedText, QPalette::Highlight},
                 {QPalette::Link, QPalette::Window}}) {
            QVERIFY(Farbe::kontrast(geheilt.color(text), geheilt.color(grund)) >= 4.5);
            QVERIFY(Farbe::kontrast(geheilt.color(QPalette::Disabled, text),
                                    geheilt.color(QPalette::Disabled, grund)) >= 3);
        }
    }
}

// In a palette rich in contrast its colour for what cannot be used was mixed with the ground as
// well.
void TestFarbe::gesperrtesWirdNichtZweimalBlasser()
{
    QPalette palette(Qt::black, Qt::black);
    palette.setColor(QPalette::Base, Qt::black);
    for (const auto rolle : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(rolle, Qt::white);
        palette.setColor(QPalette::Disabled, rolle, QColor(0x3ff23f));
    }
    palette.setCurrentColorGroup(QPalette::Disabled);
    QCOMPARE(Farbe::auf(Qt::black, Farbe::gesperrt, palette), QColor(0x3ff23f));

    // One that has none of its own: weaker than what can be used.
    palette.setColor(QPalette::Disabled, QPalette::WindowText, Qt::white);
    const double erreicht =
        Farbe::kontrast(Farbe::auf(Qt::black, Farbe::gesperrt, palette), Qt::black);
    QVERIFY(erreicht >= 3 && erreicht < 12);
}

KALVARO_FENSTERTEST(TestFarbe)
#include "tst_farbe.moc"
