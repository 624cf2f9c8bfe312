#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace kalvaro {

// The text under `schluessel` in the top-level dictionary of a property list, XML
// ("PropertyList-1.0.dtd") or binary ("bplist00", as Apple's CFBinaryPList.c describes it). Absent
// when `inhalt` is broken, has no such key, or has something other than a text there; as
// XML also when it is in an encoding other than UTF-8, UTF-16 (with its mark), US-ASCII or
// ISO-8859-1, or brings declarations of its own.
//
// `inhalt` may come from anywhere: nothing but that one value is ever unfolded, so neither depth
// nor shared objects cost memory, stack or time beyond its size.
[[nodiscard]] std::optional<QString> plistText(const QByteArray &inhalt, QStringView schluessel);

} // namespace kalvaro
