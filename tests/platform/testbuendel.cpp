#include "platform/testbuendel.h"

#include <QDir>
#include <QFileInfo>

#include <plist/plist.h>
#include <unistd.h>

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
    plist_to_xml_free(bytes);
    plist_free(wurzel);
    return inhalt;
}

void dateiSchreiben(const QString &name, const QByteArray &inhalt, bool ausfuehrbar)
{
    QDir().mkpath(QFileInfo(name).path());
    QFile datei(name);
    if (!datei.open(QIODevice::WriteOnly) || datei.write(inhalt) != inhalt.size()) {
        qFatal("Cannot write a file of the test");
    }
    if (ausfuehrbar) {
        datei.setPermissions(QFile::Permissions(0x7755));
    }
}

void buendelSchreiben(const QString &ordner, const QByteArray &info)
{
    QDir().mkpath(ordner + u"/Contents/MacOS"_s);
    dateiSchreiben(ordner + u"/Contents/Info.plist"_s, info);
}

Ohnmacht::Ohnmacht()
    : warRoot(::geteuid() == 0)
{
    constexpr uid_t nobody = 65534;
    if (warRoot && ::setresuid(nobody, nobody, 0) != 0) {
        qFatal("Cannot give up root");
    }
}

Ohnmacht::~Ohnmacht()
{
    if (warRoot && ::setresuid(0, 0, 0) != 0) {
        qFatal("Cannot become root again");
    }
}

} // namespace kalvaro
