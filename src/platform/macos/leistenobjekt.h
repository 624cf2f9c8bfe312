#pragma once

#include "platform/statusobjekt.h"

#include <QSystemTrayIcon>

namespace kalvaro {

// The item in the menu bar of macOS, an NSStatusItem by way of Qt. Appears with its first symbol.
// Needs a QApplication.
class Leistenobjekt final : public Statusobjekt
{
public:
    void symbolSetzen(const QString &name) override;
    void hinweisSetzen(const QString &hinweis) override;
    void menueSetzen(QMenu *menue) override;

    // The bar is there as long as the session is.
    [[nodiscard]] bool erreichbar() const override;
    void beiWechsel(std::function<void()> gewechselt) override;

    [[nodiscard]] const QSystemTrayIcon &eintrag() const { return eintrag_; }

private:
    QSystemTrayIcon eintrag_;
};

} // namespace kalvaro
