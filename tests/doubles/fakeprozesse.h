#pragma once

#include "platform/prozesse.h"

#include <QHash>

namespace kalvaro {

// A process table that says what the test wants.
class FakeProzesse final : public Prozesse
{
public:
    [[nodiscard]] qsizetype anzahl(const QString &name) const override;
    [[nodiscard]] QStringList buendel() const override { return buendelliste; }

    QHash<QString, qsizetype> laufend; // processes by name; others do not run
    QStringList buendelliste;

    mutable QStringList gefragt; // the names that anzahl() was asked for, in order
};

} // namespace kalvaro
