#include "platform/macos/oeffnungsfehler.h"
#include "testlauf.h"

using namespace kalvaro;
using namespace Qt::StringLiterals;

class TestOeffnungsfehler final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void satz_data();
    void satz();
};

void TestOeffnungsfehler::satz_data()
{
    QTest::addColumn<QString>("bereich");
    QTest::addColumn<int>("nummer");
    QTest::addColumn<QString>("erwartet");
    const QString cocoa = u"NSCocoaErrorDomain"_s;
    const QString posix = u"NSPOSIXErrorDomain"_s;
    const QString dienst = u"NSOSStatusErrorDomain"_s;
    const QString fehlt = u"„/A/rekordbox.app“ wurde nicht gefunden."_s;
    const QString darfNicht = u"„/A/rekordbox.app“ darf nicht ausgeführt werden."_s;
    const auto zeile = [](const QString &bereich, int nummer, const QString &erwartet) {
        QTest::addRow("%s %d", qPrintable(bereich), nummer) << bereich << nummer << erwartet;
    };
    zeile(cocoa, 4, fehlt);
    zeile(cocoa, 260, fehlt);
    zeile(cocoa, 257, darfNicht);
    zeile(cocoa, 256, u"„/A/rekordbox.app“ ließ sich nicht öffnen (NSCocoaErrorDomain 256)."_s);
    zeile(cocoa, 2, u"„/A/rekordbox.app“ ließ sich nicht öffnen (NSCocoaErrorDomain 2)."_s);
    zeile(posix, 2, fehlt);
    zeile(posix, 1, darfNicht);
    zeile(posix, 13, darfNicht);
    zeile(posix, 4, u"„/A/rekordbox.app“ ließ sich nicht öffnen (NSPOSIXErrorDomain 4)."_s);
    zeile(dienst, -43, fehlt);
    zeile(dienst, -10814, fehlt);
    zeile(dienst, -10660, u"„/A/rekordbox.app“ liegt im Papierkorb."_s);
    const QString format = u"„/A/rekordbox.app“ ist kein Programm, das auf diesem Mac läuft."_s;
    zeile(dienst, -10661, format);
    zeile(dienst, -10665, format);
    const QString fassung = u"„/A/rekordbox.app“ läuft nicht mit dieser Version von macOS."_s;
    zeile(dienst, -10664, fassung);
    zeile(dienst, -10825, fassung);
    zeile(dienst, -10811, u"„/A/rekordbox.app“ ist kein Programm."_s);
    zeile(dienst, -10826, darfNicht);
    zeile(dienst, -10827, u"In „/A/rekordbox.app“ fehlt das Programm."_s);
    zeile(dienst, -10829, u"„/A/rekordbox.app“ läuft schon bei einem anderen Benutzer."_s);
    zeile(dienst, -128, u"Das Öffnen von „/A/rekordbox.app“ wurde abgebrochen."_s);
    zeile(dienst, -1, u"„/A/rekordbox.app“ ließ sich nicht öffnen (NSOSStatusErrorDomain -1)."_s);
    zeile(u"X"_s, 260, u"„/A/rekordbox.app“ ließ sich nicht öffnen (X 260)."_s);
}

void TestOeffnungsfehler::satz()
{
    QFETCH(const QString, bereich);
    QFETCH(const int, nummer);
    QFETCH(const QString, erwartet);
    QCOMPARE(oeffnungsfehlertext({bereich, nummer}, u"/A/rekordbox.app"_s), erwartet);
    // A path may look like a place for something.
    QVERIFY(oeffnungsfehlertext({bereich, nummer}, u"/A/%1 %2.app"_s).contains(u"/A/%1 %2.app"_s));
}

KALVARO_TEST(TestOeffnungsfehler)
#include "tst_oeffnungsfehler.moc"
