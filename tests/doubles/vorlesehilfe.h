#pragma once

#include <QAccessible>
#include <QStringList>

#include <optional>

namespace kalvaro {

// A screen reader that listens while it lives, one at a time, on the offscreen platform. It keeps
// what it was told.
class Vorlesehilfe
{
public:
    Vorlesehilfe();
    void weghoeren(); // and nobody else listens
    ~Vorlesehilfe();
    Vorlesehilfe(const Vorlesehilfe &) = delete;
    Vorlesehilfe &operator=(const Vorlesehilfe &) = delete;

    // What it was asked to say since the last call, in that order.
    [[nodiscard]] QStringList ansagen() { return std::exchange(ansagen_, {}); }

    // The other events since the last call: "Focus N1", "expanded N1", "checked N1" and so on.
    [[nodiscard]] QStringList ereignisse() { return std::exchange(ereignisse_, {}); }

private:
    static void hoeren(QAccessibleEvent *ereignis);
    void merken(QAccessibleEvent *ereignis);

    QStringList ansagen_;
    QStringList ereignisse_;
};

// What an event wants to be said; absent for all others.
[[nodiscard]] std::optional<QString> ansageIn(QAccessibleEvent &ereignis);

} // namespace kalvaro
