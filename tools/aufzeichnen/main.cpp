#include <QDir>
#include <QFileInfo>
#include <QPainter>
#include <QPicture>
#include <QSvgRenderer>

// Records how a drawing is painted: aufzeichnen DRAWING.svg RECORD. Runs while kalvaro is built.
int main(int anzahl, char **argumente)
{
    if (anzahl != 3) {
        return 2;
    }
    QSvgRenderer leser(QString::fromLocal8Bit(argumente[1]));
    const QString ziel = QString::fromLocal8Bit(argumente[2]);
    if (!leser.isValid() || !QDir().mkpath(QFileInfo(ziel).path())) {
        return 1;
    }
    QPicture aufzeichnung;
    aufzeichnung.setBoundingRect(leser.viewBox());
    QPainter maler(&aufzeichnung);
    leser.render(&maler, leser.viewBoxF());
    return maler.end() && aufzeichnung.save(ziel) ? 0 : 1;
}
