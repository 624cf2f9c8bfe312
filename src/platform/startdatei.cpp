#include "platform/startdatei.h"

#include "foundation/protokoll.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace kalvaro {

using namespace Qt::StringLiterals;

Startdatei::Startdatei(QString datei)
    : datei_(std::move(datei))
{
}

bool Startdatei::an() const
{
    return QFileInfo::exists(datei_);
}

void Startdatei::setzen(bool einschalten)
{
    if (einschalten) {
        QDir().mkpath(QFileInfo(datei_).path());
        QSaveFile ziel(datei_);
        if (ziel.open(QIODevice::WriteOnly)) {
            ziel.write(inhalt());
            ziel.commit();
        }
    } else {
        QFile::remove(datei_);
    }
    protokoll(u"Start beim Anmelden: "_s + (einschalten ? u"an"_s : u"aus"_s));
}

} // namespace kalvaro
