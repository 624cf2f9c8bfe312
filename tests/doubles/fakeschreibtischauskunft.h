#pragma once

#include "platform/schreibtischauskunft.h"

#include <QStringList>

namespace kalvaro {

// A desktop that is as the test wants it, and records what it was asked for.
class FakeSchreibtischauskunft final : public Schreibtischauskunft
{
public:
    [[nodiscard]] bool sitzungsbus() const override { return merken(u"sitzungsbus", bus); }
    [[nodiscard]] Mitteilungsdienst mitteilungsdienst() const override
    {
        return merken(u"mitteilungsdienst", dienst);
    }
    [[nodiscard]] Leiste leiste() const override { return merken(u"leiste", tray); }
    [[nodiscard]] Anmeldeeintrag anmeldeeintrag() const override
    {
        return merken(u"anmeldeeintrag", eintrag);
    }

    bool bus = true;
    Mitteilungsdienst dienst{Mitteilungsdienst::Zustand::Laeuft, QStringLiteral("dunst 1.9")};
    Leiste tray = Leiste::StatusNotifier;
    Anmeldeeintrag eintrag{QStringLiteral("/e.desktop"), false, {}, {}, false};

    mutable QStringList gefragt; // the operations, in order

private:
    template<typename Wert>
    [[nodiscard]] Wert merken(QStringView was, const Wert &wert) const
    {
        gefragt.append(was.toString());
        return wert;
    }
};

} // namespace kalvaro
