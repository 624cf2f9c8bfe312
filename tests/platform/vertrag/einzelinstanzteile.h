#pragma once

#include <QByteArray>

#include <functional>
#include <memory>

namespace kalvaro {

class Einzelinstanz;

// What of einzelinstanzprogramm.cpp is the system's business, in the order in which it is needed.

// Before the application object.
void vorbereiten();

[[nodiscard]] std::unique_ptr<Einzelinstanz> einzelinstanzAnlegen();

// Calls `ende` when the system wants the program to end, until the answer is let go.
[[nodiscard]] std::shared_ptr<void> endeHoeren(std::function<void()> ende);

// What a wish brought along, as more words of its line.
[[nodiscard]] QByteArray beigaben();

} // namespace kalvaro
