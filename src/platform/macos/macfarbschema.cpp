#include "platform/macos/macfarbschema.h"

#include <QMetaMethod>

#include <utility>

namespace kalvaro {

MacFarbschema::MacFarbschema(const QObject &auskunft)
    : auskunft_(auskunft)
    , bisher_(wunsch())
{
    if (schema().isValid() && schema().hasNotifySignal()) {
        connect(&auskunft_, schema().notifySignal(), this,
                metaObject()->method(metaObject()->indexOfMethod("pruefen()")));
    }
}

QMetaProperty MacFarbschema::schema() const
{
    const QMetaObject *const was = auskunft_.metaObject();
    return was->property(was->indexOfProperty("colorScheme"));
}

Farbwunsch MacFarbschema::wunsch() const
{
    constexpr int hell = 1;   // Qt::ColorScheme::Light
    constexpr int dunkel = 2; // Qt::ColorScheme::Dark
    const int wert = schema().isValid() ? schema().read(&auskunft_).toInt() : 0;
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
