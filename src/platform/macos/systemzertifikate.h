#pragma once

#include <QString>

namespace kalvaro {

// Has OpenSSL trust the authorities that the system ships with, in `datei`, unless the environment
// (SSL_CERT_FILE or SSL_CERT_DIR, openssl-env(7)) names others or there is no such file. The one in
// the bundle was built for Homebrew's folders, which most Macs do not have.
void systemzertifikateNehmen(const QString &datei = QStringLiteral("/etc/ssl/cert.pem"));

} // namespace kalvaro
