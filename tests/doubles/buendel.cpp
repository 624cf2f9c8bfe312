#include "doubles/buendel.h"

#include "doubles/dateien.h"

#include <QDir>

#include <plist/plist.h>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

plist_t knoten(const QVariant &wert)
{
    if (wert.typeId() == QMetaType::QString) {
        return plist_new_string(wert.toString().toUtf8().constData());
    }
    if (wert.typeId() == QMetaType::QStringList) {
        plist_t liste = plist_new_array();
        for (const QString &text : wert.toStringList()) {
            plist_array_append_item(liste, plist_new_string(text.toUtf8().constData()));
        }
        return liste;
    }
    return plist_new_uint(wert.toULongLong());
}

} // namespace

QByteArray plistBytes(Plistform form, const QMap<QString, QVariant> &eintraege)
{
    plist_t wurzel = plist_new_dict();
    for (auto i = eintraege.begin(); i != eintraege.end(); ++i) {
        plist_dict_set_item(wurzel, i.key().toUtf8().constData(), knoten(i.value()));
    }
    char *bytes = nullptr;
    uint32_t laenge = 0;
    if (form == Plistform::Xml) {
        plist_to_xml(wurzel, &bytes, &laenge);
    } else {
        plist_to_bin(wurzel, &bytes, &laenge);
    }
    QByteArray inhalt(bytes, static_cast<qsizetype>(laenge));
    PLIST_FREI(bytes);
    plist_free(wurzel);
    return inhalt;
}

void buendelSchreiben(const QString &ordner, const QByteArray &info)
{
    QDir().mkpath(ordner + u"/Contents/MacOS"_s);
    dateiSchreiben(ordner + u"/Contents/Info.plist"_s, info);
}

Programmordner::Programmordner(const QStringList &versionen)
{
    for (const QString &version : versionen) {
        installieren(version);
    }
}

QString Programmordner::buendel(const QString &version) const
{
    return ordner_.filePath(u"rekordbox %1/rekordbox.app"_s.arg(version));
}

QString Programmordner::installieren(const QString &version) const
{
    QString ort = buendel(version);
    buendelSchreiben(ort, plistBytes(Plistform::Xml, {{u"CFBundleShortVersionString"_s, version}}));
    return ort;
}

void Programmordner::deinstallieren(const QString &version) const
{
    QDir(ordner_.filePath(u"rekordbox "_s + version)).removeRecursively();
}

} // namespace kalvaro
