#include "handbuch/quelltexte.h"

#include "doubles/dateien.h"

#include <QDirIterator>
#include <QRegularExpression>

namespace kalvaro {

using namespace Qt::StringLiterals;

QString quelltext(const QString &pfad)
{
    const QByteArray inhalt = dateiLesen(QStringLiteral(QUELLORDNER "/") + pfad);
    if (inhalt.isEmpty()) {
        qFatal("There is no %s", qPrintable(pfad));
    }
    return QString::fromUtf8(inhalt);
}

QString programmtext(const QString &pfad)
{
    static const QRegularExpression fuge(u"\"\\s*\\n\\s*\""_s);
    return quelltext(pfad).remove(fuge);
}

QString programmtexte()
{
    const QString wurzel = QStringLiteral(QUELLORDNER "/");
    QString texte;
    QDirIterator dateien(wurzel + u"src"_s, {u"*.cpp"_s, u"*.h"_s}, QDir::Files,
                         QDirIterator::Subdirectories);
    while (dateien.hasNext()) {
        texte += programmtext(dateien.next().mid(wurzel.size())) + u'\n';
    }
    return texte;
}

QStringList saetze(const QString &text)
{
    static const QRegularExpression einsatz(u"%\\d"_s);
    static const QRegularExpression rand(u"^[\\s.:|(),„“]+|[\\s.:|(),„“]+$"_s);
    QStringList liste;
    const QStringList literale = alle(text, u"u\"((?:[^\"\\\\]|\\\\.)*)\""_s);
    for (const QString &literal : literale) {
        const QStringList stuecke = literal.split(einsatz);
        for (QString stueck : stuecke) {
            liste.append(stueck.remove(rand));
        }
    }
    return liste;
}

QStringList alle(const QString &text, const QString &muster)
{
    QStringList liste;
    auto treffer =
        QRegularExpression(muster, QRegularExpression::MultilineOption).globalMatch(text);
    while (treffer.hasNext()) {
        liste.append(treffer.next().captured(1));
    }
    liste.removeDuplicates();
    return liste;
}

} // namespace kalvaro
