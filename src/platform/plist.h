#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace kalvaro {

// The text under `schluessel` in the top-level dictionary of a property list, XML
// ("PropertyList-1.0.dtd") or binary ("bplist00", as Apple's CFBinaryPList.c describes it). Absent
// when `inhalt` is broken, has no such key, or has something other than a text there.
//
// `inhalt` may come from anywhere: nothing but that one value is ever unfolded, so neither depth
// nor shared objects cost memory, stack or time beyond its size.
[[nodiscard]] std::optional<QString> plistText(const QByteArray &inhalt, QStringView schluessel);

} // namespace kalvaro
