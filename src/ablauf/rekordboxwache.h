#pragma once

#include "foundation/uhr.h"

#include <QObject>

namespace kalvaro {

class Prozesse;
class Rekordbox;

// Notices when rekordbox starts and quits. After it has quit the watch waits until it has finished
// saving, which its agent does: until no such process is left, at most 90 s.
class Rekordboxwache final : public QObject
{
    Q_OBJECT

public:
    // A rekordbox that runs already counts as seen: its start is not reported.
    Rekordboxwache(const Uhr &uhr, const Prozesse &prozesse, const Rekordbox &rekordbox);

    // Whether a running application lies in a bundle named "rekordbox.app".
    [[nodiscard]] bool rekordboxOffen() const;

    // rekordbox was running at the last look.
    [[nodiscard]] bool lief() const { return rbLief_; }

    // Looks once; meant to be called every few seconds.
    void wachen();

Q_SIGNALS:
    void gestartet();
    void geschlossen(); // it has quit and may still be saving
    void beendet();     // it has quit and saved, or had its 90 s

private:
    const Uhr &uhr_;
    const Prozesse &prozesse_;
    const Rekordbox &rekordbox_;

    bool rbLief_;
    bool wartetAufAgent_ = false;      // only while rbLief is false
    std::chrono::milliseconds rbEnde_; // when it was last seen to quit, in Uhr::laufzeit()
};

} // namespace kalvaro
