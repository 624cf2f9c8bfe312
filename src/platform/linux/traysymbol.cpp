#include "platform/linux/traysymbol.h"

#include "foundation/konstanten.h"
#include "ui/symbole.h"

#include <QIconEngine>
#include <QPainter>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

class Maske final : public QIconEngine
{
public:
    Maske(QString name, const QColor &farbe)
        : name_(std::move(name))
        , farbe_(farbe)
    {
    }

    void paint(QPainter *maler, const QRect &wo, QIcon::Mode /*modus*/,
               QIcon::State /*zustand*/) override
    {
        const int seite = qMin(wo.width(), wo.height());
        const QPoint ecke =
            wo.topLeft() + QPoint((wo.width() - seite) / 2, (wo.height() - seite) / 2);
        maler->drawPixmap(ecke,
                          symbolbild(name_, seite, farbe_, maler->device()->devicePixelRatioF()));
    }

    QPixmap pixmap(const QSize &groesse, QIcon::Mode /*modus*/, QIcon::State /*zustand*/) override
    {
        return symbolbild(name_, qMin(groesse.width(), groesse.height()), farbe_, 1);
    }

    QString key() const override { return u"kalvaro.maske"_s; }
    QIconEngine *clone() const override { return new Maske(name_, farbe_); }

private:
    const QString name_;
    const QColor farbe_;
};

} // namespace

QIcon traysymbol(const QString &name, const QColor &farbe)
{
    return QIcon(new Maske(name, farbe));
}

QString symbolImThema(const QString &name)
{
    const QString gesucht = KENNUNG + u'-' + name + u"-symbolic"_s;
    return QIcon::hasThemeIcon(gesucht) ? gesucht : QString();
}

} // namespace kalvaro
