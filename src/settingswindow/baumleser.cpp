#include "settingswindow/baumleser.h"

#include "server/inhalt.h"
#include "settingswindow/baumbau.h"
#include "settingswindow/schnellleser.h"

#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>
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
        : daten_(daten)
        , z_(daten.constData())
        , ende_(z_ + daten.size())
        , abgebrochen_(abgebrochen)
    {
    }

    [[nodiscard]] Stand lesen()
    {
        constexpr std::string_view marke = "\xef\xbb\xbf";
        if (std::string_view(z_, rest()).starts_with(marke)) {
            z_ += marke.size();
        }
        leerraum();
        if (!ist('{')) {
            return Stand::KeinJson; // a list has no playlists, either
        }
        ++z_;
        glieder();
        leerraum();
        return stand_ == Stand::Gut && z_ != ende_ ? Stand::KeinJson : stand_;
    }

    [[nodiscard]] Knotenliste fertig() { return bau_.fertig(); }

private:
    using Zeiger = const char *;

    [[nodiscard]] size_t rest() const { return static_cast<size_t>(ende_ - z_); }
    [[nodiscard]] bool ist(char zeichen) const { return z_ != ende_ && *z_ == zeichen; }
    void leerraum()
    {
        while (z_ != ende_ && (*z_ == ' ' || *z_ == '\t' || *z_ == '\n' || *z_ == '\r')) {
            ++z_;
        }
    }
    bool scheitern(Stand stand)
    {
        stand_ = stand;
        return false;
    }

    // Goes behind the text that begins here.
    bool textUeberspringen()
    {
        for (++z_; z_ != ende_ && *z_ != '"'; ++z_) {
            if (*z_ == '\\' && z_ + 1 != ende_) {
                ++z_;
            }
        }
        if (z_ == ende_) {
            return scheitern(Stand::KeinJson);
        }
        ++z_;
        return true;
    }

    // Goes behind the value that begins here, without a look at what is in it: up to the comma or
    // bracket that ends it.
    bool wertUeberspringen()
    {
        qsizetype offen = 0;
        while (z_ != ende_) {
            switch (*z_) {
            case '"':
                if (!textUeberspringen()) {
                    return false;
                }
                continue;
            case '[':
            case '{':
                ++offen;
                break;
            case ']':
            case '}':
                if (offen == 0) {
                    return true;
                }
                --offen;
                break;
            case ',':
                if (offen == 0) {
                    return true;
                }
                break;
            default:
                break;
            }
            ++z_;
        }
        return scheitern(Stand::KeinJson);
    }

    // The members of the outermost map, from behind its bracket to behind the other one.
    void glieder()
    {
        leerraum();
        if (ist('}')) {
            ++z_;
            return;
        }
        for (;;) {
            leerraum();
            if (!glied()) {
                return;
            }
            if (ist(',')) {
                ++z_;
                continue;
            }
            if (!ist('}')) {
                scheitern(Stand::KeinJson);
            } else if (gliederGelesen()) {
                ++z_;
            }
            return;
        }
    }

    // One member. Those two that count, when they are lists, are read entry by entry; the others
    // are gathered.
    bool glied()
    {
        const Zeiger von = z_;
        if (!ist('"') || !textUeberspringen()) {
            return scheitern(Stand::KeinJson);
        }
        const std::string_view schluessel(von, static_cast<size_t>(z_ - von));
        leerraum();
        if (!ist(':')) {
            return scheitern(Stand::KeinJson);
        }
        ++z_;
        leerraum();
        const bool zaehlt = schluessel == R"("playlisten")" || schluessel == R"("lokal")";
        if (zaehlt && ist('[')) {
            // The last of several with one name counts.
            if (!gliederGelesen()) {
                return false;
            }
            return schluessel == R"("lokal")" ? lokal() : playlisten();
        }
        if (!wertUeberspringen()) {
            return false;
        }
        glieder_ += glieder_.isEmpty() ? "{" : ",";
        glieder_.append(von, z_ - von);
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
                     [this] { return schnellLesen(z_, ende_, bau_); });
    }

    bool lokal()
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
        ++z_;
        leerraum();
        if (ist(']')) {
            ++z_;
            leerraum();
            return amEnde();
        }
        constexpr unsigned jeStueck = 1024;
        for (unsigned n = 1;; ++n) {
            if (!schnell() && !(listenstueck(lesen) && passt())) {
                return false;
            }
            if (n % jeStueck == 0 && !passt()) {
                return false;
            }
            leerraum();
            if (!ist(',')) {
                break;
            }
            ++z_;
            leerraum();
        }
        if (!ist(']')) {
            return scheitern(Stand::KeinJson);
        }
        ++z_;
        leerraum();
        return passt() && amEnde();
    }

    bool amEnde() { return ist(',') || ist('}') || scheitern(Stand::KeinJson); }

    // Entries from here on, with the commas between.
    template<typename Lesen>
    bool listenstueck(const Lesen &lesen)
    {
        const Zeiger von = z_;
        if (!wertUeberspringen()) {
            return false;
        }
        while (ist(',') && z_ - von < stueck) {
            ++z_;
            if (!wertUeberspringen()) {
                return false;
            }
        }
        const auto werte = istListe(QByteArrayView(von, z_));
        if (!werte) {
            return false;
        }
        lesen(*werte);
        return true;
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
        const auto gelesen = inhalt(json);
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
        if (daten_.size() + bau_.bytes() > immerErlaubt + 3 * qint64{daten_.size()}) {
            return scheitern(Stand::ZuGross);
        }
        return !abgebrochen_() || scheitern(Stand::Abgebrochen);
    }

    const QByteArray &daten_;
    Zeiger z_;
    const Zeiger ende_;
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
