#include "platform/macos/systemzertifikate.h"

#include <QFile>

namespace kalvaro {

void systemzertifikateNehmen(const QString &datei)
{
    const bool gewaehlt =
        qEnvironmentVariableIsSet("SSL_CERT_FILE") || qEnvironmentVariableIsSet("SSL_CERT_DIR");
    if (!gewaehlt && QFile::exists(datei)) {
        qputenv("SSL_CERT_FILE", QFile::encodeName(datei));
    }
}

} // namespace kalvaro
