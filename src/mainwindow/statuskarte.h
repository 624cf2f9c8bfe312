#pragma once

#include "foundation/uhr.h"
#include "ui/karte.h"

namespace kalvaro {

class Beschriftung;
class Pille;
class Rad;
class Zeichen;

// The card that says where things stand: icon or spinner, headline, detail and the mode pill.
class Statuskarte : public Karte
{
    Q_OBJECT

public:
    explicit Statuskarte(Uhr &zeit, QWidget *parent = nullptr);

    // Shows an outcome of kind `art` ("gut", "warn", "krit", "aus"), or with "laden" the spinner
    // and, from the first second on, the seconds behind the detail.
    void zeige(const QString &art, const QString &titel, const QString &detail);

    // Shows the mode that the server reported; one that is not known leaves the pill as it is.
    void betriebZeigen(const QString &betrieb);

    // The kind that was shown last.
    [[nodiscard]] const QString &art() const { return art_; }

protected:
    void changeEvent(QEvent *event) override;

private:
    void ladetakt();
    void hintergrundMelden();

    Uhr &uhr_;
    Zeichen *const bildZeichen_;
    Rad *const rad_;
    Beschriftung *const lblTitel_;
    Beschriftung *const lblDetail_;
    Pille *const pille_;

    QString art_;

    // The loading display.
    Weckruf ladeUhr_;
    QDateTime ladeBeginn_;
    QString ladeText_;
};

} // namespace kalvaro
