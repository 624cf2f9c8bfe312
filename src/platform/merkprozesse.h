#pragma once

#include "foundation/einmalruf.h"
#include "platform/prozesse.h"

#include <QHash>
#include <QPointer>

#include <memory>
#include <vector>

namespace kalvaro {

// Asks another process table at most once for each name within one pass of the event loop: opening
// the window alone asks several times, and a count costs a process. A question of a later pass is
// never answered from a count that began before it.
class Merkprozesse final : public QObject, public Prozesse
{
    Q_OBJECT

public:
    // `quelle` must outlive this object.
    explicit Merkprozesse(const Prozesse &quelle);

    void anzahl(const QString &name, QObject *besitzer, Zahlruf fertig) const override;
    [[nodiscard]] QStringList buendel() const override { return quelle_.buendel(); }

private:
    using Fragende = std::vector<QPointer<Einmalruf<qsizetype>>>;

    const Prozesse &quelle_;
    mutable QHash<QString, std::shared_ptr<Fragende>> gefragt_; // in this pass, by name
};

} // namespace kalvaro
