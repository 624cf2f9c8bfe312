#pragma once

#include <QString>

#include <functional>

class QMenu;

namespace kalvaro {

// The item in the menu bar or tray. Where there is no place for one yet, it appears as soon as
// there is, with what was last set.
class Statusobjekt
{
public:
    Statusobjekt() = default;
    Statusobjekt(const Statusobjekt &) = delete;
    Statusobjekt &operator=(const Statusobjekt &) = delete;
    virtual ~Statusobjekt() = default;

    // The name of one of the program's symbols, drawn in the colour of the bar.
    virtual void symbolSetzen(const QString &name) = 0;

    // The tool tip, shown literally.
    virtual void hinweisSetzen(const QString &hinweis) = 0;

    // The menu of the item; must outlive this object. Its aboutToShow comes before it opens.
    virtual void menueSetzen(QMenu *menue) = 0;

    // Whether there is a place where the item shows.
    [[nodiscard]] virtual bool erreichbar() const = 0;

    // `gewechselt` is called, from the event loop, whenever erreichbar() may have changed; an empty
    // one ends that.
    virtual void beiWechsel(std::function<void()> gewechselt) = 0;
};

} // namespace kalvaro
