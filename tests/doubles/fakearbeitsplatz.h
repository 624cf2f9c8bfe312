#pragma once

#include "platform/arbeitsplatz.h"

#include <QList>
#include <QStringList>

namespace kalvaro {

// A desktop that starts and opens nothing, but remembers what it was asked for.
class FakeArbeitsplatz final : public Arbeitsplatz
{
public:
    void starten(const QString &buendel, QObject *besitzer,
                 std::function<void(std::optional<QString>)> fertig) override;
    void oeffnen(const QUrl &adresse) override;
    void beiAufwachen(std::function<void()> ruf) override { geweckt = std::move(ruf); }
    void nachVorn(QWindow &fenster) override;
    void auftreten(Auftritt auftritt) override;

    std::optional<QString> fehler; // what the next starts fail with

    std::function<void()> geweckt; // to be called as the computer wakes; empty without a listener

    QStringList starts;
    QList<QUrl> adressen;
    QList<Auftritt> auftritte;
    QList<const QWindow *> vorne; // what was brought to the front
};

} // namespace kalvaro
