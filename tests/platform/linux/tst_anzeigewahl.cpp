// Where to draw, and whether there is anything to draw on.

#include "platform/linux/anzeigewahl.h"

#include "platform/linux/xanzeige.h"
#include "testlauf.h"

#include <QElapsedTimer>
#include <QHostAddress>
#include <QLocalServer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QThread>

#include <memory>
#include <optional>

using namespace kalvaro;
using namespace Qt::StringLiterals;

class TestAnzeigewahl final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wahl_data()
    {
        QTest::addColumn<Anzeigeangaben>("angaben");
        QTest::addColumn<QString>("antworten"); // those that answer: "x", "w"
        QTest::addColumn<QString>("gefragte");
        QTest::addColumn<Anzeigewahl>("erwartet");
        const QString x = u":7"_s;
        const QString w = u"wayland-0"_s;
        const QString off = u"offscreen"_s;
        const auto zeile = [](const char *name, const Anzeigeangaben &angaben,
                              const QString &antworten, const QString &gefragte,
                              const Anzeigewahl &erwartet) {
            QTest::newRow(name) << angaben << antworten << gefragte << erwartet;
        };
        const QString nichts = u"Weder DISPLAY noch WAYLAND_DISPLAY ist gesetzt."_s;
        const QString xTot = u"Die Anzeige „:7“ (DISPLAY) antwortet nicht."_s;

        zeile("nothing is set", {}, u"xw"_s, {}, {off, nichts});
        zeile("X11", {{}, x, {}}, u"x"_s, u"x"_s, {});
        zeile("a dead X11", {{}, x, {}}, {}, u"x"_s, {off, xTot});
        zeile("Wayland", {{}, {}, w}, u"w"_s, u"w"_s, {});
        zeile("a dead Wayland", {{}, {}, w}, {}, u"w"_s,
              {off, u"Die Anzeige „wayland-0“ (WAYLAND_DISPLAY) antwortet nicht."_s});
        zeile("both: the X server is not woken", {{}, x, w}, u"xw"_s, u"w"_s, {});
        zeile("both, Wayland is dead", {{}, x, w}, u"x"_s, u"wx"_s, {u"xcb"_s, {}});
        zeile("both are dead", {{}, x, w}, {}, u"wx"_s,
              {off, u"Die Anzeigen „:7“ (DISPLAY) und „wayland-0“ (WAYLAND_DISPLAY) antworten "
                    "nicht."_s});
        zeile("another platform was chosen", {u"offscreen"_s, {}, {}}, {}, {}, {});
        zeile("another platform, with options", {u"vnc:port=5900"_s, x, {}}, {}, {}, {});
        zeile("another platform among them", {u"xcb;minimal"_s, x, {}}, {}, {}, {});
        zeile("xcb was chosen", {u"xcb"_s, x, w}, u"xw"_s, u"x"_s, {});
        zeile("xcb was chosen and is dead", {u"xcb"_s, x, {}}, {}, u"x"_s, {off, xTot});
        zeile("xcb was chosen without a display", {u"xcb"_s, {}, {}}, {}, {}, {off, nichts});
        zeile("wayland was chosen", {u"wayland"_s, x, w}, u"xw"_s, u"w"_s, {});
        zeile("wayland-egl was chosen", {u"wayland-egl"_s, x, w}, u"xw"_s, u"w"_s, {});
        zeile("wayland first, xcb then", {u"wayland;xcb"_s, x, w}, u"x"_s, u"wx"_s, {});
        zeile("what could control a terminal", {{}, u"\u001b[2J\n"_s, {}}, {}, u"x"_s,
              {off, u"Die Anzeige „ [2J “ (DISPLAY) antwortet nicht."_s});
    }
    void wahl()
    {
        QFETCH(const Anzeigeangaben, angaben);
        QFETCH(const QString, antworten);
        QString gefragte;
        const auto wer = [&](QChar einer) {
            return [&gefragte, &antworten, einer] {
                gefragte += einer;
                return antworten.contains(einer);
            };
        };
        const Anzeigewahl wahl = anzeigeWaehlen(angaben, wer(u'x'), wer(u'w'));
        QTEST(wahl, "erwartet");
        QTEST(gefragte, "gefragte");
    }

    void derUmgebung()
    {
        qputenv("QT_QPA_PLATFORM", "minimal");
        QCOMPARE(Anzeigeangaben::derUmgebung({}).plattform, u"minimal"_s);
        QCOMPARE(Anzeigeangaben::derUmgebung(u"xcb"_s).plattform, u"xcb"_s);
    }

    void wayland()
    {
        const QTemporaryDir ordner;
        qputenv("XDG_RUNTIME_DIR", ordner.path().toUtf8());
        const QString pfad = ordner.filePath(u"wayland-7"_s);
        QVERIFY(!waylandAntwortet({}));
        QVERIFY(!waylandAntwortet(u"wayland-7"_s));
        QVERIFY(!waylandAntwortet(QString(200, u'x')));
        {
            QLocalServer server;
            QVERIFY(server.listen(pfad));
            QVERIFY(waylandAntwortet(u"wayland-7"_s));
            QVERIFY(waylandAntwortet(pfad));
        }
        QFile rest(pfad); // what a compositor that crashed leaves
        QVERIFY(rest.open(QIODevice::WriteOnly));
        QVERIFY(!waylandAntwortet(u"wayland-7"_s));
    }

    // As after "ssh -X" whose connection has gone.
    void niemandHoert()
    {
        QVERIFY(!xAnzeigeFragen({}).antwortet);
        QVERIFY(!xAnzeigeFragen(":7654").antwortet);
        QVERIFY(!xAnzeigeFragen("127.0.0.1:7654").antwortet);
        QVERIFY(!xAnzeigeFragen("no display at all").antwortet);
    }

    // A forward that takes the connection and passes nothing on.
    void einerNimmtAnUndSchweigt()
    {
        QTcpServer server;
        QVERIFY(horchen(server));
        QElapsedTimer zeit;
        zeit.start();
        QVERIFY(!xAnzeigeFragen(anzeige(server), std::chrono::milliseconds(300)).antwortet);
        QVERIFY2(zeit.elapsed() < 5000, qPrintable(QString::number(zeit.elapsed())));
    }

    void einerLegtAuf()
    {
        QTcpServer server;
        QVERIFY(horchen(server));
        connect(&server, &QTcpServer::newConnection, &server,
                [&server] { server.nextPendingConnection()->abort(); });
        const QByteArray name = anzeige(server);
        std::optional<XAnzeige> lage;
        const std::unique_ptr<QThread> frager(
            QThread::create([&] { lage = xAnzeigeFragen(name, std::chrono::seconds(20)); }));
        frager->start();
        QTRY_VERIFY_WITH_TIMEOUT(frager->isFinished(), 10'000);
        QVERIFY(lage && !lage->antwortet && !lage->verbindung);
    }

private:
    // On one of the ports that displays have.
    static bool horchen(QTcpServer &server)
    {
        constexpr quint16 ersterHafen = 6000 + 2000;
        quint16 hafen = ersterHafen;
        while (!server.listen(QHostAddress::LocalHost, hafen) && hafen < ersterHafen + 1000) {
            ++hafen;
        }
        return server.isListening();
    }
    static QByteArray anzeige(const QTcpServer &server)
    {
        return "127.0.0.1:" + QByteArray::number(server.serverPort() - 6000);
    }
};

KALVARO_TEST(TestAnzeigewahl)
#include "tst_anzeigewahl.moc"
