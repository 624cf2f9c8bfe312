#pragma once

#include <QString>

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
};

} // namespace kalvaro
