#include "platform/macos/macfarbschema.h"

#include <QGuiApplication>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QStyleHints>

#include <utility>

namespace kalvaro {

namespace {

QMetaProperty eigenschaft()
{
    const QMetaObject *const was = QGuiApplication::styleHints()->metaObject();
    return was->property(was->indexOfProperty("colorScheme"));
}

} // namespace

MacFarbschema::MacFarbschema()
    : bisher_(wunsch())
{
    const QMetaProperty schema = eigenschaft();
    if (schema.isValid() && schema.hasNotifySignal()) {
        connect(QGuiApplication::styleHints(), schema.notifySignal(), this,
                metaObject()->method(metaObject()->indexOfMethod("pruefen()")));
    }
}

Farbwunsch MacFarbschema::wunsch() const
{
    constexpr int hell = 1;   // Qt::ColorScheme::Light
    constexpr int dunkel = 2; // Qt::ColorScheme::Dark
    const QMetaProperty schema = eigenschaft();
    const int wert = schema.isValid() ? schema.read(QGuiApplication::styleHints()).toInt() : 0;
    return {.ausdruecklich = wert == dunkel ? Helligkeit::Dunkel
                             : wert == hell ? Helligkeit::Hell
                                            : Helligkeit::Offen};
}

void MacFarbschema::beiWechsel(std::function<void()> gewechselt)
{
    gewechselt_ = std::move(gewechselt);
}

// The signal comes while the toolkit is still changing.
void MacFarbschema::pruefen()
{
    QMetaObject::invokeMethod(
        this,
        [this] {
            const Farbwunsch vorher = std::exchange(bisher_, wunsch());
            if (bisher_ != vorher && gewechselt_) {
                gewechselt_();
            }
        },
        Qt::QueuedConnection);
}

} // namespace kalvaro
