// The toolkit's own texts are German, whatever the system's language.

#include "app/sprache.h"

#include "foundation/uhr.h"
#include "server/netztransport.h"
#include "testlauf.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QLocale>
#include <QPushButton>
#include <QTcpServer>
#include <QTcpSocket>

using namespace kalvaro;
using namespace Qt::StringLiterals;

class TestSprache final : public QObject
{
    Q_OBJECT

public:
    static void vorDerAnwendung()
    {
        qputenv("LANG", "C");
        qputenv("LC_ALL", "C");
        qunsetenv("LANGUAGE");
    }

private Q_SLOTS:
    void initTestCase()
    {
        QCOMPARE(QLocale::system().language(), QLocale::C);
        QCOMPARE(knopf(QDialogButtonBox::Cancel), u"Cancel"_s);
        deutschEinrichten(*qApp);
    }

    void utf8NurFuerDieAnwendung_data()
    {
        QTest::addColumn<QByteArray>("vorher");
        QTest::addColumn<QByteArray>("darin");
        QTest::newRow("C") << QByteArray("C") << QByteArray("C.UTF-8");
        QTest::newRow("UTF-8") << QByteArray("C.UTF-8") << QByteArray("C.UTF-8");
        QTest::newRow("not set") << QByteArray() << QByteArray("C.UTF-8");
    }
    void utf8NurFuerDieAnwendung()
    {
        QFETCH(const QByteArray, vorher);
        QFETCH(const QByteArray, darin);
        vorher.isNull() ? qunsetenv("LC_ALL") : qputenv("LC_ALL", vorher);
        {
            const Utf8Rahmen rahmen;
            QCOMPARE(qgetenv("LC_ALL"), darin);
        }
        QCOMPARE(qgetenv("LC_ALL"), vorher);
        QCOMPARE(qgetenv("LC_ALL").isNull(), vorher.isNull());
    }

    void knoepfe()
    {
        QCOMPARE(knopf(QDialogButtonBox::Cancel), u"Abbrechen"_s);
        QCOMPARE(knopf(QDialogButtonBox::Close), u"Schließen"_s);
        QCOMPARE(knopf(QDialogButtonBox::Ok), u"OK"_s);
    }

    // The text of a refused connection, as the toolkit and as our own transport put it.
    void netzfehler()
    {
        quint16 zu = 0;
        {
            QTcpServer server;
            QVERIFY(server.listen(QHostAddress::LocalHost));
            zu = server.serverPort();
        }

        QTcpSocket leitung;
        leitung.connectToHost(QHostAddress::LocalHost, zu);
        QVERIFY(!leitung.waitForConnected(5000));
        QCOMPARE(leitung.errorString(), u"Verbindung verweigert"_s);

        Systemuhr uhr;
        Netztransport transport(uhr);
        std::optional<Transport::Ergebnis> ergebnis;
        transport.senden({.url = QUrl(u"http://127.0.0.1:%1/"_s.arg(zu)),
                          .methode = "GET",
                          .limit = Sekunden(10)},
                         this, [&](const Transport::Ergebnis &e) { ergebnis = e; });
        QTRY_VERIFY(ergebnis);
        QVERIFY(!ergebnis->has_value());
        QVERIFY2(ergebnis->error().text.contains(u"Verbindung"_s),
                 qPrintable(ergebnis->error().text));
    }

    void vorgabe() { QCOMPARE(QLocale().name(), u"de_DE"_s); }

private:
    static QString knopf(QDialogButtonBox::StandardButton welcher)
    {
        const QDialogButtonBox leiste(welcher);
        return leiste.button(welcher)->text().remove(u'&');
    }
};

KALVARO_FENSTERTEST(TestSprache)
#include "tst_sprache.moc"
