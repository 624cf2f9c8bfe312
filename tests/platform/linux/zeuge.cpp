// Writes into the file $ZEUGE_BERICHT, one "name=value" per line, how it was started; ends at
// once, or with $ZEUGE_BLEIBT only when it is killed.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <string>
#include <unistd.h>

namespace {

std::string verweis(const std::string &name)
{
    std::string ziel(4096, '\0');
    const ssize_t laenge = ::readlink(name.c_str(), ziel.data(), ziel.size());
    ziel.resize(laenge < 0 ? 0 : static_cast<std::size_t>(laenge));
    return ziel;
}

std::string deskriptoren()
{
    std::string liste;
    DIR *ordner = ::opendir("/proc/self/fd");
    while (const dirent *eintrag = ::readdir(ordner)) {
        const std::string nummer = eintrag->d_name;
        if (nummer[0] != '.' && std::stoi(nummer) != ::dirfd(ordner)) {
            liste += nummer + ":" + verweis("/proc/self/fd/" + nummer) + " ";
        }
    }
    ::closedir(ordner);
    return liste;
}

// The signals of a line of /proc/self/status, as a hexadecimal mask.
std::string maske(const char *name)
{
    std::string fund;
    FILE *status = std::fopen("/proc/self/status", "re");
    char zeile[256];
    while (std::fgets(zeile, sizeof zeile, status) != nullptr) {
        if (std::strncmp(zeile, name, std::strlen(name)) == 0) {
            fund = zeile + std::strlen(name) + 2;
            fund.pop_back();
        }
    }
    std::fclose(status);
    return fund;
}

} // namespace

int main(int argc, char **argv)
{
    const char *ziel = std::getenv("ZEUGE_BERICHT");
    if (ziel == nullptr) {
        return 1;
    }
    const std::string offen = deskriptoren(); // before the report is one of them
    const std::string neu = std::string(ziel) + ".neu";
    FILE *bericht = std::fopen(neu.c_str(), "we");
    if (bericht == nullptr) {
        return 1;
    }
    std::fprintf(bericht, "pid=%d\nsid=%d\npgid=%d\nargc=%d\nargv0=%s\n", ::getpid(), ::getsid(0),
                 ::getpgrp(), argc, argv[0]);
    std::fprintf(bericht, "exe=%s\ncwd=%s\nfds=%s\n", verweis("/proc/self/exe").c_str(),
                 verweis("/proc/self/cwd").c_str(), offen.c_str());
    std::fprintf(bericht, "blockiert=%s\nignoriert=%s\n", maske("SigBlk").c_str(),
                 maske("SigIgn").c_str());
    for (char **eintrag = environ; *eintrag != nullptr; ++eintrag) {
        std::fprintf(bericht, "env.%s\n", *eintrag);
    }
    std::fclose(bericht);
    std::rename(neu.c_str(), ziel); // whoever sees the report sees all of it
    while (std::getenv("ZEUGE_BLEIBT") != nullptr) {
        ::pause();
    }
    return 0;
}
