#pragma once

#include <QString>

class QMessageBox;
class QWidget;

namespace kalvaro {

// A modal alert with one confirming button that shows both texts literally. Not shown yet: call
// open(). Deletes itself when it is closed. Belongs to `parent` where that can be seen.
[[nodiscard]] QMessageBox *hinweisfenster(const QString &meldung, const QString &erklaerung,
                                          QWidget *parent = nullptr);

} // namespace kalvaro
