#include "ui/zeichnung.h"

#include <QPainter>
#include <QXmlStreamReader>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr double pi = std::numbers::pi;

// Takes numbers and commands off the front of what a path's "d" says (SVG 1.1, 8.3).
class Pfadtext
{
public:
    explicit Pfadtext(QStringView text)
        : rest_(text)
    {
        trennerWeg();
    }

    [[nodiscard]] bool amEnde() const { return rest_.isEmpty(); }
    [[nodiscard]] bool vorBefehl() const { return !amEnde() && rest_.front().isLetter(); }

    char16_t befehl()
    {
        const char16_t zeichen = rest_.front().unicode();
        rest_ = rest_.sliced(1);
        trennerWeg();
        return zeichen;
    }

    // A number ends where none can go on: "-.9-8.5" and ".38.37" are two each.
    double zahl()
    {
        qsizetype ende = !amEnde() && rest_.front() == u'-' ? 1 : 0;
        for (bool punkt = false; ende < rest_.size(); ++ende) {
            const QChar zeichen = rest_[ende];
            if (zeichen == u'.' && !punkt) {
                punkt = true;
            } else if (zeichen < u'0' || zeichen > u'9') {
                break;
            }
        }
        const double wert = rest_.first(ende).toDouble();
        // A sign that belongs to nothing must not hold up the reader.
        rest_ = rest_.sliced(std::min(std::max<qsizetype>(ende, 1), rest_.size()));
        trennerWeg();
        return wert;
    }

    QPointF punkt()
    {
        const double x = zahl();
        return {x, zahl()};
    }

private:
    void trennerWeg()
    {
        while (!rest_.isEmpty() && (rest_.front().isSpace() || rest_.front() == u',')) {
            rest_ = rest_.sliced(1);
        }
    }

    QStringView rest_;
};

// An elliptical arc with upright axes as cubic curves (SVG 1.1, F.6). On the unit circle that the
// radii stretch, the centre lies beside the middle of the chord.
void bogen(QPainterPath &pfad, QPointF radien, bool grosser, bool imUhrzeigersinn,
           const QPointF &ziel)
{
    const auto gestaucht = [&](const QPointF &p) {
        return QPointF(p.x() / radien.x(), p.y() / radien.y());
    };
    const QPointF weite = gestaucht(ziel - pfad.currentPosition());
    const double laenge = std::hypot(weite.x(), weite.y());
    if (!(laenge > 0)) {
        return;
    }
    radien *= std::max(1.0, laenge / 2); // too small to reach
    const QPointF von = gestaucht(pfad.currentPosition());
    const QPointF nach = gestaucht(ziel);
    const QPointF sehne = nach - von;
    const double quadrat = QPointF::dotProduct(sehne, sehne);
    const double seite = grosser == imUhrzeigersinn ? -1 : 1;
    const double ferne = seite * std::sqrt(std::max(0.0, 1 / quadrat - 0.25));
    const QPointF mitte = (von + nach) / 2 + ferne * QPointF(-sehne.y(), sehne.x());
    const auto winkel = [&](const QPointF &p) {
        return std::atan2(p.y() - mitte.y(), p.x() - mitte.x());
    };
    const double anfang = winkel(von);
    double spanne = winkel(nach) - anfang;
    if (imUhrzeigersinn && spanne < 0) {
        spanne += 2 * pi;
    } else if (!imUhrzeigersinn && spanne > 0) {
        spanne -= 2 * pi;
    }
    const int stuecke = static_cast<int>(std::ceil(std::abs(spanne) / (pi / 2 + 0.001)));
    const double schritt = spanne / stuecke;
    const double griff = 4.0 / 3.0 * std::tan(schritt / 4);
    for (int i = 0; i < stuecke; ++i) {
        const double a = anfang + i * schritt;
        const double b = a + schritt;
        const auto gedehnt = [&](double x, double y) {
            return QPointF((mitte.x() + x) * radien.x(), (mitte.y() + y) * radien.y());
        };
        pfad.cubicTo(gedehnt(std::cos(a) - griff * std::sin(a), std::sin(a) + griff * std::cos(a)),
                     gedehnt(std::cos(b) + griff * std::sin(b), std::sin(b) - griff * std::cos(b)),
                     gedehnt(std::cos(b), std::sin(b)));
    }
}

void weiterzeichnen(QPainterPath &pfad, char16_t befehl, Pfadtext &text)
{
    const bool relativ = befehl >= u'a';
    const QPointF ort = pfad.currentPosition();
    const QPointF bezug = relativ ? ort : QPointF();
    switch (befehl) {
    case u'M':
    case u'm':
        pfad.moveTo(bezug + text.punkt());
        break;
    case u'L':
    case u'l':
        pfad.lineTo(bezug + text.punkt());
        break;
    case u'H':
    case u'h':
        pfad.lineTo(bezug.x() + text.zahl(), ort.y());
        break;
    case u'V':
    case u'v':
        pfad.lineTo(ort.x(), bezug.y() + text.zahl());
        break;
    case u'C':
    case u'c': {
        const QPointF erster = bezug + text.punkt();
        const QPointF zweiter = bezug + text.punkt();
        pfad.cubicTo(erster, zweiter, bezug + text.punkt());
        break;
    }
    case u'A':
    case u'a': {
        const QPointF radien = text.punkt();
        text.zahl(); // turns the axes, which none of ours does
        const bool grosser = text.zahl() != 0;
        const bool imUhrzeigersinn = text.zahl() != 0;
        bogen(pfad, radien, grosser, imUhrzeigersinn, bezug + text.punkt());
        break;
    }
    default:
        text.zahl();
    }
}

QPainterPath pfad(const QString &angabe)
{
    QPainterPath umriss;
    Pfadtext text(angabe);
    char16_t befehl = u'M';
    while (!text.amEnde()) {
        if (text.vorBefehl()) {
            befehl = text.befehl();
        }
        if (befehl == u'Z' || befehl == u'z') {
            umriss.closeSubpath();
            if (!text.amEnde() && !text.vorBefehl()) {
                break;
            }
            continue;
        }
        weiterzeichnen(umriss, befehl, text);
        if (befehl == u'M' || befehl == u'm') { // what follows without a command are lines
            befehl = befehl == u'M' ? u'L' : u'l';
        }
    }
    return umriss;
}

double laenge(const QXmlStreamAttributes &angaben, const QString &name)
{
    return angaben.value(name).toDouble();
}

QBrush fuellung(const QXmlStreamAttributes &angaben, const QGradient &verlauf)
{
    const QString wert = angaben.value(u"fill"_s).toString();
    if (wert == u"none") {
        return Qt::NoBrush;
    }
    if (wert.startsWith(u"url(")) {
        return verlauf;
    }
    return wert.isEmpty() ? QColor(Qt::black) : QColor(wert);
}

QPen strich(const QXmlStreamAttributes &angaben)
{
    const QString farbe = angaben.value(u"stroke"_s).toString();
    if (farbe.isEmpty() || farbe == u"none") {
        return Qt::NoPen;
    }
    const bool rund = angaben.value(u"stroke-linejoin"_s) == u"round";
    QPen stift(QColor(farbe), laenge(angaben, u"stroke-width"_s), Qt::SolidLine,
               angaben.value(u"stroke-linecap"_s) == u"round" ? Qt::RoundCap : Qt::FlatCap,
               rund ? Qt::RoundJoin : Qt::SvgMiterJoin);
    constexpr double spitzeste = 4; // SVG 1.1, 11.4
    stift.setMiterLimit(spitzeste);
    return stift;
}

QLinearGradient verlaufVon(const QXmlStreamAttributes &angaben)
{
    QLinearGradient verlauf(laenge(angaben, u"x1"_s), laenge(angaben, u"y1"_s),
                            laenge(angaben, u"x2"_s), laenge(angaben, u"y2"_s));
    verlauf.setCoordinateMode(QGradient::ObjectMode);
    return verlauf;
}

} // namespace

std::optional<Zeichnung::Art> Zeichnung::formart(QStringView element)
{
    return element == u"path"     ? std::optional(Art::Pfad)
           : element == u"circle" ? std::optional(Art::Kreis)
           : element == u"rect"   ? std::optional(Art::Rechteck)
                                  : std::nullopt;
}

Zeichnung::Zeichnung(const QByteArray &svg)
{
    QLinearGradient verlauf;
    QXmlStreamReader xml(svg);
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        const QStringView element = xml.name();
        const QXmlStreamAttributes angaben = xml.attributes();
        if (element == u"svg") {
            Pfadtext masse(angaben.value(u"viewBox"_s));
            const QPointF ecke = masse.punkt();
            const QPointF groesse = masse.punkt();
            blatt_ = QRectF(ecke, QSizeF(groesse.x(), groesse.y()));
        } else if (element == u"linearGradient") {
            verlauf = verlaufVon(angaben);
        } else if (element == u"stop") {
            verlauf.setColorAt(laenge(angaben, u"offset"_s),
                               QColor(angaben.value(u"stop-color"_s).toString()));
        } else if (const auto art = formart(element)) {
            formen_.push_back(form(angaben, *art));
            formen_.back().flaeche = fuellung(angaben, verlauf);
        }
    }
}

Zeichnung::Form Zeichnung::form(const QXmlStreamAttributes &angaben, Art art)
{
    Form neu{.art = art, .stift = strich(angaben)};
    switch (art) {
    case Art::Pfad:
        neu.pfad = kalvaro::pfad(angaben.value(u"d"_s).toString());
        neu.pfad.setFillRule(angaben.value(u"fill-rule"_s) == u"evenodd" ? Qt::OddEvenFill
                                                                         : Qt::WindingFill);
        break;
    case Art::Kreis: {
        const double radius = laenge(angaben, u"r"_s);
        neu.rahmen = QRectF(laenge(angaben, u"cx"_s) - radius, laenge(angaben, u"cy"_s) - radius,
                            2 * radius, 2 * radius);
        break;
    }
    case Art::Rechteck:
        neu.rahmen = QRectF(laenge(angaben, u"x"_s), laenge(angaben, u"y"_s),
                            laenge(angaben, u"width"_s), laenge(angaben, u"height"_s));
        neu.ecken = laenge(angaben, u"rx"_s);
        break;
    }
    return neu;
}

void Zeichnung::Form::malen(QPainter &maler) const
{
    switch (art) {
    case Art::Pfad:
        maler.drawPath(pfad);
        break;
    case Art::Kreis:
        maler.drawEllipse(rahmen);
        break;
    case Art::Rechteck:
        maler.drawRoundedRect(rahmen, ecken, ecken);
        break;
    }
}

void Zeichnung::malen(QPainter &maler, const QRectF &platz) const
{
    if (blatt_.isEmpty()) {
        return;
    }
    maler.save();
    maler.setRenderHint(QPainter::Antialiasing);
    maler.translate(platz.topLeft());
    maler.scale(platz.width() / blatt_.width(), platz.height() / blatt_.height());
    maler.translate(-blatt_.topLeft());
    for (const Form &form : formen_) {
        maler.setPen(Qt::NoPen);
        maler.setBrush(form.flaeche);
        form.malen(maler);
        if (form.stift.style() != Qt::NoPen) {
            maler.setPen(form.stift);
            maler.setBrush(Qt::NoBrush);
            form.malen(maler);
        }
    }
    maler.restore();
}

} // namespace kalvaro
