#include "foundation/formate.h"

#include "foundation/konstanten.h"

#include <unicode/numberformatter.h>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

const QString strich = u"–"_s;

// `wert` with exactly `stellen` decimals, or "–". ICU rounds half to even on the shortest decimal
// that names the double, so 0.15 gives "0,2".
QString dezimal(double wert, int stellen)
{
    static const icu::number::LocalizedNumberFormatter grund =
        icu::number::NumberFormatter::withLocale(icu::Locale(deutsch))
            .roundingMode(UNUM_ROUND_HALFEVEN);
    UErrorCode fehler = U_ZERO_ERROR;
    const icu::UnicodeString ergebnis =
        grund.precision(icu::number::Precision::fixedFraction(stellen))
            .formatDouble(wert, fehler)
            .toString(fehler);
    if (U_FAILURE(fehler)) {
        return strich;
    }
    return QString::fromUtf16(ergebnis.getBuffer(), ergebnis.length());
}

} // namespace

QString fZahl(std::optional<double> wert)
{
    return wert ? dezimal(*wert, 0) : strich;
}

QString fGB(std::optional<double> wert)
{
    if (!wert) {
        return strich;
    }
    const double gb = *wert / 1'000'000'000;
    const int stellen = gb >= 100 ? 0 : 1;
    return dezimal(gb, stellen) + u" GB"_s;
}

QString fZeit(const QDateTime &zeit, const QDateTime &jetzt)
{
    const QDateTime hier = zeit.toLocalTime();
    const QDate heute = jetzt.toLocalTime().date();
    if (hier.date() == heute) {
        return hier.toString(u"'heute' HH:mm"_s);
    }
    if (hier.date() == heute.addDays(-1)) {
        return hier.toString(u"'gestern' HH:mm"_s);
    }
    return hier.toString(u"dd.MM. HH:mm"_s);
}

QString fZeit(const QString &stempel, const QDateTime &jetzt)
{
    if (stempel.isEmpty()) {
        return strich;
    }
    const QDateTime zeit = QDateTime::fromString(stempel, u"yyyy-MM-dd HH:mm:ss"_s);
    return zeit.isValid() ? fZeit(zeit, jetzt) : stempel;
}

} // namespace kalvaro
