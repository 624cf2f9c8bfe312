#include "pruefung/adresslage.h"

#include "server/zentrale.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QUrl>

#include <algorithm>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 knapp = 14; // days of a certificate that are too few: renewal has failed by then

const QString umDasNetz =
    u"Prüfe, ob die Cloud läuft und das Netz sie erreicht (Firewall, VPN, Proxy)."_s;

// Without a name and password that stand in it, also where it is no address.
QString anzeigbar(const QString &adresse)
{
    static const QRegularExpression anmeldung(u"//[^/?#]*@"_s);
    QString gezeigt = adresse;
    gezeigt.replace(anmeldung, u"//"_s);
    return schreibmangel(adresse).isEmpty() ? gezeigt : gezeigt.section(u'@', -1);
}

QString tag(const QDateTime &zeit)
{
    return zeit.toLocalTime().toString(u"dd.MM.yyyy"_s);
}

// Whether the transport refuses to send such a key: it could bring header lines of its own.
bool unsendbar(const QString &schluessel)
{
    return std::any_of(schluessel.begin(), schluessel.end(), [](QChar zeichen) {
        return zeichen != u'\t' && (zeichen < u' ' || zeichen == u'\u007f');
    });
}

// An empty map is also what becomes of anything that is no JSON.
bool istMap(const QJsonValue &inhalt, const QByteArray &daten)
{
    constexpr qsizetype leeresHoechstens = 4096; // bytes
    return inhalt.isObject() &&
           (!inhalt.toObject().isEmpty() ||
            (daten.size() <= leeresHoechstens && QJsonDocument::fromJson(daten).isObject()));
}

class Urteil
{
public:
    Urteil(const Adresslage &lage, const Adressangaben &angaben)
        : lage_(lage)
        , angaben_(angaben)
        , host_(QUrl(lage.adresse).host())
        , b_{.bereich = u"adresse"_s, .name = u"Adresse „"_s + anzeigbar(lage.adresse) + u'“'}
    {
    }

    [[nodiscard]] Befund befund()
    {
        if (!lage_.status) {
            unerreichbar(lage_.status.error());
        } else if (!lage_.stand) {
            mangel(antwortzeit(), umDasNetz); // does not happen
        } else if (!*lage_.stand) {
            mangel(antwortzeit() + u", dann aber nicht mehr: "_s + satz(lage_.stand->error()),
                   umDasNetz);
        } else {
            antwort(**lage_.stand);
        }
        return b_;
    }

private:
    void mangel(const QString &text, const QString &schritt)
    {
        b_.text = text;
        b_.schritt = schritt;
    }

    // The server's words may hold the key that it was sent.
    [[nodiscard]] QString satz(const ZentraleFehler &fehler) const
    {
        return ohneSchluessel(fehler.meldung, angaben_.schluessel);
    }

    void unerreichbar(const ZentraleFehler &fehler)
    {
        const auto art = [&fehler](Netzfehlerart welche) {
            return fehler.meldung == netzfehler(welche).text;
        };
        const QString inDatei = u" in „"_s + angaben_.kontodatei + u"“."_s;
        if (const QString geschrieben = schreibmangel(lage_.adresse); !geschrieben.isEmpty()) {
            mangel(satz(fehler), u"Berichtige die Adresse"_s + inDatei + u' ' + geschrieben);
        } else if (art(Netzfehlerart::ServerUnbekannt)) {
            mangel(u"Der Name „"_s + host_ + u"“ ist nicht bekannt."_s,
                   u"Prüfe, ob die Adresse richtig geschrieben und dieser Rechner im Netz ist."_s);
        } else if (fehler.zeitUeberschritten && lage_.name != Adresslage::Name::Gefunden) {
            mangel(u"Die Suche nach dem Namen „"_s + host_ + u"“ dauert zu lange."_s,
                   u"Prüfe, ob dieser Rechner im Netz ist und sein DNS-Server antwortet."_s);
        } else if (!fehler.rat.isEmpty()) {
            // Ours, so there is no key in it.
            mangel(fehler.meldung.chopped(fehler.rat.size() + 1), fehler.rat);
        } else if (art(Netzfehlerart::Unsicher)) {
            mangel(satz(fehler), u"Prüfe Datum und Uhrzeit dieses Rechners und lass das Zertifikat "
                                 "der Cloud prüfen."_s);
        } else if (unsendbar(angaben_.schluessel)) {
            mangel(satz(fehler), u"Berichtige „schluessel“"_s + inDatei);
        } else {
            mangel(satz(fehler), umDasNetz);
        }
    }

    void antwort(const Netzantwort &stand)
    {
        const auto inhalt = Zentrale::auswerten(stand);
        // The program itself takes anything for an empty answer, also a hotel's page for guests.
        const bool vonDerCloud = inhalt && istMap(*inhalt, stand.daten);
        if (stand.status == 401 || stand.status == 403) {
            mangel(antwortzeit() + u", nimmt den Schlüssel aber nicht an: "_s +
                       satz(inhalt.error()),
                   u"Vergleiche „schluessel“ in „"_s + angaben_.kontodatei +
                       u"“ mit dem, den die Cloud für dieses Gerät hat."_s);
        } else if (stand.status == 404) {
            mangel(antwortzeit() + u", kennt das Gerät „"_s + angaben_.geraet +
                       u"“ aber nicht: "_s + satz(inhalt.error()),
                   u"Vergleiche „geraet“ und die Adresse in „"_s + angaben_.kontodatei +
                       u"“ mit dem, was die Cloud kennt."_s);
        } else if (stand.status >= 300 && stand.status < 400) {
            mangel(antwortzeit() + u", leitet aber um: "_s + satz(inhalt.error()),
                   u"Trage die Adresse ein, zu der sie leitet."_s);
        } else if (!inhalt) {
            mangel(antwortzeit() + u", aber mit einem Fehler: "_s + satz(inhalt.error()),
                   u"Wende dich an den Betreiber der Cloud."_s);
        } else if (!vonDerCloud) {
            mangel(antwortzeit() + u", aber nicht wie die Cloud."_s,
                   u"Prüfe die Adresse; in fremden Netzen steht oft eine Anmeldeseite davor."_s);
        } else {
            verbunden(stand.zertifikatBis);
        }
    }

    void verbunden(const QDateTime &bis)
    {
        b_.text = antwortzeit() +
                  (bis.isValid() ? u", Zertifikat gültig bis "_s + tag(bis)
                                 : u", ohne Verschlüsselung"_s) +
                  (angaben_.schluessel.isEmpty() ? u", verlangt keinen Schlüssel"_s
                                                 : u", nimmt den Schlüssel an"_s);
        if (bis.isValid() && angaben_.jetzt.daysTo(bis) < knapp) {
            b_.schritt = u"Lass das Zertifikat der Cloud erneuern."_s;
        }
    }

    [[nodiscard]] QString antwortzeit() const
    {
        return u"antwortet in %1 ms"_s.arg(lage_.dauer.count());
    }

    const Adresslage &lage_;
    const Adressangaben &angaben_;
    const QString host_;
    Befund b_;
};

} // namespace

QString schreibmangel(const QString &adresse)
{
    if (adresse != adresse.trimmed()) {
        return u"Sie beginnt oder endet mit einem Leerzeichen."_s;
    }
    const QString klein = adresse.toLower();
    if (!klein.startsWith(u"http://") && !klein.startsWith(u"https://")) {
        return u"Sie muss mit „http://“ oder „https://“ beginnen."_s;
    }
    const QUrl url(adresse, QUrl::StrictMode);
    if (!url.isValid() || url.host().isEmpty()) {
        return u"Sie muss lauten wie „https://cloud.example“."_s;
    }
    if (url.hasFragment()) {
        return u"Sie darf kein „#“ enthalten."_s;
    }
    return {};
}

Befund adressbefund(const Adresslage &lage, const Adressangaben &angaben)
{
    return Urteil(lage, angaben).befund();
}

} // namespace kalvaro
