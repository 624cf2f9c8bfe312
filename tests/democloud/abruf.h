#pragma once

#include "democloud.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QSignalSpy>
#include <QUrl>

#include <atomic>
#include <memory>

namespace kalvaro::democloud {

// What the tests of the demo cloud share: a client and a clock.

struct Erhalten
{
    int status = 0; // 0: no answer
    QByteArray inhalt = {};
    QByteArray erlaubt = {};

    [[nodiscard]] QJsonObject json() const { return QJsonDocument::fromJson(inhalt).object(); }
    [[nodiscard]] QString fehler() const
    {
        return json().value(QStringLiteral("fehler")).toString();
    }
};

// A client of one demo cloud. Requests carry the key "demo-schluessel" unless it is changed.
class Abruf
{
public:
    explicit Abruf(QString adresse)
        : adresse_(std::move(adresse))
    {
    }

    QByteArray schluessel = "demo-schluessel"; // empty: no header

    // Sends without waiting for the answer.
    [[nodiscard]] std::unique_ptr<QNetworkReply>
    senden(const QByteArray &methode, const QString &pfad, const QByteArray &inhalt = {})
    {
        QNetworkRequest anfrage{QUrl(adresse_ + pfad)};
        if (!schluessel.isEmpty()) {
            anfrage.setRawHeader("X-Schluessel", schluessel);
        }
        if (!inhalt.isEmpty()) {
            anfrage.setHeader(QNetworkRequest::ContentTypeHeader,
                              QStringLiteral("application/json"));
        }
        return std::unique_ptr<QNetworkReply>(netz_.sendCustomRequest(anfrage, methode, inhalt));
    }

    [[nodiscard]] static Erhalten warten(QNetworkReply &antwort)
    {
        constexpr int frist = 20'000; // ms
        QSignalSpy fertig(&antwort, &QNetworkReply::finished);
        if (!antwort.isFinished() && !fertig.wait(frist)) {
            return {};
        }
        return {.status = antwort.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(),
                .inhalt = antwort.readAll(),
                .erlaubt = antwort.rawHeader("Allow")};
    }

    [[nodiscard]] Erhalten fragen(const QByteArray &methode, const QString &pfad,
                                  const QByteArray &inhalt = {})
    {
        const auto antwort = senden(methode, pfad, inhalt);
        return warten(*antwort);
    }

    [[nodiscard]] Erhalten holen(const QString &pfad) { return fragen("GET", pfad); }

    [[nodiscard]] static QByteArray abgleichInhalt(const QString &geraet, const QString &anlass)
    {
        return QJsonDocument(QJsonObject{{QStringLiteral("geraet"), geraet},
                                         {QStringLiteral("anlass"), anlass},
                                         {QStringLiteral("version"), QStringLiteral("1.4")}})
            .toJson(QJsonDocument::Compact);
    }

    [[nodiscard]] std::unique_ptr<QNetworkReply>
    abgleichSenden(const QString &geraet = QStringLiteral("demo-mac"))
    {
        return senden("POST", QStringLiteral("/api/abgleich"),
                      abgleichInhalt(geraet, QStringLiteral("hand")));
    }

    // The JSON of a sync that answers 200, or an empty object.
    [[nodiscard]] QJsonObject abgleichen(const QString &geraet = QStringLiteral("demo-mac"),
                                         const QString &anlass = QStringLiteral("hand"))
    {
        const Erhalten antwort =
            fragen("POST", QStringLiteral("/api/abgleich"), abgleichInhalt(geraet, anlass));
        return antwort.status == 200 ? antwort.json() : QJsonObject();
    }

private:
    QString adresse_;
    QNetworkAccessManager netz_;
};

// A clock that stands still until it is moved; the cloud's threads read it.
class Stelluhr
{
public:
    [[nodiscard]] QDateTime jetzt() const { return QDateTime::fromMSecsSinceEpoch(zeit_.load()); }
    void vor(double sekunden) { zeit_ += static_cast<qint64>(sekunden * 1000); }
    [[nodiscard]] std::function<QDateTime()> lesen() const
    {
        return [this] { return jetzt(); };
    }

private:
    std::atomic<qint64> zeit_ = 1'772'906'700'000; // some second of March 2026
};

// The value at a path of keys, undefined when one is missing.
[[nodiscard]] inline QJsonValue wertBei(const QJsonObject &objekt, const QStringList &pfad)
{
    QJsonValue wert = objekt;
    for (const QString &schluessel : pfad) {
        wert = wert.toObject().value(schluessel);
    }
    return wert;
}

[[nodiscard]] inline QString zustandVon(const QJsonObject &antwort)
{
    return wertBei(antwort, {QStringLiteral("ergebnis"), QStringLiteral("zustand")}).toString();
}

} // namespace kalvaro::democloud
