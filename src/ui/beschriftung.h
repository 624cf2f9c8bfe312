#pragma once

#include "ui/farbe.h"

#include <QLabel>

#include <optional>

namespace kalvaro {

// A text label that shows every text literally, whatever it holds, and never claims more width than
// it is given: a text that does not fit is cut with "…" and stands whole in the tool tip.
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

    [[nodiscard]] QString satztext() const;
    [[nodiscard]] Satz gesetzt(int platz) const;
    [[nodiscard]] QFont satzschrift(const QString &inhalt, double breite) const;
    [[nodiscard]] double zeilenabstand() const;
    void hinweisErneuern();

    Farbton ton_ = Farbe::schrift;
    std::optional<int> umbruch_;
    int hoechstens_ = 1;
    double zeilenhoehe_ = 0;
    double schrumpfen_ = 1;
};

// A label of the given size in points; with `umbruch` it wraps at that width (logical pixels).
[[nodiscard]] Beschriftung *beschriftung(const QString &inhalt, double groesse,
                                         QFont::Weight gewicht = QFont::Normal,
                                         Farbton farbe = Farbe::schrift,
                                         std::optional<int> umbruch = std::nullopt);

// `inhalt` so that a tool tip shows it literally: tool tips guess markup. Cut after 2,000
// characters.
[[nodiscard]] QString alsHinweis(const QString &inhalt);

} // namespace kalvaro
