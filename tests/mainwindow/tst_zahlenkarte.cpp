#include "mainwindow/zahlenkarte.h"
#include "testlauf.h"
#include "ui/beschriftung.h"
#include "ui/schrift.h"
#include "ui/tabellenzahl.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QStyle>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

const QDateTime jetzt(QDate(2026, 3, 13), QTime(18, 7));
const QString keineVerbindung =
    u"Keine Verbindung zur Cloud – Zahlen folgen beim nächsten Abgleich."_s;

QJsonObject antwort(const QJsonObject &statistik)
{
    return {{u"statistik"_s, statistik}};
}

QJsonObject volle()
{
    return {{u"titel"_s, 12345},
            {u"playlisten"_s, 321},
            {u"hot_cues"_s, 4567},
            {u"dateigroesse"_s, 123456000000.0},
            {u"analysiert"_s, 12001},
            {u"analysegroesse"_s, 52300000000.0},
            {u"stand"_s, u"2026-03-13 18:05:12"_s}};
}

} // namespace

class TestZahlenkarte final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { karte = std::make_unique<Zahlenkarte>(); }

    void amAnfang();
    void vierKacheln();
    void beideZeilen();
    void standDerCloud_data();
    void standDerCloud();
    void ohneStatistikBleibenDieKacheln_data();
    void ohneStatistikBleibenDieKacheln();
    void fehlendeZahlen();
    void zahlenAlsText();
    void freierPlatzUnbekannt();
    void kachelnSindGleichGross();
    void schriften();
    void zeilenBrechenZwischenDenAngaben();
    void vonRechtsNachLinks();

private:
    [[nodiscard]] QStringList kacheln() const
    {
        QStringList texte;
        for (int i = 0; i < 4; ++i) {
            texte.append(label(u"zahlen%1"_s.arg(i))->text());
        }
        return texte;
    }
    [[nodiscard]] Beschriftung *label(const QString &name) const
    {
        return karte->findChild<Beschriftung *>(name);
    }
    [[nodiscard]] QString zeile1() const { return label(u"lblZeile1"_s)->text(); }
    [[nodiscard]] QString zeile2() const { return label(u"lblZeile2"_s)->text(); }

    std::unique_ptr<Zahlenkarte> karte;
};

void TestZahlenkarte::amAnfang()
{
    QCOMPARE(kacheln(), QStringList(4, u"–"_s));
    QVERIFY(zeile1().isEmpty());
    QVERIFY(zeile2().isEmpty());
    // The lines keep their place, so that the window does not grow with the first answer.
    const int vorher = karte->sizeHint().height();
    karte->zeige(antwort(volle()), 214e9, jetzt);
    karte->resize(472, vorher);
    QCOMPARE(karte->sizeHint().height(), vorher);
}

void TestZahlenkarte::vierKacheln()
{
    karte->zeige(antwort(volle()), 214e9, jetzt);
    QCOMPARE(kacheln(), QStringList({u"12.345"_s, u"321"_s, u"4.567"_s, u"123 GB"_s}));
    QStringList alle;
    const auto labels = karte->findChildren<Beschriftung *>();
    for (const Beschriftung *einer : labels) {
        alle.append(einer->text());
    }
    for (const QString &unterschrift : {u"Titel"_s, u"Playlisten"_s, u"Hot Cues"_s, u"Musik"_s}) {
        QVERIFY(alle.contains(unterschrift));
    }
}

void TestZahlenkarte::beideZeilen()
{
    karte->zeige(antwort(volle()), 214e9, jetzt);
    QCOMPARE(zeile1(), u"Analysiert: 12.001 Titel   ·   Analysedaten: 52,3 GB   ·   "
                       "Frei auf dem Mac: 214 GB"_s);
    QCOMPARE(zeile2(), u"Stand der Cloud: heute 18:05   ·   geprüft heute 18:07"_s);
}

void TestZahlenkarte::standDerCloud_data()
{
    QTest::addColumn<QJsonValue>("stand");
    QTest::addColumn<QString>("erwartet");
    QTest::newRow("today") << QJsonValue(u"2026-03-13 09:15:00"_s) << u"heute 09:15"_s;
    QTest::newRow("yesterday") << QJsonValue(u"2026-03-12 22:40:00"_s) << u"gestern 22:40"_s;
    QTest::newRow("last week") << QJsonValue(u"2026-03-07 18:05:00"_s) << u"07.03. 18:05"_s;
    QTest::newRow("no time stamp") << QJsonValue(u"<b>bald</b>"_s) << u"<b>bald</b>"_s;
    QTest::newRow("empty") << QJsonValue(QString()) << u"–"_s;
    QTest::newRow("missing") << QJsonValue(QJsonValue::Undefined) << u"–"_s;
}

void TestZahlenkarte::standDerCloud()
{
    QFETCH(QJsonValue, stand);
    QFETCH(QString, erwartet);
    QJsonObject statistik = volle();
    if (stand.isUndefined()) {
        statistik.remove(u"stand"_s);
    } else {
        statistik[u"stand"_s] = stand;
    }
    karte->zeige(antwort(statistik), 214e9, jetzt);
    QCOMPARE(zeile2(), u"Stand der Cloud: "_s + erwartet + u"   ·   geprüft heute 18:07"_s);
}

void TestZahlenkarte::ohneStatistikBleibenDieKacheln_data()
{
    QTest::addColumn<QJsonValue>("neue");
    QTest::newRow("no answer") << QJsonValue(QJsonValue::Undefined);
    QTest::newRow("an outcome without \"statistik\"") << QJsonValue(QJsonObject());
    QTest::newRow("\"statistik\" is no map") << QJsonValue(QJsonObject{{u"statistik"_s, 7}});
    QTest::newRow("\"statistik\" without \"titel\"")
        << QJsonValue(antwort({{u"playlisten"_s, 999}}));
    QTest::newRow("the answer is a list") << QJsonValue(QJsonArray{1, 2});
}

// Keeps the tile figures of the previous good outcome but replaces both lines.
void TestZahlenkarte::ohneStatistikBleibenDieKacheln()
{
    QFETCH(QJsonValue, neue);
    karte->zeige(antwort(volle()), 214e9, jetzt);
    const QStringList vorher = kacheln();
    karte->zeige(neue, 1.5e9, jetzt);
    QCOMPARE(kacheln(), vorher);
    QCOMPARE(zeile1(), u"Frei auf dem Mac: 1,5 GB"_s);
    QCOMPARE(zeile2(), keineVerbindung);
}

void TestZahlenkarte::fehlendeZahlen()
{
    karte->zeige(antwort({{u"titel"_s, QJsonValue::Null}}), 214e9, jetzt);
    QCOMPARE(kacheln(), QStringList({u"–"_s, u"–"_s, u"–"_s, u"–"_s}));
    QCOMPARE(zeile1(),
             u"Analysiert: – Titel   ·   Analysedaten: –   ·   Frei auf dem Mac: 214 GB"_s);
}

void TestZahlenkarte::zahlenAlsText()
{
    QJsonObject statistik = volle();
    statistik[u"titel"_s] = u"2500"_s;
    statistik[u"playlisten"_s] = u"viele"_s;
    karte->zeige(antwort(statistik), 214e9, jetzt);
    QCOMPARE(kacheln().first(), u"2.500"_s);
    QCOMPARE(kacheln().at(1), u"–"_s);
}

void TestZahlenkarte::freierPlatzUnbekannt()
{
    karte->zeige({}, std::nullopt, jetzt);
    QCOMPARE(zeile1(), u"Frei auf dem Mac: –"_s);
}

void TestZahlenkarte::kachelnSindGleichGross()
{
    QJsonObject statistik = volle();
    statistik[u"hot_cues"_s] = 123456789;
    karte->zeige(antwort(statistik), 214e9, jetzt);
    karte->resize(472, karte->sizeHint().height());
    karte->grab();
    const auto *const breite = karte->findChild<Tabellenzahl *>(u"zahlen2"_s);
    const auto *const schmale = karte->findChild<Tabellenzahl *>(u"zahlen1"_s);
    QVERIFY(breite->passend() < 1);
    QCOMPARE(schmale->passend(), 1.0);
    // The narrow one is drawn as small as the wide one: its first digit ends further left.
    const QImage mitBreiter = karte->findChild<QWidget *>(u"zahlen1"_s)->grab().toImage();
    karte->zeige(antwort(volle()), 214e9, jetzt);
    QVERIFY(karte->findChild<QWidget *>(u"zahlen1"_s)->grab().toImage() != mitBreiter);
}

void TestZahlenkarte::schriften()
{
    const auto punkt = [this](const QString &name) {
        return label(name)->font().pointSizeF() * label(name)->logicalDpiY() / 72;
    };
    QVERIFY(qAbs(punkt(u"lblZeile1"_s) - 11.5) < 0.05);
    QVERIFY(qAbs(punkt(u"lblZeile2"_s) - 11.5) < 0.05);
    QVERIFY(qAbs(punkt(u"zahlen0"_s) - 22) < 0.05);
    QCOMPARE(label(u"zahlen0"_s)->font().weight(), QFont::DemiBold);
    QCOMPARE(label(u"lblZeile1"_s)->farbe(), Farbe::schrift(karte->palette()));
    QCOMPARE(label(u"lblZeile2"_s)->farbe(), Farbe::sekundaer(karte->palette()));
}

// "Frei auf dem Mac" was once torn apart at larger fonts.
void TestZahlenkarte::zeilenBrechenZwischenDenAngaben()
{
    karte->zeige(antwort(volle()), 214e9, jetzt);
    auto *const zeile = label(u"lblZeile1"_s);
    zeile->setFont(systemschrift(15));
    Beschriftung erwartet;
    erwartet.setFont(systemschrift(15));
    erwartet.setUmbruch(436, 3);
    erwartet.setZeilenhoehe(18);
    erwartet.textSetzen(
        u"Analysiert: 12.001 Titel   ·   Analysedaten: 52,3 GB\nFrei auf dem Mac: 214 GB"_s);
    zeile->resize(436, zeile->heightForWidth(436));
    erwartet.resize(zeile->size());
    const auto bild = [](QWidget &widget) {
        QImage gemalt(widget.size(), QImage::Format_ARGB32_Premultiplied);
        gemalt.fill(Qt::white);
        widget.render(&gemalt, {}, {}, {});
        return gemalt;
    };
    QCOMPARE(bild(*zeile), bild(erwartet));
}

// Tiles change sides, with what they keep free: the first stands at the card's edge.
void TestZahlenkarte::vonRechtsNachLinks()
{
    karte->zeige(antwort(volle()), 214e9, jetzt);
    karte->resize(472, karte->sizeHint().height());
    const auto orte = [this](Qt::LayoutDirection anordnung) {
        karte->setLayoutDirection(anordnung);
        (void)karte->grab(); // lays it out
        QList<QRect> stellen;
        for (int i = 0; i < 4; ++i) {
            const Beschriftung *const feld = label(u"zahlen%1"_s.arg(i));
            stellen.append(QRect(feld->mapTo(karte.get(), QPoint()), feld->size()));
        }
        return stellen;
    };
    QList<QRect> erwartet = orte(Qt::LeftToRight);
    QCOMPARE(erwartet[0].left(), 18);
    for (QRect &stelle : erwartet) {
        stelle = QStyle::visualRect(Qt::RightToLeft, karte->rect(), stelle);
    }
    QCOMPARE(orte(Qt::RightToLeft), erwartet);
}

KALVARO_FENSTERTEST(TestZahlenkarte)
#include "tst_zahlenkarte.moc"
