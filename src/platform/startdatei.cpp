#include "platform/startdatei.h"

#include "foundation/gewoehnlichedatei.h"
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
        schreiben();
    } else {
        QFile::remove(datei_);
    }
    protokoll(u"Start beim Anmelden: "_s + (einschalten ? u"an"_s : u"aus"_s));
}

void Startdatei::nachfuehren()
{
    constexpr qint64 hoechstens = 65536; // bytes; ours have a few hundred
    const auto vorhanden = gewoehnlichLesen(datei_, hoechstens);
    if (vorhanden && ueberholt(*vorhanden)) {
        schreiben();
    }
}

bool Startdatei::ueberholt(const QByteArray & /*vorhanden*/) const
{
    return false;
}

void Startdatei::schreiben()
{
    QDir().mkpath(QFileInfo(datei_).path());
    QSaveFile ziel(datei_);
    if (ziel.open(QIODevice::WriteOnly)) {
        ziel.write(inhalt());
        ziel.commit();
    }
}

} // namespace kalvaro
