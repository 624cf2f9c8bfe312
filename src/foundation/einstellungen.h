#pragma once

#include <QString>

namespace kalvaro {

// The few choices that this Mac keeps for itself, in "einstellungen.json" in the data folder. One
// instance is shared by everyone; whoever changes a field saves at once.
class Einstellungen
{
public:
    // Reads the file. Never fails: a key that is missing or of the wrong type has its default.
    Einstellungen();
    Einstellungen(const Einstellungen &) = delete;
    Einstellungen &operator=(const Einstellungen &) = delete;

    // Replaces the file atomically. A failure is ignored and leaves the old file whole. One that
    // cannot be read (over 4 MiB, without the right to) stays as "einstellungen.json.ungelesen".
    void speichern() const;

    bool autostart = false; // start rekordbox by itself after a successful sync
    QString version;        // the rekordbox version chosen by the user; empty: always the newest
    QString updateGemeldet; // the last announced update: version "|" "yyyy-MM-dd"

private:
    const QString pfad_;
};

} // namespace kalvaro
