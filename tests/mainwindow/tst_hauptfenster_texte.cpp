#include "assessment/bewerten.h"
#include "doubles/testschirme.h"
#include "mainwindow/fensterwelt.h"
#include "testlauf.h"
#include "ui/beschriftung.h"
#include "ui/erscheinung.h"
#include "ui/knoepfe.h"
#include "ui/rad.h"
#include "ui/schrift.h"
#include "ui/symbole.h"
#include "ui/tabellenzahl.h"

#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QFontDatabase>
#include <QJsonDocument>
#include <QRegularExpression>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

// Every text that the window may show by itself.
const QStringList erlaubt{
    u"kalvaro"_s,
    u"kalvaro-Symbol"_s,
    u"rekordbox-Bibliothek · Studio-Mac"_s,
    u"Neue Version \\S+ verfügbar"_s,
    u"Herunterladen"_s,
    u"Verbinde mit der Cloud …"_s,
    u"Einen Moment(  \\(\\d+ s\\))?"_s,
    u"Bibliothek wird abgeglichen …"_s,
    u"Änderungen werden übertragen …"_s,
    u"kalvaro vergleicht diesen Mac mit der Cloud(  \\(\\d+ s\\))?"_s,
    u"Letzter Blick in die Cloud …"_s,
    u"kalvaro prüft, ob seit dem Abgleich etwas dazukam(  \\(\\d+ s\\))?"_s,
    u"Vorgang läuft"_s,
    u"rekordbox läuft"_s,
    u"Nach dem Beenden überträgt kalvaro deine Änderungen automatisch\\."_s,
    u"Probebetrieb"_s,
    u"Aktiv"_s,
    u"Titel"_s,
    u"Playlisten"_s,
    u"Hot Cues"_s,
    u"Musik"_s,
    u"–|[\\d.]+|[\\d.,]+ GB"_s,
    u"(Titel|Playlisten|Hot Cues|Musik): (–|[\\d.]+|[\\d.,]+ GB)"_s,
    u"(Analysiert: \\S+ Titel   ·   Analysedaten: (–|\\S+ GB)   ·   )?"
    "Frei auf dem Mac: (–|\\S+ GB)"_s,
    u"Stand der Cloud: (heute|gestern) [\\d:]+   ·   geprüft heute [\\d:]+"_s,
    u"Keine Verbindung zur Cloud – Zahlen folgen beim nächsten Abgleich\\."_s,
    u"rekordbox (\\S+ starten|nicht gefunden|läuft|starten)"_s,
    u"rekordbox startet in \\d s  ·"_s,
    u"Abbrechen"_s,
    u"rekordbox beim Öffnen automatisch starten\\s"
    "\\(5 Sekunden, nachdem der Abgleich fertig ist\\)"_s,
    u"Einstellungen …"_s,
    u"Jetzt abgleichen"_s,
    u"Version 1\\.4"_s,
    u"Über kalvaro|kalvaro ausblenden|kalvaro beenden|Im Dock ablegen|Schließen"_s,
};

// The outcomes with the longest texts of each kind.
const QList<Transport::Ergebnis> &ergebnisse()
{
    const auto mit = [](const QString &zustand, const QJsonObject &ergebnis = {}) {
        QJsonObject mehr = angebot(u"1.10"_s);
        mehr.insert(u"betrieb"_s, u"schatten"_s);
        mehr.insert(u"ergebnis"_s, ergebnis);
        return Fensterwelt::antwort(zustand, mehr);
    };
    const QJsonObject drei{{u"djmdContent"_s, 3}};
    static const QList<Transport::Ergebnis> alle{
        Fensterwelt::gut(angebot(u"1.10"_s)),
        mit(u"schatten"_s, {{u"aendert_geraet"_s, drei}, {u"aendert_zentrale"_s, drei}}),
        mit(u"nicht_erreichbar"_s),
        mit(u"angehalten"_s),
        mit(u"rekordbox_offen"_s),
        abgleichAntwort(u"verschoben"_s), // without figures
    };
    return alle;
}

bool istErlaubt(const QString &inhalt)
{
    static const QStringList vomServer = [] {
        QStringList texte;
        for (const Transport::Ergebnis &antwort : ergebnisse()) {
            const Bewertung b = antwortBewerten(QJsonDocument::fromJson(antwort->daten).object());
            texte << b.titel << b.detail << b.titel + u". "_s + b.detail;
        }
        return texte;
    }();
    static const QRegularExpression muster(u"^(?:%1)$"_s.arg(erlaubt.join(u'|')));
    // The status card says headline and detail in one.
    static const QRegularExpression grenze(u"(?<=…) |\\. "_s);
    const QStringList teile = inhalt.split(grenze);
    const bool zweiteilig =
        teile.size() == 2 && muster.match(teile[0]).hasMatch() && muster.match(teile[1]).hasMatch();
    return inhalt.isEmpty() || vomServer.contains(inhalt) || zweiteilig ||
           muster.match(inhalt).hasMatch();
}

QString nameVon(QWidget *widget)
{
    return QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name);
}

bool istBedienbar(const QWidget *widget)
{
    return qobject_cast<const QAbstractButton *>(widget) != nullptr ||
           (widget->focusPolicy() & Qt::TabFocus) != 0;
}

// What is wrong with the widget; empty when nothing is.
QString mangel(QWidget *widget)
{
    const bool bild = qobject_cast<Zeichen *>(widget) || qobject_cast<Rad *>(widget);
    auto *const label = qobject_cast<Beschriftung *>(widget);
    auto *const knopf = qobject_cast<QAbstractButton *>(widget);
    const bool leer = label != nullptr && label->text().isEmpty();
    if ((bild || label || istBedienbar(widget)) && !leer && nameVon(widget).isEmpty()) {
        return u"has no accessible name"_s;
    }
    if (knopf != nullptr && (knopf->width() < knopf->sizeHint().width() ||
                             knopf->height() < knopf->sizeHint().height())) {
        return u"is too small for its text"_s;
    }
    if (const auto *const zahl = qobject_cast<Tabellenzahl *>(widget)) {
        return zahl->passend() > 0.5 ? QString() : u"is cut"_s;
    }
    if (label != nullptr && !leer) {
        const int noetig = label->hasHeightForWidth() ? label->heightForWidth(label->width())
                                                      : label->sizeHint().height();
        if (!label->toolTip().isEmpty() || label->height() < noetig) {
            return u"is cut"_s;
        }
    }
    return {};
}

} // namespace

class TestHauptfensterTexte final : public QObject
{
    Q_OBJECT

public:
    static void vorDerAnwendung() { schirmeEinrichten({{2560, 1440}}); }

private Q_SLOTS:
    void init() { daten.leeren(); }
    void cleanup() { QApplication::setFont(grundschrift); }

    void allesPasstUndHeisst_data();
    void allesPasstUndHeisst();
    void allesIstDeutsch();

private:
    // Every state in turn.
    static void durchAlleZustaende(Fensterwelt &p, const std::function<void()> &pruefen);
    static void pruefen(const Fensterwelt &p);

    Datenordner &daten = Testumgebung::ordner();
    const QFont grundschrift = QApplication::font();
};

void TestHauptfensterTexte::durchAlleZustaende(Fensterwelt &p, const std::function<void()> &pruefen)
{
    const auto jetzt = [&] {
        Fensterwelt::ruhe();
        pruefen();
    };
    p.fenster->oeffnen(false);
    jetzt();
    p.rekordboxGestartet();
    p.rekordboxBeendet();
    p.uhr.vor(Sekunden(10));
    jetzt();
    for (const Transport::Ergebnis &antwort : ergebnisse()) {
        p.abgeglichen(antwort);
        jetzt();
    }
    p.stand = std::nullopt;
    QTest::keyClick(p.fenster.get(), Qt::Key_Return);
    p.uhr.vor(Sekunden(3));
    jetzt();
    p.rekordboxGestartet();
    jetzt();
}

void TestHauptfensterTexte::pruefen(const Fensterwelt &p)
{
    QWidget *const ganz = p.teil(u"ganz"_s);
    QList<QWidget *> blaetter;
    const auto alle = ganz->findChildren<QWidget *>();
    for (QWidget *widget : alle) {
        if (!widget->isVisibleTo(ganz)) {
            continue;
        }
        const QString wer = widget->objectName() + u" \""_s + nameVon(widget) + u"\" "_s;
        const QString was = mangel(widget);
        QVERIFY2(was.isEmpty(), qPrintable(wer + was));
        const QRect ort(widget->mapTo(ganz, QPoint()), widget->size());
        QVERIFY2(ganz->rect().contains(ort), qPrintable(wer + u"leaves the window"_s));
        if (widget->findChildren<QWidget *>().isEmpty()) {
            for (const QWidget *anderes : std::as_const(blaetter)) {
                const QRect dort(anderes->mapTo(ganz, QPoint()), anderes->size());
                QVERIFY2(!ort.intersects(dort),
                         qPrintable(wer + u"overlaps "_s + anderes->objectName()));
            }
            blaetter.append(widget);
        }
    }
    QVERIFY(blaetter.size() > 15);
    QCOMPARE(ganz->width(), mass(520));
}

void TestHauptfensterTexte::allesPasstUndHeisst_data()
{
    QTest::addColumn<QString>("schrift");
    QTest::addColumn<double>("faktor");
    for (const QString &schrift : {u"Inter"_s, u"DejaVu Sans"_s}) {
        for (const double faktor : {1.0, 1.3, 2.0}) {
            QTest::addRow("%s at %g", qPrintable(schrift), faktor) << schrift << faktor;
        }
    }
}

void TestHauptfensterTexte::allesPasstUndHeisst()
{
    QFETCH(QString, schrift);
    QFETCH(double, faktor);
    if (!QFontDatabase::families().contains(schrift)) {
        QSKIP("This font is not installed");
    }
    QFont groesser(schrift);
    groesser.setPixelSize(qRound(13 * faktor));
    QApplication::setFont(groesser);
    Fensterwelt p({.autostart = true});
    durchAlleZustaende(p, [&] { pruefen(p); });
}

void TestHauptfensterTexte::allesIstDeutsch()
{
    Fensterwelt p({.autostart = true});
    durchAlleZustaende(p, [&] {
        QStringList texte{p.fenster->windowTitle(), p.fenster->accessibleName()};
        const auto alle = p.fenster->findChildren<QWidget *>();
        for (QWidget *widget : alle) {
            texte << nameVon(widget) << widget->accessibleDescription() << widget->windowTitle();
            if (const auto *const label = qobject_cast<QLabel *>(widget)) {
                texte << label->text();
            }
            if (const auto *const knopf = qobject_cast<QAbstractButton *>(widget)) {
                texte << knopf->text();
            }
        }
        const auto aktionen = p.fenster->actions();
        for (const QAction *aktion : aktionen) {
            texte << aktion->text();
        }
        for (const QString &inhalt : std::as_const(texte)) {
            QVERIFY2(istErlaubt(inhalt), qPrintable(inhalt));
        }
    });
}

KALVARO_FENSTERTEST(TestHauptfensterTexte)
#include "tst_hauptfenster_texte.moc"
