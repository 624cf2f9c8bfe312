#pragma once

#include "foundation/einmalruf.h"
#include "foundation/uhr.h"

#include <QProcess>

namespace kalvaro {

// One run of pgrep(1). Whether it answers, hangs or is no longer wanted: nobody waits for it.
class Pgrepzaehlung final : public Einmalruf<qsizetype>
{
public:
    // `ersatz` answers when the tool does not.
    Pgrepzaehlung(QObject *besitzer, Ruf fertig, std::function<qsizetype()> ersatz);
    ~Pgrepzaehlung() override;

    // Counts the processes whose name is exactly `name`.
    void beginnen(Uhr &uhr, const QString &werkzeug, const QString &name);

private:
    void lesen();
    void geendet(int ausgang, QProcess::ExitStatus wie);
    void ersetzen();

    QProcess *const tool_;
    const std::function<qsizetype()> ersatz_;
    QByteArray gelesen_;
    Weckruf frist_;
};

} // namespace kalvaro
