#pragma once

#include "assessment/anlass.h"
#include "assessment/bewertung.h"
#include "server/zentralefehler.h"

#include <functional>

class QObject;

namespace kalvaro {

class Zentrale;

// Reads the verdict out of the server's answer to a sync request. Pure; the caller logs. Missing
// keys read as empty, so a missing state is an unknown one.
[[nodiscard]] Bewertung antwortBewerten(const QJsonValue &antwort);

// What a failed sync request means. Pure.
[[nodiscard]] Bewertung fehlerBewerten(const ZentraleFehler &fehler);

// Asks the server to reconcile this Mac's library ("Abgleich"), for up to 480 s, and hands over
// what came of it. Never fails: every failure is a Bewertung. For `fertig` see Einmalruf.
void bewerten(Zentrale &zentrale, Anlass anlass, QObject *besitzer,
              std::function<void(const Bewertung &)> fertig);

} // namespace kalvaro
