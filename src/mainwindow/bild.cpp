#include "mainwindow/bild.h"

#include <QPixmap>
#include <QWidget>

namespace kalvaro {

bool bildSpeichern(QWidget *inhalt, const QString &pfad)
{
    return inhalt != nullptr && inhalt->grab().save(pfad, "PNG");
}

} // namespace kalvaro
