#pragma once

#include "ui/karte.h"

#include <QDateTime>
#include <QJsonValue>

#include <optional>

namespace kalvaro {

class Beschriftung;
class Tabellenzahl;

// The figures of the library: four tiles and two lines.
class Zahlenkarte : public Karte
{
    Q_OBJECT

public:
    explicit Zahlenkarte(QWidget *parent = nullptr);

    // Shows the figures of the server's answer. An answer without them leaves the tiles as they
    // are. `frei`: bytes free on this Mac. `jetzt`: the moment of the check.
    void zeige(const QJsonValue &antwort, std::optional<double> frei, const QDateTime &jetzt);

private:
    [[nodiscard]] QWidget *kachelreihe();
    void zahlSetzen(qsizetype stelle, const QString &inhalt);

    QList<Tabellenzahl *> zahlen_; // titles, playlists, hot cues, music size
    QStringList unterschriften_;   // theirs
    Beschriftung *const lblZeile1_;
    Beschriftung *const lblZeile2_;
};

} // namespace kalvaro
