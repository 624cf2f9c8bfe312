#include "server/umleitung.h"
#include "testlauf.h"

using namespace kalvaro;
using namespace Qt::StringLiterals;

class TestUmleitung final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void derSchluesselBleibtBeimSelbenDienst_data()
    {
        QTest::addColumn<QString>("von");
        QTest::addColumn<QByteArray>("ort");
        QTest::addColumn<QString>("nach"); // "": taken as an answer
        const auto zeile = [](const QString &von, const QByteArray &ort, const QString &nach) {
            QTest::newRow(qPrintable(von + u' ' + QString::fromUtf8(ort))) << von << ort << nach;
        };
        zeile(u"http://h/a"_s, "/b", u"http://h/b"_s);
        zeile(u"http://h:80/a"_s, "http://h/b", u"http://h/b"_s);
        zeile(u"http://h/a"_s, "http://H/b", u"http://h/b"_s);
        zeile(u"http://h/a"_s, "https://h/a", u"https://h/a"_s);
        zeile(u"http://h/a"_s, "https://h:443/a", u"https://h:443/a"_s);
        zeile(u"http://h:8080/a"_s, "https://h:8080/a", u"https://h:8080/a"_s);
        zeile(u"http://h:8080/a"_s, "https://h/a", {});
        zeile(u"http://h:8080/a"_s, "https://h:8443/a", {});
        zeile(u"http://h/a"_s, "https://h:8443/a", {});
        zeile(u"http://h/a"_s, "https://h:80/a", u"https://h:80/a"_s);
        zeile(u"https://h/a"_s, "http://h/a", {});
        zeile(u"https://h/a"_s, "http://h:443/a", {});
        zeile(u"https://h:8443/a"_s, "https://h/a", {});
        zeile(u"http://h/a"_s, "http://h2/a", {});
        zeile(u"http://h/a"_s, "http://h.evil/a", {});
        zeile(u"http://h/a"_s, "http://h@evil/a", {});
        zeile(u"http://h/a"_s, "http://evil\\@h/a", u"http://h/a"_s);
        zeile(u"http://h/a"_s, "//evil/a", {});
        zeile(u"http://h/a"_s, "http:///a", {});
        zeile(u"http://h/a"_s, "ftp://h/a", {});
        zeile(u"http://h/a"_s, "", {});
        zeile(u"http://n:p@h/a"_s, "/b", u"http://n:p@h/b"_s);
        zeile(u"http://n:p@h/a"_s, "http://h/b", u"http://n:p@h/b"_s);
        zeile(u"http://n:p@h/a"_s, "http://x:y@h/b", u"http://n:p@h/b"_s);
        zeile(u"http://h/a"_s, "http://x:y@h/b", u"http://h/b"_s);
        zeile(u"http://h/a"_s, "/b#c", u"http://h/b"_s);
    }
    void derSchluesselBleibtBeimSelbenDienst()
    {
        QFETCH(const QString, von);
        QFETCH(const QByteArray, ort);
        const auto ziel = sprungziel(QUrl(von), 307, ort);
        QTEST(ziel ? ziel->toString() : QString(), "nach");
    }

    void nurEineUmleitungLeitetUm()
    {
        for (int status = 200; status < 1000; ++status) {
            const bool sprung =
                status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
            QCOMPARE(sprungziel(QUrl(u"http://h/a"_s), status, "/b").has_value(), sprung);
        }
    }
};

KALVARO_TEST(TestUmleitung)
#include "tst_umleitung.moc"
