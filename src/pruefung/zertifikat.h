#pragma once

#include <QDateTime>

#include <functional>

class QObject;
class QUrl;

namespace kalvaro {

class Uhr;

// Why a server's certificate is not accepted.
struct Zertifikat
{
    enum class Mangel {
        Unbekannt, // it could not be seen, or something else is wrong with it
        Abgelaufen,
        NochNichtGueltig,
        AndererName,
        Unbeglaubigt, // by nobody whom this computer trusts, itself perhaps
    };
    Mangel mangel = Mangel::Unbekannt;
    QDateTime von{};
    QDateTime bis{};

    bool operator==(const Zertifikat &) const = default;
};

// Looks at the certificate of the server at `adresse`. For `fertig` see Einmalruf.
using Zertifikatsblick =
    std::function<void(const QUrl &adresse, QObject *besitzer, std::function<void(Zertifikat)>)>;

// Over a connection of its own, 4 s at most, that ends as soon as the certificate is there: nothing
// is sent to a server that has not proved who it is. Not through a proxy. `uhr` must outlive it.
[[nodiscard]] Zertifikatsblick zertifikatsblick(Uhr &uhr);

} // namespace kalvaro
