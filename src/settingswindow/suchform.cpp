#include "settingswindow/suchform.h"

#include <algorithm>
#include <array>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

bool einfach(const QString &text)
{
    return std::all_of(text.cbegin(), text.cend(), [](QChar c) { return c.unicode() < 0x80; });
}

// Each character of Latin-1 by itself: what is left of a text does not depend on what stands side
// by side in it.
std::array<QByteArray, 256> tafel()
{
    std::array<QByteArray, 256> formen;
    for (unsigned i = 0; i < formen.size(); ++i) {
        formen[i] = suchform(QString(QChar(i))).toUtf8();
    }
    return formen;
}

} // namespace

QString suchform(const QString &name)
{
    QString klein = name.toCaseFolded();
    if (einfach(klein)) {
        return klein;
    }
    QString zerlegt = klein.normalized(QString::NormalizationForm_KD);
    zerlegt.removeIf([](QChar c) { return c.isMark(); });
    return zerlegt.replace(u'ß', u"ss"_s);
}

QByteArray suchbytes(QLatin1StringView name)
{
    static const std::array<QByteArray, 256> formen = tafel();
    QByteArray form;
    form.reserve(name.size());
    for (const char c : name) {
        form += formen[static_cast<uchar>(c)];
    }
    return form;
}

} // namespace kalvaro
