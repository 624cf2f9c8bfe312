#pragma once

#include <QMenu>

namespace kalvaro {

// The menu of the status item: its rows and their state. Every text is shown literally.
class Statusmenue final : public QMenu
{
    Q_OBJECT

public:
    Statusmenue();

    // The first row, which only tells.
    void kopfSetzen(const QString &zeile);

    // Whether "Beim Anmelden starten" is checked.
    void anmeldungSetzen(bool an);

    // Shows the row that downloads `version`; it stays for the rest of the process.
    void updateZeigen(const QString &version);

Q_SIGNALS:
    void oeffnen();
    void abgleichen();
    void rekordbox();
    void anmeldung();
    void update();
    void beenden();

private:
    QAction *const kopf_;
    QAction *const updatePunkt_;
    QAction *anmeldungPunkt_ = nullptr;
};

} // namespace kalvaro
