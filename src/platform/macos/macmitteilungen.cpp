#include "platform/macos/macmitteilungen.h"

#include "foundation/klartext.h"
#include "foundation/protokoll.h"

#include <QCoreApplication>
#include <QPointer>

#include <utility>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

// As one line of the log.
void verloren(const QString &titel, const QString &inhalt, const QString &grund)
{
    constexpr qsizetype kurz = 200; // characters
    constexpr qsizetype lang = 2000;
    protokoll(u"Mitteilung nicht zugestellt: %1 – %2 (%3)"_s.arg(
        klartext(titel, kurz), klartext(inhalt, lang), klartext(grund, kurz)));
}

} // namespace

MacMitteilungen::MacMitteilungen(Mitteilungszugang zugang)
    : zugang_(std::move(zugang))
{
}

// The system's threads may outlive this object, the application object may not.
void MacMitteilungen::empfangen()
{
    if (std::exchange(empfaengt_, true)) {
        return;
    }
    zugang_.empfangen([hier = QPointer<MacMitteilungen>(this)](const QString &ziel) {
        QMetaObject::invokeMethod(
            qApp,
            [hier, ziel] {
                if (hier) {
                    hier->angekommen(ziel);
                }
            },
            Qt::QueuedConnection);
    });
}

void MacMitteilungen::mitteilen(const QString &titel, const QString &inhalt,
                                const std::optional<QString> &ziel)
{
    zugang_.zeigen(titel, inhalt, ziel, [titel, inhalt](const QString &grund) {
        QMetaObject::invokeMethod(
            qApp, [titel, inhalt, grund] { verloren(titel, inhalt, grund); }, Qt::QueuedConnection);
    });
}

void MacMitteilungen::beiKlick(std::function<void(const QString &ziel)> geklickt)
{
    klick_ = std::move(geklickt);
    if (!klick_) {
        return;
    }
    empfangen();
    if (!std::exchange(gefragt_, true)) {
        zugang_.erlaubnisErbitten();
    }
    for (const QString &ziel : std::exchange(versaeumt_, {})) {
        QMetaObject::invokeMethod(
            this, [this, ziel] { angekommen(ziel); }, Qt::QueuedConnection);
    }
}

void MacMitteilungen::angekommen(const QString &ziel)
{
    if (klick_) {
        klick_(ziel);
    } else {
        versaeumt_.append(ziel);
    }
}

} // namespace kalvaro
