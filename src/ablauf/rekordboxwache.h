#pragma once

#include "foundation/uhr.h"

#include <QObject>

#include <memory>

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

    // Looks once; meant to be called every few seconds. The end of a wait is reported once the
    // processes have been counted.
    void wachen();

Q_SIGNALS:
    void gestartet();
    void geschlossen(); // it has quit and may still be saving
    void beendet();     // it has quit and saved, or had its 90 s

private:
    void ausgewartet();

    const Uhr &uhr_;
    const Prozesse &prozesse_;
    const Rekordbox &rekordbox_;

    bool rbLief_;
    std::unique_ptr<QObject> wartetAufAgent_; // lives while it does, and only while rbLief is false
    std::chrono::milliseconds rbEnde_;        // when it was last seen to quit, in Uhr::laufzeit()
};

} // namespace kalvaro
