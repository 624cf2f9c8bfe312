#include "app/sprache.h"

#include "foundation/konstanten.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace kalvaro {

using namespace Qt::StringLiterals;

void deutschEinrichten(QCoreApplication &anwendung)
{
    QLocale::setDefault(QLocale(QString::fromLatin1(deutsch)));
    auto *const katalog = new QTranslator(&anwendung);
    if (katalog->load(u"qtbase_de"_s, QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        QCoreApplication::installTranslator(katalog);
    }
}

} // namespace kalvaro
