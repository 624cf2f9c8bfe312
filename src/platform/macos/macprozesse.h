#pragma once

#include "foundation/uhr.h"
#include "platform/prozesse.h"

#include <functional>

namespace kalvaro {

// The process table of macOS: pgrep(1) counts, and the workspace tells of running applications.
class MacProzesse final : public Prozesse
{
public:
    using Buendelfrage = std::function<QStringList()>;

    // `buendel` lists the bundles that run, `werkzeug` counts processes. `uhr` must outlive this
    // object.
    MacProzesse(Uhr &uhr, Buendelfrage buendel,
                QString werkzeug = QStringLiteral("/usr/bin/pgrep"));

    // The tool has 2 s. A count that is no longer wanted, or late, is given up and not waited for.
    void anzahl(const QString &name, QObject *besitzer, Zahlruf fertig) const override;

    // Applications only, those of this session: tools and daemons are not listed.
    [[nodiscard]] QStringList buendel() const override;

private:
    Uhr &uhr_;
    const Buendelfrage buendel_;
    const QString werkzeug_;
};

} // namespace kalvaro
