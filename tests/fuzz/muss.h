#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QTemporaryDir>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

// What the fuzz targets have in common.
namespace kalvaro {

// What must hold for every input; otherwise the target breaks off, and libFuzzer keeps the input.
inline void muss(bool bedingung, const char *was)
{
    if (!bedingung) {
        std::fprintf(stderr, "Does not hold: %s\n", was);
        std::abort();
    }
}

inline QByteArray bytes(const std::uint8_t *daten, std::size_t anzahl)
{
    return {reinterpret_cast<const char *>(daten), static_cast<qsizetype>(anzahl)};
}

// The JSON in `inhalt`; undefined when it is none.
inline QJsonValue json(const QByteArray &inhalt)
{
    const QJsonDocument dokument = QJsonDocument::fromJson(inhalt);
    if (dokument.isNull()) {
        return QJsonValue::Undefined;
    }
    return dokument.isArray() ? QJsonValue(dokument.array()) : QJsonValue(dokument.object());
}

// A data folder of the target's own, gone with the process.
inline void eigenerDatenordner()
{
    static const QTemporaryDir ordner;
    qputenv("XDG_DATA_HOME", ordner.path().toLocal8Bit());
}

} // namespace kalvaro

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *daten, std::size_t anzahl);
