#pragma once

#include <QFile>
#include <QFileInfo>

#include <csignal>
#include <sys/resource.h>
#include <unistd.h>

// What tests take away from their own process for the length of one call, and give back after it.
namespace kalvaro {

// Without root's power over files: permissions count, even when the tests run as root. The real
// user goes as well, since access(2) asks for that one.
class OhneRechte
{
public:
    OhneRechte()
        : vorher(getuid())
    {
        // The saved one stays root's.
        if (vorher == 0 && (setreuid(niemand, 0) != 0 || seteuid(niemand) != 0)) {
            qFatal("Cannot drop root's rights");
        }
    }
    OhneRechte(const OhneRechte &) = delete;
    OhneRechte &operator=(const OhneRechte &) = delete;
    ~OhneRechte()
    {
        if (vorher == 0 && (seteuid(0) != 0 || setreuid(0, 0) != 0)) {
            qFatal("Cannot take root's rights back");
        }
    }

private:
    static constexpr uid_t niemand = 65534;
    const uid_t vorher;
};

// The permissions of a file or folder, put back at the end.
class Rechte
{
public:
    Rechte(const QString &wessen, QFile::Permissions soll)
        : pfad(wessen)
        , vorher(QFile::permissions(wessen))
    {
        QFile::setPermissions(pfad, soll);
    }
    Rechte(const Rechte &) = delete;
    Rechte &operator=(const Rechte &) = delete;
    ~Rechte() { QFile::setPermissions(pfad, vorher); }

private:
    const QString pfad;
    const QFile::Permissions vorher;
};

inline constexpr QFile::Permissions lesbarFuerAlle = QFile::ReadOwner | QFile::ExeOwner |
                                                     QFile::ReadGroup | QFile::ExeGroup |
                                                     QFile::ReadOther | QFile::ExeOther;

// Less of a resource (RLIMIT_...), for example of file size: a disk that fills up.
class Grenze
{
public:
    using Art = decltype(RLIMIT_NOFILE); // each C library has its own

    Grenze(Art welche, rlim_t soll)
        : art(welche)
        , signalVorher(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(art, &vorher);
        const rlimit knapp{soll, vorher.rlim_max};
        if (setrlimit(art, &knapp) != 0) {
            qFatal("Cannot lower the resource limit");
        }
    }
    Grenze(const Grenze &) = delete;
    Grenze &operator=(const Grenze &) = delete;
    ~Grenze()
    {
        setrlimit(art, &vorher);
        std::signal(SIGXFSZ, signalVorher);
    }

private:
    const Art art;
    void (*const signalVorher)(int);
    rlimit vorher{};
};

} // namespace kalvaro
