#include "foundation/werte.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>
#include <cstdlib>
#include <locale.h>
#if __has_include(<xlocale.h>)
#include <xlocale.h> // where the BSDs and macOS have it
#endif

namespace kalvaro {

namespace {

// Appends `wert` as compact JSON; stops soon after it has become too long for a text.
void anhaengen(QByteArray &json, const QJsonValue &wert)
{
    if (wert.isArray()) {
        const QJsonArray liste = wert.toArray();
        json += '[';
        for (qsizetype i = 0; i < liste.size() && json.size() <= laengsterText; ++i) {
            json += i > 0 ? "," : "";
            anhaengen(json, liste.at(i));
        }
        json += ']';
    } else if (wert.isObject()) {
        const QJsonObject felder = wert.toObject();
        json += '{';
        for (auto feld = felder.begin(); feld != felder.end() && json.size() <= laengsterText;
             ++feld) {
            json += feld == felder.begin() ? "" : ",";
            anhaengen(json, feld.key());
            json += ':';
            anhaengen(json, feld.value());
        }
        json += '}';
    } else {
        const QJsonValue einer = wert.isString() ? QJsonValue(gekuerzt(wert.toString())) : wert;
        const QByteArray alsListe = QJsonDocument(QJsonArray{einer}).toJson(QJsonDocument::Compact);
        json += QByteArrayView(alsListe).sliced(1).chopped(1);
    }
}

QString zahltext(const QJsonValue &wert)
{
    const double d = wert.toDouble();
    // Whole numbers of up to 64 bits keep every digit, also those that a double would round.
    if (const qint64 ganz = wert.toInteger(1); ganz == wert.toInteger(2)) {
        return QString::number(ganz);
    }
    return QString::number(d, 'g', QLocale::FloatingPointShortest);
}

// Not every C++ library can read a double by std::from_chars, and Qt does not tell what is no
// number from what is too small for one.
std::optional<double> zahlAusText(const QString &roh)
{
    for (const QChar zeichen : roh) {
        const char16_t c = zeichen.unicode();
        const bool erlaubt = (c >= u'0' && c <= u'9') || c == u'+' || c == u'-' || c == u'.' ||
                             c == u'e' || c == u'E';
        if (!erlaubt) {
            return std::nullopt;
        }
    }
    static const locale_t sprachlos = ::newlocale(LC_ALL_MASK, "C", nullptr);
    const QByteArray ascii = roh.toLatin1();
    char *ende = nullptr;
    const double ergebnis = ::strtod_l(ascii.constData(), &ende, sprachlos);
    // Too small for a double is 0, too large is no number.
    const bool ganz = !ascii.isEmpty() && ende == ascii.constData() + ascii.size();
    return ganz && !std::isinf(ergebnis) ? std::optional(ergebnis) : std::nullopt;
}

} // namespace

QJsonValue pfad(const QJsonValue &wert, QStringView weg)
{
    QJsonValue jetzt = wert;
    for (const QStringView schluessel : weg.tokenize(u'.', Qt::SkipEmptyParts)) {
        if (!jetzt.isObject()) {
            return QJsonValue::Undefined;
        }
        jetzt = jetzt[schluessel];
    }
    return jetzt;
}

QString gekuerzt(const QString &text)
{
    constexpr qsizetype jeZeichen = 3; // bytes of UTF-8 for a unit of UTF-16, at most
    if (text.size() * jeZeichen <= laengsterText) {
        return text;
    }
    constexpr qsizetype auslassung = 3; // bytes of "…"
    qsizetype bytes = 0;
    qsizetype passend = 0; // units that leave room for the mark
    for (qsizetype i = 0; i < text.size();) {
        const bool paar =
            text.at(i).isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
        const char16_t c = text.at(i).unicode();
        bytes += paar ? 4 : c < 0x80 ? 1 : c < 0x800 ? 2 : jeZeichen;
        i += paar ? 2 : 1;
        if (bytes <= laengsterText - auslassung) {
            passend = i;
        } else if (bytes > laengsterText) {
            return text.first(passend) + u'…';
        }
    }
    return text;
}

QString text(const QJsonValue &wert, QStringView weg)
{
    const QJsonValue gefunden = pfad(wert, weg);
    switch (gefunden.type()) {
    case QJsonValue::Undefined:
    case QJsonValue::Null:
        return {};
    case QJsonValue::String:
        return gefunden.toString();
    case QJsonValue::Bool:
        return gefunden.toBool() ? QStringLiteral("1") : QStringLiteral("0");
    case QJsonValue::Double:
        return zahltext(gefunden);
    case QJsonValue::Array:
        return QString::fromUtf8(QJsonDocument(gefunden.toArray()).toJson(QJsonDocument::Compact));
    case QJsonValue::Object:
        return QString::fromUtf8(QJsonDocument(gefunden.toObject()).toJson(QJsonDocument::Compact));
    }
    return {};
}

QString kurztext(const QJsonValue &wert, QStringView weg)
{
    const QJsonValue gefunden = pfad(wert, weg);
    if (!gefunden.isArray() && !gefunden.isObject()) {
        return gekuerzt(text(gefunden, u""));
    }
    QByteArray json;
    anhaengen(json, gefunden);
    return gekuerzt(QString::fromUtf8(json));
}

std::optional<double> zahl(const QJsonValue &wert, QStringView weg)
{
    const QJsonValue gefunden = pfad(wert, weg);
    switch (gefunden.type()) {
    case QJsonValue::Double:
        return gefunden.toDouble();
    case QJsonValue::Bool:
        return gefunden.toBool() ? 1.0 : 0.0;
    case QJsonValue::String:
        return zahlAusText(gefunden.toString());
    case QJsonValue::Null:
    case QJsonValue::Undefined:
    case QJsonValue::Array:
    case QJsonValue::Object:
        break;
    }
    return std::nullopt;
}

bool wahr(const QJsonValue &wert, QStringView weg)
{
    const QJsonValue gefunden = pfad(wert, weg);
    return gefunden.isBool() ? gefunden.toBool() : gefunden.toDouble() != 0;
}

double summe(const QJsonValue &wert)
{
    if (wert.isBool()) {
        return wert.toBool() ? 1 : 0;
    }
    double ergebnis = wert.toDouble();
    const QJsonObject felder = wert.toObject();
    for (const QJsonValue feld : felder) {
        ergebnis += summe(feld);
    }
    return ergebnis;
}

} // namespace kalvaro
