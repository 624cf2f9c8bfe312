#pragma once

#include "platform/arbeitsplatz.h"
#include "platform/macos/arbeitsplatzzugang.h"

#include <QObject>

namespace kalvaro {

// The desktop session under macOS. Needs a QGuiApplication.
class MacArbeitsplatz final : public QObject, public Arbeitsplatz
{
public:
    explicit MacArbeitsplatz(Arbeitsplatzzugang zugang);

    // By LaunchServices, which may first ask the user whether the application is to be trusted: the
    // answer takes as long as that.
    void starten(const QString &buendel, QObject *besitzer,
                 std::function<void(std::optional<QString>)> fertig) override;

    void oeffnen(const QUrl &adresse) override;

    void beiAufwachen(std::function<void()> geweckt) override;

    void nachVorn(QWindow &fenster) override;

    // With or without a tile in the Dock and a menu bar.
    void auftreten(Auftritt auftritt) override;

private:
    const Arbeitsplatzzugang zugang_;
    std::function<void()> geweckt_;
    Arbeitsplatzzugang::Halter wache_; // while somebody listens
};

} // namespace kalvaro
