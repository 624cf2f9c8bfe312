#include "pruefung/befund.h"

#include "foundation/klartext.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QUrl>

#include <algorithm>
#include <limits>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype laengsterText = 600;
constexpr qsizetype kuerzesterSchluessel = 4; // a shorter one would be found in our own words

QString bereinigterText(const QString &text, const QString &schluessel)
{
    const QString geheim = schluessel.size() < kuerzesterSchluessel ? QString() : schluessel;
    // Before it is cut, so that no part of the key is left, and after it has become plain.
    const QString klar = klartext(ohneSchluessel(text, geheim), std::numeric_limits<int>::max());
    return klartext(ohneSchluessel(klar, geheim), laengsterText);
}

} // namespace

bool allesGut(const QList<Befund> &befunde)
{
    return std::all_of(befunde.begin(), befunde.end(), [](const Befund &b) { return b.gut(); });
}

QString ohneSchluessel(QString text, const QString &schluessel)
{
    if (schluessel.isEmpty()) {
        return text;
    }
    // As it is, and as it comes back through JSON, a URL, or a server that takes UTF-8 for Latin-1.
    const QByteArray json = QJsonDocument(QJsonArray{schluessel}).toJson(QJsonDocument::Compact);
    for (const QString &form : {schluessel, QString::fromUtf8(json.sliced(2, json.size() - 4)),
                                QString::fromLatin1(QUrl::toPercentEncoding(schluessel)),
                                QString::fromLatin1(schluessel.toUtf8())}) {
        text.replace(form, u"•••"_s);
    }
    return text;
}

QList<Befund> bereinigt(QList<Befund> befunde, const QString &schluessel)
{
    for (Befund &b : befunde) {
        b.name = bereinigterText(b.name, schluessel);
        b.text = bereinigterText(b.text, schluessel);
        b.schritt = bereinigterText(b.schritt, schluessel);
    }
    return befunde;
}

QString alsText(const QList<Befund> &befunde)
{
    QString zeilen;
    for (const Befund &b : befunde) {
        const QString anfang = b.gut() ? u"✓ "_s : u"✗ "_s;
        const QString ende = b.gut() ? QString() : u" → "_s + b.schritt;
        zeilen += anfang + b.name + u": "_s + b.text + ende + u'\n';
    }
    return zeilen;
}

QByteArray alsJson(const QList<Befund> &befunde, QJsonObject mehr)
{
    QJsonArray liste;
    for (const Befund &b : befunde) {
        QJsonObject objekt{{u"bereich"_s, b.bereich},
                           {u"name"_s, b.name},
                           {u"gut"_s, b.gut()},
                           {u"text"_s, b.text}};
        if (!b.gut()) {
            objekt.insert(u"schritt"_s, b.schritt);
        }
        liste.append(objekt);
    }
    mehr.insert(u"gut"_s, allesGut(befunde));
    mehr.insert(u"befunde"_s, liste);
    return QJsonDocument(mehr).toJson();
}

} // namespace kalvaro
