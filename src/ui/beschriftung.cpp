#include "ui/beschriftung.h"

#include "ui/schrift.h"
#include "ui/unterlage.h"

#include <QEvent>
#include <QPainter>
#include <QStyle>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

// More than any label can show; a server may send megabytes.
constexpr qsizetype meisteZeichen = 4000;
constexpr qsizetype meisteHinweiszeichen = 2000;
constexpr int meisteZeilen = 12;
constexpr size_t meisteGemerkte = 6;

bool istZiffer(QChar zeichen)
{
    return zeichen >= u'0' && zeichen <= u'9';
}

// Whether `inhalt` begins with `einheit` as a word.
bool beginntMit(QStringView inhalt, QStringView einheit)
{
    if (!inhalt.startsWith(einheit)) {
        return false;
    }
    const QChar danach = inhalt.size() > einheit.size() ? inhalt[einheit.size()] : u' ';
    return !istZiffer(danach) && danach != u'_' && !(danach >= u'A' && danach <= u'Z') &&
           !(danach >= u'a' && danach <= u'z');
}

// `inhalt` with blanks that no line may break at: before a unit, and between two middle dots, so
// that what belongs together moves to the next line together.
QString zusammengehalten(QString inhalt)
{
    static const QString punkt = u"   ·   "_s;
    for (qsizetype ort = inhalt.indexOf(u' ', 1); ort > 0; ort = inhalt.indexOf(u' ', ort + 1)) {
        const QStringView rest = QStringView(inhalt).sliced(ort + 1);
        if (istZiffer(inhalt[ort - 1]) && (beginntMit(rest, u"s") || beginntMit(rest, u"GB"))) {
            inhalt[ort] = QChar::Nbsp;
        }
    }
    if (inhalt.contains(punkt)) {
        QStringList stuecke = inhalt.split(punkt);
        for (QString &stueck : stuecke) {
            stueck.replace(u' ', QChar::Nbsp);
        }
        inhalt = stuecke.join(QString(3, QChar::Nbsp) + u"·   "_s);
    }
    return inhalt;
}

// A line without the middle dot that would have parted it from the next one.
QString ohnePunkt(const QString &zeile)
{
    const QString kurz = zeile.trimmed();
    return kurz.endsWith(u'·') ? kurz.chopped(1).trimmed() : zeile;
}

} // namespace

Beschriftung::Beschriftung(const QString &inhalt, QWidget *parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    textSetzen(inhalt);
}

void Beschriftung::textSetzen(const QString &inhalt)
{
    setAccessibleName(inhalt.left(meisteZeichen));
    textLautlosSetzen(inhalt);
}

void Beschriftung::textLautlosSetzen(const QString &inhalt)
{
    if (inhalt == text()) {
        return;
    }
    QLabel::setText(inhalt);
    neuSetzen();
}

// What decides how the text goes into lines has changed, so it has for the companion.
void Beschriftung::neuSetzen()
{
    for (Beschriftung *const betroffen : {this, gefaehrte_}) {
        if (betroffen != nullptr) {
            betroffen->gemerkt_.clear();
        }
    }
    for (Beschriftung *const betroffen : {this, gefaehrte_}) {
        if (betroffen != nullptr) {
            betroffen->hinweisErneuern();
            betroffen->updateGeometry();
            betroffen->update();
        }
    }
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

QColor Beschriftung::stift() const
{
    return Farbe::auf(untergrund(*this), ton_, palette());
}

void Beschriftung::setUmbruch(int breite, int zeilen)
{
    if (umbruch_ == breite && hoechstens_ == zeilen) {
        return;
    }
    umbruch_ = breite;
    hoechstens_ = zeilen;
    QSizePolicy regel(QSizePolicy::Preferred, QSizePolicy::Preferred);
    regel.setHeightForWidth(true);
    setSizePolicy(regel);
    neuSetzen();
}

void Beschriftung::setZeilenhoehe(double hoehe)
{
    zeilenhoehe_ = hoehe;
    updateGeometry();
}

void Beschriftung::setSchrumpfen(double faktor)
{
    schrumpfen_ = faktor;
    neuSetzen();
}

void Beschriftung::gemeinsamSchrumpfen(Beschriftung &eine, Beschriftung &andere)
{
    eine.gefaehrte_ = &andere;
    andere.gefaehrte_ = &eine;
    eine.neuSetzen();
}

QSize Beschriftung::sizeHint() const
{
    const Satz satz = gesetzt(QWIDGETSIZE_MAX);
    return {static_cast<int>(std::ceil(satz.breite)),
            static_cast<int>(std::ceil(zeilenabstand() * double(satz.zeilen.size())))};
}

QSize Beschriftung::minimumSizeHint() const
{
    return {fontMetrics().horizontalAdvance(u'…'), static_cast<int>(std::ceil(zeilenabstand()))};
}

bool Beschriftung::hasHeightForWidth() const
{
    return umbruch_.has_value();
}

int Beschriftung::heightForWidth(int breite) const
{
    if (!umbruch_) {
        return -1;
    }
    const Satz satz = gesetzt(breite);
    return static_cast<int>(std::ceil(zeilenabstand() * double(satz.zeilen.size())));
}

double Beschriftung::zeilenabstand() const
{
    return std::max(zeilenhoehe_, QFontMetricsF(font()).height());
}

QFont Beschriftung::verengt(const Enge &enge) const
{
    QFont schrift = font();
    if (enge.groesse < 1) {
        schrift.setPointSizeF(font().pointSizeF() * enge.groesse);
    }
    if (enge.laufweite < 100) {
        schrift.setLetterSpacing(QFont::PercentageSpacing, enge.laufweite);
    }
    return schrift;
}

// What this label's own text needs for one line; nothing where none helps. Sizes come in steps on
// most screens, so the width is measured again for each.
Beschriftung::Enge Beschriftung::enge(double breite) const
{
    constexpr double schritt = 0.01;
    const QString inhalt = satztext();
    const double noetig = QFontMetricsF(font()).horizontalAdvance(inhalt);
    if (noetig <= breite || schrumpfen_ >= 1) {
        return {};
    }
    const auto passt = [&](const Enge &wie) {
        return QFontMetricsF(verengt(wie)).horizontalAdvance(inhalt) <= breite;
    };
    // Letters a hair closer together are less conspicuous than smaller ones.
    for (const double laufweite : {99.0, 98.0, 97.0, 96.0}) {
        if (passt({.laufweite = laufweite})) {
            return {.laufweite = laufweite};
        }
    }
    const double anteil = breite / noetig;
    const auto versuche = static_cast<int>(std::floor((anteil - schrumpfen_) / schritt));
    for (int versuch = 0; versuch <= versuche; ++versuch) { // none where that is below 0
        const double groesse = anteil - versuch * schritt;
        if (passt({.groesse = groesse})) {
            return {.groesse = groesse};
        }
    }
    return {};
}

// The text as it goes into lines.
QString Beschriftung::satztext() const
{
    QString inhalt = text().left(meisteZeichen);
    inhalt.replace(u"\r\n"_s, u"\n"_s);
    if (!umbruch_) {
        return inhalt.replace(u'\n', u' ');
    }
    return zusammengehalten(inhalt.replace(u'\n', QChar::LineSeparator));
}

// The text in lines for `platz` pixels.
Beschriftung::Satz Beschriftung::gesetzt(int platz) const
{
    const double breite = umbruch_ ? std::min(platz, *umbruch_) : platz;
    const auto da = std::find_if(gemerkt_.begin(), gemerkt_.end(), [&](const Gemerkt &g) {
        return g.breite == breite && g.dpi == logicalDpiY();
    });
    if (da != gemerkt_.end()) {
        return da->satz;
    }
    if (gemerkt_.size() >= meisteGemerkte) {
        gemerkt_.clear();
    }
    return gemerkt_.emplace_back(Gemerkt{breite, logicalDpiY(), setzen(breite)}).satz;
}

Beschriftung::Satz Beschriftung::setzen(double breite) const
{
    Satz satz;
    const QString inhalt = satztext();
    satz.gekuerzt = text().size() > meisteZeichen;

    satz.schrift = verengt(gefaehrte_ != nullptr ? std::min(enge(breite), gefaehrte_->enge(breite))
                                                 : enge(breite));
    QTextLayout layout(inhalt, satz.schrift);
    QTextOption option;
    option.setTextDirection(leserichtung(inhalt));
    option.setWrapMode(umbruch_ ? QTextOption::WrapAtWordBoundaryOrAnywhere : QTextOption::NoWrap);
    layout.setTextOption(option);
    layout.beginLayout();
    for (QTextLine zeile = layout.createLine(); zeile.isValid(); zeile = layout.createLine()) {
        zeile.setLineWidth(breite);
        QString stueck = inhalt.sliced(zeile.textStart(), zeile.textLength());
        const bool letzte = satz.zeilen.size() + 1 == hoechstens_;
        const bool mehr = zeile.textStart() + zeile.textLength() < inhalt.size();
        if (letzte && (mehr || satz.gekuerzt || zeile.naturalTextWidth() > breite)) {
            // What follows is cut: the last line takes "…" at its end.
            stueck = QFontMetricsF(satz.schrift)
                         .elidedText(
                             inhalt.sliced(zeile.textStart()).replace(QChar::LineSeparator, u' '),
                             Qt::ElideRight, breite);
            satz.gekuerzt = true;
        }
        stueck.remove(QChar::LineSeparator);
        while (stueck.endsWith(u' ')) {
            stueck.chop(1); // would keep the line away from the right edge
        }
        satz.zeilen.append(mehr && !letzte ? ohnePunkt(stueck) : stueck);
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

// Without a size of its own nothing is cut yet.
void Beschriftung::hinweisErneuern()
{
    if (!platziert_) {
        return;
    }
    setToolTip(gesetzt(width()).gekuerzt ? alsHinweis(text()) : QString());
}

void Beschriftung::resizeEvent(QResizeEvent *event)
{
    QLabel::resizeEvent(event);
    platziert_ = true;
    hinweisErneuern();
}

void Beschriftung::changeEvent(QEvent *event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        neuSetzen();
    }
}

void Beschriftung::paintEvent(QPaintEvent *)
{
    QPainter maler(this);
    maler.setPen(stift());
    const double hoehe = zeilenabstand();
    const Satz satz = gesetzt(width());
    maler.setFont(satz.schrift);
    const Qt::LayoutDirection richtung = leserichtung(text().left(meisteZeichen));
    maler.setLayoutDirection(richtung);
    const Qt::Alignment seite = QStyle::visualAlignment(
        richtung == Qt::RightToLeft ? richtung : layoutDirection(), alignment());
    double oben = umbruch_ ? 0 : (height() - hoehe) / 2;
    for (const QString &zeile : satz.zeilen) {
        const QRectF platz(0, oben, width(), hoehe);
        maler.drawText(platz,
                       static_cast<int>(seite & Qt::AlignHorizontal_Mask) | Qt::AlignVCenter |
                           Qt::TextSingleLine,
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

bool vonRechts(const QString &inhalt)
{
    bool rechts = false;
    for (const char32_t zeichen : inhalt.toUcs4()) {
        switch (QChar::direction(zeichen)) {
        case QChar::DirL:
            return false;
        case QChar::DirR:
        case QChar::DirAL:
            rechts = true;
            break;
        default:
            break;
        }
    }
    return rechts;
}

Qt::LayoutDirection leserichtung(const QString &inhalt)
{
    return vonRechts(inhalt) ? Qt::RightToLeft : Qt::LeftToRight;
}

QString alsHinweis(const QString &inhalt)
{
    const bool lang = inhalt.size() > meisteHinweiszeichen;
    const QString kurz = inhalt.left(meisteHinweiszeichen) + (lang ? u"…"_s : QString());
    const QString richtung = vonRechts(kurz) ? u"rtl"_s : u"ltr"_s;
    return u"<p dir='"_s + richtung + u"' style='white-space:pre-wrap'>"_s + kurz.toHtmlEscaped() +
           u"</p>"_s;
}

} // namespace kalvaro
