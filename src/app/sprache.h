#pragma once

class QCoreApplication;

namespace kalvaro {

// Makes the toolkit's own texts (buttons, errors) German, whatever the system's language. Call it
// before the first request and the first window.
void deutschEinrichten(QCoreApplication &anwendung);

} // namespace kalvaro
