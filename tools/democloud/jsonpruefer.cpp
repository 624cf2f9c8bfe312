#include "jsonpruefer.h"

#include <QJsonArray>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

bool istGanzzahl(const QJsonValue &wert, qint64 hoechstens)
{
    const double zahl = wert.toDouble(-1);
    return wert.isDouble() && zahl >= 0 && zahl <= static_cast<double>(hoechstens) &&
           zahl == std::floor(zahl);
}

} // namespace

Jsonpruefer::Jsonpruefer(const QJsonValue &wert, QString ort, QString &fehler,
                         const QStringList &erlaubt)
    : objekt_(wert.toObject())
    , ort_(std::move(ort))
    , fehler_(fehler)
{
    if (!wert.isObject()) {
        melden({}, u"ein Objekt { … } wird erwartet"_s);
        return;
    }
    const QStringList vorhanden = objekt_.keys();
    for (const QString &schluessel : vorhanden) {
        if (!erlaubt.contains(schluessel)) {
            melden(schluessel,
                   u"unbekannter Schlüssel (bekannt sind: %1)"_s.arg(erlaubt.join(u", "_s)));
        }
    }
}

bool Jsonpruefer::hat(const QString &schluessel) const
{
    return objekt_.contains(schluessel);
}

QJsonValue Jsonpruefer::wert(const QString &schluessel) const
{
    return objekt_.value(schluessel);
}

QString Jsonpruefer::text(const QString &schluessel, const QString &vorgabe)
{
    if (!hat(schluessel)) {
        return vorgabe;
    }
    if (!wert(schluessel).isString()) {
        melden(schluessel, u"ein Text wird erwartet"_s);
        return vorgabe;
    }
    return wert(schluessel).toString();
}

QString Jsonpruefer::pflichttext(const QString &schluessel)
{
    QString gelesen = text(schluessel);
    if (gelesen.isEmpty()) {
        melden(schluessel, u"ein Text wird erwartet, der nicht leer ist"_s);
    }
    return gelesen;
}

qint64 Jsonpruefer::ganzzahl(const QString &schluessel, qint64 vorgabe, qint64 hoechstens)
{
    if (!hat(schluessel)) {
        return vorgabe;
    }
    if (!istGanzzahl(wert(schluessel), hoechstens)) {
        melden(schluessel, u"eine ganze Zahl von 0 bis %1 wird erwartet"_s.arg(hoechstens));
        return vorgabe;
    }
    return wert(schluessel).toInteger();
}

double Jsonpruefer::sekunden(const QString &schluessel, double vorgabe, double mindestens)
{
    if (!hat(schluessel)) {
        return vorgabe;
    }
    const QJsonValue gelesen = wert(schluessel);
    if (!gelesen.isDouble() || gelesen.toDouble() < mindestens) {
        melden(schluessel, u"eine Zahl von Sekunden ab %1 wird erwartet"_s.arg(mindestens));
        return vorgabe;
    }
    return gelesen.toDouble();
}

QStringList Jsonpruefer::texte(const QString &schluessel)
{
    QStringList ergebnis;
    const auto elemente = liste(schluessel);
    for (const auto &[element, stelle] : elemente) {
        if (!element.isString() && fehler_.isEmpty()) {
            fehler_ = stelle + u": ein Text wird erwartet"_s;
        }
        ergebnis.append(element.toString());
    }
    return ergebnis;
}

Aenderungen Jsonpruefer::aenderungen(const QString &schluessel)
{
    Aenderungen ergebnis;
    if (!hat(schluessel)) {
        return ergebnis;
    }
    const QJsonObject tabellen = wert(schluessel).toObject();
    Jsonpruefer innen(wert(schluessel), ort(schluessel), fehler_, tabellen.keys());
    for (auto it = tabellen.begin(); it != tabellen.end(); ++it) {
        ergebnis.insert(it.key(), innen.ganzzahl(it.key(), 0, groessteGanzzahl));
    }
    return ergebnis;
}

QList<std::pair<QJsonValue, QString>> Jsonpruefer::liste(const QString &schluessel)
{
    QList<std::pair<QJsonValue, QString>> ergebnis;
    if (!hat(schluessel)) {
        return ergebnis;
    }
    if (!wert(schluessel).isArray()) {
        melden(schluessel, u"eine Liste [ … ] wird erwartet"_s);
        return ergebnis;
    }
    const QJsonArray elemente = wert(schluessel).toArray();
    for (qsizetype i = 0; i < elemente.size(); ++i) {
        ergebnis.append({elemente.at(i), u"%1[%2]"_s.arg(ort(schluessel), QString::number(i))});
    }
    return ergebnis;
}

void Jsonpruefer::melden(const QString &schluessel, const QString &grund)
{
    if (fehler_.isEmpty()) {
        fehler_ = ort(schluessel) + u": "_s + grund;
    }
}

QString Jsonpruefer::ort(const QString &schluessel) const
{
    if (schluessel.isEmpty()) {
        return ort_.isEmpty() ? u"oberste Ebene"_s : ort_;
    }
    return ort_.isEmpty() ? schluessel : ort_ + u'.' + schluessel;
}
