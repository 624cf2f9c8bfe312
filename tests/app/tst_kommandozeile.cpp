// What is read from the command line.

#include "app/kommandozeile.h"
#include "testlauf.h"

using namespace kalvaro;
using namespace Qt::StringLiterals;

class TestKommandozeile final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lesen_data()
    {
        QTest::addColumn<QStringList>("argumente");
        QTest::addColumn<Kommandozeile>("erwartet");
        const auto zeile = [](const char *name, const QStringList &argumente,
                              const Kommandozeile &erwartet) {
            QTest::newRow(name) << argumente << erwartet;
        };
        const QString bild = u"--bild"_s;
        const QString hintergrund = u"--hintergrund"_s;
        const QString pfad = u"/tmp/a b.png"_s;

        zeile("nothing", {}, {});
        zeile("--hintergrund", {hintergrund}, {.hintergrund = true});
        zeile("--hintergrund among others", {u"-x"_s, hintergrund, u"y"_s},
              {.hintergrund = true, .unbekannt = {u"-x"_s, u"y"_s}});
        zeile("--bild and a path", {bild, pfad}, {.bild = pfad});
        zeile("--bild alone", {bild}, {.bildOhnePfad = true});
        zeile("--bild as the last argument", {hintergrund, bild},
              {.hintergrund = true, .bildOhnePfad = true});
        zeile("both", {hintergrund, bild, pfad}, {.hintergrund = true, .bild = pfad});
        zeile("both, the other way round", {bild, pfad, hintergrund},
              {.hintergrund = true, .bild = pfad});
        zeile("the first --bild counts", {bild, u"eins"_s, bild, u"zwei"_s}, {.bild = u"eins"_s});
        zeile("--bild as the path of --bild", {bild, bild}, {.bild = bild});
        zeile("--hintergrund as the path of --bild is looked up too", {bild, hintergrund},
              {.hintergrund = true, .bild = hintergrund});
        zeile("an empty path", {bild, QString()}, {.bild = QString(u""_s)});
        zeile("a relative path", {bild, u"bild.png"_s}, {.bild = u"bild.png"_s});
        const auto unbekannt = [&zeile](const char *name, const QStringList &argumente) {
            zeile(name, argumente, {.unbekannt = argumente});
        };
        unbekannt("upper case is something else", {u"--Hintergrund"_s, u"--BILD"_s, pfad});
        unbekannt("with an equals sign it is something else",
                  {u"--bild="_s + pfad, u"--hintergrund=1"_s});
        unbekannt("with one dash it is something else", {u"-hintergrund"_s, u"-bild"_s, pfad});
        unbekannt("blanks belong to it", {u" --hintergrund"_s});
        unbekannt("anything else", {u"-psn_0_1"_s, u"datei.txt"_s, u"--"_s, QString(u""_s)});
        unbekannt("options in one word", {u"-hv"_s});
        zeile("--abgleichen", {u"--abgleichen"_s}, {.abgleichen = true});
        zeile("--beenden", {u"--beenden"_s}, {.beenden = true});
        zeile("--dienst", {u"--dienst"_s}, {.dienst = true});
        zeile("--help", {u"--help"_s}, {.hilfe = true});
        zeile("-h", {u"-h"_s}, {.hilfe = true});
        zeile("--version", {u"--version"_s}, {.version = true});
        zeile("-v", {u"-v"_s}, {.version = true});
        zeile("--pruefen", {u"--pruefen"_s}, {.pruefen = true});
        zeile("--pruefen for tools", {u"--json"_s, u"--pruefen"_s},
              {.pruefen = true, .json = true});
        zeile("a word that follows a second --bild is a path",
              {bild, u"eins"_s, bild, u"zwei"_s, u"drei"_s},
              {.bild = u"eins"_s, .unbekannt = {u"drei"_s}});
        zeile("a path that looks like an option", {bild, u"-h"_s},
              {.bild = u"-h"_s, .hilfe = true});
        zeile("a path that looks like an unknown option", {bild, u"-x"_s}, {.bild = u"-x"_s});
        zeile("the toolkit's options with a value",
              {u"-style"_s, u"fusion"_s, u"--session"_s, u"1"_s}, {});
        zeile("the toolkit's options with an equals sign", {u"-style=fusion"_s}, {});
        zeile("the toolkit's options without a value", {u"-reverse"_s, u"--nograb"_s}, {});
        zeile("a platform", {u"-platform"_s, u"minimal"_s}, {.plattform = u"minimal"_s});
        zeile("a platform, with two dashes", {u"--platform"_s, u"xcb"_s}, {.plattform = u"xcb"_s});
        zeile("a platform that is missing", {u"-platform"_s}, {});
        zeile("not quite the toolkit's", {u"style"_s, u"-title=x"_s},
              {.unbekannt = {u"style"_s, u"-title=x"_s}});
    }
    void lesen()
    {
        QFETCH(const QStringList, argumente);
        QFETCH(const Kommandozeile, erwartet);

        QVERIFY(Kommandozeile::lesen(argumente) == erwartet);
    }

    void wunsch_data()
    {
        QTest::addColumn<QStringList>("argumente");
        QTest::addColumn<std::optional<Wunsch>>("erwartet");
        const auto zeile = [](const QString &argumente, std::optional<Wunsch> erwartet) {
            QTest::newRow(qPrintable(argumente)) << argumente.split(u' ') << erwartet;
        };
        zeile(u"--nichts"_s, Wunsch::Oeffnen);
        zeile(u"--hintergrund"_s, Wunsch::Hintergrund);
        zeile(u"--dienst"_s, {});
        zeile(u"--abgleichen"_s, Wunsch::Abgleichen);
        zeile(u"--hintergrund --abgleichen"_s, Wunsch::Abgleichen);
        zeile(u"--beenden"_s, Wunsch::Beenden);
        zeile(u"--abgleichen --beenden"_s, Wunsch::Beenden);
    }
    void wunsch()
    {
        QFETCH(const QStringList, argumente);
        QFETCH(const std::optional<Wunsch>, erwartet);

        QVERIFY(Kommandozeile::lesen(argumente).wunsch() == erwartet);
    }

    void hilfeNenntJedeOption()
    {
        const QString hilfe = hilfetext();

        QVERIFY(hilfe.startsWith(u"kalvaro 1.4 – "_s));
        QVERIFY(hilfe.endsWith(u'\n'));
        for (const QString &option :
             {u"--hintergrund"_s, u"--bild PFAD"_s, u"--abgleichen"_s, u"--beenden"_s,
              u"--pruefen"_s, u"--json"_s, u"-h, --help"_s, u"-v, --version"_s}) {
            QVERIFY2(hilfe.contains(u"  "_s + option + u' '), qPrintable(option));
        }
        const QStringList zeilen = hilfe.split(u'\n');
        for (const QString &zeile : zeilen) {
            QVERIFY2(zeile.size() <= 90, qPrintable(zeile));
        }
    }

    void bemerkungen_data()
    {
        QTest::addColumn<QStringList>("argumente");
        QTest::addColumn<QString>("erwartet");
        const QString davor = u"kalvaro: Das Argument „"_s;
        const QString danach =
            u"“ ist unbekannt und wird ignoriert; „kalvaro --help“ zeigt alle.\n"_s;
        QTest::newRow("nothing unknown")
            << QStringList{u"--hintergrund"_s, u"--bild"_s, u"bild.png"_s} << QString();
        QTest::newRow("a typing mistake")
            << QStringList{u"--hintergund"_s} << davor + u"--hintergund"_s + danach;
        QTest::newRow("two of them")
            << QStringList{u"-x"_s, u"y"_s} << davor + u"-x"_s + danach + davor + u"y"_s + danach;
        QTest::newRow("what could control a terminal")
            << QStringList{u"a\nb\u001b[31m"_s} << davor + u"a b [31m"_s + danach;
        QTest::newRow("a very long one")
            << QStringList{QString(1000, u'x')} << davor + QString(200, u'x') + u'…' + danach;
        QTest::newRow("--json alone")
            << QStringList{u"--json"_s}
            << u"kalvaro: „--json“ gilt nur mit „--pruefen“ und wird ignoriert; „kalvaro --help“ "
               "zeigt alle.\n"_s;
        QTest::newRow("--json with --pruefen")
            << QStringList{u"--json"_s, u"--pruefen"_s} << QString();
    }
    void bemerkungen()
    {
        QFETCH(const QStringList, argumente);
        QTEST(kalvaro::bemerkungen(Kommandozeile::lesen(argumente)), "erwartet");
    }
};

KALVARO_TEST(TestKommandozeile)
#include "tst_kommandozeile.moc"
