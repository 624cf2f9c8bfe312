#pragma once

#include "assessment/anlass.h"
#include "assessment/bewertung.h"

#include <QObject>
#include <QPointer>

#include <functional>
#include <vector>

namespace kalvaro {

class Rekordbox;
class Zentrale;

// The one queue through which every sync passes, and what it still owes. At most one sync runs; who
// asks meanwhile gets the result of that run, and no second request is sent.
//
// A sync is owed when the last one found no server or a busy one, when the server saw rekordbox
// open here, and when rekordbox or its agent ran and no sync has begun since they ended.
class Abgleicher final : public QObject
{
    Q_OBJECT

public:
    using Rueckruf = std::function<void(const Bewertung &)>;

    // Both must outlive this object.
    Abgleicher(Zentrale &zentrale, const Rekordbox &rekordbox);

    // Asks for a sync. `fertig` (see Einmalruf) gets what came of the run that is then under way,
    // which need not be the one asked for; it may be empty.
    void abgleich(Anlass anlass, QObject *besitzer = nullptr, Rueckruf fertig = {});

    // Asks whether a sync makes sense now; `fertig` is called as Einmalruf states. Not while
    // rekordbox or its agent runs: then one is owed once they are gone.
    void moeglich(QObject *besitzer, std::function<void(bool)> fertig);

    [[nodiscard]] bool laeuftGerade() const { return laeuftGerade_; }

    // Whether what the last finished run came to lets rekordbox start; true before the first.
    [[nodiscard]] bool startbar() const { return startbar_; }

    // How many runs have begun so far.
    [[nodiscard]] int laeufe() const { return laeufe_; }

    // Only a sync that begins from now on will do.
    void schulden() { neues_ = true; }

    [[nodiscard]] bool geschuldet() const { return neues_ || erfolglos_; }

Q_SIGNALS:
    // Before the request is sent.
    void begonnen(Anlass anlass);

    // The run that began with `anlass` is over. Those who asked hear of it after this.
    void fertig(const Bewertung &b, Anlass anlass);

private:
    struct Wartender
    {
        QPointer<QObject> besitzer;
        Rueckruf fertig;
    };

    void abgeschlossen(const Bewertung &b, Anlass anlass);

    Zentrale &zentrale_;
    const Rekordbox &rekordbox_;

    bool laeuftGerade_ = false;
    bool startbar_ = true;
    int laeufe_ = 0;
    std::vector<Wartender> wartende_;

    bool neues_ = false;     // owed because of what happened since the last run began
    bool erfolglos_ = false; // owed because of what the last run came to
};

} // namespace kalvaro
