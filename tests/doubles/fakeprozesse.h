#pragma once

#include "foundation/einmalruf.h"
#include "platform/prozesse.h"

#include <QHash>
#include <QPointer>

#include <utility>
#include <vector>

namespace kalvaro {

// A process table that says what the test wants.
class FakeProzesse final : public Prozesse
{
public:
    void anzahl(const QString &name, QObject *besitzer, Zahlruf fertig) const override;
    [[nodiscard]] QStringList buendel() const override { return buendelliste; }

    QHash<QString, qsizetype> laufend; // processes by name; others do not run
    QStringList buendelliste;

    // Whether questions wait until antworten(); what they get is as it was when they were asked.
    bool zoegert = false;
    void antworten();

    mutable QStringList gefragt; // the names that anzahl() was asked for, in order

private:
    using Offene = std::pair<QPointer<Einmalruf<qsizetype>>, qsizetype>;
    mutable std::vector<Offene> offen_;
};

} // namespace kalvaro
