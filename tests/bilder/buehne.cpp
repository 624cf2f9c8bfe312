#include "buehne.h"

#include "doubles/ereignisse.h"
#include "ui/farbe.h"

#include <QAbstractButton>
#include <QHoverEvent>
#include <QPainter>
#include <QTest>

#include <cmath>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr int rand = 10; // around a control, for what it draws beside itself

// On a sheet.
constexpr int namensbreite = 90; // at least
constexpr int namenshoehe = 16;
constexpr int luecke = 4;

// To a length that is whole pixels at each scale.
int aufgerundet(double laenge)
{
    constexpr int raster = 4;
    return static_cast<int>(std::ceil(laenge / raster)) * raster;
}

QString zustandsname(Zustand zustand)
{
    switch (zustand) {
    case Zustand::Ruhe:
        return u"Ruhe"_s;
    case Zustand::Ueberfahren:
        return u"überfahren"_s;
    case Zustand::Gedrueckt:
        return u"gedrückt"_s;
    case Zustand::Fokus:
        return u"Fokus"_s;
    case Zustand::Gesperrt:
        return u"gesperrt"_s;
    }
    Q_UNREACHABLE();
}

} // namespace

Buehne::Buehne(QWidget *teil, QSize platz)
    : teil_(teil)
    , daneben_(new QWidget(this))
{
    daneben_->setGeometry(0, 0, 1, 1);
    daneben_->setFocusPolicy(Qt::StrongFocus);
    teil_->setParent(this);
    teil_->ensurePolished();
    const int breite = platz.width() > 0 ? platz.width() : teil_->sizeHint().width();
    const int gewuenscht =
        teil_->hasHeightForWidth() ? teil_->heightForWidth(breite) : teil_->sizeHint().height();
    teil_->setGeometry(rand, rand, breite, platz.height() > 0 ? platz.height() : gewuenscht);
    resize(teil_->size() + QSize(2 * rand, 2 * rand));
    setTabOrder(daneben_, teil_);
    daneben_->setFocus();
    show();
    activateWindow();
    (void)QTest::qWaitForWindowActive(this);
}

void Buehne::mitTasten()
{
    daneben_->setFocus();
    QTest::keyClick(daneben_, Qt::Key_Tab);
}

void Buehne::versetzen(Zustand zustand)
{
    auto *const knopf = qobject_cast<QAbstractButton *>(teil_);
    switch (zustand) {
    case Zustand::Ruhe:
        break;
    case Zustand::Ueberfahren:
        zeigen(*teil_, teil_->rect().center());
        break;
    case Zustand::Gedrueckt:
        if (knopf != nullptr) {
            zeigen(*teil_, teil_->rect().center());
            knopf->setDown(true);
        }
        break;
    case Zustand::Fokus:
        mitTasten();
        break;
    case Zustand::Gesperrt:
        teil_->setEnabled(false);
    }
}

QImage Buehne::bild()
{
    ereignisseAbarbeiten();
    return grab().toImage();
}

// The offscreen platform has no pointer, so what the window system would tell is told here.
void zeigen(QWidget &widget, const QPoint &ort)
{
    widget.setAttribute(Qt::WA_UnderMouse);
    for (const QEvent::Type art : {QEvent::HoverEnter, QEvent::HoverMove}) {
        QHoverEvent ereignis(art, ort, widget.mapToGlobal(ort), QPointF(-1, -1));
        QCoreApplication::sendEvent(&widget, &ereignis);
    }
}

QSize Bogen::Feld::groesse() const
{
    const QSizeF innen = bild.deviceIndependentSize();
    return {aufgerundet(std::max<double>(innen.width(), namensbreite)) + luecke,
            aufgerundet(innen.height()) + namenshoehe + luecke};
}

void Bogen::dazu(const QString &name, const QImage &bild)
{
    constexpr int hoechstbreite = 1160;
    const Feld feld{name, bild};
    if (!reihen_.last().isEmpty() && breite_ + feld.groesse().width() > hoechstbreite) {
        neueReihe();
    }
    breite_ += feld.groesse().width();
    reihen_.last().append(feld);
}

void Bogen::neueReihe()
{
    if (!reihen_.last().isEmpty()) {
        reihen_.append(QList<Feld>());
    }
    breite_ = 0;
}

QImage Bogen::bild() const
{
    QSize ganz;
    for (const QList<Feld> &reihe : reihen_) {
        QSize platz;
        for (const Feld &feld : reihe) {
            platz = {platz.width() + feld.groesse().width(),
                     std::max(platz.height(), feld.groesse().height())};
        }
        ganz = {std::max(ganz.width(), platz.width()), ganz.height() + platz.height()};
    }
    const double massstab = reihen_.first().first().bild.devicePixelRatio();
    QImage bogen((QSizeF(ganz) * massstab).toSize(), QImage::Format_RGB32);
    bogen.setDevicePixelRatio(massstab);
    bogen.fill(QColor(0x808080));
    QPainter maler(&bogen);
    maler.setLayoutDirection(Qt::LeftToRight);
    QFont schrift(u"DejaVu Sans"_s);
    schrift.setPixelSize(10);
    maler.setFont(schrift);
    maler.setPen(Qt::white);
    int y = 0;
    for (const QList<Feld> &reihe : reihen_) {
        int x = 0;
        int hoehe = 0;
        for (const Feld &feld : reihe) {
            maler.drawText(QRect(x, y, feld.groesse().width() - luecke, namenshoehe),
                           Qt::AlignVCenter, feld.name);
            maler.drawImage(QPoint(x, y + namenshoehe), feld.bild);
            x += feld.groesse().width();
            hoehe = std::max(hoehe, feld.groesse().height());
        }
        y += hoehe;
    }
    return bogen;
}

QImage zustandsbogen(const QList<Muster> &muster, const QList<Zustand> &zustaende)
{
    Bogen bogen;
    for (const Muster &m : muster) {
        bogen.neueReihe();
        for (const Zustand zustand : zustaende) {
            Buehne buehne(m.machen(), m.platz);
            buehne.versetzen(zustand);
            bogen.dazu(zustandsname(zustand), buehne.bild());
        }
    }
    return bogen.bild();
}

QImage tastenrunde(QWidget &fenster)
{
    constexpr int umgebung = 8;
    constexpr int hoechstens = 20;
    fenster.activateWindow();
    (void)QTest::qWaitForWindowActive(&fenster);
    const QWidget *const erster = fenster.focusWidget();
    Bogen bogen;
    for (int i = 0; i < hoechstens; ++i) {
        QTest::keyClick(fenster.focusWidget(), Qt::Key_Tab);
        ereignisseAbarbeiten();
        const QWidget *const ort = fenster.focusWidget();
        const QRect platz(ort->mapTo(&fenster, QPoint()), ort->size());
        bogen.dazu(ort->objectName(),
                   fenster
                       .grab(platz.adjusted(-umgebung, -umgebung, umgebung, umgebung)
                                 .intersected(fenster.rect()))
                       .toImage());
        if (ort == erster) {
            return bogen.bild();
        }
    }
    qFatal("The keyboard does not come back to %s", qPrintable(erster->objectName()));
}

} // namespace kalvaro
