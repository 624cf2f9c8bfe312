#include "platform/plist.h"

#include <QRegularExpression>
#include <QStringDecoder>
#include <QXmlStreamReader>

#include <algorithm>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

// The binary form: "bplist00", the objects, a table of their offsets, and 32 bytes that tell where
// and how wide everything is. Objects refer to each other by their number.
class Binaerplist
{
public:
    explicit Binaerplist(QByteArrayView inhalt)
        : inhalt_(inhalt)
    {
    }

    // False when the closing 32 bytes contradict the size of the file.
    bool oeffnen()
    {
        const auto groesse = static_cast<quint64>(inhalt_.size());
        if (groesse < kopfLaenge + endeLaenge) {
            return false;
        }
        const quint64 ende = groesse - endeLaenge;
        ortBreite_ = zahl(ende + 6, 1).value_or(0);
        nummerBreite_ = zahl(ende + 7, 1).value_or(0);
        anzahl_ = zahl(ende + 8, 8).value_or(0);
        wurzel_ = zahl(ende + 16, 8).value_or(0);
        tabelle_ = zahl(ende + 24, 8).value_or(0);
        return ortBreite_ >= 1 && ortBreite_ <= 8 && nummerBreite_ >= 1 && nummerBreite_ <= 8 &&
               tabelle_ <= ende && anzahl_ <= (ende - tabelle_) / ortBreite_;
    }

    [[nodiscard]] std::optional<QString> text(QStringView schluessel) const
    {
        const auto verzeichnis = objekt(wurzel_);
        if (!verzeichnis || verzeichnis->art != Art::Verzeichnis ||
            verzeichnis->anzahl > verzeichnis->platz / (2 * nummerBreite_)) {
            return {};
        }
        for (quint64 i = 0; i < verzeichnis->anzahl; ++i) {
            if (istText(nummer(*verzeichnis, i), schluessel)) {
                return text(nummer(*verzeichnis, verzeichnis->anzahl + i));
            }
        }
        return {};
    }

private:
    static constexpr quint64 kopfLaenge = 8;
    static constexpr quint64 endeLaenge = 32;

    enum class Art : quint8 { Ascii = 0x5, Utf16 = 0x6, Verzeichnis = 0xD };

    struct Objekt
    {
        Art art;
        quint64 anzahl; // of characters, or of pairs
        quint64 ort;    // where its content begins
        quint64 platz;  // bytes from there to the end of the file
    };

    // The big-endian number of `breite` (1 to 8) bytes at `ort`.
    [[nodiscard]] std::optional<quint64> zahl(quint64 ort, quint64 breite) const
    {
        const auto groesse = static_cast<quint64>(inhalt_.size());
        if (ort > groesse || breite > groesse - ort) {
            return {};
        }
        quint64 wert = 0;
        for (const char c : stueck(ort, breite)) {
            wert = wert << 8U | static_cast<quint8>(c);
        }
        return wert;
    }

    [[nodiscard]] QByteArrayView stueck(quint64 ort, quint64 laenge) const
    {
        return inhalt_.sliced(static_cast<qsizetype>(ort), static_cast<qsizetype>(laenge));
    }

    [[nodiscard]] std::optional<Objekt> objekt(std::optional<quint64> nr) const
    {
        if (!nr || *nr >= anzahl_) {
            return {};
        }
        auto ort = zahl(tabelle_ + *nr * ortBreite_, ortBreite_);
        const auto kopf = ort ? zahl(*ort, 1) : std::nullopt;
        if (!kopf) {
            return {};
        }
        quint64 hier = *ort + 1;
        auto menge = std::optional<quint64>(*kopf & 0xFU);
        if (menge == 0xFU) { // the count follows as an integer of 1, 2, 4 or 8 bytes
            const auto marke = zahl(hier, 1);
            if (!marke || *marke < 0x10 || *marke > 0x13) {
                return {};
            }
            const quint64 breite = 1ULL << (*marke & 0xFU);
            menge = zahl(hier + 1, breite);
            hier += 1 + breite;
        }
        if (!menge) {
            return {};
        }
        const auto groesse = static_cast<quint64>(inhalt_.size());
        return Objekt{static_cast<Art>(*kopf >> 4U), *menge, hier, groesse - hier};
    }

    // The object number that stands at place `i` in a dictionary: first all keys, then all values.
    [[nodiscard]] std::optional<quint64> nummer(const Objekt &verzeichnis, quint64 i) const
    {
        return zahl(verzeichnis.ort + i * nummerBreite_, nummerBreite_);
    }

    // Decodes nothing that has another length, however many keys share one giant text.
    [[nodiscard]] bool istText(std::optional<quint64> nr, QStringView gesucht) const
    {
        const auto was = objekt(nr);
        return was && was->anzahl == static_cast<quint64>(gesucht.size()) && text(nr) == gesucht;
    }

    [[nodiscard]] std::optional<QString> text(std::optional<quint64> nr) const
    {
        const auto was = objekt(nr);
        if (was && was->art == Art::Ascii && was->anzahl <= was->platz) {
            return QString::fromLatin1(stueck(was->ort, was->anzahl));
        }
        if (was && was->art == Art::Utf16 && was->anzahl <= was->platz / 2) {
            return QString(
                QStringDecoder(QStringDecoder::Utf16BE)(stueck(was->ort, was->anzahl * 2)));
        }
        return {};
    }

    const QByteArrayView inhalt_;
    quint64 ortBreite_ = 0;    // bytes of an offset
    quint64 nummerBreite_ = 0; // bytes of an object number
    quint64 anzahl_ = 0;       // of objects
    quint64 wurzel_ = 0;       // number of the top-level object
    quint64 tabelle_ = 0;      // where the offsets stand
};

// The name of the encoding that a document declares; empty when it declares none. `anfang` is its
// first characters.
QString erklaerteKodierung(const QString &anfang)
{
    static const QRegularExpression erklaerung(
        u"\\A<\\?xml[^>]*?\\sencoding\\s*=\\s*[\"']([^\"']*)[\"']"_s);
    return erklaerung.match(anfang).captured(1).toLower();
}

// The characters of an XML document. The four encodings are those in which nobody can hide markup
// from a look at the characters, or make few bytes into many of them; UTF-16 needs its byte order
// mark.
std::optional<QString> xmlText(const QByteArray &inhalt)
{
    constexpr qsizetype laengsteErklaerung = 200;
    const auto gelesen = [&inhalt](QStringConverter::Encoding wie) -> std::optional<QString> {
        QStringDecoder leser(wie);
        const QString text = leser(inhalt);
        return leser.hasError() ? std::nullopt : std::optional(text);
    };
    if (inhalt.startsWith("\xFF\xFE") || inhalt.startsWith("\xFE\xFF")) {
        return gelesen(QStringConverter::Utf16);
    }
    const QString kodierung = erklaerteKodierung(
        QString::fromLatin1(inhalt.first(std::min(inhalt.size(), laengsteErklaerung))));
    if (inhalt.startsWith("\xEF\xBB\xBF") || kodierung.isEmpty() || kodierung == u"utf-8" ||
        kodierung == u"us-ascii") {
        return gelesen(QStringConverter::Utf8);
    }
    return kodierung == u"iso-8859-1" ? gelesen(QStringConverter::Latin1) : std::nullopt;
}

// Whether a document brings rules of its own, "<!DOCTYPE plist … [ … ]>": entities that grow, or
// attributes for every element. The reader would take them in before it tells of them.
bool hatEigeneRegeln(QStringView text)
{
    constexpr auto anfang = "<!DOCTYPE"_L1;
    const qsizetype ort = text.indexOf(anfang);
    if (ort < 0) {
        return false;
    }
    QChar anfuehrung;
    for (qsizetype i = ort + anfang.size(); i < text.size(); ++i) {
        const QChar zeichen = text[i];
        if (!anfuehrung.isNull()) {
            anfuehrung = zeichen == anfuehrung ? QChar() : anfuehrung;
        } else if (zeichen == u'"' || zeichen == u'\'') {
            anfuehrung = zeichen;
        } else if (zeichen == u'[') {
            return true;
        } else if (zeichen == u'>') {
            return text.indexOf(anfang, i) >= 0; // one in a comment may come before the real one
        }
    }
    return true;
}

// Reads on until the element is closed in which the reader stands `tiefe` levels deep, or to the
// end of the document. False beyond a depth that no property list has.
bool weiterlesen(QXmlStreamReader &xml, int tiefe)
{
    constexpr int groessteTiefe = 1000; // the reader keeps something for each open element
    while (tiefe > 0 && !xml.atEnd()) {
        const auto art = xml.readNext();
        tiefe += art == QXmlStreamReader::StartElement ? 1
                 : art == QXmlStreamReader::EndElement ? -1
                                                       : 0;
        if (tiefe > groessteTiefe) {
            return false;
        }
    }
    return true;
}

std::optional<QString> ausXml(const QString &text, QStringView schluessel)
{
    // The reader compares each attribute of a tag with all others. Property lists have none.
    constexpr qsizetype meisteAttribute = 1000;
    if (text.count(u'=') > meisteAttribute || hatEigeneRegeln(text)) {
        return {};
    }
    QXmlStreamReader xml(text);
    xml.setEntityExpansionLimit(0); // only "&amp;" and its like are left
    if (!xml.readNextStartElement() || xml.name() != u"plist" || !xml.readNextStartElement() ||
        xml.name() != u"dict") {
        return {};
    }
    std::optional<QString> fund;
    while (xml.readNextStartElement()) {
        if (xml.name() != u"key") {
            return {};
        }
        const bool gesucht = xml.readElementText() == schluessel;
        if (!xml.readNextStartElement()) {
            return {};
        }
        if (gesucht && xml.name() == u"string") {
            fund = xml.readElementText();
        } else if (!weiterlesen(xml, 1)) {
            return {};
        }
    }
    while (!xml.atEnd()) { // damage behind the value counts too
        if (!weiterlesen(xml, 1)) {
            return {};
        }
    }
    return xml.hasError() ? std::nullopt : fund;
}

} // namespace

std::optional<QString> plistText(const QByteArray &inhalt, QStringView schluessel)
{
    if (!inhalt.startsWith("bplist")) {
        const auto text = xmlText(inhalt);
        return text ? ausXml(*text, schluessel) : std::nullopt;
    }
    Binaerplist liste(inhalt);
    return liste.oeffnen() ? liste.text(schluessel) : std::nullopt;
}

} // namespace kalvaro
