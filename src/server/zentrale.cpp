#include "server/zentrale.h"

#include "foundation/einmalruf.h"
#include "foundation/konstanten.h"
#include "foundation/werte.h"
#include "server/inhalt.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <cmath>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

using Rohergebnis = tl::expected<Netzantwort, ZentraleFehler>;

constexpr Sekunden vorfragezeit{4};

const QString keineAdresse = u"keine Cloud-Adresse eingetragen"_s;

// JSON has no text for NaN and infinity.
bool darstellbar(const QJsonValue &wert)
{
    if (wert.isObject()) {
        const QJsonObject felder = wert.toObject();
        return std::all_of(felder.begin(), felder.end(), darstellbar);
    }
    if (wert.isArray()) {
        const QJsonArray liste = wert.toArray();
        return std::all_of(liste.begin(), liste.end(), darstellbar);
    }
    return std::isfinite(wert.toDouble());
}

ZentraleFehler ausNetz(const Netzfehler &fehler)
{
    if (fehler.zeitUeberschritten) {
        return {true, true, u"Die Cloud hat nicht rechtzeitig geantwortet."_s};
    }
    const QString rat = fehler.rat.isEmpty() ? QString() : u' ' + fehler.rat;
    return {!fehler.beantwortet, false, fehler.text + rat, fehler.rat};
}

ZentraleFehler ausStatus(int status, const QJsonValue &inhalt)
{
    const QString fehler = kurztext(inhalt, u"fehler");
    const QString ende = fehler.isEmpty() ? u"."_s : u": "_s + fehler;
    return {false, false, u"Die Cloud antwortet mit "_s + QString::number(status) + ende};
}

} // namespace

// One request on its way through the candidates.
class Zentrale::Lauf final : public Einmalruf<Rohergebnis>
{
public:
    Lauf(Zentrale *zentrale, Auftrag auftrag, QObject *besitzer, Rohruf fertig)
        : Einmalruf(besitzer, std::move(fertig))
        , zentrale_(zentrale)
        , auftrag_(std::move(auftrag))
        , letzteMeldung_(keineAdresse)
    {
        endetMit(zentrale);
        if (zentrale->basis_) {
            kandidaten_.append(*zentrale->basis_);
        }
        kandidaten_.append(zentrale->konto_.server);
        kandidaten_.removeDuplicates();
        QMetaObject::invokeMethod(this, &Lauf::naechster, Qt::QueuedConnection);
    }

private:
    void naechster()
    {
        if (kandidaten_.isEmpty()) {
            antworten(tl::unexpected(ZentraleFehler{true, false, letzteMeldung_}));
            return;
        }
        kandidat_ = kandidaten_.takeFirst();
        if (zentrale_->basis_ == kandidat_) {
            fragen();
            return;
        }
        const Auftrag vorfrage = statusAnfragen();
        zentrale_->roh(kandidat_ + vorfrage.pfad, vorfrage, this, [this](const auto &ergebnis) {
            if (ergebnis) {
                fragen();
            } else {
                weiterNach(ergebnis.error());
            }
        });
    }

    void fragen()
    {
        zentrale_->roh(kandidat_ + auftrag_.pfad, auftrag_, this, [this](const auto &ergebnis) {
            if (ergebnis) {
                angekommen(*ergebnis);
            } else {
                abgewiesen(ergebnis.error());
            }
        });
    }

    void angekommen(const Netzantwort &antwort)
    {
        if (antwort.status == 200) {
            zentrale_->basis_ = kandidat_;
        }
        antworten(antwort);
    }

    void abgewiesen(const ZentraleFehler &fehler)
    {
        if (!fehler.offline) {
            antworten(tl::unexpected(fehler));
            return;
        }
        zentrale_->basis_.reset();
        if (fehler.zeitUeberschritten) {
            // The server may be working on it: asking another one could start the work twice.
            antworten(tl::unexpected(fehler));
        } else {
            weiterNach(fehler);
        }
    }

    void weiterNach(const ZentraleFehler &fehler)
    {
        letzteMeldung_ = fehler.meldung;
        naechster();
    }

    Zentrale *const zentrale_;
    const Auftrag auftrag_;
    QStringList kandidaten_; // those not tried yet
    QString kandidat_;       // the one being tried
    QString letzteMeldung_;
};

Auftrag statusAnfragen()
{
    return {.pfad = u"/api/status"_s, .zeit = vorfragezeit};
}

Zentrale::Zentrale(Konto konto, Transport &transport, QObject *parent)
    : QObject(parent)
    , konto_(std::move(konto))
    , transport_(transport)
{
}

QString Zentrale::adresse() const
{
    return basis_.value_or(konto_.server.value(0));
}

void Zentrale::roh(const QString &url, const Auftrag &auftrag, QObject *besitzer, Rohruf fertig)
{
    auto *const ruf = new Einmalruf<Rohergebnis>(besitzer, std::move(fertig));
    ruf->endetMit(this);
    const auto scheitern = [ruf](ZentraleFehler fehler) {
        ruf->antworten(tl::unexpected(std::move(fehler)));
    };

    Netzanfrage netz{.url = QUrl(url, QUrl::StrictMode), .methode = auftrag.methode};
    if (!netz.url.isValid()) {
        scheitern({true, false, u"ungültige Adresse"_s});
        return;
    }
    netz.limit = auftrag.zeit;
    netz.kopf.append(Kopfzeile{"User-Agent", "kalvaro/" + VERSION.toLatin1()});
    if (!konto_.schluessel.isEmpty()) {
        netz.kopf.append(Kopfzeile{"X-Schluessel", konto_.schluessel.toUtf8()});
    }
    if (auftrag.body && !darstellbar(*auftrag.body)) {
        scheitern({false, false, u"Die Anfrage lässt sich nicht als JSON schreiben."_s});
        return;
    }
    netz.body = auftrag.text;
    if (auftrag.body) {
        netz.body = QJsonDocument(*auftrag.body).toJson(QJsonDocument::Compact);
    }
    if (netz.body) {
        netz.kopf.append(Kopfzeile{"Content-Type", "application/json"});
    }
    transport_.senden(netz, ruf, [ruf](const Transport::Ergebnis &ergebnis) {
        ruf->antworten(ergebnis.map_error(ausNetz));
    });
}

ZentraleFehler Zentrale::fehlerAus(const Netzantwort &antwort)
{
    return ausStatus(antwort.status, inhalt(antwort.daten).value_or(QJsonObject()));
}

ZentraleFehler Zentrale::zuGross()
{
    return ausNetz(netzfehler(Netzfehlerart::ZuGross));
}

Zentrale::Antwort Zentrale::auswerten(const Netzantwort &antwort)
{
    if (antwort.status != 200) {
        return tl::unexpected(fehlerAus(antwort));
    }
    auto gelesen = inhalt(antwort.daten);
    return gelesen ? Antwort(*std::move(gelesen)) : tl::unexpected(zuGross());
}

void Zentrale::anfrageRoh(const Auftrag &auftrag, QObject *besitzer, Rohruf fertig)
{
    new Lauf(this, auftrag, besitzer, std::move(fertig));
}

void Zentrale::anfrage(const Auftrag &auftrag, QObject *besitzer, Rueckruf fertig)
{
    anfrageLesen<QJsonValue>(
        auftrag, besitzer, [](const QByteArray &daten, const Abbruch &) { return inhalt(daten); },
        std::move(fertig));
}

} // namespace kalvaro
