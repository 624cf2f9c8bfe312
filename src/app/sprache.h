#pragma once

#include <QByteArray>

class QCoreApplication;

namespace kalvaro {

// To live while the application object is made: keeps a character set other than UTF-8 from the
// toolkit, which would replace it as well, and complain about it on standard error. What the
// program starts later finds the environment as it was.
class Utf8Rahmen
{
public:
    Utf8Rahmen();
    ~Utf8Rahmen();
    Utf8Rahmen(const Utf8Rahmen &) = delete;
    Utf8Rahmen &operator=(const Utf8Rahmen &) = delete;

private:
    const QByteArray vorher_; // LC_ALL; null where it was not set
    bool gesetzt_ = false;
};

// Makes the toolkit's own texts (buttons, errors) German, whatever the system's language. Call it
// before the first request and the first window.
void deutschEinrichten(QCoreApplication &anwendung);

} // namespace kalvaro
