#include "foundation/einstellungen.h"

#include "foundation/datenordner.h"
#include "foundation/gewoehnlichedatei.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

// Nobody has seen what is in a file that could not be read, so it is put aside before it would be
// replaced. The first such file is kept; it is the one with what the user chose.
void ungeleseneBewahren(const QString &pfad)
{
    if (QFileInfo(pfad).isFile() && !gewoehnlichLesen(pfad)) {
        QFile::rename(pfad, pfad + u".ungelesen"_s);
    }
}

} // namespace

Einstellungen::Einstellungen()
    : pfad_(datei(u"einstellungen.json"_s))
{
    const auto bytes = gewoehnlichLesen(pfad_);
    if (!bytes) {
        return;
    }
    const QJsonObject felder = QJsonDocument::fromJson(*bytes).object();
    const QJsonValue start = felder[u"autostart"];
    // The numbers 0 and 1 count as false and true, as older files hold them.
    autostart = start.toBool() || start.toDouble() == 1;
    version = felder[u"version"].toString();
    updateGemeldet = felder[u"update_gemeldet"].toString();
}

void Einstellungen::speichern() const
{
    const QJsonObject felder{{u"autostart"_s, autostart},
                             {u"version"_s, version},
                             {u"update_gemeldet"_s, updateGemeldet}};
    QSaveFile ziel(pfad_);
    if (!ziel.open(QIODevice::WriteOnly)) {
        return;
    }
    // The rights are those of the old file, which may have kept us from reading it.
    ziel.setPermissions(ziel.permissions() | QFile::ReadOwner | QFile::WriteOwner);
    const QByteArray bytes = QJsonDocument(felder).toJson(QJsonDocument::Compact);
    // Without the flush commit() does not notice a full disk. Uncommitted, the old file stays.
    if (ziel.write(bytes) == bytes.size() && ziel.flush()) {
        ungeleseneBewahren(pfad_);
        ziel.commit();
    }
}

} // namespace kalvaro
