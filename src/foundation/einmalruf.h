#pragma once

#include <QObject>

#include <functional>
#include <utility>

namespace kalvaro {

// Something that is under way for somebody, and the one way in which it answers.
//
// The contract of every callback that this program hands to something asynchronous: it belongs to
// an object and is dropped with it; otherwise it is called exactly once, from the event loop, never
// before the call that took it has returned. Whoever is under way derives from this class or holds
// on to one with new; it lives as a child of the owner and goes by itself once it has answered.
template<typename... Werte>
class Einmalruf : public QObject
{
public:
    using Ruf = std::function<void(Werte...)>;

    Einmalruf(QObject *besitzer, Ruf fertig)
        : QObject(besitzer)
        , fertig_(std::move(fertig))
    {
    }

    // Only the first answer counts.
    void antworten(Werte... werte)
    {
        if (!fertig_) {
            return;
        }
        QMetaObject::invokeMethod(
            this,
            [this, fertig = std::exchange(fertig_, {}), ... werte = std::move(werte)]() mutable {
                // Before the call: it may destroy the owner, and this object with it.
                deleteLater();
                fertig(std::move(werte)...);
            },
            Qt::QueuedConnection);
    }

    // Whether an answer has been given; it may still be on its way.
    [[nodiscard]] bool beantwortet() const { return !fertig_; }

    // Ends without an answer when `anderer` goes, too.
    void endetMit(const QObject *anderer)
    {
        connect(anderer, &QObject::destroyed, this, [this] { delete this; });
    }

private:
    Ruf fertig_;
};

} // namespace kalvaro
