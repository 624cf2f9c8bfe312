#pragma once

#include <QObject>

namespace kalvaro {

// What the toolkit tells of the system's appearance since Qt 6.5, with the same names and numbers.
class Systemfarben final : public QObject
{
    Q_OBJECT
    Q_PROPERTY(Schema colorScheme READ schema NOTIFY colorSchemeChanged)

public:
    enum class Schema { Unknown, Light, Dark };
    Q_ENUM(Schema)

    [[nodiscard]] Schema schema() const { return schema_; }

    // Tells of it in any case.
    void setzen(Schema schema)
    {
        schema_ = schema;
        Q_EMIT colorSchemeChanged(schema_);
    }

Q_SIGNALS:
    void colorSchemeChanged(kalvaro::Systemfarben::Schema schema);

private:
    Schema schema_ = Schema::Unknown;
};

} // namespace kalvaro
