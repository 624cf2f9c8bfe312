#include "doubles/dateien.h"
#include "einbau/einbau.h"
#include "foundation/konstanten.h"
#include "testlauf.h"

#include <QFileInfo>
#include <QImageReader>
#include <QProcess>
#include <QRegularExpression>

#include <algorithm>
#include <cstdlib>
#include <optional>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

const QString quellen = QStringLiteral(QUELLEN);

struct Lauf
{
    int status;
    QString ausgabe;
};

Lauf ausfuehren(const QString &werkzeug, const QStringList &argumente)
{
    QProcess prozess;
    prozess.setProcessChannelMode(QProcess::MergedChannels);
    prozess.start(werkzeug, argumente);
    const bool fertig = prozess.waitForFinished() && prozess.exitStatus() == QProcess::NormalExit;
    return {fertig ? prozess.exitCode() : -1, QString::fromUtf8(prozess.readAll())};
}

// What the first group of `muster` catches, at each place.
QStringList treffer(const QString &text, const QString &muster)
{
    QStringList liste;
    auto stelle = QRegularExpression(muster, QRegularExpression::MultilineOption).globalMatch(text);
    while (stelle.hasNext()) {
        liste.append(stelle.next().captured(1));
    }
    return liste;
}

QString quelltext(const QString &datei)
{
    return QString::fromUtf8(dateiLesen(quellen + u'/' + datei));
}

QImage gezeichnet(const QString &datei, int seite)
{
    QImageReader leser(datei);
    leser.setScaledSize({seite, seite});
    return leser.read().convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

} // namespace

class TestEinbau final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { einbau.emplace(Einbau::Art::Ziel); }

    void bringtDasProgrammUndSeineDaten();
    void bildbandDesHandbuchs();
    void dienstNenntDasProgramm_data();
    void dienstNenntDasProgramm();
    void starterGilt();
    void katalogGilt();
    void handbuchseiteGilt();
    void katalogKenntJedeFassung();
    void katalogbilderSindDa();
    void symbolbilderZeigenDieZeichnung_data();
    void symbolbilderZeigenDieZeichnung();
    void einfarbigesSymbol();

private:
    std::optional<Einbau> einbau;
};

void TestEinbau::bringtDasProgrammUndSeineDaten()
{
    QStringList dateien = einbau->dateien();
    dateien.removeIf(
        [](const QString &datei) { return datei.startsWith(u"share/doc/kalvaro/bilder/"_s); });
    QStringList erwartet = {
        u"bin/kalvaro"_s,
        u"share/applications/de.kalvaro.kalvaro.desktop"_s,
        u"share/bash-completion/completions/kalvaro"_s,
        u"share/dbus-1/services/de.kalvaro.kalvaro.service"_s,
        u"share/doc/kalvaro/CHANGELOG.md"_s,
        u"share/doc/kalvaro/handbuch.md"_s,
        u"share/icons/hicolor/scalable/apps/de.kalvaro.kalvaro.svg"_s,
        u"share/icons/hicolor/symbolic/apps/de.kalvaro.kalvaro-symbolic.svg"_s,
        u"share/man/man1/kalvaro.1"_s,
        u"share/metainfo/de.kalvaro.kalvaro.metainfo.xml"_s,
        u"share/zsh/site-functions/_kalvaro"_s,
    };
    for (const int seite : {16, 22, 24, 32, 48, 64, 128, 256, 512}) {
        erwartet.append(u"share/icons/hicolor/%1x%1/apps/de.kalvaro.kalvaro.png"_s.arg(seite));
    }
    erwartet.sort();
    QCOMPARE(dateien, erwartet);
    QVERIFY(QFileInfo(einbau->ort(u"bin/kalvaro"_s)).isExecutable());
}

void TestEinbau::bildbandDesHandbuchs()
{
    const QStringList bilder =
        treffer(quelltext(u"docs/handbuch.md"_s), u"(bilder/[A-Za-z0-9._-]+\\.png)"_s);
    QVERIFY(!bilder.isEmpty());
    for (const QString &bild : bilder) {
        const QString datei = einbau->ort(u"share/doc/kalvaro/"_s + bild);
        QVERIFY2(!QImageReader(datei).read().isNull(), qPrintable(datei));
    }
}

void TestEinbau::dienstNenntDasProgramm_data()
{
    QTest::addColumn<bool>("imPraefix");
    QTest::addColumn<QString>("praefix");
    QTest::newRow("the system's") << false << u"/usr"_s;
    QTest::newRow("a folder of its own") << false << u"/opt/kalvaro"_s;
    QTest::newRow("a folder with a blank") << false << u"/opt/mit leer"_s;
    QTest::newRow("without DESTDIR") << true << u"/lokal"_s;
}

void TestEinbau::dienstNenntDasProgramm()
{
    QFETCH(bool, imPraefix);
    QFETCH(QString, praefix);
    const Einbau anderer(imPraefix ? Einbau::Art::Praefix : Einbau::Art::Ziel, praefix);
    const QString programm =
        (imPraefix ? anderer.ort(QString()) : praefix + u'/') + u"bin/kalvaro"_s;
    QCOMPARE(QString::fromUtf8(
                 dateiLesen(anderer.ort(u"share/dbus-1/services/de.kalvaro.kalvaro.service"_s))),
             u"[D-BUS Service]\nName=de.kalvaro.kalvaro\nExec=\"%1\" --dienst\n"_s.arg(programm));
}

void TestEinbau::starterGilt()
{
    KALVARO_BRAUCHT(u"desktop-file-validate"_s);
    const QString datei = einbau->ort(u"share/applications/de.kalvaro.kalvaro.desktop"_s);
    const Lauf lauf = ausfuehren(u"desktop-file-validate"_s, {datei});
    QVERIFY2(lauf.status == 0 && lauf.ausgabe.isEmpty(), qPrintable(lauf.ausgabe));
    const QString text = QString::fromUtf8(dateiLesen(datei));
    for (const QString &zeile :
         {u"Icon=de.kalvaro.kalvaro"_s, u"DBusActivatable=true"_s, u"StartupWMClass=kalvaro"_s,
          u"Actions=abgleichen;beenden;"_s, u"Name=Jetzt abgleichen"_s,
          u"Exec=kalvaro --abgleichen"_s, u"Name=kalvaro beenden"_s, u"Exec=kalvaro --beenden"_s}) {
        QVERIFY2(text.contains(u'\n' + zeile + u'\n'), qPrintable(zeile));
    }
}

void TestEinbau::katalogGilt()
{
    KALVARO_BRAUCHT(u"appstreamcli"_s);
    const Lauf lauf = ausfuehren(
        u"appstreamcli"_s, {u"validate"_s, u"--no-net"_s,
                            einbau->ort(u"share/metainfo/de.kalvaro.kalvaro.metainfo.xml"_s)});
    QVERIFY2(lauf.status == 0 && !lauf.ausgabe.contains(u"W:"_s), qPrintable(lauf.ausgabe));
}

void TestEinbau::handbuchseiteGilt()
{
    KALVARO_BRAUCHT(u"groff"_s);
    const Lauf lauf =
        ausfuehren(u"groff"_s, {u"-man"_s, u"-ww"_s, u"-z"_s, u"-Tutf8"_s, u"-K"_s, u"utf8"_s,
                                einbau->ort(u"share/man/man1/kalvaro.1"_s)});
    QVERIFY2(lauf.status == 0 && lauf.ausgabe.isEmpty(), qPrintable(lauf.ausgabe));
}

void TestEinbau::katalogKenntJedeFassung()
{
    const QString katalog = quelltext(u"packaging/de.kalvaro.kalvaro.metainfo.xml"_s);
    const QStringList fassungen = treffer(quelltext(u"CHANGELOG.md"_s), u"^## ([0-9.]+)"_s);
    QCOMPARE(treffer(katalog, u"<release version=\"([^\"]+)\""_s), fassungen);
    QCOMPARE(treffer(quelltext(u"packaging/debian/changelog"_s), u"^kalvaro \\(([^)]+)\\)"_s),
             fassungen);
    QCOMPARE(fassungen.value(0), VERSION);
}

void TestEinbau::katalogbilderSindDa()
{
    const QString katalog = quelltext(u"packaging/de.kalvaro.kalvaro.metainfo.xml"_s);
    const QStringList bilder = treffer(katalog, u"<image ([^<]+)</image>"_s);
    QVERIFY(!bilder.isEmpty());
    for (const QString &bild : bilder) {
        const QString name = bild.section(u'/', -1);
        const QSize groesse = QImageReader(quellen + u"/docs/bilder/"_s + name).size();
        const QString masse =
            u"width=\"%1\" height=\"%2\""_s.arg(groesse.width()).arg(groesse.height());
        QVERIFY2(bild.contains(masse), qPrintable(bild + u" is "_s + masse));
    }
}

void TestEinbau::symbolbilderZeigenDieZeichnung_data()
{
    QTest::addColumn<int>("seite");
    for (const int seite : {16, 22, 24, 32, 48, 64, 128, 256, 512}) {
        QTest::addRow("%d", seite) << seite;
    }
}

// tools/symbolbilder.sh draws them with another library, so edges differ by a shade.
void TestEinbau::symbolbilderZeigenDieZeichnung()
{
    QFETCH(int, seite);
    const QString ordner = u"share/icons/hicolor/"_s;
    const QString datei = einbau->ort(ordner + u"%1x%1/apps/de.kalvaro.kalvaro.png"_s.arg(seite));
    const QImage bild = gezeichnet(datei, seite);
    QCOMPARE(QImageReader(datei).size(), QSize(seite, seite));
    const QImage zeichnung =
        gezeichnet(einbau->ort(ordner + u"scalable/apps/de.kalvaro.kalvaro.svg"_s), seite);
    int andere = 0;
    for (int y = 0; y < seite; ++y) {
        for (int x = 0; x < seite; ++x) {
            const QRgb a = bild.pixel(x, y);
            const QRgb b = zeichnung.pixel(x, y);
            const int abstand =
                std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                          std::abs(qBlue(a) - qBlue(b)), std::abs(qAlpha(a) - qAlpha(b))});
            andere += abstand > 24 ? 1 : 0;
        }
    }
    QVERIFY2(andere <= seite * seite / 250, qPrintable(u"%1 pixels"_s.arg(andere)));
}

// Desktops put their own colour in place of each fill, so there is only one, and nothing is drawn
// by its outline.
void TestEinbau::einfarbigesSymbol()
{
    const QString datei =
        einbau->ort(u"share/icons/hicolor/symbolic/apps/de.kalvaro.kalvaro-symbolic.svg"_s);
    const QString text = QString::fromUtf8(dateiLesen(datei));
    QVERIFY(!text.contains(u"stroke"_s));
    QCOMPARE(treffer(text, u"fill=\"([^\"]+)\""_s), QStringList(u"#2e3436"_s));
    QVERIFY(!gezeichnet(datei, 16).isNull());
}

KALVARO_FENSTERTEST(TestEinbau)
#include "tst_einbau.moc"
