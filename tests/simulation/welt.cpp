#include "welt.h"

#include "doubles/buendel.h"
#include "doubles/ereignisse.h"
#include "doubles/stillstil.h"
#include "verlauf.h"

#include <QApplication>
#include <QDialog>
#include <QLayout>
#include <QMessageBox>
#include <QTemporaryDir>

#include <array>

namespace kalvaro {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// Nothing moves, nothing is drawn and nothing gets its place: windows are open without ever getting
// to a screen. Layouts alone would be most of what a history costs.
class Unsichtbar final : public Stillstil
{
public:
    using Stillstil::polish;
    void polish(QWidget *widget) override
    {
        if (widget->isWindow()) {
            widget->setAttribute(Qt::WA_DontShowOnScreen);
            widget->setUpdatesEnabled(false);
        }
        if (widget->layout() != nullptr) {
            widget->layout()->setEnabled(false);
        }
        Stillstil::polish(widget);
    }
};

class OhneLayout final : public QObject
{
public:
    using QObject::QObject;
    bool eventFilter(QObject *, QEvent *event) override
    {
        return event->type() == QEvent::LayoutRequest;
    }
};

// One folder of applications for all worlds: they only read it.
const QString &programmordner()
{
    static const Programmordner ordner({u"7.1.4"_s});
    static const QString pfad = ordner.pfad();
    return pfad;
}

const Konto &konto()
{
    static const Konto eines{u"Mein Mac"_s, u"mac1"_s, u"geheim"_s, Simulationsnetz::adressen()};
    return eines;
}

} // namespace

class Simulationsprozesse::Frage final : public Einmalruf<qsizetype>
{
public:
    Frage(QObject *besitzer, Zahlruf fertig, int &offene)
        : Einmalruf(besitzer, std::move(fertig))
        , offene_(offene)
    {
        ++offene_;
    }
    ~Frage() override { --offene_; }

    Weckruf verzug;

private:
    int &offene_;
};

void Simulationsprozesse::anzahl(const QString &name, QObject *besitzer, Zahlruf fertig) const
{
    static constexpr std::array<Sekunden, 6> verzuege{0s, 0s, 0s, 10ms, 1s, spaeteste};
    auto *const frage = new Frage(besitzer, std::move(fertig), offene_);
    const qsizetype anzahl = name == u"rekordbox" ? haupt : agent;
    const Sekunden verzug = puenktlich ? 0s : verzuege.at(zufall_() % verzuege.size());
    if (verzug == 0s) {
        frage->antworten(anzahl);
    } else {
        frage->verzug = uhr_.nach(verzug, [frage, anzahl] { frage->antworten(anzahl); });
    }
}

QStringList Simulationsprozesse::buendel() const
{
    static const QStringList einziges{u"/Applications/rekordbox 7/rekordbox.app"_s};
    return offen ? einziges : QStringList();
}

void Simulationsplatz::starten(const QString &, QObject *besitzer,
                               std::function<void(Fehler)> fertig)
{
    vorStart();
    start = new Einmalruf<Fehler>(besitzer, std::move(fertig));
}

void Simulationsplatz::starten(const Fehler &ausgang)
{
    std::exchange(start, nullptr)->antworten(ausgang);
}

void Welt::vorbereiten()
{
    // A data folder that cannot be written: settings live as long as the program, and millions of
    // lines of a log that nobody reads are never written.
    qputenv("XDG_DATA_HOME", "/dev/null");
    QApplication::setStyle(new Unsichtbar);
    qApp->installEventFilter(new OhneLayout(qApp));
}

Welt::Welt()
    : rekordbox(prozesse, programmordner())
{
    platz.vorStart = [this] {
        gesetze.startErbeten();
        gesetze.rekordboxGeaendert();
    };
}

Welt::~Welt()
{
    steuerung.reset();
    ablauf.reset();
    // Alerts about a start from a window that had hidden by then stand alone until somebody reads
    // them.
    const auto uebrige = QApplication::topLevelWidgets();
    for (QWidget *const eines : uebrige) {
        delete qobject_cast<QMessageBox *>(eines);
    }
}

void Welt::beginnen(int wie)
{
    if (ablauf) {
        return;
    }
    enum { Normal, OhneAutostart, Offen, Agent };
    const bool mitFenster = wie % 2 == 1;
    const int lage = wie / 2;
    rekordboxSetzen(lage == Offen ? 1 : 0, lage >= Offen ? 1 : 0, lage == Offen);
    ablauf = std::make_unique<Ablauf>(konto(), Umgebung{uhr, netz, prozesse, rekordbox, platz,
                                                        anmeldestart, mitteilungen, statusobjekt});
    ablauf->einst.autostart = lage != OhneAutostart;
    gesetze.ablaufBeobachten();
    steuerung = std::make_unique<Steuerung>(
        *ablauf, !mitFenster, [this](Hauptfenster &neu) { gesetze.fensterBeobachten(neu); });
}

Welt::Bilanz &Welt::Bilanz::operator+=(const Bilanz &weitere)
{
    abgleiche += weitere.abgleiche;
    starts += weitere.starts;
    countdowns += weitere.countdowns;
    versprechen += weitere.versprechen;
    return *this;
}

Welt::Bilanz Welt::bilanz() const
{
    return {gesetze.verstoss(), ablauf->abgleicher.laeufe(), gesetze.starts(), gesetze.countdowns(),
            gesetze.gegeben()};
}

void Welt::geschehen(int nummer)
{
    const Ereignis &ereignis = alleEreignisse().at(static_cast<size_t>(nummer));
    (this->*ereignis.tat)(ereignis.wert);
    postAbarbeiten();
    gesetze.pruefen();
}

Welt::Bilanz Welt::durchlaufen(const Verlauf &verlauf, QStringList *mitschrift)
{
    Welt welt;
    if (verlauf.empty() || verlauf.front() >= beginne) {
        welt.beginnen(0);
    }
    for (size_t i = 0; i < verlauf.size() && !welt.gesetze.verstoss(); ++i) {
        welt.geschehen(verlauf[i]);
        if (mitschrift != nullptr) {
            mitschrift->append(alsZeilen({verlauf[i]}).first() + u"   # "_s + welt.lage());
        }
    }
    if (!welt.gesetze.verstoss()) {
        welt.zurRuhe();
        if (mitschrift != nullptr) {
            mitschrift->append(u"# at rest: "_s + welt.lage());
        }
    }
    return welt.bilanz();
}

// Everything is closed, answered and waited for.
void Welt::zurRuhe()
{
    constexpr int runden = 3; // what was open may start rekordbox once more
    netz.laune(Ausgang::Aktuell);
    prozesse.puenktlich = true;
    for (int i = 0; i < 3; ++i) {
        netz.server(i, Simulationsnetz::Server::Lebt);
    }
    hinweisSchliessen(0);
    if (QDialog *const blatt = einstellungen()) {
        blatt->reject();
    }
    for (int i = 0; i < runden; ++i) {
        while (netz.haengend() > 0) {
            netz.antworten(Ausgang::Aktuell, 0);
            postAbarbeiten();
        }
        if (platz.startUnterwegs()) {
            rekordboxKommt(0);
        }
        rekordboxSetzen(0, 0, false);
        uhr.vor(Sekunden(100));
        gesetze.pruefen();
    }
    if (gesetze.versprochen()) {
        uhr.vor(Sekunden(605));
        gesetze.pruefen();
    }
    // The queue takes another one.
    const int laeufe = ablauf->abgleicher.laeufe();
    menue(1);
    postAbarbeiten();
    gesetze.ruhePruefen(ablauf->abgleicher.laeufe() == laeufe + 1);
}

QString Welt::lage() const
{
    const char *const rb = platz.startUnterwegs() ? "being started"
                           : prozesse.haupt > 0   ? "open"
                           : prozesse.agent > 0   ? "saving"
                                                  : "closed";
    const char *const blatt = einstellungen() != nullptr ? ", settings" : "";
    const char *const fenster = steuerung->fensterSichtbar() ? "open" : "hidden";
    return u"%1 s, rekordbox %2, window %3%4, %5 requests hang, %8 counts, %6 syncs so far%7"_s
        .arg(std::chrono::duration_cast<std::chrono::seconds>(uhr.laufzeit()).count())
        .arg(QLatin1StringView(rb), QLatin1StringView(fenster), QLatin1StringView(blatt))
        .arg(netz.haengend())
        .arg(ablauf->abgleicher.laeufe())
        .arg(ablauf->abgleicher.laeuftGerade() ? u", one runs"_s : QString())
        .arg(prozesse.offene());
}

} // namespace kalvaro
