// Man page and completions know the options of the program, all of them the same ones, and work.

#include "app/kommandozeile.h"
#include "doubles/dateien.h"
#include "doubles/datenordner.h"
#include "foundation/konstanten.h"
#include "foundation/konto.h"
#include "handbuch/quelltexte.h"
#include "testlauf.h"

#include <QProcess>
#include <QTemporaryDir>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

QSet<QString> optionen(const QString &text)
{
    const QStringList liste = alle(text, u"(?<![\\w-])(--?[a-z]+)(?![\\w])"_s);
    return {liste.begin(), liste.end()};
}

// The man page as it is read, without the escapes of its options.
QString manpage()
{
    return quelltext(u"packaging/kalvaro.1"_s).replace(u"\\-"_s, u"-"_s);
}

QString bashskript()
{
    return quelltext(u"packaging/kalvaro.bash"_s);
}

} // namespace

class TestKurzhilfe final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void jedeOptionStehtUeberall_data();
    void jedeOptionStehtUeberall();
    void manpageUndErgaenzungenNennenDieselben();
    void manpageIstSauber();
    void manpageNenntDieVersion();
    void beispielDerManpageLaedt();
    void bashErgaenzt_data();
    void bashErgaenzt();
    void bashErgaenztDateinamenMitLeerzeichen();

private:
    [[nodiscard]] static QStringList ergaenzt(const QStringList &worte,
                                              const QString &ordner = QString());

    const Datenordner daten_;
};

void TestKurzhilfe::jedeOptionStehtUeberall_data()
{
    QTest::addColumn<QString>("option");
    const auto liste = optionen(hilfetext());
    QVERIFY(liste.contains(u"--bild"_s));
    for (const QString &option : liste) {
        QTest::addRow("%s", qPrintable(option)) << option;
    }
}

void TestKurzhilfe::jedeOptionStehtUeberall()
{
    QFETCH(const QString, option);

    const QString erklaerte = alle(manpage(), u"^\\.TP\\n(.*)$"_s).join(u' ');
    QVERIFY(optionen(erklaerte).contains(option));
    QVERIFY(optionen(bashskript()).contains(option));
    QVERIFY(optionen(quelltext(u"packaging/_kalvaro"_s)).contains(option));
    QVERIFY(optionen(quelltext(u"docs/handbuch.md"_s)).contains(option));
}

void TestKurzhilfe::manpageUndErgaenzungenNennenDieselben()
{
    // With two dashes: single ones belong to the tools around them as well.
    const auto lange = [](const QString &text) {
        QStringList liste = optionen(text).values().filter(u"--"_s);
        liste.sort();
        return liste;
    };
    const QString liste = alle(bashskript(), u"for zeile in (.*); do"_s).value(0);
    const QStringList derBash = lange(liste);

    QVERIFY(derBash.size() > 5);
    QCOMPARE(lange(manpage()), derBash);
    QCOMPARE(lange(quelltext(u"packaging/_kalvaro"_s)), derBash);
    QCOMPARE(lange(quelltext(u"docs/handbuch.md"_s)), derBash);
}

void TestKurzhilfe::manpageIstSauber()
{
    KALVARO_BRAUCHT(u"groff"_s);
    QProcess groff;
    groff.start(u"groff"_s, {u"-man"_s, u"-ww"_s, u"-Tutf8"_s, u"-K"_s, u"utf8"_s,
                             QStringLiteral(QUELLORDNER "/packaging/kalvaro.1")});
    QVERIFY(groff.waitForFinished());

    QCOMPARE(QString::fromUtf8(groff.readAllStandardError()), QString());
    QCOMPARE(groff.exitCode(), 0);
    QVERIFY(QString::fromUtf8(groff.readAllStandardOutput()).contains(u"Gleichstand"_s));
}

void TestKurzhilfe::manpageNenntDieVersion()
{
    QVERIFY(manpage().startsWith(u".TH KALVARO 1 "_s));
    QVERIFY(manpage().section(u'\n', 0, 0).contains(u"\"kalvaro "_s + VERSION + u'"'));
}

void TestKurzhilfe::beispielDerManpageLaedt()
{
    const QString beispiel = alle(manpage(), u"(?s)^(\\{.*?^\\})$"_s).value(0);
    daten_.schreiben(u"konto.json"_s, beispiel.toUtf8());

    const auto konto = Konto::laden();

    QVERIFY2(konto, qPrintable(konto ? QString() : konto.error()));
}

// What bash offers when the last of the words is to be completed.
QStringList TestKurzhilfe::ergaenzt(const QStringList &worte, const QString &ordner)
{
    QProcess bash;
    bash.setWorkingDirectory(ordner);
    bash.start(u"bash"_s,
               QStringList{u"--norc"_s, u"-uc"_s,
                           u"source \"$0\"; COMP_WORDS=(\"$@\"); COMP_CWORD=$(($# - 1)); _kalvaro; "
                           "printf '%s\\n' \"${COMPREPLY[@]}\""_s,
                           QStringLiteral(QUELLORDNER "/packaging/kalvaro.bash"), u"kalvaro"_s} +
                   worte);
    bash.waitForFinished();
    const QString fehler = QString::fromUtf8(bash.readAllStandardError());
    const QString ausgabe = QString::fromUtf8(bash.readAllStandardOutput());
    return fehler.isEmpty() ? ausgabe.split(u'\n', Qt::SkipEmptyParts) : QStringList(fehler);
}

void TestKurzhilfe::bashErgaenzt_data()
{
    QTest::addColumn<QStringList>("worte");
    QTest::addColumn<QStringList>("erwartet");
    QTest::newRow("the only one") << QStringList{u"--pr"_s} << QStringList{u"--pruefen"_s};
    QTest::newRow("several") << QStringList{u"--b"_s} << QStringList{u"--beenden"_s, u"--bild"_s};
    QTest::newRow("none") << QStringList{u"--x"_s} << QStringList();
    QTest::newRow("no second time") << QStringList{u"--pruefen"_s, u"--p"_s} << QStringList();
    QTest::newRow("after another")
        << QStringList{u"--pruefen"_s, u"--j"_s} << QStringList{u"--json"_s};
    QTest::newRow("no file without --bild") << QStringList{u"/usr"_s} << QStringList();
    QTest::newRow("no option as the file of --bild")
        << QStringList{u"--bild"_s, u"--p"_s} << QStringList();
}

void TestKurzhilfe::bashErgaenzt()
{
    QFETCH(const QStringList, worte);
    QFETCH(const QStringList, erwartet);

    QCOMPARE(ergaenzt(worte), erwartet);
}

void TestKurzhilfe::bashErgaenztDateinamenMitLeerzeichen()
{
    const QTemporaryDir ordner;
    dateiSchreiben(ordner.filePath(u"ein bild.png"_s), "x");

    QCOMPARE(ergaenzt({u"--bild"_s, u"ei"_s}, ordner.path()), QStringList(u"ein bild.png"_s));
}

KALVARO_TEST(TestKurzhilfe)
#include "tst_kurzhilfe.moc"
