#pragma once

#include "ui/farbe.h"

#include <QLabel>

#include <optional>
#include <vector>

namespace kalvaro {

// A text label that shows every text literally, whatever it holds, and never claims more width than
// it is given: a text that does not fit is cut with "…" and stands whole in the tool tip. One that
// is written from right to left as a whole begins at the right, as all do in a layout that does.
class Beschriftung : public QLabel
{
    Q_OBJECT

public:
    explicit Beschriftung(const QString &inhalt = {}, QWidget *parent = nullptr);

    // Sets the text and its accessible name.
    void textSetzen(const QString &inhalt);

    // Sets the text only: screen readers are not told. For counters.
    void textLautlosSetzen(const QString &inhalt);

    // QLabel's own would leave accessible name and tool tip behind.
    void setText(const QString &inhalt) = delete;

    void setFarbe(Farbton ton);
    [[nodiscard]] QColor farbe() const;

    // The colour it is drawn in: farbe(), as far as that can be read on what is behind the label.
    [[nodiscard]] QColor stift() const;

    // Wraps lines, at most `breite` wide, into at most `zeilen` lines. A number stays with its unit
    // and what stands between two middle dots stays together.
    void setUmbruch(int breite, int zeilen);

    // The distance of lines in logical pixels; 0 for that of the font.
    void setZeilenhoehe(double hoehe);

    // Lets the text close up a little, then the font shrink to `faktor` of its size where that
    // saves a second line.
    void setSchrumpfen(double faktor);

    // Two labels of the same font and width, one above the other: when one closes up or shrinks,
    // the other does as far. Both must live as long as they are shown.
    static void gemeinsamSchrumpfen(Beschriftung &eine, Beschriftung &andere);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] bool hasHeightForWidth() const override;
    [[nodiscard]] int heightForWidth(int breite) const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    struct Satz
    {
        QStringList zeilen;
        QFont schrift;
        double breite = 0;
        bool gekuerzt = false;
    };

    // A text in lines, and what it was set for.
    struct Gemerkt
    {
        double breite = 0;
        int dpi = 0; // of the screen, from which fonts take their pixels
        Satz satz;
    };

    // How far a text is closed up to fit into one line; the tighter, the less.
    struct Enge
    {
        double groesse = 1;     // of the font's own
        double laufweite = 100; // percent
        auto operator<=>(const Enge &) const = default;
    };

    [[nodiscard]] QString satztext() const;
    [[nodiscard]] Satz gesetzt(int platz) const;
    [[nodiscard]] Satz setzen(double breite) const;
    [[nodiscard]] QFont verengt(const Enge &enge) const;
    [[nodiscard]] Enge enge(double breite) const;
    [[nodiscard]] double zeilenabstand() const;
    void hinweisErneuern();
    void neuSetzen();

    Farbton ton_ = Farbe::schrift;
    std::optional<int> umbruch_;
    int hoechstens_ = 1;
    double zeilenhoehe_ = 0;
    double schrumpfen_ = 1;
    Beschriftung *gefaehrte_ = nullptr; // shrinks along
    bool platziert_ = false;            // has been given a size

    // Layouts ask for the same few widths many times over.
    mutable std::vector<Gemerkt> gemerkt_;
};

// A label of the given size in points; with `umbruch` it wraps at that width (logical pixels).
[[nodiscard]] Beschriftung *beschriftung(const QString &inhalt, double groesse,
                                         QFont::Weight gewicht = QFont::Normal,
                                         Farbton farbe = Farbe::schrift,
                                         std::optional<int> umbruch = std::nullopt);

// The direction in which `inhalt` is read, however the layout lies: what is not written from right
// to left as a whole is a German text, whose brackets, numbers and dots stay where they are.
[[nodiscard]] Qt::LayoutDirection leserichtung(const QString &inhalt);

// Whether `inhalt` is written from right to left as a whole: it has letters of such a script, and
// none of any other.
[[nodiscard]] bool vonRechts(const QString &inhalt);

// `inhalt` so that a tool tip shows it literally: tool tips guess markup. Cut after 2,000
// characters.
[[nodiscard]] QString alsHinweis(const QString &inhalt);

} // namespace kalvaro
