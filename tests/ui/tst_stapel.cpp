#include "testlauf.h"
#include "ui/stapel.h"

#include <QBoxLayout>

#include <memory>

using namespace kalvaro;

namespace {

QWidget *block(int breite, int hoehe)
{
    auto *const widget = new QWidget;
    widget->setFixedSize(breite, hoehe);
    return widget;
}

} // namespace

class TestStapel final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nebeneinander();
    void untereinander();
    void abstandOhneAngabe();
    void ausrichtung();
    void ohneAusrichtungFuelltEsDieBreite();
    void leer();
};

void TestStapel::nebeneinander()
{
    QWidget *const a = block(30, 10);
    QWidget *const b = block(50, 10);
    const std::unique_ptr<QWidget> ganz(stapel({a, b}, Qt::Horizontal, 12));
    ganz->resize(ganz->sizeHint());
    ganz->layout()->activate();
    QCOMPARE(ganz->sizeHint(), QSize(92, 10));
    QCOMPARE(a->parentWidget(), ganz.get());
    QCOMPARE(a->x(), 0);
    QCOMPARE(b->x(), 42);
}

void TestStapel::untereinander()
{
    QWidget *const a = block(30, 10);
    QWidget *const b = block(50, 20);
    const std::unique_ptr<QWidget> ganz(stapel({a, b}, Qt::Vertical, 3));
    ganz->resize(ganz->sizeHint());
    ganz->layout()->activate();
    QCOMPARE(ganz->sizeHint(), QSize(50, 33));
    QCOMPARE(b->y(), 13);
}

void TestStapel::abstandOhneAngabe()
{
    const std::unique_ptr<QWidget> ganz(stapel({block(10, 10), block(10, 10)}, Qt::Vertical));
    QCOMPARE(ganz->sizeHint().height(), 28);
}

void TestStapel::ausrichtung()
{
    QWidget *const klein = block(30, 10);
    const std::unique_ptr<QWidget> ganz(
        stapel({klein, block(30, 40)}, Qt::Horizontal, 0, Qt::AlignBottom));
    ganz->resize(ganz->sizeHint());
    ganz->layout()->activate();
    QCOMPARE(klein->y(), 30);
}

void TestStapel::ohneAusrichtungFuelltEsDieBreite()
{
    auto *const biegsam = new QWidget;
    const std::unique_ptr<QWidget> ganz(stapel({biegsam}, Qt::Vertical));
    ganz->resize(200, 50);
    ganz->layout()->activate();
    QCOMPARE(biegsam->width(), 200);
}

void TestStapel::leer()
{
    const std::unique_ptr<QWidget> ganz(stapel({}, Qt::Vertical));
    QCOMPARE(ganz->sizeHint(), QSize(0, 0));
}

KALVARO_FENSTERTEST(TestStapel)
#include "tst_stapel.moc"
