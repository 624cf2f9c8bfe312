#include "buehne.h"
#include "szenen.h"

#include "ablauf/ablauf.h"
#include "doubles/ereignisse.h"
#include "doubles/testumgebung.h"
#include "settingswindow/antworten.h"
#include "settingswindow/baumansicht.h"
#include "settingswindow/einstellungenfenster.h"
#include "settingswindow/playlistenmodell.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QComboBox>
#include <QLineEdit>
#include <QTest>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

QJsonArray playlisten()
{
    const auto benannt = [](const QString &name, int titel, int seq) {
        return QJsonObject{{u"name"_s, name}, {u"titel"_s, titel}, {u"seq"_s, seq}};
    };
    QJsonArray liste{ordner(u"1"_s, u""_s, benannt(u"Sets 2026"_s, 0, 1)),
                     eintrag(u"2"_s, u"1"_s, benannt(u"Warm-up"_s, 124, 1)),
                     eintrag(u"3"_s, u"1"_s, benannt(u"Peak Time"_s, 1208, 2)),
                     ordner(u"4"_s, u""_s, benannt(u"Genres"_s, 0, 2)),
                     eintrag(u"5"_s, u"4"_s, benannt(u"House"_s, 2341, 1)),
                     eintrag(u"6"_s, u"4"_s, benannt(u"Techno"_s, 987, 2))};
    for (int i = 7; i < 18; ++i) {
        liste.append(eintrag(QString::number(i), u""_s, benannt(u"Woche %1"_s.arg(i), i, i)));
    }
    return liste;
}

// A sheet with a server that answers with `playlisten`, and to a choice with `auswahl`; without an
// answer it hangs.
struct Blatt : Testumgebung
{
    using Antwort = std::optional<Transport::Ergebnis>;

    explicit Blatt(const Antwort &playlisten, const Antwort &auswahl = {},
                   const QStringList &versionen = {u"7.1.4"_s, u"6.8.5"_s})
        : Testumgebung(versionen)
        , ablauf(konto, umgebung)
        , blatt({ablauf.zentrale, ablauf.einst, anmeldestart, rekordbox.installationen(),
                 u"scharf"_s},
                nullptr)
    {
        netz.nach([playlisten, auswahl](const Netzanfrage &anfrage) -> Antwort {
            const QString weg = anfrage.url.path();
            return weg == u"/api/playlisten"_s      ? playlisten
                   : weg == u"/api/einstellungen"_s ? auswahl
                                                    : Scripttransport::antwort(200, "{}");
        });
        blatt.show();
        blatt.activateWindow();
        (void)QTest::qWaitForWindowActive(&blatt);
        blatt.laden();
        ereignisseAbarbeiten();
    }

    template<typename T>
    [[nodiscard]] T *teil(const QString &name) const
    {
        return blatt.findChild<T *>(name);
    }
    [[nodiscard]] Baumansicht *baum() const { return teil<Baumansicht>(u"baum"_s); }

    [[nodiscard]] QImage bild()
    {
        ereignisseAbarbeiten();
        return blatt.grab().toImage();
    }

    Ablauf ablauf;
    EinstellungenFenster blatt;
};

Transport::Ergebnis geladen()
{
    return Scripttransport::antwort(200,
                                    alsText(antwort(playlisten(), {u"u2"_s, u"u5"_s, u"u9"_s})));
}

// The sheet from the search field on.
QImage unten(Blatt &b)
{
    const QImage ganz = b.bild();
    const QWidget *const feld = b.teil<QWidget>(u"suchfeld"_s);
    const int ab = qRound((feld->mapTo(&b.blatt, QPoint()).y() - 8) * ganz.devicePixelRatio());
    return ganz.copy(0, ab, ganz.width(), ganz.height() - ab);
}

QImage offen()
{
    Blatt b(geladen());
    b.teil<QAbstractButton>(u"cbAuto"_s)->setChecked(true);
    b.baum()->expand(b.baum()->modell().zuStelle(0));
    return b.bild();
}

QImage gefiltert(const QString &suchwort)
{
    Blatt b(geladen());
    auto *const feld = b.teil<QLineEdit>(u"suchfeld"_s);
    feld->setFocus(Qt::TabFocusReason);
    QTest::keyClicks(feld, suchwort);
    return unten(b);
}

QImage sichern(const Blatt::Antwort &antwort)
{
    Blatt b(geladen(), antwort);
    b.baum()->modell().setData(b.baum()->modell().zuStelle(0), Qt::Checked, Qt::CheckStateRole);
    b.teil<QAbstractButton>(u"knSichern"_s)->click();
    return unten(b);
}

QImage zustaende()
{
    Bogen bogen;
    Blatt stumm({});
    bogen.dazu(u"lädt"_s, unten(stumm));
    Blatt weg(Scripttransport::fehler(u"Der Server wurde nicht gefunden."_s));
    bogen.dazu(u"nicht geladen"_s, unten(weg));
    bogen.dazu(u"gefiltert"_s, gefiltert(u"woche"_s));
    bogen.dazu(u"nichts gefunden"_s, gefiltert(u"xyz"_s));
    bogen.dazu(u"sichert"_s, sichern({}));
    bogen.dazu(u"nicht gesichert"_s, sichern(Scripttransport::fehler(u"Verbindung weg."_s)));
    return bogen.bild();
}

// A long name is cut in the field and whole in the list.
QImage versionen()
{
    Blatt b(
        geladen(), {},
        {u"7.1.4"_s, u"7.1.4-beta-mit-einem-sehr-langen-Namen-und-noch-mehr-davon"_s, u"6.8.5"_s});
    auto *const auswahl = b.teil<QComboBox>(u"popVersion"_s);
    const int hoehe = auswahl->mapTo(&b.blatt, auswahl->rect().bottomLeft()).y() + 8;
    Bogen bogen;
    for (const auto &[name, stelle] : {std::pair{u"neueste"_s, 0}, {u"gewählt"_s, 1}}) {
        auswahl->setCurrentIndex(stelle);
        ereignisseAbarbeiten();
        bogen.dazu(name, b.blatt.grab(QRect(0, 0, b.blatt.width(), hoehe)).toImage());
    }
    auswahl->showPopup();
    ereignisseAbarbeiten();
    bogen.dazu(u"offen"_s, auswahl->view()->window()->grab().toImage());
    auswahl->hidePopup();
    return bogen.bild();
}

QImage gesperrt()
{
    Blatt b(geladen(), {}, {});
    b.baum()->modell().setData(b.baum()->modell().zuStelle(0), Qt::Checked, Qt::CheckStateRole);
    b.teil<QAbstractButton>(u"knSichern"_s)->click();
    return b.bild();
}

QImage tasten()
{
    Blatt b(geladen());
    b.baum()->setCurrentIndex(b.baum()->modell().zuStelle(1));
    return tastenrunde(b.blatt);
}

} // namespace

QList<Szene> blattszenen()
{
    return {{u"blatt-offen"_s, offen, alles | Ansicht::Riesig | Ansicht::Krumm},
            {u"blatt-versionen"_s, versionen, farben | anordnung},
            {u"blatt-gesperrt"_s, gesperrt, farben},
            {u"blatt-zustaende"_s, zustaende, farben},
            {u"blatt-tasten"_s, tasten, farben | anordnung}};
}

} // namespace kalvaro
