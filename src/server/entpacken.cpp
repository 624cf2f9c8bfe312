#include "server/entpacken.h"

#include <QList>

#include <zlib.h>

#include <array>
#include <optional>

namespace kalvaro {

namespace {

using Ergebnis = tl::expected<QByteArray, Entpackfehler>;

// zlib's window sizes: 32 more accepts gzip and zlib headers alike, negative means no header.
constexpr int mitKopf = MAX_WBITS + 32;
constexpr int ohneKopf = -MAX_WBITS;

constexpr qsizetype groesstesStueck = 65536;

class Strom
{
public:
    Strom(const QByteArray &daten, int fenster)
    {
        // zlib reads from the bytes only; its interface predates const.
        strom_.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(daten.constData()));
        strom_.avail_in = static_cast<uInt>(daten.size());
        bereit_ = inflateInit2(&strom_, fenster) == Z_OK;
    }
    ~Strom() { inflateEnd(&strom_); }
    Strom(const Strom &) = delete;
    Strom &operator=(const Strom &) = delete;

    [[nodiscard]] Ergebnis alles(qsizetype grenze)
    {
        // At once, for growing step by step takes twice as much in between. What is not written to
        // takes nothing.
        QByteArray klartext;
        klartext.reserve(grenze + groesstesStueck);
        std::array<char, groesstesStueck> stueck; // left uninitialised: zlib fills it
        while (bereit_) {
            strom_.next_out = reinterpret_cast<Bytef *>(stueck.data());
            strom_.avail_out = stueck.size();
            const int stand = inflate(&strom_, Z_NO_FLUSH);
            klartext.append(stueck.data(),
                            static_cast<qsizetype>(stueck.size() - strom_.avail_out));
            if (klartext.size() > grenze) {
                return tl::unexpected(Entpackfehler::ZuGross);
            }
            if (stand == Z_STREAM_END && strom_.avail_in == 0) {
                klartext.squeeze();
                return klartext;
            }
            // A gzip file may hold several members (RFC 1952, 2.2).
            const bool weiter =
                stand == Z_STREAM_END ? inflateReset(&strom_) == Z_OK : stand == Z_OK;
            if (!weiter) {
                break;
            }
        }
        return tl::unexpected(Entpackfehler::Unlesbar);
    }

private:
    z_stream strom_{};
    bool bereit_ = false;
};

// The one coding that `kodierung` names; empty when it names none, absent when it names several.
std::optional<QByteArray> einzige(const QByteArray &kodierung)
{
    QByteArray fund;
    const QList<QByteArray> namen = kodierung.toLower().split(',');
    for (const QByteArray &name : namen) {
        const QByteArray knapp = name.trimmed();
        if (knapp.isEmpty() || knapp == "identity") {
            continue;
        }
        if (!fund.isEmpty()) {
            return {};
        }
        fund = knapp;
    }
    return fund;
}

} // namespace

Ergebnis entpacken(const QByteArray &daten, const QByteArray &kodierung, qsizetype grenze)
{
    const auto name = einzige(kodierung);
    if (!name) {
        return tl::unexpected(Entpackfehler::Unlesbar);
    }
    if (name->isEmpty() || daten.isEmpty()) {
        return daten;
    }
    if (*name == "gzip" || *name == "x-gzip") {
        return Strom(daten, mitKopf).alles(grenze);
    }
    if (*name == "deflate") {
        const Ergebnis ergebnis = Strom(daten, mitKopf).alles(grenze);
        const bool roh = !ergebnis && ergebnis.error() == Entpackfehler::Unlesbar;
        return roh ? Strom(daten, ohneKopf).alles(grenze) : ergebnis;
    }
    return tl::unexpected(Entpackfehler::Unlesbar);
}

} // namespace kalvaro
