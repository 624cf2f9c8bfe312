#include "platform/startdatei.h"

#include "foundation/protokoll.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace kalvaro {

using namespace Qt::StringLiterals;

Startdatei::Startdatei(QString datei)
    : ort_(std::move(datei))
{
}

bool Startdatei::an() const
{
    return QFileInfo::exists(ort_);
}

void Startdatei::setzen(bool einschalten)
{
    if (einschalten) {
        QDir().mkpath(QFileInfo(ort_).path());
        QSaveFile ziel(ort_);
        if (ziel.open(QIODevice::WriteOnly)) {
            ziel.write(inhalt());
            ziel.commit();
        }
    } else {
        QFile::remove(ort_);
    }
    protokoll(u"Start beim Anmelden: "_s + (einschalten ? u"an"_s : u"aus"_s));
}

} // namespace kalvaro
