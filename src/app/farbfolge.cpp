#include "app/farbfolge.h"

#include "platform/farbschema.h"

namespace kalvaro {

Farbfolge::Farbfolge(QApplication &anwendung, Farbschema *schema)
    : schema_(schema)
    , erscheinung_(anwendung, schema != nullptr ? schema->wunsch() : Farbwunsch{})
{
    if (schema_ != nullptr) {
        schema_->beiWechsel([this] { erscheinung_.anpassen(schema_->wunsch()); });
    }
}

Farbfolge::~Farbfolge()
{
    if (schema_ != nullptr) {
        schema_->beiWechsel({});
    }
}

} // namespace kalvaro
