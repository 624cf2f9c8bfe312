#include "antworten.h"
#include "nachbau.h"
#include "settingswindow/knoten.h"
#include "testlauf.h"

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

// A tree as text: names with "+" where checked, what a folder holds in brackets after it.
QString alsZeile(const Knotenliste &alle)
{
    QString zeile;
    std::vector<int> offen;
    for (size_t i = 0; i < alle.size(); ++i) {
        while (!offen.empty() && alle[static_cast<size_t>(offen.back())].ende == int(i)) {
            zeile += u')';
            offen.pop_back();
        }
        const Knoten &k = alle[i];
        if (i > 0 && !zeile.endsWith(u'(')) {
            zeile += u' ';
        }
        zeile += k.name + (k.haken ? u"+"_s : QString());
        if (k.ende > int(i) + 1) {
            zeile += u'(';
            offen.push_back(int(i));
        }
    }
    return zeile + QString(qsizetype(offen.size()), u')');
}

int stelle(const Knotenliste &alle, const QString &name)
{
    for (size_t i = 0; i < alle.size(); ++i) {
        if (alle[i].name == name) {
            return int(i);
        }
    }
    return -1;
}

} // namespace

class TestKnoten final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void gebaut_data();
    void gebaut();
    void felderEinesEintrags();
    void geschwisterStehenNachSeq();
    void ketteVonHunderttausendOrdnern();
    void hunderttausendInEinemOrdner();
    void hunderttausendMitEinerId();

    void ordnerNimmtAllesMit();
    void abhakenLoestDieOrdnerDarueber();
    void letzteAngehaktePlaylistHaktDenOrdnerNichtAn();
    void auswahlStehtInBaumfolge();
    void auswahlIstGeschriebenWieVonQt();
    void zusammengefasst_data();
    void zusammengefasst();

    void zehntausendBaeumeWieNachgerechnet();
};

void TestKnoten::gebaut_data()
{
    QTest::addColumn<QJsonObject>("daten");
    QTest::addColumn<QString>("baum");

    const auto zeile = [](const char *name, const QJsonArray &liste, const QString &baum) {
        QTest::newRow(name) << antwort(liste) << baum;
    };
    const QJsonValue fehlt(QJsonValue::Undefined);

    zeile("tree", beispiel(), u"N1(N2 N3 N4(N5)) N6"_s);
    zeile("nothing", {}, u""_s);
    QTest::newRow("no lists at all") << QJsonObject{} << u""_s;
    QTest::newRow("lists that are none")
        << QJsonObject{{u"playlisten"_s, u"x"_s}, {u"lokal"_s, 3}} << u""_s;
    zeile("child before its folder", {eintrag(u"2"_s, u"1"_s), ordner(u"1"_s, u""_s)}, u"N1(N2)"_s);
    zeile("unknown parent", {eintrag(u"2"_s, u"99"_s), ordner(u"1"_s, u""_s)}, u"N2 N1"_s);
    zeile("missing parent", {eintrag(u"2"_s, u"1"_s, {{u"eltern"_s, fehlt}})}, u"N2"_s);
    zeile("missing id is nobody's parent",
          {ordner(u"1"_s, u""_s, {{u"id"_s, fehlt}}), eintrag(u"2"_s, u""_s)}, u"N1 N2"_s);
    zeile("number as text and text as number",
          {ordner(u"1"_s, u""_s, {{u"id"_s, 1}}), eintrag(u"2"_s, u"1"_s)}, u"N1(N2)"_s);
    zeile("entries that are no maps",
          {u"x"_s, 5, QJsonArray{}, QJsonValue::Null, eintrag(u"2"_s, u""_s)}, u"N2"_s);
    zeile("own parent", {ordner(u"1"_s, u"1"_s), eintrag(u"2"_s, u"1"_s), eintrag(u"3"_s, u""_s)},
          u"N3"_s);
    zeile("parents in a circle",
          {ordner(u"1"_s, u"2"_s), ordner(u"2"_s, u"1"_s), eintrag(u"3"_s, u"2"_s),
           eintrag(u"4"_s, u""_s)},
          u"N4"_s);
    zeile("two with one id: the first has the children",
          {ordner(u"1"_s, u""_s, {{u"name"_s, u"A"_s}}),
           ordner(u"1"_s, u""_s, {{u"name"_s, u"B"_s}}), eintrag(u"2"_s, u"1"_s)},
          u"A(N2) B"_s);
    zeile("two with one id, the first in a circle",
          {ordner(u"1"_s, u"1"_s, {{u"name"_s, u"A"_s}}),
           ordner(u"1"_s, u""_s, {{u"name"_s, u"B"_s}}), eintrag(u"2"_s, u"1"_s)},
          u"B"_s);
    zeile("two with one uuid are both shown",
          {eintrag(u"1"_s, u""_s, {{u"uuid"_s, u"u"_s}}),
           eintrag(u"2"_s, u""_s, {{u"uuid"_s, u"u"_s}})},
          u"N1 N2"_s);
    zeile("a playlist holds nothing", {eintrag(u"1"_s, u""_s), eintrag(u"2"_s, u"1"_s)}, u"N1"_s);
    zeile("an empty folder", {ordner(u"1"_s, u""_s)}, u"N1"_s);
    zeile("markup and newlines stay", {eintrag(u"1"_s, u""_s, {{u"name"_s, u"<b>x</b>\ny"_s}})},
          u"<b>x</b>\ny"_s);

    QTest::newRow("checked as kept")
        << antwort(beispiel(), {u"u2"_s, u"u4"_s, u"fremd"_s}) << u"N1(N2+ N3 N4+(N5)) N6"_s;
    QTest::newRow("kept uuids that are no texts")
        << QJsonObject{{u"playlisten"_s, QJsonArray{eintrag(u"1"_s, u""_s, {{u"uuid"_s, 7}}),
                                                    eintrag(u"2"_s, u""_s, {{u"uuid"_s, fehlt}})}},
                       {u"lokal"_s, QJsonArray{7, QJsonValue::Null, QJsonObject{}}}}
        << u"N1+ N2"_s;
}

void TestKnoten::gebaut()
{
    QFETCH(const QJsonObject, daten);
    QFETCH(const QString, baum);

    QCOMPARE(alsZeile(baumAus(daten)), baum);
}

void TestKnoten::felderEinesEintrags()
{
    const Knotenliste alle = baumAus(
        antwort({ordner(u"1"_s, u""_s, {{u"titel"_s, QJsonValue::Null}}),
                 eintrag(u"2"_s, u"1"_s, {{u"titel"_s, u"1208"_s}}),
                 eintrag(u"3"_s, u""_s, {{u"titel"_s, QJsonArray{}}, {u"ordner"_s, u"true"_s}})},
                {u"u2"_s}));

    const Knotenliste erwartet{
        {.uuid = u"u1"_s, .name = u"N1"_s, .ordner = true, .titel = 0, .eltern = -1, .ende = 2},
        {.uuid = u"u2"_s, .name = u"N2"_s, .titel = 1208, .haken = true, .eltern = 0, .ende = 2},
        {.uuid = u"u3"_s, .name = u"N3"_s, .ordner = false, .titel = 0, .eltern = -1, .ende = 3}};
    QVERIFY(alle == erwartet);
}

void TestKnoten::geschwisterStehenNachSeq()
{
    const auto bei = [](const QString &id, const QJsonValue &seq) {
        return eintrag(id, u""_s, {{u"seq"_s, seq}});
    };
    const QJsonArray liste{bei(u"a"_s, 10), bei(u"b"_s, 9),      bei(u"c"_s, u"9"_s),
                           bei(u"d"_s, -1), bei(u"e"_s, u"x"_s), bei(u"f"_s, QJsonValue::Undefined),
                           bei(u"g"_s, 9.5)};

    QCOMPARE(alsZeile(baumAus(antwort(liste))), u"Nd Ne Nf Nb Nc Ng Na"_s);
}

void TestKnoten::ketteVonHunderttausendOrdnern()
{
    constexpr int tiefe = 100'000;
    Knotenliste alle = baumAus(antwort(kette(tiefe)));
    QCOMPARE(alle.size(), size_t(tiefe) + 1);
    QCOMPARE(alle.front().ende, tiefe + 1);
    QCOMPARE(alle.back().eltern, tiefe - 1);

    QVERIFY(hakenSetzen(alle, 0, true).empty());
    QCOMPARE(auswahlliste(alle).size(), tiefe + 1);
    QCOMPARE(hakenSetzen(alle, tiefe, false).size(), size_t(tiefe));
    QVERIFY(auswahlliste(alle).isEmpty());
}

void TestKnoten::hunderttausendInEinemOrdner()
{
    constexpr int anzahl = 100'000;
    QJsonArray liste{ordner(u"o"_s, u""_s)};
    for (int i = 0; i < anzahl; ++i) {
        liste.append(eintrag(QString::number(i), u"o"_s, {{u"seq"_s, anzahl - i}}));
    }
    Knotenliste alle = baumAus(antwort(liste));
    QCOMPARE(alle.size(), size_t(anzahl) + 1);
    QCOMPARE(alle[1].name, u"N99999"_s);
    hakenSetzen(alle, 0, true);
    QCOMPARE(zusammenfassung(alle, {}), u"100000 Playlisten ausgewählt (1.000.000 Einträge). "
                                        "Kopiert wird beim nächsten Abgleich."_s);
}

void TestKnoten::hunderttausendMitEinerId()
{
    constexpr int anzahl = 100'000;
    QJsonArray liste;
    for (int i = 0; i < anzahl; ++i) {
        liste.append(ordner(u"1"_s, i < anzahl / 2 ? u""_s : u"1"_s));
    }
    const Knotenliste alle = baumAus(antwort(liste));
    QCOMPARE(alle.size(), size_t(anzahl));
    QCOMPARE(alle.front().ende, anzahl / 2 + 1);
    QCOMPARE(auswahlliste(alle).size(), 0);
}

void TestKnoten::ordnerNimmtAllesMit()
{
    Knotenliste alle = baumAus(antwort(beispiel(), {u"u5"_s}));
    QVERIFY(hakenSetzen(alle, 0, true).empty());
    QCOMPARE(alsZeile(alle), u"N1+(N2+ N3+ N4+(N5+)) N6"_s);
    QCOMPARE(zusammenfassung(alle, {}), u"3 Playlisten ausgewählt (30 Einträge). "
                                        "Kopiert wird beim nächsten Abgleich."_s);
    hakenSetzen(alle, 0, false);
    QCOMPARE(alsZeile(alle), u"N1(N2 N3 N4(N5)) N6"_s);
}

void TestKnoten::abhakenLoestDieOrdnerDarueber()
{
    Knotenliste alle = baumAus(antwort(beispiel()));
    hakenSetzen(alle, 0, true);
    const std::vector<int> geloest = hakenSetzen(alle, stelle(alle, u"N5"_s), false);
    QCOMPARE(alsZeile(alle), u"N1(N2+ N3+ N4(N5)) N6"_s);
    QCOMPARE(geloest, (std::vector<int>{stelle(alle, u"N4"_s), stelle(alle, u"N1"_s)}));

    QVERIFY(hakenSetzen(alle, stelle(alle, u"N2"_s), false).empty());
}

void TestKnoten::letzteAngehaktePlaylistHaktDenOrdnerNichtAn()
{
    Knotenliste alle = baumAus(antwort(beispiel()));
    for (const QString &name : {u"N2"_s, u"N3"_s, u"N5"_s}) {
        hakenSetzen(alle, stelle(alle, name), true);
    }
    QCOMPARE(alsZeile(alle), u"N1(N2+ N3+ N4(N5+)) N6"_s);
}

void TestKnoten::auswahlStehtInBaumfolge()
{
    QJsonArray liste = beispiel();
    liste.append(eintrag(u"7"_s, u"4"_s, {{u"uuid"_s, u"u2"_s}, {u"seq"_s, 2}}));
    liste.append(eintrag(u"8"_s, u"4"_s, {{u"uuid"_s, u""_s}, {u"seq"_s, 3}}));
    Knotenliste alle = baumAus(antwort(liste, {u"u6"_s, u"u5"_s, u"u2"_s, u"u4"_s}));
    hakenSetzen(alle, stelle(alle, u"N8"_s), true);

    QCOMPARE(alsZeile(alle), u"N1(N2+ N3 N4+(N5+ N7+ N8+)) N6+"_s);
    QCOMPARE(auswahlliste(alle), (QStringList{u"u2"_s, u"u4"_s, u"u5"_s, u"u6"_s}));
}

void TestKnoten::auswahlIstGeschriebenWieVonQt()
{
    QJsonArray uuids;
    QJsonArray liste;
    QStringList texte{u"6e73e372-e233"_s, u"\""_s, u"\\"_s, u"/"_s, u"ä"_s,
                      u"\U0001f3a7"_s,    u" "_s};
    for (char16_t c = 0; c < 0x100; ++c) {
        texte.append(u'x' + QString(QChar(c)));
    }
    texte.append(QString(QChar(0xd83c)));
    for (const QString &text : std::as_const(texte)) {
        uuids.append(text);
        liste.append(eintrag(QString::number(liste.size()), u""_s, {{u"uuid"_s, text}}));
    }
    Knotenliste alle = baumAus(antwort(liste));
    QCOMPARE(auswahl(alle), "[]");
    for (int i = 0; i < std::ssize(alle); ++i) {
        hakenSetzen(alle, i, true);
    }
    QCOMPARE(auswahl(alle), QJsonDocument(uuids).toJson(QJsonDocument::Compact));
}

void TestKnoten::zusammengefasst_data()
{
    QTest::addColumn<QStringList>("lokal");
    QTest::addColumn<QString>("betrieb");
    QTest::addColumn<QString>("zeile");

    const QString nichts = u"Keine Playlist ausgewählt – alle Titel kommen von der Musikplatte."_s;
    QTest::newRow("nothing") << QStringList{} << u""_s << nichts;
    QTest::newRow("folders only") << QStringList{u"u1"_s, u"u4"_s} << u"schatten"_s << nichts;
    QTest::newRow("one") << QStringList{u"u2"_s} << u"scharf"_s
                         << u"1 Playlist ausgewählt (10 Einträge). Kopiert wird beim nächsten "
                            "Abgleich."_s;
    QTest::newRow("two, dry run")
        << QStringList{u"u2"_s, u"u3"_s} << u"schatten"_s
        << u"2 Playlisten ausgewählt (20 Einträge). Kopiert wird ab dem Ende des Probebetriebs."_s;
    QTest::newRow("mode unknown") << QStringList{u"u6"_s} << u""_s
                                  << u"1 Playlist ausgewählt (1.234.567 Einträge). Kopiert wird "
                                     "beim nächsten Abgleich."_s;
}

void TestKnoten::zusammengefasst()
{
    QFETCH(const QStringList, lokal);
    QFETCH(const QString, betrieb);
    QFETCH(const QString, zeile);

    QJsonArray liste = beispiel();
    QJsonObject gross = liste[5].toObject();
    gross.insert(u"titel"_s, 1'234'567);
    liste[5] = gross;
    QCOMPARE(zusammenfassung(baumAus(antwort(liste, lokal)), betrieb), zeile);
}

void TestKnoten::zehntausendBaeumeWieNachgerechnet()
{
    constexpr quint32 baeume = 10'000;
    qsizetype knoten = 0;
    for (quint32 keim = 0; keim < baeume; ++keim) {
        Zufall zufall(keim);
        const QJsonObject daten = zufall.antwort();
        Knotenliste alle = baumAus(daten);
        Nachbau nachbau(daten);
        knoten += std::ssize(alle);

        for (int klick = 0; klick <= 8; ++klick) {
            const QList<Nachbau::Ast *> erwartet = nachbau.alle();
            QCOMPARE(std::ssize(alle), erwartet.size());
            for (qsizetype i = 0; i < erwartet.size(); ++i) {
                const Knoten &k = alle[size_t(i)];
                const Nachbau::Ast &a = *erwartet[i];
                const qsizetype eltern = erwartet.indexOf(a.eltern);
                const bool gleich = k.uuid == a.uuid && k.name == a.name && k.ordner == a.ordner &&
                                    k.titel == a.titel && k.haken == a.haken && k.eltern == eltern;
                if (!gleich) {
                    QFAIL(qPrintable(u"tree %1, click %2, node %3"_s.arg(keim).arg(klick).arg(i)));
                }
            }
            QCOMPARE(auswahlliste(alle), nachbau.auswahl());
            QCOMPARE(zusammenfassung(alle, {}), nachbau.zusammenfassung());
            if (erwartet.isEmpty()) {
                break;
            }
            const int wo = zufall.bis(int(erwartet.size()));
            const bool an = zufall.bis(3) != 0;
            hakenSetzen(alle, wo, an);
            nachbau.klicken(wo, an);
        }
    }
    QVERIFY(knoten > qsizetype{4} * baeume); // the trees are worth the name
}

KALVARO_FENSTERTEST(TestKnoten)
#include "tst_knoten.moc"
