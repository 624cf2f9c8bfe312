#pragma once

#include "doubles/testuhr.h"
#include "server/netztransport.h"

#include <QCoreApplication>
#include <QTest>
#include <QTestEventLoop>

namespace kalvaro {

// One exchange over the real network code, in virtual time.
class Netzwelt
{
public:
    // Twenty seconds are the limit unless the request names one.
    void senden(Netzanfrage anfrage)
    {
        if (anfrage.limit.count() <= 0) {
            anfrage.limit = Sekunden(20);
        }
        transport->senden(anfrage, besitzer.get(), [this](Transport::Ergebnis e) {
            ++rufe;
            ergebnis = std::move(e);
            schleife.exitLoop();
        });
    }

    // Sends and waits for the result.
    Transport::Ergebnis holen(const Netzanfrage &anfrage)
    {
        senden(anfrage);
        return abwarten();
    }

    // Waits for the result; a marked failure when none comes.
    Transport::Ergebnis abwarten()
    {
        if (!ergebnis) {
            schleife.enterLoopMSecs(20000);
        }
        return ergebnis.value_or(tl::unexpected(Netzfehler{false, QStringLiteral("nothing came")}));
    }

    // The text of the failure; of anything else, what it was.
    [[nodiscard]] QString fehler() const
    {
        if (!ergebnis) {
            return QStringLiteral("(nothing)");
        }
        if (*ergebnis) {
            return QStringLiteral("(status %1)").arg((*ergebnis)->status);
        }
        const Netzfehler &f = ergebnis->error();
        return f.zeitUeberschritten ? QStringLiteral("(time-out)") : f.text;
    }
    [[nodiscard]] bool zeitUeberschritten() const
    {
        return ergebnis && !*ergebnis && ergebnis->error().zeitUeberschritten;
    }

    Testuhr uhr;
    std::unique_ptr<Netztransport> transport = std::make_unique<Netztransport>(uhr);
    std::unique_ptr<QObject> besitzer = std::make_unique<QObject>();
    std::optional<Transport::Ergebnis> ergebnis;
    int rufe = 0;

private:
    QTestEventLoop schleife;
};

inline Netzanfrage get(const QString &adresse)
{
    return {.url = QUrl(adresse), .methode = "GET"};
}

inline Netzanfrage post(const QString &adresse, const QByteArray &body = "{\"a\":1}")
{
    return {.url = QUrl(adresse),
            .methode = "POST",
            .kopf = {Kopfzeile{"X-Schluessel", "geheim"},
                     Kopfzeile{"Content-Type", "application/json"}},
            .body = body};
}

} // namespace kalvaro
