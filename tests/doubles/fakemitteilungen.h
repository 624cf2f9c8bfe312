#pragma once

#include "doubles/mitteilung.h"
#include "platform/mitteilungen.h"

#include <QList>

namespace kalvaro {

// Notifications that nobody sees: records them and lets the test click.
class FakeMitteilungen final : public Mitteilungen
{
public:
    void mitteilen(const QString &titel, const QString &inhalt,
                   const std::optional<QString> &ziel) override;
    void beiKlick(std::function<void(const QString &ziel)> geklickt) override;

    // Clicks the notification number `nummer` in `alle`; one without a target does nothing.
    void klicken(qsizetype nummer) const;

    // Whether somebody wants to know of clicks.
    [[nodiscard]] bool horcht() const { return static_cast<bool>(ruf); }

    QList<Mitteilung> alle; // in order

private:
    std::function<void(const QString &ziel)> ruf;
};

} // namespace kalvaro
