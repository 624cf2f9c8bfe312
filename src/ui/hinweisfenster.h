#pragma once

#include <QString>

class QMessageBox;
class QWidget;

namespace kalvaro {

// A modal alert with the program's icon and one confirming button that shows both texts literally.
// Not shown yet: call open(). Deletes itself when it is closed. It blocks `parent` and stands above
// it, also when that is hidden and comes back.
[[nodiscard]] QMessageBox *hinweisfenster(const QString &meldung, const QString &erklaerung,
                                          QWidget *parent = nullptr);

} // namespace kalvaro
