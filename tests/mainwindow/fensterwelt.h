#pragma once

#include "ablauf/ablauf.h"
#include "doubles/testumgebung.h"
#include "mainwindow/hauptfenster.h"
#include "ui/knoepfe.h"

#include <QAbstractButton>
#include <QLabel>

#include <functional>
#include <memory>

namespace kalvaro {

// A main window with what it acts on, and doubles all around it.
struct Fensterwelt : Testumgebung
{
    struct Aufbau
    {
        Verbleib verbleib = Verbleib::Menueleiste;
        std::optional<QString> bild = {};
        QStringList versionen = {QStringLiteral("7.1.4")};
        bool autostart = false;
        Transport *netz = nullptr; // instead of the script
        QStringList server = {QStringLiteral("http://cloud")};
        QString geraet = QStringLiteral("studio-mac");
        QString schluessel = QStringLiteral("schluessel");
        QString name = QStringLiteral("Studio-Mac");
    };

    explicit Fensterwelt(const Aufbau &aufbau);
    Fensterwelt()
        : Fensterwelt(Aufbau{})
    {
    }

    // Lets everything that is posted happen; no time passes.
    static void ruhe();

    // Answers the question for the state; without a value it hangs.
    std::optional<QByteArray> stand = QByteArray("{}");

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
    [[nodiscard]] std::optional<Art> art() const; // absent while it loads
    [[nodiscard]] QString titel() const { return text(QStringLiteral("lblTitel")); }
    [[nodiscard]] QString detail() const { return text(QStringLiteral("lblDetail")); }
    [[nodiscard]] QAbstractButton *knopf(const QString &name) const
    {
        return teil<QAbstractButton>(name);
    }
    [[nodiscard]] QString countdown() const; // its text; empty while it rests

    // A sync or a start is under way that the window shows: it takes no new one.
    [[nodiscard]] bool beschaeftigt() const
    {
        return teil<Verweis>(QStringLiteral("lnkAbgleich"))->beschaeftigt();
    }

    // The server's answer to a sync that ended in `zustand`: with figures, in full operation;
    // `mehr` adds keys and replaces them.
    [[nodiscard]] static Transport::Ergebnis antwort(const QString &zustand,
                                                     const QJsonObject &mehr = {});
    [[nodiscard]] static Transport::Ergebnis gut(const QJsonObject &mehr = {})
    {
        return antwort(QStringLiteral("aktuell"), mehr);
    }
    [[nodiscard]] static Transport::Ergebnis offline();

    // Answers the sync that hangs.
    void beantworten(const Transport::Ergebnis &antwort);

    // Opens the window with a sync and answers it.
    void abgeglichen(const Transport::Ergebnis &antwort = gut());

    // The questions for the state that reached the server.
    [[nodiscard]] QStringList standfragen() const { return wege().filter(QStringLiteral("stand")); }

    // rekordbox starts or quits, and the watch sees it.
    void rekordboxGestartet();
    void rekordboxBeendet();

    // How many processes of these names run from now on.
    void laeuft(int rekordbox, int agent);

    Ablauf ablauf;
    std::unique_ptr<Hauptfenster> fenster;

    QStringList hinweise;      // that starts gave
    int beendenGewuenscht = 0; // how often the end of the program was asked for
};

// Whether `tat`, done from within the running event loop, ends the program.
[[nodiscard]] bool beendetDasProgramm(const std::function<void()> &tat);

extern const QString rekordboxLaeuftDetail;

} // namespace kalvaro
