#pragma once

#include "platform/statusobjekt.h"

#include <QStringList>

namespace kalvaro {

// A status item that records what it is given.
class FakeStatusobjekt final : public Statusobjekt
{
public:
    void symbolSetzen(const QString &name) override;
    void hinweisSetzen(const QString &hinweis) override;
    void menueSetzen(QMenu *menu) override;
    [[nodiscard]] bool erreichbar() const override { return leisteDa; }
    void beiWechsel(std::function<void()> ruf) override { gewechselt = std::move(ruf); }

    // The bar that shows the item comes or goes.
    void leiste(bool da);

    [[nodiscard]] QString symbol() const { return symbole.isEmpty() ? QString() : symbole.last(); }
    [[nodiscard]] QString hinweis() const
    {
        return hinweise.isEmpty() ? QString() : hinweise.last();
    }

    QMenu *menue = nullptr;
    bool leisteDa = true;
    std::function<void()> gewechselt; // empty without a listener

    QStringList symbole;  // every one, in order
    QStringList hinweise; // every one, in order
    QStringList verlauf;  // both of them and "Menü", in order
};

} // namespace kalvaro
