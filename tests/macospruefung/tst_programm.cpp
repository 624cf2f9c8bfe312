// The program as main.cpp puts it together with these adapters, seen from outside.

#include "app/zuhause.h"
#include "doubles/fristen.h"
#include "doubles/kindprogramm.h"
#include "testlauf.h"

#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <csignal>
#include <optional>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

constexpr int geduld = 30'000; // milliseconds

const QString niemand = u"http://127.0.0.1:1"_s; // a port that nobody listens at
const QString gestartet = u"gestartet (1.4, Gerät demo-mac)"_s;

} // namespace

class TestProgramm final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        zuhause.emplace();
        zuhause->kontoSchreiben(niemand);
        umgebung = zuhause->umgebung();
    }

    void ohneSitzungSagtEsDas()
    {
        ohneSitzung();
        Kindprogramm programm(datei, {u"--hintergrund"_s}, umgebung);
        QCOMPARE(programm.ende(), 1);
        QCOMPARE(
            QString::fromUtf8(programm.fehlerausgabe()),
            u"kalvaro kann hier nichts zeigen: Niemand ist am Bildschirm dieses Macs angemeldet. "
            "Ohne Anzeige gehen nur „--pruefen“, „--bild PFAD“, „--help“ und „--version“.\n"_s);
        QCOMPARE(zuhause->protokoll(), QStringList());
    }

    void ohneSitzungEntstehtDasBild()
    {
        ohneSitzung();
        const QString bild = zuhause->datei(u"bild.png"_s);
        Kindprogramm programm(datei, {u"--bild"_s, bild}, umgebung);
        QCOMPARE(programm.ende(), 0);
        QVERIFY(QImage(bild).width() > 300);
    }

    void pruefen_data()
    {
        QTest::addColumn<bool>("sitzung");
        QTest::newRow("session") << true;
        QTest::newRow("no session") << false;
    }

    void pruefen()
    {
        QFETCH(bool, sitzung);
        if (!sitzung) {
            ohneSitzung();
        }
        Kindprogramm programm(datei, {u"--pruefen"_s, u"--json"_s}, umgebung);
        QCOMPARE(programm.ende(), 1); // nobody answers at that address
        const auto befunde = QJsonDocument::fromJson(programm.ausgabe())[u"befunde"].toArray();
        QStringList schlechte;
        for (const QJsonValue &befund : befunde) {
            if (!befund[u"gut"].toBool()) {
                schlechte.append(befund[u"bereich"].toString());
            }
        }
        QCOMPARE(schlechte.contains(u"sitzungsbus"_s), !sitzung);
        QCOMPARE(schlechte.contains(u"mitteilungen"_s), !sitzung);
        QVERIFY(schlechte.contains(u"adresse"_s));
    }

    void einZweiterStartBeendetDenErsten()
    {
        Kindprogramm erster(datei, {u"--hintergrund"_s}, umgebung);
        QTRY_VERIFY_WITH_TIMEOUT(zuhause->protokoll().contains(gestartet), geduld);
        Kindprogramm zweiter(datei, {u"--beenden"_s}, umgebung);
        QCOMPARE(zweiter.ende(), 0);
        QCOMPARE(erster.ende(), 0);
        QCOMPARE(zuhause->protokoll(), QStringList({gestartet, u"beendet"_s}));
    }

    void abgemeldet()
    {
        Kindprogramm programm(datei, {u"--hintergrund"_s}, umgebung);
        QTRY_VERIFY_WITH_TIMEOUT(zuhause->protokoll().contains(gestartet), geduld);
        const qint64 dauer = programm.beenden(SIGTERM);
        QVERIFY(dauer >= 0);
        QVERIFY2(dauer <= endfrist, qPrintable(QString::number(dauer)));
    }

private:
    void ohneSitzung()
    {
        umgebung.insert(u"KALVARO_OHNE_SITZUNG"_s, u"1"_s);
        umgebung.remove(u"QT_QPA_PLATFORM"_s);
    }

    const QString datei = QStringLiteral(KALVARO_PROGRAMM);
    std::optional<Zuhause> zuhause;
    QProcessEnvironment umgebung;
};

KALVARO_TEST(TestProgramm)
#include "tst_programm.moc"
