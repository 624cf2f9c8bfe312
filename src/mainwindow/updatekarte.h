#pragma once

#include "ui/karte.h"

#include <optional>

namespace kalvaro {

class Beschriftung;

// The card that offers a new version. Hidden until one is offered, then never hidden again.
class Updatekarte : public Karte
{
    Q_OBJECT

public:
    explicit Updatekarte(QWidget *parent = nullptr);

    // Offers `version`, to be downloaded from `adresse`; replaces an earlier offer.
    void zeige(const QString &version, const QString &adresse);

Q_SIGNALS:
    // The user wants the version from `adresse`.
    void gedrueckt(const QString &adresse);

private:
    Beschriftung *const lblUpdate_;
    std::optional<QString> updateAdresse_;
};

} // namespace kalvaro
