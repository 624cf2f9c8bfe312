#include "platform/macos/macarbeitsplatz.h"

#include "foundation/einmalruf.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QPointer>
#include <QUrl>

#include <utility>

namespace kalvaro {

using namespace Qt::StringLiterals;

MacArbeitsplatz::MacArbeitsplatz(Arbeitsplatzzugang zugang)
    : zugang_(std::move(zugang))
{
}

// The answer comes on a thread of the system's, and only the main thread knows whether somebody
// still waits for it.
void MacArbeitsplatz::starten(const QString &buendel, QObject *besitzer,
                              std::function<void(std::optional<QString>)> fertig)
{
    using Startruf = Einmalruf<std::optional<QString>>;
    const QPointer<Startruf> ruf(new Startruf(besitzer, std::move(fertig)));
    zugang_.oeffnen(buendel, [buendel, ruf](const std::optional<Oeffnungsfehler> &fehler) {
        QMetaObject::invokeMethod(
            qApp,
            [buendel, ruf, fehler] {
                if (ruf) {
                    ruf->antworten(fehler ? std::optional(oeffnungsfehlertext(*fehler, buendel))
                                          : std::nullopt);
                }
            },
            Qt::QueuedConnection);
    });
}

void MacArbeitsplatz::oeffnen(const QUrl &adresse)
{
    if (adresse.isValid() && (adresse.scheme() == u"http" || adresse.scheme() == u"https")) {
        // Queued: the click is to be over by then.
        QMetaObject::invokeMethod(
            qApp, [adresse] { QDesktopServices::openUrl(adresse); }, Qt::QueuedConnection);
    }
}

// The call may end the listening, so it is made when that of the system is over.
void MacArbeitsplatz::beiAufwachen(std::function<void()> geweckt)
{
    wache_.reset();
    geweckt_ = std::move(geweckt);
    if (geweckt_) {
        wache_ = zugang_.wachen([this] {
            QMetaObject::invokeMethod(
                this,
                [this] {
                    if (const auto ruf = geweckt_) {
                        ruf();
                    }
                },
                Qt::QueuedConnection);
        });
    }
}

void MacArbeitsplatz::nachVorn(QWindow &fenster)
{
    zugang_.nachVorn(fenster);
}

void MacArbeitsplatz::auftreten(Auftritt auftritt)
{
    zugang_.auftreten(auftritt);
}

} // namespace kalvaro
