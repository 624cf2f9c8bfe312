#include "foundation/klartext.h"

namespace kalvaro {

namespace {

bool steuert(QChar zeichen)
{
    switch (zeichen.category()) {
    case QChar::Other_Control: // C0, DEL and C1
    case QChar::Other_Format:  // marks and overrides of direction, invisible characters
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        return false;
    }
}

} // namespace

QString klartext(QString text, qsizetype laengstens)
{
    for (QChar &zeichen : text) {
        if (steuert(zeichen)) {
            zeichen = u' ';
        }
    }
    if (text.size() > laengstens) {
        // Not within a pair of surrogates.
        const bool paar = laengstens > 0 && text[laengstens - 1].isHighSurrogate();
        text.truncate(paar ? laengstens - 1 : laengstens);
        text += u'…';
    }
    return text;
}

} // namespace kalvaro
