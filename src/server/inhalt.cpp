#include "server/inhalt.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <bit>
#include <utility>
#include <vector>

namespace kalvaro {

namespace {

constexpr qint64 immerErlaubt = qint64{64} * 1024 * 1024;

// What Qt's tree of JSON takes, in bytes: each list or map that is not empty has a head, a block
// with 16 bytes for each key and value, and one for all of its texts. Measured with Qt 6.4; the
// real tree takes between 0.9 and 1.1 of that, but for the few largest blocks.
constexpr qint64 kopf = 80;
constexpr qint64 jeWert = 16;
constexpr qint64 jeText = 8;

struct Behaelter
{
    qint64 werte = 0; // keys count as well
    qint64 texte = 0; // bytes
};

// A block as it has grown: a power of two with its own head of 16 bytes, and 16 of the heap's.
qint64 block(qint64 bytes)
{
    constexpr qint64 haupt = 16;
    return haupt + static_cast<qint64>(std::bit_ceil(static_cast<quint64>(bytes + haupt)));
}

qint64 groesse(const Behaelter &b)
{
    if (b.werte == 0) {
        return 0;
    }
    const qint64 texte = b.texte > 0 ? block(b.texte) : 0;
    return kopf + block(std::max<qint64>(b.werte, 2) * jeWert) + texte;
}

using Zeiger = QByteArray::const_iterator;

// The bytes that the text takes which begins at `z`; leaves `z` at its closing quote. With one
// character beyond ASCII all of it is kept with two bytes each.
qint64 textgroesse(Zeiger &z, Zeiger ende)
{
    const Zeiger anfang = z;
    bool breit = false;
    for (; z != ende && *z != '"'; ++z) {
        if (*z == '\\' && z + 1 != ende) {
            ++z;
            breit = breit || *z == 'u';
        }
        breit = breit || static_cast<signed char>(*z) < 0;
    }
    const qint64 laenge = z - anfang;
    // While it is read, a wide one stands beside its copy; of short ones that is soon over.
    constexpr qint64 kurz = qint64{64} * 1024;
    const qint64 bytes = laenge * (!breit ? 1 : laenge < kurz ? 2 : 4);
    return jeText + (bytes + jeText - 1) / jeText * jeText;
}

// An estimate of what the tree of `daten` takes. Only looks at what begins and ends values.
qint64 baumgroesse(const QByteArray &daten)
{
    constexpr QByteArrayView trenner = "[]{},: \t\r\n\"";
    qint64 summe = 0;
    std::vector<Behaelter> offene;
    Behaelter jetzt;
    const Zeiger ende = daten.end();
    for (Zeiger z = daten.begin(); z != ende; ++z) {
        switch (*z) {
        case '[':
        case '{':
            ++jetzt.werte;
            offene.push_back(std::exchange(jetzt, {}));
            break;
        case ']':
        case '}':
            summe += groesse(jetzt);
            if (offene.empty()) {
                return summe; // no JSON any more
            }
            jetzt = offene.back();
            offene.pop_back();
            break;
        case '"':
            ++jetzt.werte;
            jetzt.texte += textgroesse(++z, ende);
            if (z == ende) {
                return summe;
            }
            break;
        case ',':
        case ':':
        case ' ':
        case '\t':
        case '\r':
        case '\n':
            break;
        default:
            ++jetzt.werte;
            while (z + 1 != ende && !trenner.contains(z[1])) {
                ++z;
            }
        }
        // Deeper than Qt reads; each level costs us, too.
        constexpr std::size_t tiefsteEbene = 1024;
        if (offene.size() > tiefsteEbene) {
            return summe;
        }
    }
    return summe + groesse(jetzt);
}

} // namespace

std::optional<QJsonValue> inhalt(const QByteArray &daten)
{
    // The densest trees take 90 times their text; so small an answer fits in any case.
    constexpr qsizetype immerKlein = immerErlaubt / 100;
    if (daten.size() > immerKlein) {
        const qint64 baum = baumgroesse(daten);
        if (daten.size() + baum + baum / 5 > immerErlaubt + 3 * qint64{daten.size()}) {
            return {};
        }
    }
    const QJsonDocument dokument = QJsonDocument::fromJson(daten);
    if (dokument.isArray()) {
        return dokument.array();
    }
    return dokument.object();
}

} // namespace kalvaro
