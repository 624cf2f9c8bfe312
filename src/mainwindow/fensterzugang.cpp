#include "mainwindow/fensterzugang.h"

#include "mainwindow/hauptfenster.h"

#include <QAccessibleWidget>

namespace kalvaro {

namespace {

QAccessibleInterface *zugangFuer(const QString &, QObject *objekt)
{
    auto *const fenster = qobject_cast<Hauptfenster *>(objekt);
    return fenster != nullptr ? new QAccessibleWidget(fenster, QAccessible::Window) : nullptr;
}

} // namespace

void fensterzugangAnmelden()
{
    QAccessible::installFactory(zugangFuer);
}

} // namespace kalvaro
