#pragma once

#include "foundation/uhr.h"

#include <QWidget>

namespace kalvaro {

// A calm spinner: one turn a second while it is seen and turning; still where less motion is
// wanted.
class Rad : public QWidget
{
    Q_OBJECT

public:
    explicit Rad(Uhr &uhr, QWidget *parent = nullptr);

    void anhalten();
    void drehen();

protected:
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void taktErneuern();

    Uhr &uhr_;
    bool dreht_ = false;
    Weckruf takt_;
    int stellung_ = 0; // degrees
};

} // namespace kalvaro
