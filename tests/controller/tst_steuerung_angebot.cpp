// The offer of a new version: the menu's row and the notification, once a day.

#include "steuerungswelt.h"
#include "testlauf.h"

#include <QAction>
#include <QMenu>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

const QString text =
    u"Hier klicken zum Herunterladen. Der Installer ersetzt die alte Version, deine "
    "Einstellungen bleiben erhalten."_s;

Mitteilung neu(const QString &version)
{
    return {u"Neue kalvaro-Version "_s + version, text, u"https://kalvaro.example/"_s + version};
}

} // namespace

class TestSteuerungAngebot final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        p = std::make_unique<Steuerungswelt>();
        p->abgleiche = {abgleichAntwort(u"aktuell"_s)};
        p->starten();
        p->vor(15); // the first sync is over
    }
    void cleanup() { p.reset(); }

    void neueVersion()
    {
        QVERIFY(!punkt()->isVisible());

        abgleichen(angebot(u"1.10"_s));

        QVERIFY(punkt()->isVisible());
        QCOMPARE(punkt()->text(), u"Version 1.10 herunterladen …"_s);
        QCOMPARE(p->mitteilungen.alle, QList{neu(u"1.10"_s)});
        QCOMPARE(Steuerungswelt::protokoll().last(), u"neue Version 1.10 gemeldet"_s);
        QCOMPARE(Einstellungen().updateGemeldet, u"1.10|2026-03-13"_s);
    }

    void keinAngebot_data()
    {
        QTest::addColumn<QJsonObject>("app");
        QTest::newRow("none") << QJsonObject();
        QTest::newRow("a new version but no address") << QJsonObject{{u"version"_s, u"2.0"_s}};
        QTest::newRow("an address but no version")
            << QJsonObject{{u"url"_s, u"https://kalvaro.example/2.0"_s}};
        QTest::newRow("not over https")
            << QJsonObject{{u"version"_s, u"2.0"_s}, {u"url"_s, u"http://kalvaro.example/2.0"_s}};
        QTest::newRow("the running version")
            << QJsonObject{{u"version"_s, u"1.4"_s}, {u"url"_s, u"https://kalvaro.example/1.4"_s}};
    }
    void keinAngebot()
    {
        QFETCH(const QJsonObject, app);

        abgleichen({{u"app"_s, app}});

        QVERIFY(!punkt()->isVisible());
        QCOMPARE(punkt()->text(), u"Neue Version herunterladen …"_s);
        QVERIFY(p->mitteilungen.alle.isEmpty());
        QVERIFY(Einstellungen().updateGemeldet.isEmpty());
        punkt()->trigger();
        QVERIFY(p->arbeitsplatz.adressen.isEmpty());
    }

    // The same version reported twice on one day notifies once; on the next day again.
    void einmalAmTag()
    {
        abgleichen(angebot(u"2.0"_s));
        abgleichen(angebot(u"2.0"_s));
        p->vor(5 * 3600 + 52 * 60 + 44); // 23:59:59
        abgleichen(angebot(u"2.0"_s));
        QCOMPARE(p->mitteilungen.alle, QList{neu(u"2.0"_s)});

        p->vor(1); // midnight
        abgleichen(angebot(u"2.0"_s));
        abgleichen(angebot(u"2.0"_s));

        QCOMPARE(p->mitteilungen.alle, (QList{neu(u"2.0"_s), neu(u"2.0"_s)}));
        QCOMPARE(Einstellungen().updateGemeldet, u"2.0|2026-03-14"_s);
    }

    void nochNeuereAmSelbenTag()
    {
        abgleichen(angebot(u"2.0"_s));
        abgleichen(angebot(u"2.1"_s));

        QCOMPARE(p->mitteilungen.alle, (QList{neu(u"2.0"_s), neu(u"2.1"_s)}));
        QCOMPARE(punkt()->text(), u"Version 2.1 herunterladen …"_s);
    }

    void nachNeustartAmSelbenTag()
    {
        abgleichen(angebot(u"2.0"_s));
        p->starten();

        abgleichen(angebot(u"2.0"_s));

        QCOMPARE(p->mitteilungen.alle.size(), 1);
        QVERIFY(punkt()->isVisible()); // the row belongs to the process
    }

    void zeileBleibtOhneAngebot()
    {
        abgleichen(angebot(u"2.0"_s));
        abgleichen({});

        QVERIFY(punkt()->isVisible());
        QCOMPARE(punkt()->text(), u"Version 2.0 herunterladen …"_s);
    }

    // The window offers it too, but only the notification is once a day for everybody.
    void auchBeiSichtbaremFenster()
    {
        p->steuerung->zeigen(false);

        abgleichen(angebot(u"2.0"_s));

        QCOMPARE(p->mitteilungen.alle, QList{neu(u"2.0"_s)});
    }

    void auchNachGescheitertemAbgleich()
    {
        abgleichen(angebot(u"2.0"_s), u"fehler"_s);

        QCOMPARE(p->mitteilungen.alle.size(), 2);
        QCOMPARE(p->mitteilungen.alle[0].titel, u"Abgleich gestört"_s); // the verdict comes first
        QCOMPARE(p->mitteilungen.alle[1], neu(u"2.0"_s));
    }

    void anwahlUndKlickOeffnenDieAdresse()
    {
        abgleichen(angebot(u"2.0"_s));
        abgleichen(angebot(u"2.1"_s));

        punkt()->trigger();
        p->mitteilungen.klicken(0); // the older notification keeps its own target

        QCOMPARE(p->arbeitsplatz.adressen, (QList<QUrl>{QUrl(u"https://kalvaro.example/2.1"_s),
                                                        QUrl(u"https://kalvaro.example/2.0"_s)}));
    }

    void klickOhneZiel()
    {
        p->mitteilungen.mitteilen(u"Titel"_s, u"Text"_s, std::nullopt);
        p->mitteilungen.mitteilen(u"Titel"_s, u"Text"_s, u"das ist keine Adresse"_s);
        QCOMPARE(p->mitteilungen.alle.first(), (Mitteilung{u"Titel"_s, u"Text"_s, {}}));

        p->mitteilungen.klicken(0);
        p->mitteilungen.klicken(1);

        QVERIFY(p->arbeitsplatz.adressen.isEmpty());
    }

    void versionMitKaufmannsUnd()
    {
        abgleichen(angebot(u"2&3"_s));

        QCOMPARE(punkt()->text(), u"Version 2&&3 herunterladen …"_s);
        QCOMPARE(p->mitteilungen.alle.first().titel, u"Neue kalvaro-Version 2&3"_s);
    }

private:
    void abgleichen(const QJsonObject &mehr, const QString &zustand = u"aktuell"_s)
    {
        p->abgleiche = {abgleichAntwort(zustand, mehr)};
        p->abgleich(Anlass::Hand);
        p->vor();
    }

    [[nodiscard]] QAction *punkt() const { return p->statusobjekt.menue->actions().at(1); }

    std::unique_ptr<Steuerungswelt> p;
};

KALVARO_FENSTERTEST(TestSteuerungAngebot)
#include "tst_steuerung_angebot.moc"
