#pragma once

#include <QByteArray>

namespace kalvaro {

// CRC-32 as RFC 1952, 8 defines it.
inline quint32 crc32(const QByteArray &daten)
{
    quint32 summe = 0xFFFFFFFF;
    for (const char zeichen : daten) {
        summe ^= static_cast<quint8>(zeichen);
        for (int bit = 0; bit < 8; ++bit) {
            summe = (summe >> 1) ^ ((summe & 1) ? 0xEDB88320 : 0);
        }
    }
    return ~summe;
}

inline QByteArray kleinesEnde(quint32 zahl)
{
    QByteArray bytes;
    for (int i = 0; i < 4; ++i) {
        bytes.append(static_cast<char>(zahl >> (8 * i)));
    }
    return bytes;
}

// The body as "Content-Encoding: deflate" has it: with the zlib header, and without as some
// servers send it.
inline QByteArray deflate(const QByteArray &daten)
{
    return qCompress(daten, 9).mid(4);
}
inline QByteArray deflateOhneKopf(const QByteArray &daten)
{
    return deflate(daten).mid(2).chopped(4);
}

inline QByteArray gzip(const QByteArray &daten)
{
    const QByteArray kopf("\x1f\x8b\x08\0\0\0\0\0\0\x03", 10);
    return kopf + deflateOhneKopf(daten) + kleinesEnde(crc32(daten)) +
           kleinesEnde(static_cast<quint32>(daten.size()));
}

} // namespace kalvaro
