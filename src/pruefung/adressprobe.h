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

// Asks one address of the account as the program would: first whether it is there (4 s at most),
// then, with the key, for the state of the device (8 s at most), which changes nothing. For
// `fertig` see Einmalruf; `zentrale` and `uhr` must outlive it.
void adresseProben(const QString &adresse, Zentrale &zentrale, const Uhr &uhr,
                   const Namenssuche &suchen, QObject *besitzer,
                   std::function<void(const Adresslage &)> fertig);

} // namespace kalvaro
