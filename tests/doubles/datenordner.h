#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace kalvaro {

// A data folder of the test's own. Create one before anything asks for appOrdner(), one per
// program; leeren() between the tests.
class Datenordner
{
public:
    Datenordner();

    // Removes everything in the data folder and creates it anew, empty.
    void leeren() const;

    void schreiben(const QString &name, const QByteArray &inhalt) const;

    // The content of the file `name`; empty when there is none.
    [[nodiscard]] QByteArray inhalt(const QString &name) const;

    // The texts of the log lines, without their time stamps.
    [[nodiscard]] QStringList protokollzeilen() const;

private:
    QTemporaryDir ordner;
};

} // namespace kalvaro
