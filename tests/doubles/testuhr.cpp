#include "doubles/testuhr.h"

#include <QCoreApplication>

namespace kalvaro {

// Registered with the clock for as long as it lives and is due.
class Testuhr::Termin final : public Wecker
{
public:
    Termin(Testuhr *clock, std::chrono::milliseconds wann, std::chrono::milliseconds nochmal,
           std::function<void()> was)
        : uhr(clock)
        , abstand(nochmal)
        , ruf(std::make_shared<std::function<void()>>(std::move(was)))
    {
        eintragen(wann);
    }

    ~Termin() override { austragen(); }

    void faellig()
    {
        const auto zeit = wo.first;
        austragen();
        if (abstand.count() > 0) {
            eintragen(zeit + abstand);
        }
        // The call may destroy this object.
        const auto halten = ruf;
        (*halten)();
    }

private:
    void eintragen(std::chrono::milliseconds wann)
    {
        wo = {wann, uhr->zaehler++};
        uhr->termine.emplace(wo, this);
    }

    void austragen() { uhr->termine.erase(wo); }

    Testuhr *const uhr;
    const std::chrono::milliseconds abstand; // 0: once
    const std::shared_ptr<std::function<void()>> ruf;
    Zeitpunkt wo;
};

QDateTime Testuhr::jetzt() const
{
    return QDateTime(QDate(2026, 3, 13), QTime(18, 7)).addMSecs((vergangen + verstellt).count());
}

void Testuhr::verstellen(Sekunden weite)
{
    verstellt += std::chrono::round<std::chrono::milliseconds>(weite);
}

Weckruf Testuhr::setzen(std::chrono::milliseconds dauer, bool wiederholt, std::function<void()> ruf)
{
    return std::make_unique<Termin>(
        this, vergangen + dauer, wiederholt ? dauer : std::chrono::milliseconds(0), std::move(ruf));
}

Weckruf Testuhr::nach(Sekunden dauer, std::function<void()> ruf)
{
    return setzen(std::chrono::ceil<std::chrono::milliseconds>(dauer), false, std::move(ruf));
}

Weckruf Testuhr::alle(Sekunden abstand, std::function<void()> ruf)
{
    return setzen(std::chrono::ceil<std::chrono::milliseconds>(abstand), true, std::move(ruf));
}

void Testuhr::vor(Sekunden dauer)
{
    ganz();
    const auto ziel = vergangen + std::chrono::ceil<std::chrono::milliseconds>(dauer);
    while (!termine.empty() && termine.begin()->first.first <= ziel) {
        vergangen = termine.begin()->first.first;
        termine.begin()->second->faellig();
        kurz();
    }
    vergangen = ziel;
    ganz();
}

// A long run has a great many of them.
void Testuhr::eineRunde()
{
    QCoreApplication::processEvents();
}

} // namespace kalvaro
