#include "testlauf.h"

#include <QProcess>
#include <QStandardPaths>

#include <cstdio>
#include <map>
#include <string>

namespace kalvaro {

namespace {

std::map<std::string, Testlauf::Ausfuehrung> &klassen()
{
    static std::map<std::string, Testlauf::Ausfuehrung> alle;
    return alle;
}

int alleAusfuehren(int argc, char **argv)
{
    QCoreApplication anwendung(argc, argv);
    const QStringList uebrige = QCoreApplication::arguments().mid(1);
    int gescheitert = 0;
    for (const auto &[klasse, lauf] : klassen()) {
        const QStringList argumente = QStringList(QString::fromStdString(klasse)) + uebrige;
        gescheitert +=
            QProcess::execute(QCoreApplication::applicationFilePath(), argumente) == 0 ? 0 : 1;
    }
    return gescheitert;
}

} // namespace

Testlauf::Testlauf(const char *klasse, Ausfuehrung lauf)
{
    klassen().emplace(klasse, lauf);
}

QString fehlendes(const QStringList &programme)
{
    for (const QString &programm : programme) {
        if (QStandardPaths::findExecutable(programm).isEmpty()) {
            return programm;
        }
    }
    return {};
}

bool eigeneProzesse()
{
    return qEnvironmentVariableIsSet("KALVARO_EIGENE_PROZESSE");
}

} // namespace kalvaro

int main(int argc, char *argv[])
{
    using namespace kalvaro;
    if (argc < 2 || argv[1][0] == '-') {
        return alleAusfuehren(argc, argv);
    }
    const auto klasse = klassen().find(argv[1]);
    if (klasse == klassen().end()) {
        std::fprintf(stderr, "There is no class %s here.\n", argv[1]);
        return 2;
    }
    argv[1] = argv[0];
    return klasse->second(argc - 1, argv + 1);
}
