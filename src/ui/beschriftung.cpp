#include "ui/beschriftung.h"

#include "ui/schrift.h"

#include <QEvent>
#include <QPainter>
#include <QTextLayout>

#include <cmath>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

// More than any label can show; a server may send megabytes.
constexpr qsizetype meisteZeichen = 4000;
constexpr qsizetype meisteHinweiszeichen = 2000;
constexpr int meisteZeilen = 12;

} // namespace

Beschriftung::Beschriftung(const QString &inhalt, QWidget *parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setText(inhalt);
}

void Beschriftung::setText(const QString &inhalt)
{
    setAccessibleName(inhalt.left(meisteZeichen));
    setTextLautlos(inhalt);
}

void Beschriftung::setTextLautlos(const QString &inhalt)
{
    QLabel::setText(inhalt);
    hinweisErneuern();
    updateGeometry();
}

void Beschriftung::setFarbe(Farbton ton)
{
    ton_ = ton;
    update();
}

QColor Beschriftung::farbe() const
{
    return ton_(palette());
}

void Beschriftung::setUmbruch(int breite, int zeilen)
{
    umbruch = breite;
    hoechstens = zeilen;
    QSizePolicy regel(QSizePolicy::Preferred, QSizePolicy::Preferred);
    regel.setHeightForWidth(true);
    setSizePolicy(regel);
    updateGeometry();
}

void Beschriftung::setZeilenhoehe(double hoehe)
{
    zeilenhoehe = hoehe;
    updateGeometry();
}

void Beschriftung::setSchrumpfen(double faktor)
{
    schrumpfen = faktor;
    updateGeometry();
}

void Beschriftung::setGrund(const QColor &hinten)
{
    grund = hinten;
    update();
}

QSize Beschriftung::sizeHint() const
{
    const Satz satz = setzen(umbruch ? *umbruch : QWIDGETSIZE_MAX);
    return {static_cast<int>(std::ceil(satz.breite)),
            static_cast<int>(std::ceil(zeilenabstand() * double(satz.zeilen.size())))};
}

QSize Beschriftung::minimumSizeHint() const
{
    return {fontMetrics().horizontalAdvance(u'…'), static_cast<int>(std::ceil(zeilenabstand()))};
}

bool Beschriftung::hasHeightForWidth() const
{
    return umbruch.has_value();
}

int Beschriftung::heightForWidth(int breite) const
{
    if (!umbruch) {
        return -1;
    }
    const Satz satz = setzen(std::min(breite, *umbruch));
    return static_cast<int>(std::ceil(zeilenabstand() * double(satz.zeilen.size())));
}

double Beschriftung::zeilenabstand() const
{
    return std::max(zeilenhoehe, QFontMetricsF(font()).height());
}

QFont Beschriftung::satzschrift(const QString &inhalt, double breite) const
{
    QFont schrift = font();
    const double noetig = QFontMetricsF(schrift).horizontalAdvance(inhalt);
    if (noetig > breite && noetig * schrumpfen <= breite) {
        // A hair less, so that rounding does not break the line after all.
        schrift.setPointSizeF(schrift.pointSizeF() * breite / noetig * 0.998);
    }
    return schrift;
}

// Breaks the text into lines of at most `breite`.
Beschriftung::Satz Beschriftung::setzen(double breite) const
{
    Satz satz;
    QString inhalt = text().left(meisteZeichen);
    inhalt.replace(u"\r\n"_s, u"\n"_s);
    if (umbruch) {
        inhalt.replace(u'\n', QChar::LineSeparator);
    } else {
        inhalt.replace(u'\n', u' ');
    }
    satz.gekuerzt = text().size() > meisteZeichen;

    satz.schrift = satzschrift(inhalt, breite);
    QTextLayout layout(inhalt, satz.schrift);
    QTextOption option;
    option.setWrapMode(umbruch ? QTextOption::WrapAtWordBoundaryOrAnywhere : QTextOption::NoWrap);
    layout.setTextOption(option);
    layout.beginLayout();
    for (QTextLine zeile = layout.createLine(); zeile.isValid(); zeile = layout.createLine()) {
        zeile.setLineWidth(breite);
        QString stueck = inhalt.sliced(zeile.textStart(), zeile.textLength());
        const bool letzte = satz.zeilen.size() + 1 == hoechstens;
        const bool mehr = zeile.textStart() + zeile.textLength() < inhalt.size();
        if (letzte && (mehr || satz.gekuerzt || zeile.naturalTextWidth() > breite)) {
            // What follows is cut: the last line takes "…" at its end.
            stueck = QFontMetricsF(satz.schrift)
                         .elidedText(
                             inhalt.sliced(zeile.textStart()).replace(QChar::LineSeparator, u' '),
                             Qt::ElideRight, breite);
            satz.gekuerzt = true;
        }
        satz.zeilen.append(stueck.remove(QChar::LineSeparator));
        satz.breite = std::max(satz.breite, std::min(zeile.naturalTextWidth(), breite));
        if (letzte) {
            break;
        }
    }
    layout.endLayout();
    if (satz.zeilen.isEmpty()) {
        satz.zeilen.append(QString());
    }
    return satz;
}

void Beschriftung::hinweisErneuern()
{
    const double breite = umbruch ? std::min(width(), *umbruch) : width();
    setToolTip(setzen(breite).gekuerzt ? alsHinweis(text()) : QString());
}

void Beschriftung::resizeEvent(QResizeEvent *event)
{
    QLabel::resizeEvent(event);
    hinweisErneuern();
}

void Beschriftung::changeEvent(QEvent *event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        hinweisErneuern();
    }
}

void Beschriftung::paintEvent(QPaintEvent *)
{
    constexpr double lesbarerKontrast = 4.5;
    constexpr double grosserKontrast = 3;
    constexpr int grosseSchrift = 17;

    QPainter maler(this);
    QColor stift = farbe();
    if (grund.isValid()) {
        const bool gross = QFontInfo(font()).pixelSize() >= grosseSchrift;
        stift = Farbe::lesbar(stift, grund, gross ? grosserKontrast : lesbarerKontrast);
    }
    maler.setPen(stift);
    const double breite = umbruch ? std::min(width(), *umbruch) : width();
    const double hoehe = zeilenabstand();
    const Satz satz = setzen(breite);
    maler.setFont(satz.schrift);
    double oben = umbruch ? 0 : (height() - hoehe) / 2;
    for (const QString &zeile : satz.zeilen) {
        const QRectF platz(0, oben, width(), hoehe);
        maler.drawText(platz,
                       static_cast<int>((alignment() & Qt::AlignHorizontal_Mask)) |
                           Qt::AlignVCenter | Qt::TextSingleLine,
                       zeile);
        oben += hoehe;
    }
}

Beschriftung *beschriftung(const QString &inhalt, double groesse, QFont::Weight gewicht,
                           Farbton farbe, std::optional<int> umbruch)
{
    auto *const label = new Beschriftung(inhalt);
    label->setFont(systemschrift(groesse, gewicht));
    label->setFarbe(farbe);
    if (umbruch) {
        label->setUmbruch(*umbruch, meisteZeilen);
    }
    return label;
}

QString alsHinweis(const QString &inhalt)
{
    const bool lang = inhalt.size() > meisteHinweiszeichen;
    const QString kurz = inhalt.left(meisteHinweiszeichen) + (lang ? u"…"_s : QString());
    return Qt::convertFromPlainText(kurz);
}

} // namespace kalvaro
