#include "antworten.h"
#include "settingswindow/playlistenmodell.h"
#include "testlauf.h"

#include <QAbstractItemModelTester>
#include <QRandomGenerator>
#include <QSet>
#include <QSignalSpy>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

// The rows that the model shows, as text: names, "+" where checked, what is below in brackets.
QString alsZeile(const PlaylistenModell &modell, const QModelIndex &oben = {})
{
    QStringList zeilen;
    for (int i = 0; i < modell.rowCount(oben); ++i) {
        const QModelIndex index = modell.index(i, 0, oben);
        QString zeile = index.data(PlaylistenModell::NameRolle).toString();
        if (index.data(Qt::CheckStateRole) == Qt::Checked) {
            zeile += u'+';
        }
        if (modell.hasChildren(index)) {
            zeile += u'(' + alsZeile(modell, index) + u')';
        }
        zeilen.append(zeile);
    }
    return zeilen.join(u' ');
}

QModelIndex zeileVon(const PlaylistenModell &modell, const QString &name)
{
    for (int i = 0; i < std::ssize(modell.alle()); ++i) {
        if (modell.alle()[size_t(i)].name == name) {
            return modell.zuStelle(i);
        }
    }
    return {};
}

bool anhaken(PlaylistenModell &modell, const QString &name, bool an = true)
{
    return modell.setData(zeileVon(modell, name), an ? Qt::Checked : Qt::Unchecked,
                          Qt::CheckStateRole);
}

QJsonObject zufaelligerBaum(QRandomGenerator &zufall)
{
    QJsonArray liste;
    const int n = zufall.bounded(1, 25);
    for (int i = 0; i < n; ++i) {
        const QString eltern = QString::number(zufall.bounded(-1, std::max(1, i)));
        const QString name = u"%1%2"_s.arg(QChar(u'a' + zufall.bounded(4))).arg(i);
        liste.append(eintrag(QString::number(i), eltern,
                             {{u"ordner"_s, zufall.bounded(2) == 0}, {u"name"_s, name}}));
    }
    return antwort(liste);
}

} // namespace

class TestPlaylistenmodell final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void zeigtDenBaum();
    void zeilenInhalt();
    void leererOrdnerHatNichtsDarunter();
    void hakenUeberDasModell();
    void andereRollenAendernNichts();
    void gemeldetWirdNurWasSichAendert();
    void jedeAenderungWirdGemeldet();

    void filter_data();
    void filter();
    void filterAendertKeinenHaken();
    void filterMitAllenLaesstAlles();
    void ordnerNimmtAuchVerborgenesMit();
    void stellenImFilter();
    void buchstabeFuerBuchstabeWieAufEinmal();

    void tiefeKetteWirdFlachGezeigt();
    void tiefeKetteMeldetAlleZeilen();
    void zufaelligeBaeumeHaltenDasModellEin();

private:
    std::unique_ptr<PlaylistenModell> modell;
    std::unique_ptr<QAbstractItemModelTester> pruefer;
};

void TestPlaylistenmodell::init()
{
    pruefer.reset();
    modell = std::make_unique<PlaylistenModell>();
    pruefer = std::make_unique<QAbstractItemModelTester>(
        modell.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
}

void TestPlaylistenmodell::zeigtDenBaum()
{
    QCOMPARE(modell->rowCount(), 0);
    modell->setKnoten(baumAus(antwort(beispiel(), {u"u2"_s, u"u4"_s})));

    QCOMPARE(alsZeile(*modell), u"N1(N2+ N3 N4+(N5)) N6"_s);
    QCOMPARE(zeileVon(*modell, u"N5"_s).parent(), zeileVon(*modell, u"N4"_s));
    QVERIFY(!modell->index(2, 0).isValid());
    QVERIFY(!modell->index(0, 1).isValid());
}

void TestPlaylistenmodell::zeilenInhalt()
{
    modell->setKnoten(
        baumAus(antwort({ordner(u"1"_s, u""_s), eintrag(u"2"_s, u"1"_s, {{u"titel"_s, 1208}}),
                         eintrag(u"3"_s, u"1"_s, {{u"name"_s, u""_s}})},
                        {u"u2"_s})));
    const QModelIndex oben = zeileVon(*modell, u"N1"_s);
    const QModelIndex liste = zeileVon(*modell, u"N2"_s);

    QCOMPARE(oben.data().toString(), u"N1"_s);
    QCOMPARE(oben.data(PlaylistenModell::OrdnerRolle).toBool(), true);
    QCOMPARE(oben.data(PlaylistenModell::AnzahlRolle).toString(), u""_s);
    QCOMPARE(liste.data().toString(), u"N2   1.208"_s);
    QCOMPARE(liste.data(PlaylistenModell::NameRolle).toString(), u"N2"_s);
    QCOMPARE(liste.data(PlaylistenModell::AnzahlRolle).toString(), u"1.208"_s);
    QCOMPARE(liste.data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
    QCOMPARE(zeileVon(*modell, u""_s).data().toString(), u"   10"_s);
    QVERIFY(liste.flags().testFlag(Qt::ItemIsUserCheckable));
    QVERIFY(!liste.data(Qt::ToolTipRole).isValid());
}

void TestPlaylistenmodell::leererOrdnerHatNichtsDarunter()
{
    modell->setKnoten(baumAus(antwort({ordner(u"1"_s, u""_s)})));
    const QModelIndex index = modell->index(0, 0);
    QVERIFY(!modell->hasChildren(index));
    QVERIFY(index.flags().testFlag(Qt::ItemNeverHasChildren));
}

void TestPlaylistenmodell::hakenUeberDasModell()
{
    modell->setKnoten(baumAus(antwort(beispiel())));
    QSignalSpy geaendert(modell.get(), &PlaylistenModell::hakenGeaendert);

    QVERIFY(anhaken(*modell, u"N1"_s));
    QCOMPARE(alsZeile(*modell), u"N1+(N2+ N3+ N4+(N5+)) N6"_s);
    QVERIFY(anhaken(*modell, u"N5"_s, false));
    QCOMPARE(alsZeile(*modell), u"N1(N2+ N3+ N4(N5)) N6"_s);
    QCOMPARE(geaendert.size(), 2);
}

void TestPlaylistenmodell::andereRollenAendernNichts()
{
    modell->setKnoten(baumAus(antwort(beispiel())));
    QVERIFY(!modell->setData(modell->index(0, 0), u"x"_s, Qt::EditRole));
    QVERIFY(!modell->setData({}, Qt::Checked, Qt::CheckStateRole));
    QCOMPARE(alsZeile(*modell), u"N1(N2 N3 N4(N5)) N6"_s);
}

void TestPlaylistenmodell::gemeldetWirdNurWasSichAendert()
{
    modell->setKnoten(baumAus(antwort(beispiel(), {u"u1"_s})));
    QSignalSpy meldungen(modell.get(), &QAbstractItemModel::dataChanged);
    QSignalSpy neu(modell.get(), &QAbstractItemModel::modelReset);
    QSignalSpy umbau(modell.get(), &QAbstractItemModel::layoutChanged);

    anhaken(*modell, u"N6"_s);
    QCOMPARE(meldungen.size(), 1);
    QCOMPARE(meldungen[0][0].toModelIndex(), zeileVon(*modell, u"N6"_s));
    QCOMPARE(meldungen[0][1].toModelIndex(), zeileVon(*modell, u"N6"_s));
    QCOMPARE(meldungen[0][2].value<QList<int>>(), QList<int>{Qt::CheckStateRole});

    meldungen.clear();
    anhaken(*modell, u"N5"_s, false); // N4 above it was not checked, N1 was
    QCOMPARE(meldungen.size(), 2);
    QCOMPARE(meldungen[1][0].toModelIndex(), zeileVon(*modell, u"N1"_s));
    QCOMPARE(neu.size() + umbau.size(), 0);
}

void TestPlaylistenmodell::jedeAenderungWirdGemeldet()
{
    QRandomGenerator zufall(7);
    for (int runde = 0; runde < 300; ++runde) {
        modell->setKnoten(baumAus(zufaelligerBaum(zufall)));
        modell->filtern(runde % 3 == 0 ? u"a"_s : u""_s);
        for (int klick = 0; klick < 6 && !modell->alle().empty(); ++klick) {
            const Knotenliste vorher = modell->alle();
            const int wo = zufall.bounded(int(vorher.size()));
            if (!modell->zuStelle(wo).isValid()) {
                continue;
            }
            QSet<int> gemeldet;
            const auto verbindung =
                connect(modell.get(), &QAbstractItemModel::dataChanged, this,
                        [&](const QModelIndex &erster, const QModelIndex &letzter) {
                            QCOMPARE(erster.parent(), letzter.parent());
                            for (int i = erster.row(); i <= letzter.row(); ++i) {
                                gemeldet.insert(PlaylistenModell::stelle(erster.siblingAtRow(i)));
                            }
                        });
            modell->setData(modell->zuStelle(wo),
                            zufall.bounded(2) == 0 ? Qt::Checked : Qt::Unchecked,
                            Qt::CheckStateRole);
            disconnect(verbindung);
            for (int i = 0; i < std::ssize(vorher); ++i) {
                const bool anders = modell->alle()[size_t(i)].haken != vorher[size_t(i)].haken;
                QVERIFY(!anders || !modell->zuStelle(i).isValid() || gemeldet.contains(i));
            }
        }
    }
}

void TestPlaylistenmodell::filter_data()
{
    QTest::addColumn<QString>("suchwort");
    QTest::addColumn<QString>("zeilen");

    QTest::newRow("none") << u""_s << u"Häuser(Café del Mar ПЕСНЯ) Straße Tiësto(Ordner) 100 %"_s;
    QTest::newRow("blanks only") << u"  "_s
                                 << u"Häuser(Café del Mar ПЕСНЯ) Straße Tiësto(Ordner) 100 %"_s;
    QTest::newRow("keeps the folder on the way") << u"del"_s << u"Häuser(Café del Mar)"_s;
    QTest::newRow("folder without what it holds") << u"häu"_s << u"Häuser"_s;
    QTest::newRow("case does not count") << u"CAFE DEL"_s << u"Häuser(Café del Mar)"_s;
    QTest::newRow("accents do not count") << u"tiesto"_s << u"Tiësto"_s;
    QTest::newRow("accents in the search word") << u"cäfè"_s << u"Häuser(Café del Mar)"_s;
    QTest::newRow("blanks around") << u" mar "_s << u"Häuser(Café del Mar)"_s;
    QTest::newRow("composed and decomposed") << u"Cafe\u0301"_s << u"Häuser(Café del Mar)"_s;
    QTest::newRow("sharp s") << u"STRASSE"_s << u"Straße"_s;
    QTest::newRow("other scripts") << u"песня"_s << u"Häuser(ПЕСНЯ)"_s;
    QTest::newRow("no pattern") << u"100 %"_s << u"100 %"_s;
    QTest::newRow("no expression") << u".*"_s << u""_s;
    QTest::newRow("nothing") << u"xyz"_s << u""_s;
    QTest::newRow("not the number of tracks") << u"10 "_s << u"100 %"_s;
}

void TestPlaylistenmodell::filter()
{
    QFETCH(const QString, suchwort);
    QFETCH(const QString, zeilen);
    const auto name = [](const QString &text) { return QJsonObject{{u"name"_s, text}}; };

    modell->setKnoten(baumAus(antwort(
        {ordner(u"1"_s, u""_s, name(u"Häuser"_s)), eintrag(u"2"_s, u"1"_s, name(u"Café del Mar"_s)),
         eintrag(u"3"_s, u"1"_s, name(u"ПЕСНЯ"_s)), eintrag(u"4"_s, u""_s, name(u"Straße"_s)),
         ordner(u"5"_s, u""_s, name(u"Tiësto"_s)), ordner(u"6"_s, u"5"_s, name(u"Ordner"_s)),
         eintrag(u"7"_s, u""_s, name(u"100 %"_s))})));
    modell->filtern(suchwort);

    QCOMPARE(alsZeile(*modell), zeilen);
    QCOMPARE(modell->gefiltert(), !suchwort.trimmed().isEmpty());
    modell->filtern({});
    QCOMPARE(alsZeile(*modell), u"Häuser(Café del Mar ПЕСНЯ) Straße Tiësto(Ordner) 100 %"_s);
}

void TestPlaylistenmodell::filterAendertKeinenHaken()
{
    modell->setKnoten(baumAus(antwort(beispiel(), {u"u2"_s, u"u6"_s})));
    const Knotenliste vorher = modell->alle();
    QSignalSpy geaendert(modell.get(), &PlaylistenModell::hakenGeaendert);

    for (const QString &wort : {u"n5"_s, u"N6"_s, u"nichts"_s, u""_s}) {
        modell->filtern(wort);
        QVERIFY(modell->alle() == vorher);
    }
    QCOMPARE(geaendert.size(), 0);
}

void TestPlaylistenmodell::filterMitAllenLaesstAlles()
{
    modell->setKnoten(baumAus(antwort(beispiel())));
    QSignalSpy neu(modell.get(), &QAbstractItemModel::modelReset);
    modell->filtern(u"N"_s);
    QCOMPARE(alsZeile(*modell), u"N1(N2 N3 N4(N5)) N6"_s);
    modell->filtern(u"n "_s);
    QCOMPARE(neu.size(), 1);
}

void TestPlaylistenmodell::ordnerNimmtAuchVerborgenesMit()
{
    modell->setKnoten(baumAus(antwort(beispiel())));
    modell->filtern(u"N5"_s);
    QCOMPARE(alsZeile(*modell), u"N1(N4(N5))"_s);
    anhaken(*modell, u"N1"_s);
    modell->filtern({});
    QCOMPARE(alsZeile(*modell), u"N1+(N2+ N3+ N4+(N5+)) N6"_s);
}

void TestPlaylistenmodell::stellenImFilter()
{
    modell->setKnoten(baumAus(antwort(beispiel())));
    modell->filtern(u"N5"_s);
    QVERIFY(!modell->zuStelle(1).isValid()); // N2
    QVERIFY(!modell->zuStelle(-1).isValid());
    QVERIFY(!modell->zuStelle(6).isValid());
    QCOMPARE(PlaylistenModell::stelle(modell->zuStelle(4)), 4);
    QCOMPARE(modell->zuStelle(4).data(PlaylistenModell::NameRolle).toString(), u"N5"_s);
}

// What was found before is all that a longer word is looked for in.
void TestPlaylistenmodell::buchstabeFuerBuchstabeWieAufEinmal()
{
    QRandomGenerator zufall(11);
    for (int runde = 0; runde < 100; ++runde) {
        const QJsonObject baum = zufaelligerBaum(zufall);
        modell->setKnoten(baumAus(baum));
        QString wort;
        for (int taste = 0; taste < 8; ++taste) {
            switch (zufall.bounded(4)) {
            case 0:
                wort.chop(1);
                break;
            case 1:
                wort.prepend(QChar(u'a' + zufall.bounded(3)));
                break;
            default:
                wort.append(zufall.bounded(2) == 0 ? QChar(u'1') : QChar(u'B'));
            }
            modell->filtern(wort);
            PlaylistenModell frisch;
            frisch.setKnoten(baumAus(baum));
            frisch.filtern(wort);
            QCOMPARE(alsZeile(*modell), alsZeile(frisch));
        }
        // The filter stays for another tree, what it had found does not.
        modell->filtern(u"n"_s);
        modell->setKnoten(baumAus(antwort(beispiel())));
        QCOMPARE(alsZeile(*modell), u"N1(N2 N3 N4(N5)) N6"_s);
        modell->filtern({});
    }
}

void TestPlaylistenmodell::tiefeKetteWirdFlachGezeigt()
{
    constexpr int tiefe = 5'000;
    pruefer.reset(); // walks the tree by recursion
    modell->setKnoten(baumAus(antwort(kette(tiefe))));

    QSet<int> gezeigt;
    QModelIndex oben;
    int ebenen = 0;
    for (; modell->hasChildren(oben); oben = modell->index(0, 0, oben)) {
        ++ebenen;
        for (int i = 0; i < modell->rowCount(oben); ++i) {
            const QModelIndex index = modell->index(i, 0, oben);
            QCOMPARE(index.parent(), oben);
            gezeigt.insert(PlaylistenModell::stelle(index));
        }
    }
    QCOMPARE(ebenen, PlaylistenModell::meisteEbenen);
    QCOMPARE(gezeigt.size(), tiefe + 1);
}

void TestPlaylistenmodell::tiefeKetteMeldetAlleZeilen()
{
    pruefer.reset();
    modell->setKnoten(baumAus(antwort(kette(300))));
    const int flach = 250; // shown beside its own folders
    int zeilen = 0;
    connect(modell.get(), &QAbstractItemModel::dataChanged, this,
            [&](const QModelIndex &erster, const QModelIndex &letzter) {
                zeilen += letzter.row() - erster.row() + 1;
            });
    modell->setData(modell->zuStelle(flach), Qt::Checked, Qt::CheckStateRole);
    QCOMPARE(zeilen, 301 - flach);

    zeilen = 0;
    modell->setData(modell->zuStelle(300), Qt::Unchecked, Qt::CheckStateRole);
    QCOMPARE(zeilen, 301 - flach);
}

void TestPlaylistenmodell::zufaelligeBaeumeHaltenDasModellEin()
{
    QRandomGenerator zufall(3);
    for (int runde = 0; runde < 200; ++runde) {
        modell->setKnoten(baumAus(zufaelligerBaum(zufall)));
        for (const QString &wort : {u"a"_s, u"a1"_s, u""_s, u"zz"_s, u"b"_s}) {
            modell->filtern(wort);
            QSet<int> gezeigt;
            for (int i = 0; i < std::ssize(modell->alle()); ++i) {
                const bool passt = modell->alle()[size_t(i)].name.contains(wort);
                if (passt) {
                    QVERIFY(modell->zuStelle(i).isValid());
                }
                if (modell->zuStelle(i).isValid()) {
                    QCOMPARE(PlaylistenModell::stelle(modell->zuStelle(i)), i);
                    QVERIFY(passt || modell->hasChildren(modell->zuStelle(i)));
                }
            }
        }
    }
}

KALVARO_FENSTERTEST(TestPlaylistenmodell)
#include "tst_playlistenmodell.moc"
