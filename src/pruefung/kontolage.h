#pragma once

#include "foundation/konto.h"
#include "pruefung/befund.h"

#include <QFile>

namespace kalvaro {

// The account file as it was found.
struct Kontolage
{
    QString pfad{};
    bool ordnerZu = false; // the user may not look into the folder that it lies in
    bool da = false;
    bool istDatei = false; // and no folder, pipe or the like
    bool lesbar = false;
    QFile::Permissions rechte{};
    tl::expected<QJsonObject, QString> felder{};
    tl::expected<Konto, QString> konto{}; // as Konto::laden() gives it

    [[nodiscard]] static Kontolage lesen();
};

// Whether there is an account, and which keys of its file are missing, misspelt or of another type.
// Where it can be loaded, what else is odd in it is a remark.
[[nodiscard]] Befund kontobefund(const Kontolage &lage);

// Whether nobody but the user can read or change a key in the file. Only for a file that the user
// can read.
[[nodiscard]] Befund rechtebefund(const Kontolage &lage);

// The account key in these keys of the file, also under a misspelt one; empty when there is none.
[[nodiscard]] QString schluesselAus(const QJsonObject &felder);

// Oddities in the keys of the file, each as a clause: "„gerät“ heißt hier „geraet“". Values are
// never quoted.
[[nodiscard]] QStringList feldmaengel(const QJsonObject &felder);

} // namespace kalvaro
