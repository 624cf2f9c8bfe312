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
    Maske(QString name, const QColor &farbe, QString themenname)
        : name_(std::move(name))
        , farbe_(farbe)
        , themenname_(std::move(themenname))
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

    // What goes over the bus: the usual sizes of panels, at 1x and 2x.
    QList<QSize> availableSizes(QIcon::Mode /*modus*/, QIcon::State /*zustand*/) override
    {
        QList<QSize> groessen;
        for (const int seite : {22, 24, 32, 44, 48, 64}) {
            groessen.append({seite, seite});
        }
        return groessen;
    }

    QString iconName() override { return themenname_; }
    QString key() const override { return u"kalvaro.maske"_s; }
    QIconEngine *clone() const override { return new Maske(name_, farbe_, themenname_); }

private:
    const QString name_;
    const QColor farbe_;
    const QString themenname_;
};

} // namespace

QIcon traysymbol(const QString &name, const QColor &farbe, const QString &themenname)
{
    return QIcon(new Maske(name, farbe, themenname));
}

QString symbolImThema(const QString &name)
{
    const QString gesucht = KENNUNG + u'-' + name + u"-symbolic"_s;
    return QIcon::hasThemeIcon(gesucht) ? gesucht : QString();
}

} // namespace kalvaro
