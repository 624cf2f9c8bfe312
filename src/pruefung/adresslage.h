#pragma once

#include "pruefung/befund.h"
#include "server/transport.h"
#include "server/zentralefehler.h"

#include <QDateTime>

#include <chrono>
#include <optional>

namespace kalvaro {

// What asking one address of the account brought.
struct Adresslage
{
    using Antwort = tl::expected<Netzantwort, ZentraleFehler>;
    enum class Name { Gesucht, Gefunden, Unbekannt };

    QString adresse{};
    Name name = Name::Gesucht;         // of the host: not known yet, or what became of it
    Antwort status{};                  // to the question whether it is there
    std::chrono::milliseconds dauer{}; // that this took
    std::optional<Antwort> stand{};    // to the read-only question with the key; absent: not asked
};

// What of the account matters to an address.
struct Adressangaben
{
    QString geraet{};
    QString schluessel{};
    QString kontodatei{};
    QDateTime jetzt{};
};

// Whether the program can work with this address.
[[nodiscard]] Befund adressbefund(const Adresslage &lage, const Adressangaben &angaben);

// What is wrong with how the address is written, with what to do about it; empty when nothing is.
[[nodiscard]] QString schreibmangel(const QString &adresse);

} // namespace kalvaro
