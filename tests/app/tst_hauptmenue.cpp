// The main menu: its rows and what they do.

#include "app/hauptmenue.h"
#include "testlauf.h"

#include "steuerungswelt.h"

#include <QApplication>
#include <QMenuBar>
#include <QMessageBox>
#include <QSignalSpy>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

const QString strich = u"----"_s;

} // namespace

class TestHauptmenue final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        p = std::make_unique<Steuerungswelt>();
        p->starten(false, menueBauen);
        p->arbeitsplatz.auftritte.clear();
    }
    void cleanup() { p.reset(); }

    void zeilenUndReihenfolge()
    {
        QCOMPARE(titel(leiste()->actions()), (QStringList{u"kalvaro"_s, u"Fenster"_s}));
        QCOMPARE(titel(menue(0)), (QStringList{u"Über kalvaro"_s, strich, u"kalvaro ausblenden"_s,
                                               strich, u"kalvaro beenden"_s}));
        QCOMPARE(titel(menue(1)), (QStringList{u"Im Dock ablegen"_s, u"Schließen"_s}));
    }

    void tasten_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QKeySequence>("taste");
        QTest::newRow("about") << u"Über kalvaro"_s << QKeySequence();
        QTest::newRow("hide") << u"kalvaro ausblenden"_s << QKeySequence(Qt::CTRL | Qt::Key_H);
        QTest::newRow("quit") << u"kalvaro beenden"_s << QKeySequence(Qt::CTRL | Qt::Key_Q);
        QTest::newRow("minimise") << u"Im Dock ablegen"_s << QKeySequence(Qt::CTRL | Qt::Key_M);
        QTest::newRow("close") << u"Schließen"_s << QKeySequence(Qt::CTRL | Qt::Key_W);
    }
    void tasten()
    {
        QFETCH(const QString, text);
        QFETCH(const QKeySequence, taste);

        QCOMPARE(zeile(text)->shortcut(), taste);
        QVERIFY(zeile(text)->isEnabled());
    }

    // Where the system has a menu for the program itself, its rows move there and no empty menu is
    // left.
    void rollen()
    {
        QCOMPARE(zeile(u"Über kalvaro"_s)->menuRole(), QAction::AboutRole);
        QCOMPARE(zeile(u"kalvaro ausblenden"_s)->menuRole(), QAction::ApplicationSpecificRole);
        QCOMPARE(zeile(u"kalvaro beenden"_s)->menuRole(), QAction::QuitRole);
    }

    void ueber()
    {
        zeile(u"Über kalvaro"_s)->trigger();

        const auto *const box = fenster().findChild<QMessageBox *>();
        QVERIFY(box && box->isVisible());
        QCOMPARE(box->windowTitle(), u"Über kalvaro"_s);
        QCOMPARE(box->text(), u"kalvaro 1.4"_s);
    }

    void verstecken_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("hide") << u"kalvaro ausblenden"_s;
        QTest::newRow("close") << u"Schließen"_s;
    }
    void verstecken()
    {
        QFETCH(const QString, text);

        zeile(text)->trigger();

        QVERIFY(!fenster().isVisible());
        QCOMPARE(p->arbeitsplatz.auftritte, QList{Arbeitsplatz::Auftritt::Zubehoer});
    }

    void ablegen()
    {
        zeile(u"Im Dock ablegen"_s)->trigger();

        QVERIFY(fenster().isMinimized());
        QVERIFY(p->arbeitsplatz.auftritte.isEmpty());
    }

    // As by the menu of the status item, but that one alone is logged.
    void beenden()
    {
        QSignalSpy ende(qApp, &QCoreApplication::aboutToQuit);
        QMetaObject::invokeMethod(
            this, [this] { zeile(u"kalvaro beenden"_s)->trigger(); }, Qt::QueuedConnection);

        QCOMPARE(QCoreApplication::exec(), 0);

        QCOMPARE(ende.size(), 1);
        QVERIFY(!Steuerungswelt::protokoll().contains(u"beendet"_s));
    }

    // Picture mode lives without a controller: the same menu, but there is nothing to live on for.
    void bildbetrieb_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("quit") << u"kalvaro beenden"_s;
        QTest::newRow("close") << u"Schließen"_s;
    }
    void bildbetrieb()
    {
        QFETCH(const QString, text);
        p->steuerung.reset();
        Hauptfenster bild(*p->ablauf, Verbleib::Allein, u"/gibt/es/nicht/bild.png"_s);
        menueBauen(bild);
        bild.show();
        QMetaObject::invokeMethod(
            this, [&] { zeile(text, bild)->trigger(); }, Qt::QueuedConnection);

        QCOMPARE(QCoreApplication::exec(), 0);

        QVERIFY(!bild.isVisible());
    }

private:
    [[nodiscard]] Hauptfenster &fenster() const { return *p->steuerung->fenster(); }

    [[nodiscard]] QMenuBar *leiste() const { return fenster().findChild<QMenuBar *>(); }

    [[nodiscard]] QList<QAction *> menue(qsizetype nummer) const
    {
        return leiste()->actions().at(nummer)->menu()->actions();
    }

    static QStringList titel(const QList<QAction *> &aktionen)
    {
        QStringList liste;
        for (const QAction *aktion : aktionen) {
            liste.append(aktion->isSeparator() ? strich : aktion->text());
        }
        return liste;
    }

    [[nodiscard]] QAction *zeile(const QString &text) const { return zeile(text, fenster()); }

    static QAction *zeile(const QString &text, const Hauptfenster &wo)
    {
        const auto aktionen = wo.findChild<QMenuBar *>()->actions();
        for (const QAction *menue : aktionen) {
            const auto zeilen = menue->menu()->actions();
            const qsizetype stelle = titel(zeilen).indexOf(text);
            if (stelle >= 0) {
                return zeilen.at(stelle);
            }
        }
        qFatal("The main menu has no row %s", qPrintable(text));
    }

    std::unique_ptr<Steuerungswelt> p;
};

KALVARO_FENSTERTEST(TestHauptmenue)
#include "tst_hauptmenue.moc"
