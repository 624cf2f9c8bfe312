#include "platform/linux/traystatusobjekt.h"

#include "platform/linux/traysymbol.h"

#include <QApplication>
#include <QCursor>
#include <QEvent>
#include <QMenu>
#include <QSystemTrayIcon>
#include <QTextDocument>

#include <algorithm>

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
    : wache_(uhr, sitzung, xembed_, [this](Trayart art) { erscheinen(art); })
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

void TrayStatusobjekt::erscheinen(Trayart art)
{
    art_ = art;
    xembed_.beiErscheinen([this] { symbolZeichnen(); }); // another panel, another colour
    zeichen_ = std::make_unique<QSystemTrayIcon>();
    connect(zeichen_.get(), &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason grund) {
                if (grund == QSystemTrayIcon::Trigger) {
                    menueZeigen();
                }
            });
    hinweisZeigen();
    zeichen_->setContextMenu(menue_);
    symbolZeichnen();
}

void TrayStatusobjekt::symbolZeichnen()
{
    if (zeichen_ && !symbol_.isEmpty()) {
        const bool imThema = art_ == Trayart::StatusNotifier;
        zeichen_->setIcon(
            traysymbol(symbol_, leistenfarbe(), imThema ? symbolImThema(symbol_) : QString()));
        zeichen_->show(); // not before it has a symbol: picture mode never sets one
    }
}

// Over the bus the text goes as a title, which is plain. A tool tip of Qt's own guesses whether it
// is markup, so there it is made markup that says what the text says.
void TrayStatusobjekt::hinweisZeigen()
{
    if (zeichen_) {
        const bool raten = art_ == Trayart::XEmbed && Qt::mightBeRichText(hinweis_);
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

QColor TrayStatusobjekt::leistenfarbe() const
{
    if (const auto farbe = xembed_.schriftfarbe()) {
        return *farbe;
    }
    return immerDunkleLeiste() ? QColor(Qt::white)
                               : QGuiApplication::palette().color(QPalette::WindowText);
}

} // namespace kalvaro
