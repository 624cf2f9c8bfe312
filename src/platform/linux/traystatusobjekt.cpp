#include "platform/linux/traystatusobjekt.h"

#include <QApplication>
#include <QCursor>
#include <QEvent>
#include <QMenu>
#include <QSystemTrayIcon>
#include <QTextDocument>

#include <algorithm>
#include <utility>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype hinweisLaenge = 500; // characters; a tool tip, and a message on the bus

// Desktops whose panel is dark whatever the colours of the windows.
bool immerDunkleLeiste()
{
    const QStringList namen =
        qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':', Qt::SkipEmptyParts);
    return std::any_of(namen.begin(), namen.end(), [](const QString &name) {
        return name == u"GNOME" || name == u"Unity" || name == u"Pantheon";
    });
}

} // namespace

TrayStatusobjekt::TrayStatusobjekt(Uhr &uhr, const QDBusConnection &sitzung)
    : eintrag_(sitzung, [this] { menueZeigen(); })
    , wache_(uhr, sitzung, xembed_, [this](auto art) { platzGewechselt(art); })
{
    qApp->installEventFilter(this);
}

TrayStatusobjekt::~TrayStatusobjekt() = default;

void TrayStatusobjekt::symbolSetzen(const QString &name)
{
    symbol_ = name;
    symbolZeichnen();
}

void TrayStatusobjekt::hinweisSetzen(const QString &hinweis)
{
    hinweis_ = hinweis.left(hinweisLaenge);
    if (!hinweis_.isEmpty() && hinweis_.back().isHighSurrogate()) {
        hinweis_.chop(1);
    }
    hinweisZeigen();
}

void TrayStatusobjekt::menueSetzen(QMenu *menue)
{
    menue_ = menue;
    eintrag_.menueSetzen(menue_);
    if (zeichen_) {
        zeichen_->setContextMenu(menue_);
    }
}

bool TrayStatusobjekt::eventFilter(QObject *objekt, QEvent *ereignis)
{
    if (objekt == qApp && ereignis->type() == QEvent::ApplicationPaletteChange) {
        symbolZeichnen();
    }
    return QObject::eventFilter(objekt, ereignis);
}

// A tray counts from the moment it is there: the item may follow a little later.
bool TrayStatusobjekt::erreichbar() const
{
    return art_.has_value() || xembed_.vorhanden();
}

void TrayStatusobjekt::beiWechsel(std::function<void()> gewechselt)
{
    gewechselt_ = std::move(gewechselt);
}

void TrayStatusobjekt::platzGewechselt(std::optional<Trayart> art)
{
    art_ = art;
    angemeldet_ = angemeldet_ && art_ == Trayart::StatusNotifier;
    if (art_ == Trayart::XEmbed) {
        einbetten();
    } else {
        zeichen_.reset();
    }
    symbolZeichnen(); // another panel, another colour
    if (gewechselt_) {
        gewechselt_();
    }
}

void TrayStatusobjekt::einbetten()
{
    if (zeichen_) {
        return;
    }
    zeichen_ = std::make_unique<QSystemTrayIcon>();
    connect(zeichen_.get(), &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason grund) {
                if (grund == QSystemTrayIcon::Trigger) {
                    menueZeigen();
                }
            });
    zeichen_->setContextMenu(menue_);
    hinweisZeigen();
}

// Nothing appears before it has a symbol: picture mode never sets one.
void TrayStatusobjekt::symbolZeichnen()
{
    if (!art_ || symbol_.isEmpty()) {
        return;
    }
    switch (*art_) {
    case Trayart::StatusNotifier:
        eintrag_.symbolSetzen(symbol_, tinte(), symbolImThema(symbol_));
        if (!std::exchange(angemeldet_, true)) {
            eintrag_.anmelden();
        }
        break;
    case Trayart::XEmbed:
        zeichen_->setIcon(traysymbol(symbol_, tinte()));
        zeichen_->show();
    }
}

// Over the bus the text goes as a title, which is plain. A tool tip of Qt's own guesses whether it
// is markup, so there it is made markup that says what the text says.
void TrayStatusobjekt::hinweisZeigen()
{
    eintrag_.hinweisSetzen(hinweis_);
    if (zeichen_) {
        const bool raten = Qt::mightBeRichText(hinweis_);
        zeichen_->setToolTip(raten ? Qt::convertFromPlainText(hinweis_) : hinweis_);
    }
}

// The main button opens the menu too. Wayland lets no program place a menu at a click that went to
// the panel; there the panel shows it, by the other button.
void TrayStatusobjekt::menueZeigen()
{
    if (menue_ && QGuiApplication::platformName() == u"xcb") {
        menue_->popup(QCursor::pos());
    }
}

Leistentinte TrayStatusobjekt::tinte() const
{
    if (const auto farbe = xembed_.schriftfarbe()) {
        return Leistentinte::gesagt(*farbe);
    }
    return Leistentinte::geraten(immerDunkleLeiste()
                                     ? QColor(Qt::white)
                                     : QGuiApplication::palette().color(QPalette::WindowText));
}

} // namespace kalvaro
