// The rows of the status item's menu.

#include "controller/statusmenue.h"
#include "testlauf.h"

#include <QSignalSpy>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

using Signal = void (Statusmenue::*)();

const QString strich = u"----"_s;

} // namespace

Q_DECLARE_METATYPE(Signal)

class TestStatusmenue final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void zeilenUndReihenfolge()
    {
        const Statusmenue menue;

        QCOMPARE(zeilen(menue),
                 (QStringList{u"kalvaro"_s, u"Neue Version herunterladen …"_s, strich,
                              u"kalvaro öffnen"_s, u"Jetzt abgleichen"_s, u"rekordbox starten"_s,
                              strich, u"Beim Anmelden starten"_s, strich, u"kalvaro beenden"_s}));
    }

    void zustandDerZeilen()
    {
        const Statusmenue menue;

        const auto aktionen = menue.actions();
        for (const QAction *aktion : aktionen) {
            const QString text = aktion->text();
            QCOMPARE(aktion->shortcut(), QKeySequence());
            QCOMPARE(aktion->isVisible(), text != u"Neue Version herunterladen …");
            QCOMPARE(aktion->isCheckable(), text == u"Beim Anmelden starten");
            QVERIFY(!aktion->isChecked());
        }
        QVERIFY(!aktionen.first()->isEnabled());
        for (const QString &text :
             {u"kalvaro öffnen"_s, u"Jetzt abgleichen"_s, u"rekordbox starten"_s,
              u"Beim Anmelden starten"_s, u"kalvaro beenden"_s}) {
            QVERIFY(zeile(menue, text)->isEnabled());
        }
    }

    void jedeZeileHatIhrSignal_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<Signal>("signal");
        QTest::newRow("open") << u"kalvaro öffnen"_s << &Statusmenue::oeffnen;
        QTest::newRow("sync") << u"Jetzt abgleichen"_s << &Statusmenue::abgleichen;
        QTest::newRow("rekordbox") << u"rekordbox starten"_s << &Statusmenue::rekordbox;
        QTest::newRow("login") << u"Beim Anmelden starten"_s << &Statusmenue::anmeldung;
        QTest::newRow("update") << u"Version 2.0 herunterladen …"_s
                                << static_cast<Signal>(&Statusmenue::update);
        QTest::newRow("quit") << u"kalvaro beenden"_s << &Statusmenue::beenden;
    }
    void jedeZeileHatIhrSignal()
    {
        QFETCH(const QString, text);
        QFETCH(const Signal, signal);
        Statusmenue menue;
        menue.updateZeigen(u"2.0"_s);
        QSignalSpy gemeint(&menue, signal);
        int alle = 0;
        for (const Signal jedes :
             {&Statusmenue::oeffnen, &Statusmenue::abgleichen, &Statusmenue::rekordbox,
              &Statusmenue::anmeldung, static_cast<Signal>(&Statusmenue::update),
              &Statusmenue::beenden}) {
            connect(&menue, jedes, &menue, [&alle] { ++alle; });
        }

        zeile(menue, text)->trigger();

        QCOMPARE(gemeint.size(), 1);
        QCOMPARE(alle, 1);
    }

    // An ampersand would mark a shortcut and vanish.
    void textIstText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("titel");
        QTest::newRow("plain") << u"bereit   (18:07)"_s << u"bereit   (18:07)"_s;
        QTest::newRow("ampersand") << u"Rock & Pop"_s << u"Rock && Pop"_s;
        QTest::newRow("two ampersands") << u"a&&b"_s << u"a&&&&b"_s;
        QTest::newRow("markup") << u"<b>fett</b>"_s << u"<b>fett</b>"_s;
    }
    void textIstText()
    {
        QFETCH(const QString, text);
        QFETCH(const QString, titel);
        Statusmenue menue;

        menue.kopfSetzen(text);
        menue.updateZeigen(text);

        QCOMPARE(zeilen(menue)[0], titel);
        QCOMPARE(zeilen(menue)[1], u"Version "_s + titel + u" herunterladen …"_s);
        QCOMPARE(menue.actions().size(), 10);
    }

    void updateErscheintUndBleibt()
    {
        Statusmenue menue;
        const QAction *const punkt = menue.actions().at(1);

        menue.updateZeigen(u"1.5"_s);
        QVERIFY(punkt->isVisible());
        QCOMPARE(punkt->text(), u"Version 1.5 herunterladen …"_s);

        menue.updateZeigen(u"1.6"_s);
        QVERIFY(punkt->isVisible());
        QCOMPARE(punkt->text(), u"Version 1.6 herunterladen …"_s);
    }

    void haken()
    {
        Statusmenue menue;
        const QAction *const punkt = zeile(menue, u"Beim Anmelden starten"_s);

        menue.anmeldungSetzen(true);
        QVERIFY(punkt->isChecked());

        menue.anmeldungSetzen(false);
        QVERIFY(!punkt->isChecked());
    }

private:
    static QStringList zeilen(const Statusmenue &menue)
    {
        QStringList liste;
        const auto aktionen = menue.actions();
        for (const QAction *aktion : aktionen) {
            liste.append(aktion->isSeparator() ? strich : aktion->text());
        }
        return liste;
    }

    static QAction *zeile(const Statusmenue &menue, const QString &text)
    {
        return menue.actions().at(zeilen(menue).indexOf(text));
    }
};

KALVARO_FENSTERTEST(TestStatusmenue)
#include "tst_statusmenue.moc"
