#pragma once

#include "foundation/konto.h"
#include "foundation/nebenarbeit.h"
#include "server/transport.h"
#include "server/zentralefehler.h"

#include <QJsonObject>
#include <QJsonValue>
#include <QObject>

namespace kalvaro {

// What to ask of the server.
struct Auftrag
{
    QString pfad; // begins with "/", may carry a query that is already encoded
    QByteArray methode = QByteArrayLiteral("GET");
    std::optional<QJsonObject> body = std::nullopt;
    std::optional<QByteArray> text = std::nullopt; // the body as JSON already; in its place
    Sekunden zeit{20}; // bounds the request; each status check before it has 4 s of its own
};

// The question whether a server is there; any answer says so.
[[nodiscard]] Auftrag statusAnfragen();

// The client of the central server, which users read as "die Cloud", and the only way to it.
//
// The account may list several addresses. They are tried in order; one that is not known to answer
// is asked for its status first. The address that last answered with status 200 is remembered in
// memory and goes first, unasked. Nothing is logged and nothing is shown here.
//
// Several requests may be under way at once; each keeps the order by itself.
class Zentrale final : public QObject
{
    Q_OBJECT

public:
    using Antwort = tl::expected<QJsonValue, ZentraleFehler>;
    using Rueckruf = std::function<void(const Antwort &)>;
    using Rohruf = std::function<void(const tl::expected<Netzantwort, ZentraleFehler> &)>;

    // `transport` must outlive this object.
    Zentrale(Konto konto, Transport &transport, QObject *parent = nullptr);

    [[nodiscard]] const Konto &konto() const { return konto_; }

    // The address that last answered with status 200; absent at first and after a request to any
    // address failed for want of a connection.
    [[nodiscard]] const std::optional<QString> &basis() const { return basis_; }

    // The address that the next request tries first; "" when the account has none.
    [[nodiscard]] QString adresse() const;

    // One exchange with a complete URL (in place of `auftrag.pfad`), without retries. Any HTTP
    // status is an answer. Same contract for `fertig` as anfrage().
    void roh(const QString &url, const Auftrag &auftrag, QObject *besitzer, Rohruf fertig);

    // Reads the body of an answer with status 200; absent: it is too large, or nobody waits any
    // more. Long bodies are read on the thread of Nebenarbeit, by whose rules this goes.
    template<typename Wert>
    using Leser = std::function<std::optional<Wert>(const QByteArray &, const Abbruch &)>;

    // Asks the servers in order and hands over what `leser` makes of the answer with status 200, or
    // the error. `fertig` (see Einmalruf) is dropped when `besitzer` or this object goes first.
    template<typename Wert>
    void anfrageLesen(const Auftrag &auftrag, QObject *besitzer, Leser<Wert> leser,
                      std::function<void(tl::expected<Wert, ZentraleFehler>)> fertig);

    // The same for the JSON of the answer (an empty map when its body is no JSON).
    void anfrage(const Auftrag &auftrag, QObject *besitzer, Rueckruf fertig);

    // What the server says with `antwort`: as of anfrage(), the JSON or the error.
    [[nodiscard]] static Antwort auswerten(const Netzantwort &antwort);

private:
    class Lauf;

    // Up to this size a body is read at once, which takes a few milliseconds at most. The densest
    // trees take 90 times their text.
    static constexpr qsizetype sofortHoechstens = qsizetype{64} * 1024;

    void anfrageRoh(const Auftrag &auftrag, QObject *besitzer, Rohruf fertig);
    [[nodiscard]] static ZentraleFehler fehlerAus(const Netzantwort &antwort);
    [[nodiscard]] static ZentraleFehler zuGross();

    const Konto konto_;
    Transport &transport_;
    std::optional<QString> basis_;
};

template<typename Wert>
void Zentrale::anfrageLesen(const Auftrag &auftrag, QObject *besitzer, Leser<Wert> leser,
                            std::function<void(tl::expected<Wert, ZentraleFehler>)> fertig)
{
    using Ergebnis = tl::expected<Wert, ZentraleFehler>;
    anfrageRoh(auftrag, besitzer,
               [this, besitzer, leser = std::move(leser),
                fertig = std::move(fertig)](const tl::expected<Netzantwort, ZentraleFehler> &roh) {
                   if (!roh) {
                       fertig(tl::unexpected(roh.error()));
                       return;
                   }
                   const auto lesen = [antwort = *roh, leser](const Abbruch &abbruch) -> Ergebnis {
                       if (antwort.status != 200) {
                           return tl::unexpected(fehlerAus(antwort));
                       }
                       auto gelesen = leser(antwort.daten, abbruch);
                       return gelesen ? Ergebnis(*std::move(gelesen)) : tl::unexpected(zuGross());
                   };
                   if (roh->daten.size() <= sofortHoechstens) {
                       fertig(lesen(Abbruch()));
                   } else {
                       (new Nebenarbeit<Ergebnis>(lesen, besitzer, fertig))->endetMit(this);
                   }
               });
}

} // namespace kalvaro
