#pragma once

#include "doubles/kindprogramm.h"
#include "e2e/anzeige.h"

namespace kalvaro {

// The program with nothing but its item in the tray (statusprogramm.cpp).
class Statusprogramm final : public Kindprogramm
{
public:
    explicit Statusprogramm(const QProcessEnvironment &umgebung)
        : Kindprogramm(QStringLiteral(STATUSPROGRAMM), {}, umgebung)
    {
    }

    // Waits until it runs.
    [[nodiscard]] bool bereit()
    {
        return bald([this] { return !zeilen().isEmpty(); });
    }

    // Has it do something and waits until that is done.
    [[nodiscard]] bool befehl(const QString &zeile)
    {
        const auto getan = [this] { return zeilen().count(QStringLiteral("getan")); };
        const qsizetype bisher = getan();
        schreiben(zeile);
        return bald([&] { return getan() == bisher + 1; }, 10'000);
    }
};

} // namespace kalvaro
