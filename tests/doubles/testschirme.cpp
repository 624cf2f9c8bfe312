#include "doubles/testschirme.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryFile>

namespace kalvaro {

using namespace Qt::StringLiterals;

void schirmeEinrichten(const QList<QSize> &groessen)
{
    static QTemporaryFile datei; // read when the application is made
    QJsonArray schirme;          // the plug-in orders them by their names
    int links = 0;
    for (const QSize &groesse : groessen) {
        schirme.append(QJsonObject{
            {u"name"_s,
             u"%1: %2x%3"_s.arg(schirme.size()).arg(groesse.width()).arg(groesse.height())},
            {u"x"_s, links},
            {u"y"_s, 0},
            {u"width"_s, groesse.width()},
            {u"height"_s, groesse.height()},
            {u"logicalDpi"_s, 96},
            {u"logicalBaseDpi"_s, 96},
            {u"dpr"_s, 1}});
        links += groesse.width();
    }
    if (!datei.open()) {
        qFatal("The screens cannot be written");
    }
    datei.write(QJsonDocument(QJsonObject{{u"screens"_s, schirme}}).toJson());
    datei.close();
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + datei.fileName().toUtf8());
}

} // namespace kalvaro
