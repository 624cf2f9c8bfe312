#include "foundation/versionen.h"

namespace kalvaro {

namespace {

bool istZiffer(QChar c)
{
    return c >= u'0' && c <= u'9';
}

// Takes the leading run of digits off `rest` and returns it without leading zeros.
QStringView ziffernNehmen(QStringView &rest)
{
    qsizetype ende = 0;
    while (ende < rest.size() && istZiffer(rest[ende])) {
        ++ende;
    }
    QStringView ziffern = rest.first(ende);
    rest = rest.sliced(ende);
    while (ziffern.startsWith(u'0')) {
        ziffern = ziffern.sliced(1);
    }
    return ziffern;
}

} // namespace

std::weak_ordering versionenVergleichen(QStringView a, QStringView b)
{
    while (!a.isEmpty() && !b.isEmpty()) {
        if (istZiffer(a.front()) && istZiffer(b.front())) {
            const QStringView x = ziffernNehmen(a);
            const QStringView y = ziffernNehmen(b);
            if (const auto laenge = x.size() <=> y.size(); std::is_neq(laenge)) {
                return laenge;
            }
            if (const int wert = x.compare(y); wert != 0) {
                return wert <=> 0;
            }
            continue;
        }
        if (a.front() != b.front()) {
            return a.front().unicode() <=> b.front().unicode();
        }
        a = a.sliced(1);
        b = b.sliced(1);
    }
    return a.size() <=> b.size();
}

} // namespace kalvaro
