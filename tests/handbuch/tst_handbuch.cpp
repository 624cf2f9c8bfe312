// The manual says what is: its quotations stand in the program, the program's verdicts stand in it,
// its pictures and links lead somewhere and its examples work.

#include "assessment/bewerten.h"
#include "doubles/datenordner.h"
#include "foundation/einstellungen.h"
#include "foundation/konto.h"
#include "handbuch/quelltexte.h"
#include "server/zentralefehler.h"
#include "testlauf.h"

#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

const QString bildordner = QStringLiteral(QUELLORDNER "/docs/");

// The address that a heading has on the pages that show Markdown.
QString anker(const QString &ueberschrift)
{
    static const QRegularExpression zeichensetzung(u"[^\\p{L}\\p{N}\\- ]"_s);
    return ueberschrift.toLower().remove(zeichensetzung).replace(u' ', u'-');
}

// Without examples and pictures, and with sentences in one line.
QString fliesstext(QString handbuch)
{
    static const QRegularExpression beispiel(u"```.*?```|`[^`]*`|<img[^>]*>"_s,
                                             QRegularExpression::DotMatchesEverythingOption);
    return handbuch.remove(beispiel).simplified();
}

} // namespace

class TestHandbuch final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { daten_.leeren(); }

    void zitateStehenImProgramm();
    void textDesProgrammsWirdErklaert_data();
    void textDesProgrammsWirdErklaert();
    void jedeZeileDesProtokollsWirdErklaert();
    void urteilStehtBeiSeinerFarbe_data();
    void urteilStehtBeiSeinerFarbe();
    void bilderSindDaUndLeicht();
    void verweiseFuehrenZuUeberschriften();
    void beispieleSindJson();
    void beispielkontoLaedt();
    void beispieleinstellungenLaden();
    void readmeNenntDasHandbuch();

private:
    [[nodiscard]] QString abschnitt(const QString &ueberschrift) const;
    [[nodiscard]] QStringList jsonbeispiele() const;

    const Datenordner daten_;
    const QString handbuch_ = quelltext(u"docs/handbuch.md"_s);
    const QString text_ = fliesstext(handbuch_);
};

// From a heading of the third level to the next one of any.
QString TestHandbuch::abschnitt(const QString &ueberschrift) const
{
    const QStringList abschnitte = handbuch_.split(QRegularExpression(u"\\n#+ "_s));
    for (const QString &einer : abschnitte) {
        if (einer.startsWith(ueberschrift + u':')) {
            return einer;
        }
    }
    return {};
}

QStringList TestHandbuch::jsonbeispiele() const
{
    return alle(handbuch_, u"(?s)```json\\n(.*?)```"_s);
}

void TestHandbuch::zitateStehenImProgramm()
{
    const QString programm = programmtexte();
    const QStringList zitate = alle(text_, u"„([^„“]*)“"_s);

    QVERIFY(zitate.size() > 100);
    for (const QString &zitat : zitate) {
        if (programm.contains(zitat)) {
            continue;
        }
        // "…" may also stand for what differs from time to time.
        QVERIFY2(zitat.contains(u'…'), qPrintable(zitat));
        const QStringList stuecke = zitat.split(u'…', Qt::SkipEmptyParts);
        for (const QString &stueck : stuecke) {
            QVERIFY2(programm.contains(stueck.trimmed()), qPrintable(zitat));
        }
    }
}

void TestHandbuch::textDesProgrammsWirdErklaert_data()
{
    QTest::addColumn<QString>("satz");
    constexpr qsizetype kuerzesterSatz = 12;
    for (const QString &datei :
         {u"assessment/bewerten.cpp"_s, u"assessment/aenderungstexte.cpp"_s,
          u"assessment/startpruefung.cpp"_s, u"foundation/konstanten.h"_s,
          u"foundation/konto.cpp"_s, u"server/netzfehler.cpp"_s, u"server/netztransport.cpp"_s}) {
        const QStringList liste = saetze(programmtext(u"src/"_s + datei));
        for (const QString &satz : liste) {
            if (satz.size() >= kuerzesterSatz && satz.contains(u' ')) {
                QTest::addRow("%s: %s", qPrintable(datei), qPrintable(satz)) << satz;
            }
        }
    }
}

void TestHandbuch::textDesProgrammsWirdErklaert()
{
    QFETCH(const QString, satz);

    QVERIFY2(text_.contains(satz), qPrintable(satz));
}

void TestHandbuch::jedeZeileDesProtokollsWirdErklaert()
{
    constexpr qsizetype kuerzestesStueck = 4;
    const QStringList aufrufe = alle(programmtexte(), u"\\bprotokoll\\(([^;]*)\\);"_s);
    const QString abschnitt =
        handbuch_.section(u"\n## Das Protokoll\n"_s, 1, 1).section(u"\n## "_s, 0, 0);

    QVERIFY(aufrufe.size() > 10);
    for (const QString &aufruf : aufrufe) {
        const QStringList stuecke = saetze(aufruf);
        for (const QString &stueck : stuecke) {
            const bool schluessel = stueck.contains(u'.'); // of a value in the server's answer
            QVERIFY2(stueck.size() < kuerzestesStueck || schluessel || abschnitt.contains(stueck),
                     qPrintable(stueck));
        }
    }
}

void TestHandbuch::urteilStehtBeiSeinerFarbe_data()
{
    QTest::addColumn<Bewertung>("urteil");
    const QString quelle = programmtext(u"src/assessment/bewerten.cpp"_s);
    const QStringList zustaende =
        alle(quelle, u"(?:\\{u|zustand == u)\"([a-z_]+)\"(?:,\\s*u\"|\\))"_s);
    QVERIFY(zustaende.contains(u"aktuell"_s) && zustaende.contains(u"schatten_unveraendert"_s));
    for (const QString &zustand : zustaende) {
        const QJsonObject ergebnis{{u"zustand"_s, zustand}};
        QTest::addRow("%s", qPrintable(zustand))
            << antwortBewerten(QJsonObject{{u"ergebnis"_s, ergebnis}});
    }
    const QJsonObject unterschiede{{u"zustand"_s, u"schatten"_s},
                                   {u"aendert_geraet"_s, QJsonObject{{u"djmdContent"_s, 3}}}};
    QTest::newRow("a dry run with differences")
        << antwortBewerten(QJsonObject{{u"ergebnis"_s, unterschiede}});
    QTest::newRow("a state that nobody knows") << antwortBewerten(QJsonObject());
    QTest::newRow("no connection") << fehlerBewerten({true, false, u"Grund"_s});
    QTest::newRow("refused") << fehlerBewerten({false, false, u"Grund"_s});
}

void TestHandbuch::urteilStehtBeiSeinerFarbe()
{
    QFETCH(const Bewertung, urteil);
    const QHash<Art, QString> farben{{Art::Gut, u"Grün"_s},
                                     {Art::Warn, u"Orange"_s},
                                     {Art::Krit, u"Rot"_s},
                                     {Art::Aus, u"Ohne Farbe"_s}};
    const QStringList zeilen = abschnitt(farben[urteil.art]).split(u'\n');
    const QStringList gefunden = zeilen.filter(u"| **"_s + urteil.titel + u"** |"_s);

    QCOMPARE(gefunden.size(), 1);
    if (urteil.art != Art::Aus) {
        QVERIFY2(gefunden.first().endsWith(urteil.startbar ? u"| ja |"_s : u"| nein |"_s),
                 qPrintable(gefunden.first()));
    }
}

void TestHandbuch::bilderSindDaUndLeicht()
{
    constexpr qint64 schwerstes = 160'000; // bytes
    const QStringList bilder = alle(handbuch_, u"(bilder/[^\")\\s]+)"_s);

    QVERIFY(bilder.size() > 5);
    for (const QString &bild : bilder) {
        QVERIFY2(!QImage(bildordner + bild).isNull(), qPrintable(bild));
        QVERIFY2(QFileInfo(bildordner + bild).size() < schwerstes, qPrintable(bild));
    }
    QCOMPARE(handbuch_.count(u"<img "_s), alle(handbuch_, u"(<img [^>]*alt=\"[^\"]+\">)"_s).size());
    const QStringList eigene =
        QDir(bildordner + u"bilder"_s).entryList({u"handbuch-*.png"_s}, QDir::Files);
    for (const QString &bild : eigene) {
        QVERIFY2(bilder.contains(u"bilder/"_s + bild), qPrintable(bild));
    }
}

void TestHandbuch::verweiseFuehrenZuUeberschriften()
{
    QStringList ziele = alle(handbuch_, u"^#+ (.*)$"_s);
    const auto anzahl = ziele.size();
    std::transform(ziele.begin(), ziele.end(), ziele.begin(), anker);
    const QStringList verweise = alle(handbuch_, u"\\]\\(#([^)]*)\\)"_s);

    QCOMPARE(ziele.removeDuplicates(), 0);
    QCOMPARE(ziele.size(), anzahl);
    QVERIFY(verweise.size() > 5);
    for (const QString &verweis : verweise) {
        QVERIFY2(ziele.contains(verweis), qPrintable(verweis));
    }
}

void TestHandbuch::beispieleSindJson()
{
    const QStringList beispiele = jsonbeispiele();

    QVERIFY(beispiele.size() >= 2);
    for (const QString &beispiel : beispiele) {
        QVERIFY2(QJsonDocument::fromJson(beispiel.toUtf8()).isObject(), qPrintable(beispiel));
    }
}

void TestHandbuch::beispielkontoLaedt()
{
    const QStringList beispiele = jsonbeispiele().filter(u"\"geraet\""_s);
    QCOMPARE(beispiele.size(), 1);
    daten_.schreiben(u"konto.json"_s, beispiele.first().toUtf8());

    const auto konto = Konto::laden();

    QVERIFY2(konto, qPrintable(konto ? QString() : konto.error()));
    QVERIFY(!konto->name.isEmpty() && konto->name != konto->geraet);
    QVERIFY(!konto->schluessel.isEmpty());
    QVERIFY(konto->server.size() > 1);
    const QStringList erklaerte = alle(handbuch_, u"^\\| `([a-z_]+)` \\| (?:ja|nein) \\|"_s);
    QCOMPARE(QSet<QString>(erklaerte.begin(), erklaerte.end()),
             QSet<QString>({u"name"_s, u"geraet"_s, u"schluessel"_s, u"server"_s}));
}

void TestHandbuch::beispieleinstellungenLaden()
{
    const QStringList beispiele = jsonbeispiele().filter(u"\"autostart\""_s);
    QCOMPARE(beispiele.size(), 1);
    daten_.schreiben(u"einstellungen.json"_s, beispiele.first().toUtf8());

    const Einstellungen einst;
    einst.speichern();

    QVERIFY(einst.autostart);
    QCOMPARE(QJsonDocument::fromJson(daten_.inhalt(u"einstellungen.json"_s)),
             QJsonDocument::fromJson(beispiele.first().toUtf8()));
}

void TestHandbuch::readmeNenntDasHandbuch()
{
    QVERIFY(quelltext(u"README.md"_s).contains(u"docs/handbuch.md"_s));
}

KALVARO_TEST(TestHandbuch)
#include "tst_handbuch.moc"
