#include "ansichten.h"
#include "bildvergleich.h"
#include "szenen.h"
#include "testlauf.h"

#include <QDir>
#include <QFontInfo>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

const QDir vorlagen(QStringLiteral(KALVARO_BILDER_ORDNER "/vorlagen"));
const QDir funde(QStringLiteral(KALVARO_BILDER_FUNDE));

QList<Szene> alleSzenen()
{
    return bedienszenen() + baumszenen() + anzeigeszenen() + fensterszenen() + blattszenen() +
           schreibtischszenen();
}

QString dateiname(const Szene &szene, Ansicht ansicht)
{
    return szene.name + u'-' + name(ansicht) + u".png"_s;
}

bool erneuern()
{
    return qEnvironmentVariable("KALVARO_BILDER") == u"erneuern"_s;
}

} // namespace

// Every state of every window and control, as it is drawn and as somebody has seen it to be right.
// What differs lies in the build folder as expected | drawn | difference.
class TestBilder final : public QObject
{
    Q_OBJECT

public:
    static void vorDerAnwendung() { umgebungFestlegen(); }

private Q_SLOTS:
    void initTestCase();
    void bild_data();
    void bild();
    void keinesZuviel();

private:
    const QList<Szene> szenen = alleSzenen();
};

void TestBilder::initTestCase()
{
    QVERIFY2(QFontInfo(QFont(u"DejaVu Sans"_s)).family() == u"DejaVu Sans"_s,
             "The pictures are drawn with DejaVu Sans (package fonts-dejavu-core)");
    stilFestlegen();
    QVERIFY(QDir().mkpath(funde.path()));
}

void TestBilder::bild_data()
{
    QTest::addColumn<int>("szene");
    QTest::addColumn<Ansicht>("ansicht");
    const QList<Ansicht> alle = ansichten();
    for (const Ansicht ansicht : alle) {
        for (int i = 0; i < szenen.size(); ++i) {
            if (szenen[i].ansichten.testFlag(ansicht)) {
                QTest::newRow(qPrintable(dateiname(szenen[i], ansicht).chopped(4))) << i << ansicht;
            }
        }
    }
}

void TestBilder::bild()
{
    QFETCH(int, szene);
    QFETCH(Ansicht, ansicht);
    const QString datei = dateiname(szenen[szene], ansicht);
    herstellen(ansicht);
    const QImage ist = szenen[szene].zeichnen();
    const QImage soll(vorlagen.filePath(datei));
    const Bildabstand a = abstand(soll, ist);
    QFile::remove(funde.filePath(datei));
    if (a.gleich()) {
        return;
    }
    if (erneuern()) {
        constexpr int kleinste = 0; // quality of a PNG: how hard it is packed
        QVERIFY(ist.convertToFormat(QImage::Format_RGB888)
                    .save(vorlagen.filePath(datei), "PNG", kleinste));
        qInfo("renewed: %s", qPrintable(vorlagen.filePath(datei)));
        return;
    }
    QVERIFY(gegenueberstellung(soll, ist, a).save(funde.filePath(datei), "PNG"));
    QFAIL(
        qPrintable(u"%1 pixels differ; see %2 (expected | drawn | difference)"_s.arg(a.punkte).arg(
            funde.filePath(datei))));
}

// A picture that nobody draws any more holds nothing.
void TestBilder::keinesZuviel()
{
    const QList<Ansicht> alle = ansichten();
    QStringList dateien;
    for (const Ansicht ansicht : alle) {
        dateien += vorlagen.entryList({u"*-"_s + name(ansicht) + u".png"_s}, QDir::Files);
        for (const Szene &szene : szenen) {
            if (szene.ansichten.testFlag(ansicht)) {
                dateien.removeAll(dateiname(szene, ansicht));
            }
        }
    }
    if (erneuern()) {
        for (const QString &datei : std::as_const(dateien)) {
            QVERIFY(QFile::remove(vorlagen.filePath(datei)));
        }
        return;
    }
    QCOMPARE(dateien, QStringList());
}

KALVARO_FENSTERTEST(TestBilder)
#include "tst_bilder.moc"
