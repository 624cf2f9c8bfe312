#include "doubles/testuhr.h"
#include "platform/linux/dbusaktivierung.h"
#include "platform/linux/linuxarbeitsplatz.h"
#include "testlauf.h"

#include <QDesktopServices>
#include <QUrl>

using namespace kalvaro;
using namespace Qt::StringLiterals;

// Stands in for the browser.
class Browser : public QObject
{
    Q_OBJECT

public:
    Browser()
    {
        for (const QString &schema : schemata) {
            QDesktopServices::setUrlHandler(schema, this, "oeffnen");
        }
    }

    ~Browser() override
    {
        for (const QString &schema : schemata) {
            QDesktopServices::unsetUrlHandler(schema);
        }
    }

    Browser(const Browser &) = delete;
    Browser &operator=(const Browser &) = delete;

    Q_INVOKABLE void oeffnen(const QUrl &url)
    {
        adressen.append(url);
        marken.append(qEnvironmentVariable("XDG_ACTIVATION_TOKEN"));
    }

    QList<QUrl> adressen;
    QStringList marken; // that each of them came with

private:
    const QStringList schemata{u"http"_s, u"https"_s, u"file"_s, u"mailto"_s, u"javascript"_s};
};

class TestOeffnen final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void oeffnet_data();
    void oeffnet();
    void dieMarkeDesKlicksGehtMit();
};

void TestOeffnen::oeffnet_data()
{
    QTest::addColumn<QUrl>("adresse");
    QTest::addColumn<bool>("geoeffnet");
    const auto fall = [](const char *adresse, bool geoeffnet) {
        QTest::newRow(adresse) << QUrl(QString::fromUtf8(adresse)) << geoeffnet;
    };
    fall("https://example.org/a?b=c&d#e", true);
    fall("http://example.org", true);
    fall("HTTPS://example.org", true);
    fall("", false);
    fall("example.org", false);
    fall("file:///etc/passwd", false);
    fall("mailto:a@example.org", false);
    fall("javascript:alert(1)", false);
    fall("https://[kaputt", false);
}

void TestOeffnen::oeffnet()
{
    QFETCH(const QUrl, adresse);
    QFETCH(const bool, geoeffnet);
    const Browser browser;
    const QUrl letzte(u"https://example.org/letzte"_s);
    Testuhr uhr;
    LinuxArbeitsplatz arbeitsplatz{uhr};
    arbeitsplatz.oeffnen(adresse);
    arbeitsplatz.oeffnen(letzte);
    QCOMPARE(browser.adressen, QList<QUrl>()); // not before the click is over
    QTRY_VERIFY(browser.adressen.contains(letzte));
    QCOMPARE(browser.adressen, geoeffnet ? QList<QUrl>({adresse, letzte}) : QList<QUrl>{letzte});
}

// It was gone by the time that the browser was started, which then only blinked.
void TestOeffnen::dieMarkeDesKlicksGehtMit()
{
    const Browser browser;
    Testuhr uhr;
    LinuxArbeitsplatz arbeitsplatz{uhr};
    const QUrl adresse(u"https://example.org/"_s);
    {
        const Aktivierungsrahmen klick({"vom Klick", {}});
        arbeitsplatz.oeffnen(adresse);
    }
    arbeitsplatz.oeffnen(adresse);
    QTRY_COMPARE(browser.marken, QStringList({u"vom Klick"_s, QString()}));
    QVERIFY(!qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN"));
}

KALVARO_TEST(TestOeffnen)
#include "tst_oeffnen.moc"
