#pragma once

#include "server/zentrale.h"

#include <QTest>

#include <memory>
#include <optional>

namespace kalvaro {

// One request to a server client, and what came of it.
class Zentralewelt
{
public:
    void fragen(Zentrale &zentrale, const Auftrag &auftrag)
    {
        ergebnis.reset();
        zentrale.anfrage(auftrag, besitzer.get(), [this](const Zentrale::Antwort &a) {
            ++rufe;
            ergebnis = a;
        });
    }

    // Asks and waits for the answer or the error.
    Zentrale::Antwort holen(Zentrale &zentrale, const Auftrag &auftrag)
    {
        fragen(zentrale, auftrag);
        if (!QTest::qWaitFor([this] { return ergebnis.has_value(); }, 20000)) {
            return tl::unexpected(ZentraleFehler{false, false, QStringLiteral("nothing came")});
        }
        return *ergebnis;
    }

    std::unique_ptr<QObject> besitzer = std::make_unique<QObject>();
    std::optional<Zentrale::Antwort> ergebnis;
    int rufe = 0;
};

inline Zentrale::Antwort fehler(bool offline, bool zeitUeberschritten, const QString &meldung)
{
    return tl::unexpected(ZentraleFehler{offline, zeitUeberschritten, meldung});
}

// An account with these servers and the key "geheim".
inline Konto konto(const QStringList &server)
{
    return {QStringLiteral("Studio"), QStringLiteral("mac1"), QStringLiteral("geheim"), server};
}

} // namespace kalvaro
