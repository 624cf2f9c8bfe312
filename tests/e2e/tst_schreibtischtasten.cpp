#include "e2e/anzeige.h"
#include "testlauf.h"

using namespace kalvaro;
using namespace Qt::StringLiterals;

// Each desktop has keys of its own that press a button; Qt asks for them by the desktop's name, on
// a real display only. What a window of ours does with a key is the same on all.
class TestSchreibtischtasten final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { KALVARO_BRAUCHT(u"Xvfb"_s); }
    void jedeTasteAnJedemOrt_data();
    void jedeTasteAnJedemOrt();
};

void TestSchreibtischtasten::jedeTasteAnJedemOrt_data()
{
    QTest::addColumn<QString>("schreibtisch");
    for (const char *name : {"KDE", "GNOME", "XFCE", ""}) {
        QTest::newRow(*name == '\0' ? "none" : name) << QString::fromLatin1(name);
    }
}

void TestSchreibtischtasten::jedeTasteAnJedemOrt()
{
    QFETCH(const QString, schreibtisch);
    const Anzeige anzeige;
    QProcessEnvironment umgebung = anzeige.umgebung(u"unix:path=/nonexistent"_s);
    umgebung.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
    umgebung.insert(u"XDG_CURRENT_DESKTOP"_s, schreibtisch);
    umgebung.insert(u"KDE_SESSION_VERSION"_s, u"5"_s);
    QProcess test;
    test.setProcessEnvironment(umgebung);
    test.setProcessChannelMode(QProcess::MergedChannels);
    test.start(QStringLiteral(TESTS_UI), {u"TestEingabe"_s});
    QVERIFY(test.waitForFinished(60'000));
    const QByteArray ausgabe = test.readAll();
    QVERIFY2(test.exitStatus() == QProcess::NormalExit && test.exitCode() == 0,
             ausgabe.constData());
    QVERIFY(ausgabe.contains(" 0 skipped"));
}

KALVARO_TEST(TestSchreibtischtasten)
#include "tst_schreibtischtasten.moc"
