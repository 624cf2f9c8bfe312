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
        zeile("--hintergrund among others", {u"-x"_s, hintergrund, u"y"_s}, {.hintergrund = true});
        zeile("--bild and a path", {bild, pfad}, {.bild = pfad});
        zeile("--bild alone", {bild}, {});
        zeile("--bild as the last argument", {hintergrund, bild}, {.hintergrund = true});
        zeile("both", {hintergrund, bild, pfad}, {.hintergrund = true, .bild = pfad});
        zeile("both, the other way round", {bild, pfad, hintergrund},
              {.hintergrund = true, .bild = pfad});
        zeile("the first --bild counts", {bild, u"eins"_s, bild, u"zwei"_s}, {.bild = u"eins"_s});
        zeile("--bild as the path of --bild", {bild, bild}, {.bild = bild});
        zeile("--hintergrund as the path of --bild is looked up too", {bild, hintergrund},
              {.hintergrund = true, .bild = hintergrund});
        zeile("an empty path", {bild, QString()}, {.bild = QString(u""_s)});
        zeile("a relative path", {bild, u"bild.png"_s}, {.bild = u"bild.png"_s});
        zeile("upper case is something else", {u"--Hintergrund"_s, u"--BILD"_s, pfad}, {});
        zeile("with an equals sign it is something else",
              {u"--bild="_s + pfad, u"--hintergrund=1"_s}, {});
        zeile("with one dash it is something else", {u"-hintergrund"_s, u"-bild"_s, pfad}, {});
        zeile("blanks belong to it", {u" --hintergrund"_s}, {});
        zeile("--abgleichen", {u"--abgleichen"_s}, {.abgleichen = true});
        zeile("--beenden", {u"--beenden"_s}, {.beenden = true});
        zeile("--dienst", {u"--dienst"_s}, {.dienst = true});
        zeile("--help", {u"--help"_s}, {.hilfe = true});
        zeile("--version", {u"--version"_s}, {.version = true});
        zeile("anything else is ignored", {u"-psn_0_1"_s, u"datei.txt"_s, u"--"_s, QString()}, {});
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
        zeile(u"--hintergrund"_s, {});
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
        for (const QString &option : {u"--hintergrund"_s, u"--bild PFAD"_s, u"--abgleichen"_s,
                                      u"--beenden"_s, u"--help"_s, u"--version"_s}) {
            QVERIFY2(hilfe.contains(u"  "_s + option + u' '), qPrintable(option));
        }
        const QStringList zeilen = hilfe.split(u'\n');
        for (const QString &zeile : zeilen) {
            QVERIFY2(zeile.size() <= 90, qPrintable(zeile));
        }
    }
};

KALVARO_TEST(TestKommandozeile)
#include "tst_kommandozeile.moc"
