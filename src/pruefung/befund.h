#pragma once

#include <QJsonObject>
#include <QList>
#include <QString>

// The check-up: what it finds, and how that is printed.
namespace kalvaro {

// One finding: good, or with what to do next.
struct Befund
{
    QString bereich{}; // stable name for tools, "adresse"
    QString name{};    // of what was looked at, "Adresse https://cloud.example"
    QString text{};    // what was found
    QString schritt{}; // what to do about it; empty when all is well

    [[nodiscard]] bool gut() const { return schritt.isEmpty(); }

    bool operator==(const Befund &) const = default;
};

[[nodiscard]] bool allesGut(const QList<Befund> &befunde);

// `text` without the account key, which appears nowhere in it after that.
[[nodiscard]] QString ohneSchluessel(QString text, const QString &schluessel);

// The findings as plain text for one line each: without the account key and without anything that
// could control a terminal.
[[nodiscard]] QList<Befund> bereinigt(QList<Befund> befunde, const QString &schluessel);

// A line each: "✓ name: text" or "✗ name: text → schritt".
[[nodiscard]] QString alsText(const QList<Befund> &befunde);

// One JSON object with "gut", "befunde" (each with "bereich", "name", "gut", "text" and, where it
// is not good, "schritt") and what `mehr` holds beside them; ends with a line feed.
[[nodiscard]] QByteArray alsJson(const QList<Befund> &befunde, QJsonObject mehr);

} // namespace kalvaro
