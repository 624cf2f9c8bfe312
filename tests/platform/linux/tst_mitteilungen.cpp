#include "doubles/datenordner.h"
#include "doubles/mitteilungsserver.h"
#include "doubles/testbus.h"
#include "platform/linux/dbusmitteilungen.h"
#include "testlauf.h"

#include <memory>

using namespace kalvaro;
using namespace Qt::StringLiterals;

class TestMitteilungen final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void stelltZuMitAllenAngaben();
    void textIstTextOhneAuszeichnung();
    void textIstTextMitAuszeichnung();
    void ohneZielGibtEsNichtsZuKlicken();
    void ohneAktionenGibtEsNichtsZuKlicken();
    void einKlickTraegtZielUndMarke();
    void fremdeIdsSindEgal();
    void fremdeAbsenderSindEgal();
    void andereAktionenOeffnenNichts();
    void geschlosseneSindVergessen();
    void verschwiegeneGeschlosseneBleibenBegrenzt();
    void faehigkeitenWerdenEinmalJeServerErfragt();
    void einNeuerServerWirdNeuErfragt();
    void alteIdsGeltenBeimNeuenServerNicht();
    void fehlenderDienstStehtImProtokoll();
    void einServerDerSpaeterKommtBekommtDieNaechste();
    void einStummerServerHaeltNichtsAuf();
    void waehrendDerFrageGewechselt();
    void riesigeTexteWerdenGekuerzt();
    void steuerzeichenErreichenDenServerNicht();
    void ohneBusStehtEsImProtokoll();

private:
    void serverStarten(const QStringList &faehigkeiten = {u"body"_s, u"body-markup"_s,
                                                          u"actions"_s});
    [[nodiscard]] const Mitteilungsserver::Aufruf &eine(qsizetype nr = 0) const
    {
        return server->mitteilungen().at(nr);
    }

    Datenordner daten;
    std::unique_ptr<Testbus> bus;
    std::unique_ptr<Mitteilungsserver> server;
    std::unique_ptr<DBusMitteilungen> mitteilungen;
    QStringList klicks; // target and token
};

void TestMitteilungen::initTestCase()
{
    KALVARO_BRAUCHT(u"dbus-daemon"_s);
}

void TestMitteilungen::init()
{
    daten.leeren();
    klicks.clear();
    bus = std::make_unique<Testbus>();
    mitteilungen = std::make_unique<DBusMitteilungen>(bus->verbindung(), 300);
    mitteilungen->beiKlick([this](const QString &ziel) {
        klicks.append(ziel + u' ' + qEnvironmentVariable("XDG_ACTIVATION_TOKEN"));
    });
}

void TestMitteilungen::cleanup()
{
    mitteilungen.reset();
    server.reset();
    bus.reset();
}

void TestMitteilungen::serverStarten(const QStringList &faehigkeiten)
{
    server.reset();
    server = std::make_unique<Mitteilungsserver>(bus->verbindung(), faehigkeiten);
}

void TestMitteilungen::stelltZuMitAllenAngaben()
{
    serverStarten();
    mitteilungen->mitteilen(u"Titel"_s, u"Inhalt – „x“"_s, u"https://x.example/"_s);
    QTRY_COMPARE(server->mitteilungen().size(), 1);
    QCOMPARE(eine().programm, u"kalvaro"_s);
    QCOMPARE(eine().ersetzt, 0U);
    QCOMPARE(eine().symbol, u"de.kalvaro.kalvaro"_s);
    QCOMPARE(eine().titel, u"Titel"_s);
    QCOMPARE(eine().inhalt, u"Inhalt – „x“"_s);
    QCOMPARE(eine().aktionen, QStringList({u"default"_s, u"Öffnen"_s}));
    QCOMPARE(eine().dauer, -1);
    QCOMPARE(eine().hinweise.value(u"desktop-entry"_s).toString(), u"de.kalvaro.kalvaro"_s);
    QCOMPARE(eine().hinweise.value(u"urgency"_s).typeId(), int(QMetaType::UChar));
    QCOMPARE(eine().hinweise.value(u"urgency"_s).toUInt(), 1U);
    QVERIFY(daten.protokollzeilen().isEmpty());
}

void TestMitteilungen::textIstTextOhneAuszeichnung()
{
    serverStarten({u"body"_s});
    mitteilungen->mitteilen(u"<b>&amp;"_s, u"<img src=x> & \"y\"\nzwei"_s, {});
    QTRY_COMPARE(server->mitteilungen().size(), 1);
    QCOMPARE(eine().titel, u"<b>&amp;"_s);
    QCOMPARE(eine().inhalt, u"<img src=x> & \"y\"\nzwei"_s);
}

void TestMitteilungen::textIstTextMitAuszeichnung()
{
    serverStarten({u"body"_s, u"body-markup"_s});
    mitteilungen->mitteilen(u"<b>&amp;\nx"_s, u"<img src=x> & \"y\"\nzwei"_s, {});
    QTRY_COMPARE(server->mitteilungen().size(), 1);
    QCOMPARE(eine().titel, u"<b>&amp; x"_s);
    QCOMPARE(eine().inhalt, u"&lt;img src=x&gt; &amp; &quot;y&quot;\nzwei"_s);
}

void TestMitteilungen::ohneZielGibtEsNichtsZuKlicken()
{
    serverStarten();
    mitteilungen->mitteilen(u"a"_s, u"b"_s, {});
    QTRY_COMPARE(server->mitteilungen().size(), 1);
    QCOMPARE(eine().aktionen, QStringList());
    QCOMPARE(mitteilungen->offene(), 0);
}

void TestMitteilungen::ohneAktionenGibtEsNichtsZuKlicken()
{
    serverStarten({u"body"_s});
    mitteilungen->mitteilen(u"a"_s, u"b"_s, u"https://x.example/"_s);
    QTRY_COMPARE(server->mitteilungen().size(), 1);
    QCOMPARE(eine().aktionen, QStringList());
}

void TestMitteilungen::einKlickTraegtZielUndMarke()
{
    serverStarten();
    qputenv("XDG_ACTIVATION_TOKEN", "von vorher");
    mitteilungen->mitteilen(u"a"_s, u"1"_s, u"https://eins.example/"_s);
    mitteilungen->mitteilen(u"a"_s, u"2"_s, u"https://zwei.example/"_s);
    QTRY_COMPARE(mitteilungen->offene(), 2);
    server->klicken(eine(1).id, u"marke"_s);
    QTRY_COMPARE(klicks, QStringList(u"https://zwei.example/ marke"_s));
    QCOMPARE(qgetenv("XDG_ACTIVATION_TOKEN"), "von vorher");
    server->klicken(eine(0).id, {});
    QTRY_COMPARE(klicks.value(1), u"https://eins.example/ "_s);
    qunsetenv("XDG_ACTIVATION_TOKEN");
}

// Each of the next ones ends with a click of our own, so that a wrong one would have come before.
void TestMitteilungen::fremdeIdsSindEgal()
{
    serverStarten();
    mitteilungen->mitteilen(u"a"_s, u"b"_s, u"eigene"_s);
    QTRY_COMPARE(mitteilungen->offene(), 1);
    server->klicken(eine().id + 1, u"x"_s);
    server->klicken(eine().id, u"y"_s);
    QTRY_VERIFY(!klicks.isEmpty());
    QCOMPARE(klicks, QStringList(u"eigene y"_s));
}

void TestMitteilungen::fremdeAbsenderSindEgal()
{
    serverStarten();
    mitteilungen->mitteilen(u"a"_s, u"b"_s, u"eigene"_s);
    QTRY_COMPARE(mitteilungen->offene(), 1);
    QDBusConnection fremder = bus->verbindung();
    QDBusMessage signal =
        QDBusMessage::createSignal(u"/org/freedesktop/Notifications"_s,
                                   u"org.freedesktop.Notifications"_s, u"ActionInvoked"_s);
    signal.setArguments({eine().id, u"default"_s});
    fremder.send(signal);
    QCOMPARE(fremder
                 .call(QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s,
                                                      u"/org/freedesktop/DBus"_s,
                                                      u"org.freedesktop.DBus"_s, u"GetId"_s))
                 .type(),
             QDBusMessage::ReplyMessage); // so the bus has passed the signal on
    server->klicken(eine().id, u"y"_s);
    QTRY_VERIFY(!klicks.isEmpty());
    QCOMPARE(klicks, QStringList(u"eigene y"_s));
}

void TestMitteilungen::andereAktionenOeffnenNichts()
{
    serverStarten();
    mitteilungen->mitteilen(u"a"_s, u"b"_s, u"eigene"_s);
    QTRY_COMPARE(mitteilungen->offene(), 1);
    server->klicken(eine().id, u"x"_s, u"settings"_s);
    server->klicken(eine().id, u"y"_s);
    QTRY_VERIFY(!klicks.isEmpty());
    QCOMPARE(klicks, QStringList(u"eigene y"_s));
}

void TestMitteilungen::geschlosseneSindVergessen()
{
    serverStarten();
    mitteilungen->mitteilen(u"a"_s, u"b"_s, u"eins"_s);
    mitteilungen->mitteilen(u"a"_s, u"b"_s, u"zwei"_s);
    QTRY_COMPARE(mitteilungen->offene(), 2);
    server->schliessen(eine(0).id);
    QTRY_COMPARE(mitteilungen->offene(), 1);
    server->klicken(eine(0).id, {});
    server->klicken(eine(1).id, {});
    QTRY_VERIFY(!klicks.isEmpty());
    QCOMPARE(klicks, QStringList(u"zwei "_s));
}

void TestMitteilungen::verschwiegeneGeschlosseneBleibenBegrenzt()
{
    serverStarten();
    for (int i = 0; i < 300; ++i) {
        mitteilungen->mitteilen(u"a"_s, u"b"_s, QString::number(i));
        if (i % 100 == 99) { // the bus bounds what is in flight
            QTRY_COMPARE(server->mitteilungen().size(), i + 1);
        }
    }
    server->klicken(eine(299).id, {});
    QTRY_COMPARE(klicks, QStringList(u"299 "_s));
    QCOMPARE(mitteilungen->offene(), 100);
}

void TestMitteilungen::faehigkeitenWerdenEinmalJeServerErfragt()
{
    serverStarten();
    for (int i = 0; i < 5; ++i) {
        mitteilungen->mitteilen(u"a"_s, QString::number(i), {});
    }
    QTRY_COMPARE(server->mitteilungen().size(), 5);
    mitteilungen->mitteilen(u"a"_s, u"5"_s, {});
    QTRY_COMPARE(server->mitteilungen().size(), 6);
    QCOMPARE(server->fragen(), 1);
    for (int i = 0; i < 6; ++i) {
        QCOMPARE(eine(i).inhalt, QString::number(i));
    }
}

void TestMitteilungen::einNeuerServerWirdNeuErfragt()
{
    serverStarten({u"body"_s});
    mitteilungen->mitteilen(u"a"_s, u"<1>"_s, {});
    QTRY_COMPARE(server->mitteilungen().size(), 1);
    QCOMPARE(eine().inhalt, u"<1>"_s);
    serverStarten({u"body"_s, u"body-markup"_s});
    // A message on its way while the news is: asked again until the change has been seen.
    QTRY_VERIFY((mitteilungen->mitteilen(u"a"_s, u"<2>"_s, {}), server->fragen() > 0));
    QTRY_VERIFY(!server->mitteilungen().isEmpty());
    QTRY_COMPARE(server->mitteilungen().constLast().inhalt, u"&lt;2&gt;"_s);
}

void TestMitteilungen::alteIdsGeltenBeimNeuenServerNicht()
{
    serverStarten();
    mitteilungen->mitteilen(u"a"_s, u"b"_s, u"alt"_s);
    QTRY_COMPARE(mitteilungen->offene(), 1);
    serverStarten();
    QTRY_COMPARE(mitteilungen->offene(), 0);
    mitteilungen->mitteilen(u"a"_s, u"b"_s, u"neu"_s);
    QTRY_COMPARE(mitteilungen->offene(), 1);
    server->klicken(1, {});
    QTRY_VERIFY(!klicks.isEmpty());
    QCOMPARE(klicks, QStringList(u"neu "_s));
}

void TestMitteilungen::fehlenderDienstStehtImProtokoll()
{
    mitteilungen->mitteilen(u"Titel"_s, u"erste\nZeile"_s, u"ziel"_s);
    QTRY_COMPARE(daten.protokollzeilen().size(), 1);
    QVERIFY(daten.protokollzeilen().first().startsWith(
        u"Mitteilung nicht zugestellt: Titel – erste Zeile ("_s));
    mitteilungen->mitteilen(u"Titel"_s, u"zweite"_s, {});
    QTRY_COMPARE(daten.protokollzeilen().size(), 2);
}

void TestMitteilungen::einServerDerSpaeterKommtBekommtDieNaechste()
{
    mitteilungen->mitteilen(u"Titel"_s, u"verloren"_s, {});
    QTRY_COMPARE(daten.protokollzeilen().size(), 1);
    serverStarten();
    mitteilungen->mitteilen(u"Titel"_s, u"da"_s, {});
    QTRY_COMPARE(server->mitteilungen().size(), 1);
    QCOMPARE(eine().inhalt, u"da"_s);
    QCOMPARE(daten.protokollzeilen().size(), 1);
}

void TestMitteilungen::einStummerServerHaeltNichtsAuf()
{
    serverStarten();
    server->schweigen(true);
    mitteilungen->mitteilen(u"a"_s, u"1"_s, {});
    QVERIFY(daten.protokollzeilen().isEmpty()); // nobody waited for the time limit
    QTRY_COMPARE(daten.protokollzeilen().size(), 1);
    server->schweigen(false);
    mitteilungen->mitteilen(u"a"_s, u"2"_s, {});
    QTRY_COMPARE(server->mitteilungen().size(), 1);
    server->schweigen(true);
    mitteilungen->mitteilen(u"a"_s, u"3"_s, {}); // asked already: this one is lost in Notify
    QTRY_COMPARE(daten.protokollzeilen().size(), 2);
    server->schweigen(false);
    mitteilungen->mitteilen(u"a"_s, u"4"_s, {});
    QTRY_COMPARE(server->mitteilungen().size(), 3);
    QCOMPARE(server->mitteilungen().constLast().inhalt, u"4"_s);
}

void TestMitteilungen::waehrendDerFrageGewechselt()
{
    serverStarten();
    server->schweigen(true);
    mitteilungen->mitteilen(u"a"_s, u"wartet"_s, {});
    QTRY_COMPARE(server->fragen(), 1);
    serverStarten();
    QTRY_COMPARE(server->mitteilungen().size(), 1);
    QCOMPARE(eine().inhalt, u"wartet"_s);
    QVERIFY(daten.protokollzeilen().isEmpty());
}

void TestMitteilungen::riesigeTexteWerdenGekuerzt()
{
    serverStarten();
    mitteilungen->mitteilen(QString(1'000'000, u'x'), u"😀"_s.repeated(1'000'000), {});
    QTRY_COMPARE(server->mitteilungen().size(), 1);
    QCOMPARE(eine().titel, QString(199, u'x') + u'…');
    QCOMPARE(eine().inhalt, u"😀"_s.repeated(999) + u'…');
}

void TestMitteilungen::steuerzeichenErreichenDenServerNicht()
{
    serverStarten();
    mitteilungen->mitteilen(u"a\0b\x1b[1m"_s, u"c\0d\x07\uFFFE"_s, {});
    QTRY_COMPARE(server->mitteilungen().size(), 1);
    QCOMPARE(eine().titel, u"a b [1m"_s);
    QCOMPARE(eine().inhalt, u"c d  "_s);
}

void TestMitteilungen::ohneBusStehtEsImProtokoll()
{
    DBusMitteilungen ohne(QDBusConnection(u"gibt es nicht"_s));
    ohne.mitteilen(u"Titel"_s, u"Inhalt"_s, {});
    QCOMPARE(daten.protokollzeilen(),
             QStringList(u"Mitteilung nicht zugestellt: Titel – Inhalt (kein Sitzungsbus)"_s));
}

KALVARO_TEST(TestMitteilungen)
#include "tst_mitteilungen.moc"
