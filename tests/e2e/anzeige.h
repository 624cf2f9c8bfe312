#pragma once

#include <QImage>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

#include <functional>

namespace kalvaro {

// Waits until `bedingung` holds, `geduld` milliseconds at most; false when it never does. Unlike
// QTRY_VERIFY, counts the time that the condition itself takes.
[[nodiscard]] bool bald(const std::function<bool()> &bedingung, int geduld = 60000);

// An X11 display of the test's own: Xvfb. Ends with this object.
class Anzeige
{
public:
    // What happens when the last client has left.
    enum class Letzter { Egal, BringtNeubeginn };
    explicit Anzeige(Letzter letzter = Letzter::Egal);
    ~Anzeige();
    Anzeige(const Anzeige &) = delete;
    Anzeige &operator=(const Anzeige &) = delete;

    // The environment of programs that run on it, without any desktop's traces.
    [[nodiscard]] QProcessEnvironment umgebung(const QString &busadresse) const;

    // Runs a tool to its end.
    void ausfuehren(const QString &werkzeug, const QStringList &argumente) const;

    // The same; what the tool writes on standard output.
    [[nodiscard]] QString ausgabe(const QString &werkzeug, const QStringList &argumente) const;

    void klicken(QPoint wo, int knopf) const;

    // The display's name, as in $DISPLAY.
    [[nodiscard]] const QString &name() const { return wo; }

    // What is to be seen.
    [[nodiscard]] QImage bild() const;

private:
    QTemporaryDir ablage;
    QProcess server;
    QString wo;
};

} // namespace kalvaro
