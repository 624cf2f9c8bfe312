#pragma once

#include "ansichten.h"

#include <QImage>
#include <QList>
#include <QString>

#include <functional>

namespace kalvaro {

constexpr Ansichten farben = Ansicht::Hell | Ansicht::Dunkel | Ansicht::Kontrast;
constexpr Ansichten anordnung = Ansicht::Hell | Ansicht::Rechts | Ansicht::Gross;
constexpr Ansichten massstab = Ansicht::Hell | Ansicht::Doppelt;
constexpr Ansichten alles = farben | anordnung | massstab;

// Something to draw, under the appearance that is set. Its name is part of the file's.
struct Szene
{
    QString name;
    std::function<QImage()> zeichnen;
    Ansichten ansichten = alles; // where it may look otherwise
};

[[nodiscard]] QList<Szene> bedienszenen();       // what can be pressed, chosen or typed into
[[nodiscard]] QList<Szene> baumszenen();         // the tree of playlists and its scroll bars
[[nodiscard]] QList<Szene> anzeigeszenen();      // what only shows
[[nodiscard]] QList<Szene> fensterszenen();      // the main window
[[nodiscard]] QList<Szene> blattszenen();        // the settings sheet
[[nodiscard]] QList<Szene> schreibtischszenen(); // menus, alerts, the symbol in the tray

} // namespace kalvaro
