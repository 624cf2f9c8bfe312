#pragma once

#include "platform/prozesse.h"
#include "rekordbox/installation.h"

#include <QList>

#include <functional>
#include <optional>

namespace kalvaro {

class Einstellungen;

// What the program asks of the rekordbox that lies on this machine. Keeps no state: every answer
// is fresh. Must outlive those who ask.
class Rekordbox
{
public:
    // `programmordner` is the folder of applications, usually "/Applications". `prozesse` must
    // outlive this object.
    Rekordbox(const Prozesse &prozesse, QString programmordner);

    // All installed copies, newest first; equal versions in the order of the folder's listing.
    // Empty when the folder cannot be read.
    [[nodiscard]] QList<Installation> installationen() const;

    // The copy to start: the version that the user chose, else the first of `liste`; absent when
    // `liste` is empty.
    [[nodiscard]] static std::optional<Installation> gewaehlt(const QList<Installation> &liste,
                                                              const Einstellungen &einst);

    using Zahlruf = Prozesse::Zahlruf;
    using Jaruf = std::function<void(bool)>;

    // How many processes run whose name is exactly `name`; see Prozesse for how long that may take.
    // Here and below `fertig` is called as Einmalruf states.
    void anzahl(const QString &name, QObject *besitzer, Zahlruf fertig) const;

    // The application itself runs. What has come while it was asked counts as well, as far as the
    // list of running bundles shows it.
    void hauptLaeuft(QObject *besitzer, Jaruf fertig) const;

    // The application or the agent that it leaves behind runs: no sync may start.
    void laeuft(QObject *besitzer, Jaruf fertig) const;

private:
    void fragen(const QStringList &namen, QObject *besitzer, Jaruf fertig) const;
    [[nodiscard]] QStringList buendel(const QStringList &namen) const;

    const Prozesse &prozesse_;
    const QString programmordner_;
};

} // namespace kalvaro
