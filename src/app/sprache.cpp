#include "app/sprache.h"

#include "foundation/konstanten.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

#include <clocale>
#include <langinfo.h>

namespace kalvaro {

using namespace Qt::StringLiterals;

Utf8Rahmen::Utf8Rahmen()
    : vorher_(qgetenv("LC_ALL"))
{
    std::setlocale(LC_ALL, "");
    if (qstricmp(::nl_langinfo(CODESET), "UTF-8") != 0) {
        qputenv("LC_ALL", "C.UTF-8");
        gesetzt_ = true;
    }
}

Utf8Rahmen::~Utf8Rahmen()
{
    if (gesetzt_ && vorher_.isNull()) {
        qunsetenv("LC_ALL");
    } else if (gesetzt_) {
        qputenv("LC_ALL", vorher_);
    }
}

void deutschEinrichten(QCoreApplication &anwendung)
{
    QLocale::setDefault(QLocale(QString::fromLatin1(deutsch)));
    auto *const katalog = new QTranslator(&anwendung);
    if (katalog->load(u"qtbase_de"_s, QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        QCoreApplication::installTranslator(katalog);
    }
}

} // namespace kalvaro
