#pragma once

#include <QByteArray>
#include <QStringList>

namespace kalvaro {

// Writes a file, with its folders; ends the test when it cannot.
void dateiSchreiben(const QString &pfad, const QByteArray &inhalt, bool ausfuehrbar = false);

// The content of a file; empty when it cannot be read.
[[nodiscard]] QByteArray dateiLesen(const QString &pfad);

// The content of an account file: the demo cloud's "demo-mac", with this server.
[[nodiscard]] QByteArray demokonto(const QString &server);

// The texts of the whole lines of a log, without their time stamps.
[[nodiscard]] QStringList logzeilen(const QString &pfad);

} // namespace kalvaro
