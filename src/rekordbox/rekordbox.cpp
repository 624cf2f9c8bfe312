#include "rekordbox/rekordbox.h"

#include "foundation/einmalruf.h"
#include "foundation/einstellungen.h"
#include "foundation/versionen.h"
#include "platform/buendel.h"

#include <QDirIterator>
#include <QFileInfo>

#include <algorithm>
#include <memory>
#include <utility>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

const QString haupt = u"rekordbox"_s;
const QString agent = u"rekordboxAgent"_s;

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

void Rekordbox::anzahl(const QString &name, QObject *besitzer, Zahlruf fertig) const
{
    prozesse_.anzahl(name, besitzer, std::move(fertig));
}

void Rekordbox::hauptLaeuft(QObject *besitzer, Jaruf fertig) const
{
    fragen({haupt}, besitzer, std::move(fertig));
}

void Rekordbox::laeuft(QObject *besitzer, Jaruf fertig) const
{
    fragen({haupt, agent}, besitzer, std::move(fertig));
}

// All names at once; the first that runs is the answer.
void Rekordbox::fragen(const QStringList &namen, QObject *besitzer, Jaruf fertig) const
{
    auto *const frage = new Einmalruf<bool>(
        besitzer, [this, namen, vorher = buendel(namen), fertig = std::move(fertig)](bool laeuft) {
            // A count may be two seconds old.
            const auto gekommen = [&] {
                const QStringList jetzt = buendel(namen);
                return std::any_of(jetzt.begin(), jetzt.end(),
                                   [&](const QString &ort) { return !vorher.contains(ort); });
            };
            fertig(laeuft || gekommen());
        });
    const auto offen = std::make_shared<qsizetype>(namen.size());
    for (const QString &name : namen) {
        prozesse_.anzahl(name, frage, [frage, offen](qsizetype anzahl) {
            if (anzahl > 0) {
                frage->antworten(true);
            } else if (--*offen == 0) {
                frage->antworten(false);
            }
        });
    }
}

QStringList Rekordbox::buendel(const QStringList &namen) const
{
    const QStringList alle = prozesse_.buendel();
    QStringList liste;
    for (const QString &name : namen) {
        liste += Prozesse::namens(alle, name);
    }
    return liste;
}

} // namespace kalvaro
