#pragma once

#include "foundation/uhr.h"

#include <QList>
#include <QNetworkProxy>
#include <QUrl>

#include <functional>

class QObject;

namespace kalvaro {

// The ways in the order to be tried, at least one; NoProxy: direct. Most systems name the direct
// one as the last resort after a proxy.
using Proxyliste = QList<QNetworkProxy>;

// The way to `ziel`: what the environment says of it (see umgebungsproxy()), else the system: its
// settings, or a script for automatic configuration. Addresses of loopback and of the local link,
// and those that no_proxy names, are always reached directly.
//
// The system answers when it likes, or never: a script lies on a server. It is asked on a thread of
// its own, about one thing at a time, and nobody waits for that thread: where the answer has not
// come within `geduld`, or a question that is older than that is still open, the way is direct. For
// `fertig` see Einmalruf. `uhr` must outlive the question.
void systemproxy(const QUrl &ziel, Sekunden geduld, Uhr &uhr, QObject *besitzer,
                 std::function<void(Proxyliste)> fertig);

} // namespace kalvaro
