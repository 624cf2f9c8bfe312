#include "settingswindow/baumleser.h"

#include "server/inhalt.h"
#include "settingswindow/baumbau.h"
#include "settingswindow/jsonzeiger.h"
#include "settingswindow/schnellleser.h"

#include <QJsonArray>
#include <QJsonObject>

#include <string_view>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

enum class Stand { Gut, KeinJson, ZuGross, Abgebrochen };

constexpr qsizetype stueck = qsizetype{64} * 1024; // bytes of JSON that are read at once

// Takes an answer apart along its outermost brackets and commas, and lets others read what lies
// between. Whether that is JSON they say; what is here must be right by itself.
class Leser
{
public:
    Leser(const QByteArray &daten, const std::function<bool()> &abgebrochen)
        : groesse_(daten.size())
        , z_({daten.constData(), static_cast<size_t>(daten.size())})
        , abgebrochen_(abgebrochen)
    {
        constexpr QByteArrayView marke = "\xef\xbb\xbf";
        if (daten.startsWith(marke)) {
            z_.setzen(z_.stelle() + marke.size());
        }
    }

    [[nodiscard]] Stand lesen()
    {
        z_.leerraum();
        if (!z_.hinter('{')) {
            return Stand::KeinJson; // a list has no playlists, either
        }
        const bool gelesen = z_.hinter('}') || glieder();
        return gelesen && !z_.amEnde() ? Stand::KeinJson : stand_;
    }

    [[nodiscard]] Knotenliste fertig() { return bau_.fertig(); }

private:
    bool scheitern(Stand stand)
    {
        stand_ = stand;
        return false;
    }

    // The members of the outermost map, from the first to behind its bracket.
    bool glieder()
    {
        do {
            if (!glied()) {
                return false;
            }
        } while (z_.hinter(','));
        return (z_.hinter('}') || scheitern(Stand::KeinJson)) && gliederGelesen();
    }

    // One member. Those two that count, when they are lists, are read entry by entry; the others
    // are gathered.
    bool glied()
    {
        const char *const von = z_.stelle();
        if (!z_.ist('"') || !z_.hinterText()) {
            return scheitern(Stand::KeinJson);
        }
        const std::string_view schluessel(von, static_cast<size_t>(z_.stelle() - von));
        z_.leerraum();
        if (!z_.hinter(':')) {
            return scheitern(Stand::KeinJson);
        }
        const bool lokal = schluessel == R"("lokal")";
        if ((lokal || schluessel == R"("playlisten")") && z_.ist('[')) {
            // The last of several with one name counts.
            return gliederGelesen() && (lokal ? gewaehlte() : playlisten());
        }
        if (!z_.hinterWert()) {
            return scheitern(Stand::KeinJson);
        }
        glieder_ += glieder_.isEmpty() ? "{" : ",";
        glieder_.append(von, z_.stelle() - von);
        return glieder_.size() < stueck || gliederGelesen();
    }

    // Reads what has been gathered.
    bool gliederGelesen()
    {
        if (glieder_.isEmpty()) {
            return true;
        }
        const auto gelesen = istMap(glieder_ + '}');
        glieder_.clear();
        if (!gelesen) {
            return false;
        }
        const QJsonObject map = gelesen->toObject();
        if (map.contains("playlisten"_L1)) {
            bau_.ohneEintraege();
            eintragen(map.value("playlisten"_L1).toArray());
        }
        if (map.contains("lokal"_L1)) {
            bau_.ohneGewaehlte();
            waehlen(map.value("lokal"_L1).toArray());
        }
        return passt();
    }

    void eintragen(const QJsonArray &liste)
    {
        for (const QJsonValue wert : liste) {
            bau_.eintrag(wert);
        }
    }
    void waehlen(const QJsonArray &liste)
    {
        for (const QJsonValue wert : liste) {
            bau_.gewaehlt(wert);
        }
    }

    bool playlisten()
    {
        bau_.ohneEintraege();
        return liste([this](const QJsonArray &werte) { eintragen(werte); },
                     [this] {
                         const char *z = z_.stelle();
                         const bool einfach = schnellLesen(z, z_.ende(), bau_);
                         z_.setzen(z);
                         return einfach;
                     });
    }

    bool gewaehlte()
    {
        bau_.ohneGewaehlte();
        return liste([this](const QJsonArray &werte) { waehlen(werte); }, [] { return false; });
    }

    // Reads the list that begins here and goes behind it. Entries are mostly plain, and `schnell`
    // goes behind one; from one that is not on, a piece of the list is read as JSON, and `lesen`
    // gets that.
    template<typename Lesen, typename Schnell>
    bool liste(const Lesen &lesen, const Schnell &schnell)
    {
        z_.hinter('[');
        if (z_.hinter(']')) {
            return true;
        }
        constexpr unsigned jeStueck = 1024;
        unsigned eintraege = 0;
        do {
            const bool stueckweise = !schnell();
            if (stueckweise && !listenstueck(lesen)) {
                return false;
            }
            if ((stueckweise || ++eintraege % jeStueck == 0) && !passt()) {
                return false;
            }
            z_.leerraum();
        } while (z_.hinter(','));
        return (z_.hinter(']') || scheitern(Stand::KeinJson)) && passt();
    }

    // Entries from here on, with the commas between.
    template<typename Lesen>
    bool listenstueck(const Lesen &lesen)
    {
        const char *const von = z_.stelle();
        for (bool weiter = true; weiter;) {
            if (!z_.hinterWert()) {
                return scheitern(Stand::KeinJson);
            }
            weiter = z_.ist(',') && z_.stelle() - von < stueck;
            z_.setzen(z_.stelle() + (weiter ? 1 : 0));
        }
        const auto werte = istListe(QByteArrayView(von, z_.stelle()));
        if (werte) {
            lesen(*werte);
        }
        return werte.has_value();
    }

    // As deep as it lies in the answer: depth has a limit.
    std::optional<QJsonArray> istListe(QByteArrayView eintraege)
    {
        const auto gelesen = istMap(QByteArray(R"({"":[)").append(eintraege).append("]}"));
        const QJsonArray werte =
            gelesen ? gelesen->toObject().value(""_L1).toArray() : QJsonArray();
        if (gelesen && werte.isEmpty()) {
            scheitern(Stand::KeinJson); // nothing before a comma or the end
        }
        return werte.isEmpty() ? std::nullopt : std::optional(werte);
    }

    // The map that `json` is, if it is one: it has a member.
    std::optional<QJsonValue> istMap(const QByteArray &json)
    {
        auto gelesen = inhalt(json);
        if (!gelesen) {
            scheitern(Stand::ZuGross);
            return {};
        }
        if (gelesen->toObject().isEmpty()) {
            scheitern(Stand::KeinJson);
            return {};
        }
        return gelesen;
    }

    bool passt()
    {
        constexpr qint64 immerErlaubt = qint64{64} * 1024 * 1024;
        if (groesse_ + bau_.bytes() > immerErlaubt + 3 * groesse_) {
            return scheitern(Stand::ZuGross);
        }
        return !abgebrochen_() || scheitern(Stand::Abgebrochen);
    }

    const qint64 groesse_; // of the answer
    Jsonzeiger z_;
    const std::function<bool()> &abgebrochen_;
    Stand stand_ = Stand::Gut;
    QByteArray glieder_; // members that were gathered, with the bracket before them
    Baumbau bau_;
};

} // namespace

std::optional<Knotenliste> baumLesen(const QByteArray &daten,
                                     const std::function<bool()> &abgebrochen)
{
    Leser leser(daten, abgebrochen);
    switch (leser.lesen()) {
    case Stand::Gut:
        return leser.fertig();
    case Stand::KeinJson:
        return Knotenliste();
    case Stand::ZuGross:
    case Stand::Abgebrochen:
        break;
    }
    return {};
}

} // namespace kalvaro
