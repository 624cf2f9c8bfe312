#include "assessment/bewertung.h"

#include "foundation/konstanten.h"
#include "foundation/versionen.h"
#include "foundation/werte.h"

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype laengsteVersion = 64; // characters

} // namespace

QString artname(Art art)
{
    switch (art) {
    case Art::Gut:
        return u"gut"_s;
    case Art::Warn:
        return u"warn"_s;
    case Art::Krit:
        return u"krit"_s;
    case Art::Aus:
        return u"aus"_s;
    }
    Q_UNREACHABLE();
}

std::optional<Updateangebot> updateAngebot(const QJsonValue &antwort)
{
    // Only strings make an offer: a number or a map is no version to show.
    const QString version = pfad(antwort, u"app.version").toString();
    const QString adresse = pfad(antwort, u"app.url").toString();
    // No version is so long, no address either: it is shown, kept in the settings and logged.
    if (version.size() > laengsteVersion || adresse.size() > laengsterText) {
        return std::nullopt;
    }
    // Never http: the download must not be exchanged on the way.
    if (version.isEmpty() || !adresse.startsWith(u"https://") ||
        std::is_lteq(versionenVergleichen(version, VERSION))) {
        return std::nullopt;
    }
    return Updateangebot{version, adresse};
}

std::optional<QUrl> updateUrl(const QString &adresse)
{
    QUrl url(adresse, QUrl::StrictMode);
    if (url.isEmpty() || !url.isValid()) {
        return std::nullopt;
    }
    return url;
}

} // namespace kalvaro
