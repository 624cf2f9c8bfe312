#pragma once

#include "welt.h"

#include <QJsonObject>

#include <utility>

// Reads the members of one JSON object and checks them. The first mistake anywhere is kept in the
// shared `fehler` as "place: reason" (German); after it every reader answers with its default, so
// callers read everything and look at the mistake once, at the end. A missing key is no mistake.
class Jsonpruefer
{
public:
    // `fehler` must outlive this object. Keys that are not in `erlaubt` are a mistake.
    Jsonpruefer(const QJsonValue &wert, QString ort, QString &fehler, const QStringList &erlaubt);

    [[nodiscard]] bool hat(const QString &schluessel) const;
    [[nodiscard]] QJsonValue wert(const QString &schluessel) const;
    [[nodiscard]] QString text(const QString &schluessel, const QString &vorgabe = {});
    // Like text(), but missing or empty is a mistake too.
    [[nodiscard]] QString pflichttext(const QString &schluessel);
    [[nodiscard]] qint64 ganzzahl(const QString &schluessel, qint64 vorgabe, qint64 hoechstens);
    [[nodiscard]] double sekunden(const QString &schluessel, double vorgabe, double mindestens);
    [[nodiscard]] QStringList texte(const QString &schluessel);
    [[nodiscard]] Aenderungen aenderungen(const QString &schluessel);
    // The elements of a list with the place of each.
    [[nodiscard]] QList<std::pair<QJsonValue, QString>> liste(const QString &schluessel);

    void melden(const QString &schluessel, const QString &grund);
    [[nodiscard]] QString ort(const QString &schluessel) const;

private:
    QJsonObject objekt_;
    QString ort_;
    QString &fehler_;
};

// The largest whole number that JSON carries exactly.
inline constexpr qint64 groessteGanzzahl = 9'007'199'254'740'991;
