#pragma once

#include <QByteArray>
#include <QIODevice>

#include <algorithm>

namespace kalvaro {

// A request body that cannot be rewound before the answer has begun.
//
// QtNetwork sends a request again, up to three times, when the server closes without an answer or
// with an unreadable one. Before that it rewinds the body; where it cannot, it ends the exchange
// with ContentReSendError and nothing leaves a second time. So every request carries such a body,
// GET an empty one. (After a 307 or 308 it rewinds as well, but does not send.)
class Einmalbody final : public QIODevice
{
public:
    Einmalbody(QByteArray bytes, QObject *parent)
        : QIODevice(parent)
        , bytes_(std::move(bytes))
    {
        open(ReadOnly | Unbuffered);
    }

    // The status line and the header lines of an answer are there.
    void beantwortet() { antwortBegonnen_ = true; }

    [[nodiscard]] qint64 size() const override { return bytes_.size(); }
    [[nodiscard]] bool reset() override { return antwortBegonnen_ && QIODevice::reset(); }

protected:
    qint64 readData(char *ziel, qint64 hoechstens) override
    {
        const qint64 anzahl = std::clamp(bytes_.size() - pos(), qint64{0}, hoechstens);
        std::copy_n(bytes_.constData() + pos(), anzahl, ziel);
        return anzahl;
    }
    qint64 writeData(const char * /*quelle*/, qint64 /*anzahl*/) override { return -1; }

private:
    const QByteArray bytes_;
    bool antwortBegonnen_ = false;
};

} // namespace kalvaro
