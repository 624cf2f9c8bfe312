#pragma once

#include "foundation/einmalruf.h"

#include <QPointer>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

namespace kalvaro {

// Work that would hold the event loop, on the one thread there is for it. Values go in, a value
// comes out; what runs there touches nothing that somebody else has. One piece of work runs at a
// time, in the order in which they were asked for. When no thread can be had, the work is done on
// the main thread.
//
// The application object's end drops all that is left and waits for the piece that runs.

// Whether nobody waits for the result any more. Work that lasts asks now and then and then ends
// with whatever value.
class Abbruch
{
public:
    [[nodiscard]] bool operator()() const { return *gilt_; }
    void setzen() const { *gilt_ = true; }

private:
    std::shared_ptr<std::atomic<bool>> gilt_ = std::make_shared<std::atomic<bool>>(false);
};

// Puts work into the queue. `arbeit` is called unless `abbruch` holds by then, and destroyed where
// it ran; `danach` is called on the main thread, from the event loop, always.
void einreihen(Abbruch abbruch, std::function<void()> arbeit, std::function<void()> danach);

// Gives memory back to the system, there.
void aufraeumen();

// One piece of work for somebody: `fertig` gets what `arbeit` returns, by the contract of
// Einmalruf. Dropped with its owner, and with the objects that endetMit() names.
template<typename Wert>
class Nebenarbeit final : public Einmalruf<Wert>
{
public:
    using Arbeit = std::function<Wert(const Abbruch &)>;

    Nebenarbeit(Arbeit arbeit, QObject *besitzer, typename Einmalruf<Wert>::Ruf fertig)
        : Einmalruf<Wert>(besitzer, std::move(fertig))
    {
        const auto fach = std::make_shared<Fach>();
        const QPointer<Nebenarbeit> selbst(this);
        einreihen(
            abbruch_,
            [fach, abbruch = abbruch_, arbeit = std::move(arbeit)] {
                Wert wert = arbeit(abbruch);
                const std::lock_guard sperre(fach->schloss);
                fach->wert = std::move(wert);
            },
            [fach, selbst] {
                const std::lock_guard sperre(fach->schloss);
                if (selbst && fach->wert) {
                    selbst->antworten(*std::exchange(fach->wert, std::nullopt));
                }
            });
    }
    ~Nebenarbeit() override { abbruch_.setzen(); }

private:
    // Where the value lies on its way.
    struct Fach
    {
        std::mutex schloss;
        std::optional<Wert> wert;
    };

    const Abbruch abbruch_;
};

} // namespace kalvaro
