#pragma once

#include <QString>

class QAccessibleInterface;
class QModelIndex;

namespace kalvaro {

class Baumansicht;

// What screen readers see of the tree: rows below rows, each with its check box, which they can
// toggle. Qt's own description of a tree view cannot check a row.

// From now on every Baumansicht is described so. Idempotent.
void baumzugangAnmelden();

// Whether a row is checked, in a word.
[[nodiscard]] QString hakenwort(const QModelIndex &index);

// The description of a row; null where assistive technology is not to be had. Qt owns it.
[[nodiscard]] QAccessibleInterface *zeilenzugang(Baumansicht &ansicht, const QModelIndex &index);

} // namespace kalvaro
