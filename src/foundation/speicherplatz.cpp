#include "foundation/speicherplatz.h"

#include <QDir>

#include <filesystem>

namespace kalvaro {

std::optional<double> freiAufMac()
{
    std::error_code fehler;
    const auto platz = std::filesystem::space(QDir::homePath().toStdString(), fehler);
    if (fehler) {
        return std::nullopt;
    }
    return static_cast<double>(platz.available);
}

} // namespace kalvaro
