// How the main window is built.

#include "mainwindow/hauptfenster.h"

#include "ablauf/ablauf.h"
#include "foundation/konstanten.h"
#include "mainwindow/countdown.h"
#include "mainwindow/fensterzugang.h"
#include "mainwindow/statuskarte.h"
#include "mainwindow/updatekarte.h"
#include "mainwindow/zahlenkarte.h"
#include "platform/arbeitsplatz.h"
#include "ui/beschriftung.h"
#include "ui/eingabe.h"
#include "ui/karte.h"
#include "ui/knoepfe.h"
#include "ui/schrift.h"
#include "ui/stapel.h"
#include "ui/symbole.h"

#include <QAction>
#include <QBoxLayout>
#include <QKeyEvent>
#include <QMenuBar>
#include <QPainter>
#include <QScrollArea>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr int kopfsymbol = 48;

// Shows the program's icon without the margin that its drawing has, so that it lines up with the
// cards.
class Programmzeichen final : public QWidget
{
public:
    Programmzeichen()
    {
        setFixedSize(mass(kopfsymbol), mass(kopfsymbol));
        setAccessibleName(u"kalvaro-Symbol"_s);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        const int rand = mass(3);
        QPainter maler(this);
        programmsymbol().paint(&maler, rect().adjusted(-rand, -rand, rand, rand));
    }
};

} // namespace

void Hauptfenster::aufbauen()
{
    fensterzugangAnmelden();
    setWindowTitle(u"kalvaro"_s);
    setWindowIcon(programmsymbol());
    setObjectName(u"hauptfenster"_s);
    setAccessibleName(u"kalvaro"_s);

    ganz_ = new Grund;
    ganz_->setObjectName(u"ganz"_s);
    karteUpdate_ = new Updatekarte;
    karteStatus_ = new Statuskarte(ablauf_.umgebung.uhr);
    karteZahlen_ = new Zahlenkarte;
    auto *const teile = new QVBoxLayout;
    teile->setContentsMargins(Verweis::ringplatz, 0, Verweis::ringplatz, 0);
    teile->setSpacing(14);
    for (QWidget *teil :
         {kopfzeile(), static_cast<QWidget *>(karteUpdate_), static_cast<QWidget *>(karteStatus_),
          static_cast<QWidget *>(karteZahlen_), startbereich()}) {
        teile->addWidget(teil);
    }
    auto *const reihe = new QVBoxLayout(ganz_);
    reihe->setContentsMargins(24 - Verweis::ringplatz, 20, 24 - Verweis::ringplatz, 16);
    reihe->setSpacing(14);
    reihe->addLayout(teile);
    reihe->addWidget(fusszeile());
    reihe->addStretch();
    connect(karteUpdate_, &Updatekarte::gedrueckt, this, [this](const QString &adresse) {
        if (const auto url = updateUrl(adresse)) {
            ablauf_.umgebung.arbeitsplatz.oeffnen(*url);
        }
    });

    rollbereich_ = new QScrollArea;
    rollbereich_->setFrameShape(QFrame::NoFrame);
    rollbereich_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    rollbereich_->setWidgetResizable(true);
    rollbereich_->setFocusPolicy(Qt::NoFocus);
    rollbereich_->setWidget(ganz_);
    auto *const rahmen = new QVBoxLayout(this);
    rahmen->setContentsMargins(0, 0, 0, 0);
    rahmen->addWidget(rollbereich_);

    ganz_->installEventFilter(this);
    new Eingabe(*this, *knStart_);
    aktionenAnlegen();
    karteStatus_->laden(u"Verbinde mit der Cloud …"_s, u"Einen Moment"_s);
    knStart_->setFocus();
    groesseAnpassen();
}

QWidget *Hauptfenster::kopfzeile() const
{
    Beschriftung *const name = beschriftung(u"kalvaro"_s, 26, QFont::Bold);
    Beschriftung *const zeile =
        beschriftung(u"rekordbox-Bibliothek · "_s + ablauf_.zentrale.konto().name, 12.5,
                     QFont::Normal, Farbe::sekundaer);
    zeile->setObjectName(u"lblKonto"_s);
    QWidget *const texte = stapel({name, zeile}, Qt::Vertical, 0);
    QWidget *const kopf = stapel({new Programmzeichen, texte}, Qt::Horizontal, 12);
    static_cast<QBoxLayout *>(kopf->layout())->setStretch(1, 1);
    return kopf;
}

QWidget *Hauptfenster::startbereich()
{
    knStart_ = new Startknopf(u"rekordbox starten"_s);
    knStart_->setObjectName(u"knStart"_s);
    connect(knStart_, &QPushButton::clicked, this, &Hauptfenster::rekordboxStarten);

    countdown_ = new Countdown(ablauf_.umgebung.uhr);
    connect(countdown_, &Countdown::gibtFokusAb, this, [this](bool mitTasten) {
        setFocus();
        if (!mitTasten) {
            fokusZumStartknopf();
        }
    });
    connect(countdown_, &Countdown::abgelaufen, this, [this](const QString &art) {
        if (art == u"start"_s) {
            rekordboxStarten();
        }
    });

    cbAuto_ = new Haken(u"rekordbox beim Öffnen automatisch starten\n"
                        "(5 Sekunden, nachdem der Abgleich fertig ist)"_s);
    cbAuto_->setObjectName(u"cbAuto"_s);
    cbAuto_->setChecked(ablauf_.einst.autostart);
    connect(cbAuto_, &QCheckBox::clicked, this, &Hauptfenster::autoGeaendert);

    return stapel({knStart_, countdown_, cbAuto_}, Qt::Vertical, 10);
}

QWidget *Hauptfenster::fusszeile()
{
    Verweis *const lnkEinstellungen =
        verweis(u"Einstellungen …"_s, this, [this] { einstellungenOeffnen(); });
    lnkEinstellungen->setObjectName(u"lnkEinstellungen"_s);
    lnkAbgleich_ =
        verweis(u"Jetzt abgleichen"_s, this, [this] { abgleichen(Anlass::Hand, false); });
    lnkAbgleich_->setObjectName(u"lnkAbgleich"_s);
    Beschriftung *const version =
        beschriftung(u"Version "_s + VERSION, 11, QFont::Normal, Farbe::tertiaer);
    version->setObjectName(u"lblVersion"_s);

    auto *const zeile = new QWidget;
    auto *const layout = new QHBoxLayout(zeile);
    layout->setContentsMargins(0, 2, 0, 0);
    layout->setSpacing(22 - 2 * Verweis::ringplatz);
    layout->addWidget(lnkEinstellungen);
    layout->addWidget(lnkAbgleich_);
    layout->addStretch();
    layout->addWidget(version);
    layout->addSpacing(Verweis::ringplatz); // margins would not be mirrored
    return zeile;
}

void Hauptfenster::aktionenAnlegen()
{
    const auto anlegen = [this](const QString &titel, const QKeySequence &taste, auto &&tat) {
        auto *const aktion = new QAction(titel, this);
        aktion->setShortcut(taste);
        connect(aktion, &QAction::triggered, this, tat);
        addAction(aktion);
        return aktion;
    };
    aktionen_.ueber = anlegen(u"Über kalvaro"_s, {}, [this] { Q_EMIT ueberGewuenscht(); });
    const bool bleibt = verbleib_ == Verbleib::Menueleiste;
    aktionen_.ausblenden = anlegen(u"kalvaro ausblenden"_s, Qt::CTRL | Qt::Key_H,
                                   [this, bleibt] { bleibt ? verstecken() : showMinimized(); });
    aktionen_.beenden = anlegen(u"kalvaro beenden"_s, Qt::CTRL | Qt::Key_Q, [this, bleibt] {
        if (bleibt) {
            Q_EMIT beendenGewuenscht();
        } else {
            close();
        }
    });
    aktionen_.ablegen =
        anlegen(u"Im Dock ablegen"_s, Qt::CTRL | Qt::Key_M, [this] { showMinimized(); });
    aktionen_.schliessen = anlegen(u"Schließen"_s, Qt::CTRL | Qt::Key_W,
                                   [this, bleibt] { bleibt ? verstecken() : (void)close(); });
}

void Hauptfenster::menueleisteSetzen(QMenuBar *leiste)
{
    layout()->setMenuBar(leiste);
    groesseAnpassen();
}

void Hauptfenster::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Escape:
        countdownStoppen();
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

bool Hauptfenster::eventFilter(QObject *objekt, QEvent *event)
{
    if (objekt == ganz_ && event->type() == QEvent::LayoutRequest) {
        groesseAnpassen();
    }
    return QWidget::eventFilter(objekt, event);
}

} // namespace kalvaro
