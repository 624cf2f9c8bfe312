#include "ui/stapel.h"

#include <QBoxLayout>

namespace kalvaro {

QWidget *stapel(const QList<QWidget *> &inhalte, Qt::Orientation richtung, int abstand,
                std::optional<Qt::Alignment> ausrichtung)
{
    auto *const ganz = new QWidget;
    auto *const layout = new QBoxLayout(
        richtung == Qt::Horizontal ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom, ganz);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(abstand);
    for (QWidget *inhalt : inhalte) {
        layout->addWidget(inhalt, 0, ausrichtung.value_or(Qt::Alignment()));
    }
    return ganz;
}

} // namespace kalvaro
