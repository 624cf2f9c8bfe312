#include "platform/macos/leistenzeichen.h"

#include "ui/symbole.h"

namespace kalvaro {

QIcon leistenzeichen(const QString &name)
{
    constexpr int hoehe = 18; // points
    QIcon zeichen;
    for (const int pixel : {hoehe, 2 * hoehe}) {
        const QPixmap bild = symbolbild(name, pixel, Qt::black, 1);
        if (bild.isNull()) {
            return {};
        }
        zeichen.addPixmap(bild);
    }
    zeichen.setIsMask(true);
    return zeichen;
}

} // namespace kalvaro
