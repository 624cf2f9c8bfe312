#include "assessment/bewertung.h"

#include "foundation/konstanten.h"
#include "foundation/versionen.h"
#include "foundation/werte.h"

namespace kalvaro {

std::optional<Updateangebot> updateAngebot(const QJsonValue &antwort)
{
    const QString version = text(antwort, u"app.version");
    const QString adresse = text(antwort, u"app.url");
    // Never http: the download must not be exchanged on the way.
    if (version.isEmpty() || !adresse.startsWith(u"https://") ||
        versionenVergleichen(version, VERSION) <= 0) {
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
