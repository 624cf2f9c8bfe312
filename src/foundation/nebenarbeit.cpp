#include "foundation/nebenarbeit.h"

#include "foundation/speicher.h"

#include <QCoreApplication>
#include <QEvent>

#include <deque>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>

namespace kalvaro {

namespace {

struct Posten
{
    Abbruch abbruch;
    std::function<void()> arbeit;
    std::function<void()> danach;
};

// The queue and its thread, which lives as long as there is work. Never destroyed: nothing that
// the thread sees goes before it.
class Schlange
{
public:
    static Schlange &eine()
    {
        static auto &schlange = *new Schlange;
        return schlange;
    }

    void dazu(Posten posten)
    {
        const std::lock_guard sperre(schloss_);
        offen_.push_back(std::move(posten));
        if (laeuft_) {
            return;
        }
        if (faden_.joinable()) {
            faden_.join(); // has run out
        }
        laeuft_ = true;
        try {
            faden_ = std::thread([this] { abarbeiten(); });
        } catch (const std::system_error &) {
            QMetaObject::invokeMethod(
                &bote_, [this] { abarbeiten(); }, Qt::QueuedConnection);
        }
    }

    // Nobody waits for anything any more, and nothing runs.
    void beenden()
    {
        {
            const std::lock_guard sperre(schloss_);
            for (const Posten &posten : offen_) {
                posten.abbruch.setzen();
            }
            jetziger_.setzen();
        }
        if (faden_.joinable()) {
            faden_.join();
        }
    }

private:
    Schlange()
    {
        qAddPostRoutine([] { eine().beenden(); });
    }

    // The first in the queue; its end ends the thread.
    std::optional<Posten> naechster()
    {
        const std::lock_guard sperre(schloss_);
        if (offen_.empty()) {
            laeuft_ = false;
            return {};
        }
        Posten posten = std::move(offen_.front());
        offen_.pop_front();
        jetziger_ = posten.abbruch;
        return posten;
    }

    void abarbeiten()
    {
        while (auto posten = naechster()) {
            if (!posten->abbruch()) {
                posten->arbeit();
            }
            // With all that it holds, before anybody hears of it.
            posten->arbeit = nullptr;
            speicherZurueckgeben();
            const std::lock_guard sperre(schloss_);
            erledigt_.push_back(std::move(posten->danach));
            QCoreApplication::postEvent(&bote_, new QEvent(QEvent::User));
        }
    }

    void melden()
    {
        std::deque<std::function<void()>> erledigt;
        {
            const std::lock_guard sperre(schloss_);
            erledigt.swap(erledigt_);
        }
        for (const auto &danach : erledigt) {
            danach();
        }
    }

    // On the main thread: what is posted to it brings the results there.
    class Bote final : public QObject
    {
        bool event(QEvent *event) override
        {
            if (event->type() == QEvent::User) {
                eine().melden();
                return true;
            }
            return QObject::event(event);
        }
    };

    std::mutex schloss_;
    std::deque<Posten> offen_;
    std::deque<std::function<void()>> erledigt_; // to be told of
    Abbruch jetziger_;                           // of the piece that runs, or ran last
    bool laeuft_ = false;
    std::thread faden_;
    Bote bote_;
};

} // namespace

void einreihen(Abbruch abbruch, std::function<void()> arbeit, std::function<void()> danach)
{
    Schlange::eine().dazu({std::move(abbruch), std::move(arbeit), std::move(danach)});
}

void aufraeumen()
{
    einreihen(
        {}, [] {}, [] {}); // every piece ends with that
}

} // namespace kalvaro
