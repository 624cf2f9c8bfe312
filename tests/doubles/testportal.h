#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <QVariant>

namespace kalvaro {

class Testbus;

// A desktop portal with nothing but colours: a process of its own, since the first question is
// waited for. Needs python3-dbusmock.
class Testportal
{
public:
    // `wert` is what the question `methode` returns, in Python.
    Testportal(Testbus &bus, const QString &wert, const QString &methode = QStringLiteral("Read"));
    ~Testportal();
    Testportal(const Testportal &) = delete;
    Testportal &operator=(const Testportal &) = delete;

    // Whether what it needs is installed.
    [[nodiscard]] static bool vorhanden();

    // Says that a setting has become `wert`.
    void melden(const QString &bereich, const QString &schluessel, const QVariant &wert);
    void schemaMelden(uint wert);

    // SIGSTOP and SIGCONT: a portal that hangs.
    void anhalten();
    void fortsetzen();

private:
    void rufen(const QString &was, const QVariantList &womit);

    QDBusConnection frage;
    QProcess prozess;
};

} // namespace kalvaro
