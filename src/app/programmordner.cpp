#include "app/programmordner.h"

#include <QDir>

namespace kalvaro {

using namespace Qt::StringLiterals;

QString programmordner()
{
    const QString eigener = qEnvironmentVariable("KALVARO_APPLICATIONS");
    return eigener.isEmpty() ? u"/Applications"_s : QDir(eigener).absolutePath();
}

} // namespace kalvaro
