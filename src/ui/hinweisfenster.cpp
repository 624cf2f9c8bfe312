#include "ui/hinweisfenster.h"

#include "ui/eingabe.h"
#include "ui/symbole.h"

#include <QAbstractButton>
#include <QLabel>
#include <QMessageBox>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr int symbolseite = 64;

} // namespace

QMessageBox *hinweisfenster(const QString &meldung, const QString &erklaerung, QWidget *parent)
{
    auto *const fenster = new QMessageBox(parent);
    fenster->setAttribute(Qt::WA_DeleteOnClose);
    fenster->setWindowModality(parent != nullptr ? Qt::WindowModal : Qt::ApplicationModal);
    fenster->setWindowTitle(u"kalvaro"_s);
    fenster->setWindowIcon(programmsymbol());
    fenster->setIconPixmap(programmsymbol().pixmap(symbolseite));
    fenster->setTextFormat(Qt::PlainText);
    fenster->setText(meldung);
    fenster->setInformativeText(erklaerung);
    fenster->setStandardButtons(QMessageBox::Ok);
    QAbstractButton *const ok = fenster->button(QMessageBox::Ok);
    ok->setIcon({}); // some styles put one on it that is nobody's else here
    new Eingabe(*fenster, *ok);
    // The box hands its text format to the message only; the explanation would still guess markup.
    const auto labels = fenster->findChildren<QLabel *>();
    for (QLabel *label : labels) {
        label->setTextFormat(Qt::PlainText);
    }
    return fenster;
}

} // namespace kalvaro
