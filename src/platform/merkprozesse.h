#pragma once

#include "platform/prozesse.h"

#include <QHash>
#include <QObject>

namespace kalvaro {

// Asks another process table at most once for each name within one pass of the event loop: opening
// the window alone asks five times, and a count takes milliseconds.
class Merkprozesse final : public QObject, public Prozesse
{
    Q_OBJECT

public:
    // `quelle` must outlive this object.
    explicit Merkprozesse(const Prozesse &quelle);

    [[nodiscard]] qsizetype anzahl(const QString &name) const override;
    [[nodiscard]] QStringList buendel() const override { return quelle_.buendel(); }

private:
    const Prozesse &quelle_;
    mutable QHash<QString, qsizetype> gemerkt_; // emptied with the next pass
};

} // namespace kalvaro
