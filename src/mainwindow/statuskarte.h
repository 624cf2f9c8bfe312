#pragma once

#include "assessment/bewertung.h"
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
    explicit Statuskarte(Uhr &uhr, QWidget *parent = nullptr);

    void zeige(Art art, const QString &titel, const QString &detail);

    // Something is under way: the spinner and, from the first second on, the seconds behind the
    // detail.
    void laden(const QString &titel, const QString &detail);

    // Has screen readers say what is on display.
    void vorlesen();

    // Shows the mode that the server reported; one that is not known leaves the pill as it is.
    void betriebZeigen(const QString &betrieb);

    // Whether it may be lower than usual where it says little, and how much that saves at this
    // width.
    void setKnapp(bool knapp);
    [[nodiscard]] bool knapp() const { return minimumHeight() == 0; }
    [[nodiscard]] int ersparnis(int breite) const;

    // The kind that is on display; absent while something is under way.
    [[nodiscard]] std::optional<Art> art() const { return art_; }

protected:
private:
    void setzen(const QString &titel, const QString &detail, Farbton schrift, Farbton grund);
    void ladetakt();

    Uhr &uhr_;
    Zeichen *const bildZeichen_;
    Rad *const rad_;
    Beschriftung *const lblTitel_;
    Beschriftung *const lblDetail_;
    Pille *const pille_;

    std::optional<Art> art_;

    // The loading display.
    Weckruf ladeUhr_;
    std::chrono::milliseconds ladeBeginn_{0}; // in Uhr::laufzeit()
    QString ladeText_;
};

} // namespace kalvaro
