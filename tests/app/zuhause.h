#pragma once

#include "doubles/dateien.h"

#include <QDir>
#include <QFile>
#include <QProcessEnvironment>
#include <QTemporaryDir>

namespace kalvaro {

// Folders as a user has them, and what the program leaves in them.
class Zuhause
{
public:
    Zuhause()
    {
        QDir().mkpath(datei(QStringLiteral("programme")));
        QDir().mkpath(datei(QStringLiteral("lauf")));
        QFile::setPermissions(datei(QStringLiteral("lauf")), QFile::Permissions(0x7700));
    }

    void kontoSchreiben(const QString &server) const
    {
        dateiSchreiben(daten() + QStringLiteral("/konto.json"), demokonto(server));
    }

    // For a program that runs here: without a display, without a bus, in no language.
    [[nodiscard]] QProcessEnvironment umgebung() const
    {
        QProcessEnvironment u = QProcessEnvironment::systemEnvironment();
        for (const auto *name : {"DISPLAY", "WAYLAND_DISPLAY", "LANGUAGE"}) {
            u.remove(QString::fromLatin1(name));
        }
        const QString keinBus = QStringLiteral("unix:path=") + datei(QStringLiteral("bus"));
        u.insert(QStringLiteral("HOME"), wurzel_.path());
        u.insert(QStringLiteral("XDG_DATA_HOME"), datei(QStringLiteral("daten")));
        u.insert(QStringLiteral("XDG_CONFIG_HOME"), datei(QStringLiteral("config")));
        u.insert(QStringLiteral("XDG_CACHE_HOME"), datei(QStringLiteral("cache")));
        u.insert(QStringLiteral("XDG_RUNTIME_DIR"), datei(QStringLiteral("lauf")));
        u.insert(QStringLiteral("KALVARO_APPLICATIONS"), datei(QStringLiteral("programme")));
        u.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), keinBus);
        u.insert(QStringLiteral("DBUS_SYSTEM_BUS_ADDRESS"), keinBus);
        u.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        u.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
        return u;
    }

    [[nodiscard]] QString datei(const QString &name) const { return wurzel_.filePath(name); }
    [[nodiscard]] QString daten() const { return datei(QStringLiteral("daten/kalvaro")); }

    // The texts of the log lines, without their time stamps.
    [[nodiscard]] QStringList protokoll() const
    {
        return logzeilen(daten() + QStringLiteral("/kalvaro.log"));
    }

private:
    const QTemporaryDir wurzel_;
};

} // namespace kalvaro
