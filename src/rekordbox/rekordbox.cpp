#include "rekordbox/rekordbox.h"

#include "foundation/einstellungen.h"
#include "foundation/versionen.h"
#include "platform/buendel.h"

#include <QDirIterator>
#include <QFileInfo>

#include <algorithm>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

QString kurzeVersion(const QString &version)
{
    return version.split(u'.', Qt::SkipEmptyParts).mid(0, 3).join(u'.');
}

// Where the bundle of a folder entry would lie: the entry itself, or inside of "rekordbox 7".
QString kandidat(const QFileInfo &eintrag)
{
    const bool istBuendel = eintrag.suffix() == u"app";
    return istBuendel ? eintrag.filePath() : eintrag.filePath() + u"/rekordbox.app"_s;
}

} // namespace

Rekordbox::Rekordbox(const Prozesse &prozesse, QString programmordner)
    : prozesse_(prozesse)
    , programmordner_(std::move(programmordner))
{
}

QList<Installation> Rekordbox::installationen() const
{
    QList<Installation> liste;
    QDirIterator ordner(programmordner_,
                        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    while (ordner.hasNext()) {
        const QFileInfo eintrag(ordner.next());
        if (!eintrag.fileName().toLower().startsWith(u"rekordbox")) {
            continue;
        }
        const QFileInfo buendel(kandidat(eintrag));
        if (buendel.fileName() != u"rekordbox.app" || !buendel.exists()) {
            continue;
        }
        const auto version = infotext(buendel.filePath(), u"CFBundleShortVersionString");
        liste.append(
            {kurzeVersion(version.value_or(u"0"_s)), QUrl::fromLocalFile(buendel.filePath())});
    }
    std::stable_sort(liste.begin(), liste.end(), [](const auto &a, const auto &b) {
        return std::is_gt(versionenVergleichen(a.version, b.version));
    });
    return liste;
}

std::optional<Installation> Rekordbox::gewaehlt(const QList<Installation> &liste,
                                                const Einstellungen &einst)
{
    if (liste.isEmpty()) {
        return {};
    }
    if (!einst.version.isEmpty()) {
        for (const Installation &installation : liste) {
            if (installation.version == einst.version) {
                return installation;
            }
        }
    }
    return liste.first();
}

qsizetype Rekordbox::anzahl(const QString &name) const
{
    return prozesse_.anzahl(name);
}

bool Rekordbox::hauptLaeuft() const
{
    return anzahl(u"rekordbox"_s) > 0;
}

bool Rekordbox::laeuft() const
{
    return hauptLaeuft() || anzahl(u"rekordboxAgent"_s) > 0;
}

} // namespace kalvaro
