#pragma once

#include "doubles/buendel.h"
#include "doubles/datenordner.h"
#include "doubles/fakeanmeldestart.h"
#include "doubles/fakearbeitsplatz.h"
#include "doubles/fakeprozesse.h"
#include "doubles/scripttransport.h"
#include "doubles/testuhr.h"
#include "doubles/treiberdouble.h"
#include "foundation/einstellungen.h"
#include "mainwindow/hauptfenster.h"
#include "rekordbox/rekordbox.h"
#include "server/zentrale.h"

#include <QAbstractButton>
#include <QLabel>
#include <QTemporaryDir>

#include <functional>
#include <memory>

namespace kalvaro {

// A main window with doubles all around it.
struct Fensterprobe
{
    struct Aufbau
    {
        bool mitTreiber = true;
        std::optional<QString> bild = {};
        QStringList versionen = {QStringLiteral("7.1.4")};
        bool autostart = false;
        Transport *netz = nullptr; // instead of the script
        QStringList server = {QStringLiteral("http://cloud")};
        QString geraet = QStringLiteral("studio-mac");
        QString schluessel = QStringLiteral("schluessel");
        QString name = QStringLiteral("Studio-Mac");
    };

    explicit Fensterprobe(const Aufbau &aufbau);
    Fensterprobe()
        : Fensterprobe(Aufbau{})
    {
    }

    // Lets everything that is posted happen; no time passes.
    static void ruhe();

    // Answers the requests that the window makes itself; without a value they hang.
    std::optional<QByteArray> stand = QByteArray("{}");
    std::optional<QByteArray> antwort = std::nullopt;

    template<typename T = QWidget>
    [[nodiscard]] T *teil(const QString &name) const
    {
        T *const gefunden = fenster->findChild<T *>(name);
        if (gefunden == nullptr) {
            qFatal("The window has no %s", qPrintable(name));
        }
        return gefunden;
    }

    [[nodiscard]] QString text(const QString &label) const { return teil<QLabel>(label)->text(); }
    [[nodiscard]] QString art() const;
    [[nodiscard]] QString titel() const { return text(QStringLiteral("lblTitel")); }
    [[nodiscard]] QString detail() const { return text(QStringLiteral("lblDetail")); }
    [[nodiscard]] QAbstractButton *knopf(const QString &name) const
    {
        return teil<QAbstractButton>(name);
    }
    [[nodiscard]] QString countdown() const; // its text; empty while it rests

    // An outcome that allows a start, with figures.
    [[nodiscard]] static Bewertung gut();

    // How many processes of these names run from now on.
    void laeuft(int rekordbox, int agent);

    // The paths of the requests that the window made itself.
    [[nodiscard]] QStringList anfragen() const;

    // Opens the window with a sync and answers it.
    void abgeglichen(const Bewertung &b);

    Testuhr uhr;
    Scripttransport netz{&uhr};
    FakeProzesse prozesse;
    FakeArbeitsplatz arbeitsplatz;
    FakeAnmeldestart anmeldestart;
    Programmordner programme;
    Rekordbox rekordbox;
    Zentrale zentrale;
    Einstellungen einst;
    std::unique_ptr<Treiberdouble> treiber;
    std::unique_ptr<Hauptfenster> fenster;
};

// Whether `tat`, done from within the running event loop, ends the program.
[[nodiscard]] bool beendetDasProgramm(const std::function<void()> &tat);

extern const QString rekordboxLaeuftDetail;

} // namespace kalvaro
