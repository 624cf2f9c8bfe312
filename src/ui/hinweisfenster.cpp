#include "ui/hinweisfenster.h"

#include "ui/symbole.h"

#include <QLabel>
#include <QMessageBox>

namespace kalvaro {

using namespace Qt::StringLiterals;

QMessageBox *hinweisfenster(const QString &meldung, const QString &erklaerung, QWidget *parent)
{
    // Desktops hide the dialogues of a minimised window with it.
    const bool gesehen = parent != nullptr && parent->isVisible() && !parent->isMinimized();
    QWidget *const sichtbar = gesehen ? parent : nullptr;
    auto *const fenster = new QMessageBox(sichtbar);
    fenster->setAttribute(Qt::WA_DeleteOnClose);
    fenster->setWindowTitle(u"kalvaro"_s);
    fenster->setWindowIcon(programmsymbol());
    fenster->setIcon(QMessageBox::Warning);
    fenster->setTextFormat(Qt::PlainText);
    fenster->setText(meldung);
    fenster->setInformativeText(erklaerung);
    fenster->setStandardButtons(QMessageBox::Ok);
    // The box hands its text format to the message only; the explanation would still guess markup.
    const auto labels = fenster->findChildren<QLabel *>();
    for (QLabel *label : labels) {
        label->setTextFormat(Qt::PlainText);
    }
    return fenster;
}

} // namespace kalvaro
