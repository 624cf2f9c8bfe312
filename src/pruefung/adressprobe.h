#pragma once

#include "pruefung/adresslage.h"

#include <functional>

class QObject;

namespace kalvaro {

class Uhr;
class Zentrale;

// Looks up the name of a host and tells whether it is known. For `fertig` see Einmalruf.
using Namenssuche =
    std::function<void(const QString &host, QObject *besitzer, std::function<void(bool)> fertig)>;

// By the system's name service. A look-up cannot be cancelled; it may outlive its owner.
void namenSuchen(const QString &host, QObject *besitzer, std::function<void(bool)> fertig);

// The ways into the network that explain what went wrong.
struct Netzblick
{
    Namenssuche name{};
    Zertifikatsblick zertifikat{};
};

// Asks one address of the account as the program would: first whether it is there (4 s at most),
// then, with the key, for the state of the device (8 s at most), which changes nothing. Where
// no secure connection comes about, it looks at the certificate instead. For `fertig` see
// Einmalruf; `zentrale` and `uhr` must outlive it.
void adresseProben(const QString &adresse, Zentrale &zentrale, const Uhr &uhr,
                   const Netzblick &blick, QObject *besitzer,
                   std::function<void(const Adresslage &)> fertig);

} // namespace kalvaro
