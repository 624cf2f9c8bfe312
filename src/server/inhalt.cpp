#include "server/inhalt.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace kalvaro {

namespace {

// What Qt's tree of JSON takes, in bytes, measured with Qt 6.4 and rounded down.
constexpr qint64 jeBehaelter = 150;
constexpr qint64 jeWert = 16;
constexpr qint64 jeText = 16;

constexpr qint64 immerErlaubt = qint64{64} * 1024 * 1024;

// An estimate of what `daten` and their tree take together. Only looks at what separates values.
qint64 speicher(const QByteArray &daten)
{
    qint64 summe = daten.size();
    bool imText = false;
    for (auto z = daten.begin(); z != daten.end(); ++z) {
        if (imText) {
            if (*z == '\\' && z + 1 != daten.end()) {
                ++z;
            } else if (*z == '"') {
                imText = false;
            }
            continue;
        }
        switch (*z) {
        case '"':
            imText = true;
            summe += jeText;
            break;
        case '[':
        case '{':
            summe += jeBehaelter + jeWert;
            break;
        case ',':
        case ':':
            summe += jeWert;
            break;
        default:
            break;
        }
    }
    return summe;
}

} // namespace

std::optional<QJsonValue> inhalt(const QByteArray &daten)
{
    // Each byte may open a list; so small an answer fits in any case.
    const bool immer = daten.size() * (jeBehaelter + jeWert + 1) <= immerErlaubt;
    if (!immer && speicher(daten) > immerErlaubt + 3 * qint64{daten.size()}) {
        return {};
    }
    const QJsonDocument dokument = QJsonDocument::fromJson(daten);
    if (dokument.isArray()) {
        return dokument.array();
    }
    return dokument.object();
}

} // namespace kalvaro
