#include "platform/linux/linuxfarbschema.h"

#include "foundation/gewoehnlichedatei.h"
#include "platform/linux/gtkthema.h"

#include <QGuiApplication>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QStandardPaths>
#include <QStyleHints>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

// Since 6.5 the toolkit has a property for it.
QMetaProperty werkzeugfarben()
{
    const QMetaObject *const was = QGuiApplication::styleHints()->metaObject();
    return was->property(was->indexOfProperty("colorScheme"));
}

// Only that it is dark: light is also what it says where it knows nothing.
Helligkeit desWerkzeugs()
{
    constexpr int dunkel = 2; // Qt::ColorScheme::Dark
    const QMetaProperty farben = werkzeugfarben();
    return farben.isValid() && farben.read(QGuiApplication::styleHints()).toInt() == dunkel
               ? Helligkeit::Dunkel
               : Helligkeit::Offen;
}

Helligkeit derDateien()
{
    const QString ordner = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    for (const QString &datei : {u"/gtk-3.0/settings.ini"_s, u"/gtk-4.0/settings.ini"_s}) {
        const auto inhalt = gewoehnlichLesen(ordner + datei);
        const Helligkeit farben = inhalt ? helligkeit(gtkIniLesen(*inhalt)) : Helligkeit::Offen;
        if (farben != Helligkeit::Offen) {
            return farben;
        }
    }
    return Helligkeit::Offen;
}

} // namespace

LinuxFarbschema::LinuxFarbschema(const QDBusConnection &sitzung, std::optional<Helligkeit> portal)
    : portal_(sitzung, portal, [this] { pruefen(); })
    , xsettings_([this] { spaeterPruefen(); })
    , bisher_(wunsch())
{
    werkzeugBeobachten();
}

Farbwunsch LinuxFarbschema::wunsch() const
{
    if (portal_.helligkeit() != Helligkeit::Offen) {
        return {.ausdruecklich = portal_.helligkeit()};
    }
    Farbwunsch wunsch{.ausdruecklich = desWerkzeugs()};
    wunsch.thema = helligkeit(gtkUmgebungLesen(qEnvironmentVariable("GTK_THEME")));
    if (wunsch.thema == Helligkeit::Offen) {
        wunsch.thema = helligkeit(xsettingsLesen(xsettings_.eigenschaft()));
    }
    if (wunsch.thema == Helligkeit::Offen) {
        wunsch.thema = derDateien();
    }
    return wunsch;
}

void LinuxFarbschema::beiWechsel(std::function<void()> gewechselt)
{
    gewechselt_ = std::move(gewechselt);
}

// Not from within an event of the display, whose connection is asked.
void LinuxFarbschema::spaeterPruefen()
{
    QMetaObject::invokeMethod(this, &LinuxFarbschema::pruefen, Qt::QueuedConnection);
}

void LinuxFarbschema::pruefen()
{
    const Farbwunsch jetzt = wunsch();
    if (jetzt != bisher_) {
        bisher_ = jetzt;
        if (gewechselt_) {
            gewechselt_();
        }
    }
}

void LinuxFarbschema::werkzeugBeobachten()
{
    const QMetaProperty farben = werkzeugfarben();
    if (farben.isValid() && farben.hasNotifySignal()) {
        connect(QGuiApplication::styleHints(), farben.notifySignal(), this,
                metaObject()->method(metaObject()->indexOfMethod("pruefen()")));
    }
}

} // namespace kalvaro
