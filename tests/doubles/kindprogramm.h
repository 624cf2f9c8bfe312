#pragma once

#include <QByteArray>
#include <QProcess>
#include <QStringList>

namespace kalvaro {

// Has the program end with the test, however that ends, where the system can do that. Before
// start().
void anTestBinden(QProcess &programm);

// A program with its standard input and outputs. Killed with this object.
class Kindprogramm
{
public:
    Kindprogramm(const QString &datei, const QStringList &argumente,
                 const QProcessEnvironment &umgebung);
    ~Kindprogramm();
    Kindprogramm(const Kindprogramm &) = delete;
    Kindprogramm &operator=(const Kindprogramm &) = delete;

    void schreiben(const QString &zeile);

    // What it has written so far: on standard output, as bytes and as lines, and on standard error.
    [[nodiscard]] QByteArray ausgabe();
    [[nodiscard]] QStringList zeilen();
    [[nodiscard]] QByteArray fehlerausgabe();

    [[nodiscard]] bool laeuft() const { return prozess_.state() != QProcess::NotRunning; }
    void signal(int nummer) const;
    void toeten();

    // Closes its input and waits for its end; the exit code, or -1 when it did not end by itself.
    [[nodiscard]] int ende();

    // Sends a signal and waits; the milliseconds that the end took, or -1 without a good one.
    [[nodiscard]] qint64 beenden(int nummer);

private:
    QProcess prozess_;
    QByteArray gelesen_;
};

} // namespace kalvaro
