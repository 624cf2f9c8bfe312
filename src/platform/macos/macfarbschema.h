#pragma once

#include "platform/farbschema.h"

#include <QGuiApplication>
#include <QMetaProperty>
#include <QStyleHints>

namespace kalvaro {

// The appearance of macOS, as the toolkit tells it since Qt 6.5; an older one draws in it all the
// same and only does not say so. The native style brings its colours along, with the accent that
// the user chose. Needs a QGuiApplication.
class MacFarbschema final : public QObject, public Farbschema
{
    Q_OBJECT

public:
    // `auskunft` has the property "colorScheme", if any; it must outlive this object.
    explicit MacFarbschema(const QObject &auskunft = *QGuiApplication::styleHints());

    [[nodiscard]] Farbwunsch wunsch() const override;
    void beiWechsel(std::function<void()> gewechselt) override;

private Q_SLOTS:
    void pruefen();

private:
    [[nodiscard]] QMetaProperty schema() const;

    const QObject &auskunft_;
    Farbwunsch bisher_;
    std::function<void()> gewechselt_;
};

} // namespace kalvaro
