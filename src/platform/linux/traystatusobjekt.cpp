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
    : wache(uhr, sitzung, xembed, [this](Trayart gefundene) { erscheinen(gefundene); })
{
    qApp->installEventFilter(this);
}

TrayStatusobjekt::~TrayStatusobjekt() = default;

void TrayStatusobjekt::symbolSetzen(const QString &name)
{
    symbol = name;
    symbolZeichnen();
}

void TrayStatusobjekt::hinweisSetzen(const QString &text)
{
    hinweis = text.left(hinweisLaenge);
    if (!hinweis.isEmpty() && hinweis.back().isHighSurrogate()) {
        hinweis.chop(1);
    }
    hinweisZeigen();
}

void TrayStatusobjekt::menueSetzen(QMenu *neues)
{
    menue = neues;
    if (zeichen) {
        zeichen->setContextMenu(menue);
    }
}

bool TrayStatusobjekt::eventFilter(QObject *objekt, QEvent *ereignis)
{
    if (objekt == qApp && ereignis->type() == QEvent::ApplicationPaletteChange) {
        symbolZeichnen();
    }
    return QObject::eventFilter(objekt, ereignis);
}

void TrayStatusobjekt::erscheinen(Trayart gefundene)
{
    art = gefundene;
    xembed.beiErscheinen([this] { symbolZeichnen(); }); // another panel, another colour
    zeichen = std::make_unique<QSystemTrayIcon>();
    connect(zeichen.get(), &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason grund) {
                if (grund == QSystemTrayIcon::Trigger) {
                    menueZeigen();
                }
            });
    hinweisZeigen();
    zeichen->setContextMenu(menue);
    symbolZeichnen();
}

void TrayStatusobjekt::symbolZeichnen()
{
    if (zeichen && !symbol.isEmpty()) {
        const bool imThema = art == Trayart::StatusNotifier;
        zeichen->setIcon(
            traysymbol(symbol, leistenfarbe(), imThema ? symbolImThema(symbol) : QString()));
        zeichen->show(); // not before it has a symbol: picture mode never sets one
    }
}

// Over the bus the text goes as a title, which is plain. A tool tip of Qt's own guesses whether it
// is markup, so there it is made markup that says what the text says.
void TrayStatusobjekt::hinweisZeigen()
{
    if (zeichen) {
        const bool raten = art == Trayart::XEmbed && Qt::mightBeRichText(hinweis);
        zeichen->setToolTip(raten ? Qt::convertFromPlainText(hinweis) : hinweis);
    }
}

// The main button opens the menu too. Wayland lets no program place a menu at a click that went to
// the panel; there the panel shows it, by the other button.
void TrayStatusobjekt::menueZeigen()
{
    if (menue && QGuiApplication::platformName() == u"xcb") {
        menue->popup(QCursor::pos());
    }
}

QColor TrayStatusobjekt::leistenfarbe() const
{
    if (const auto farbe = xembed.schriftfarbe()) {
        return *farbe;
    }
    return immerDunkleLeiste() ? QColor(Qt::white)
                               : QGuiApplication::palette().color(QPalette::WindowText);
}

} // namespace kalvaro
