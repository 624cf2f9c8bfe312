#include "settingswindow/textvorrat.h"

#include <algorithm>

namespace kalvaro {

namespace {

constexpr uchar ersteFortsetzung = 0x80;
constexpr uchar letzterSchmaler = 0xc3; // leads what Latin-1 has beyond ASCII, as does 0xc2

Textort ort(qsizetype ab, qsizetype laenge, bool breit)
{
    Textort o;
    o.ab = static_cast<quint32>(ab);
    o.laenge = static_cast<quint32>(laenge) & 0x7fffffffU;
    o.breit = breit ? 1U : 0U;
    return o;
}

} // namespace

Textort Textvorrat::hinzu(QStringView text)
{
    const bool schmal =
        std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() <= 0xff; });
    if (!schmal) {
        const Textort o = ort(breit_.size(), text.size(), true);
        breit_.append(text);
        return o;
    }
    const Textort o = ort(schmal_.size(), text.size(), false);
    for (const QChar c : text) {
        schmal_.append(static_cast<char>(c.unicode()));
    }
    return o;
}

Textort Textvorrat::hinzuUtf8(QByteArrayView bytes)
{
    const auto *const von = reinterpret_cast<const uchar *>(bytes.data());
    const auto *const bis = von + bytes.size();
    uchar hoechstes = 0;
    for (const uchar *b = von; b != bis; ++b) {
        hoechstes = std::max(hoechstes, *b);
    }
    if (hoechstes > letzterSchmaler) {
        return hinzu(QString::fromUtf8(bytes));
    }
    const qsizetype ab = schmal_.size();
    if (hoechstes < ersteFortsetzung) {
        schmal_.append(bytes);
    } else {
        for (const uchar *b = von; b != bis; ++b) {
            const bool zwei = *b >= ersteFortsetzung;
            const unsigned zeichen = zwei ? (*b & 0x03U) << 6U | (b[1] & 0x3fU) : *b;
            schmal_.append(static_cast<char>(static_cast<uchar>(zeichen)));
            b += zwei ? 1 : 0;
        }
    }
    return ort(ab, schmal_.size() - ab, false);
}

QString Textvorrat::text(Textort ort) const
{
    return ort.breit != 0 ? breit(ort).toString() : QString(schmal(ort));
}

void Textvorrat::abschliessen()
{
    schmal_.squeeze();
    breit_.squeeze();
}

} // namespace kalvaro
