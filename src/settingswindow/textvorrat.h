#pragma once

#include <QByteArray>
#include <QString>

namespace kalvaro {

// Where a text lies in its pool.
struct Textort
{
    quint32 ab = 0;
    quint32 laenge : 31 = 0; // in characters, as QString counts them
    quint32 breit : 1 = 0;   // two bytes each
};

// Many texts in two blocks of memory, in place of one block for each: those of Latin-1 take a byte
// for each character. What goes in comes out the same, lone surrogates included.
class Textvorrat
{
public:
    Textort hinzu(QStringView text);

    // Bytes of UTF-8 that are known to be valid.
    Textort hinzuUtf8(QByteArrayView bytes);

    [[nodiscard]] QString text(Textort ort) const;
    [[nodiscard]] QLatin1StringView schmal(Textort ort) const
    {
        return {schmal_.constData() + ort.ab, static_cast<qsizetype>(ort.laenge)};
    }
    [[nodiscard]] QStringView breit(Textort ort) const
    {
        return QStringView(breit_).sliced(ort.ab, ort.laenge);
    }

    [[nodiscard]] qint64 bytes() const { return schmal_.size() + 2 * breit_.size(); }

    // Gives back what was taken in advance.
    void abschliessen();

private:
    QByteArray schmal_;
    QString breit_;
};

} // namespace kalvaro
