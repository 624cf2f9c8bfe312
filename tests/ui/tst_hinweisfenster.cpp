#include "testlauf.h"
#include "ui/hinweisfenster.h"
#include "ui/symbole.h"

#include <QAbstractButton>
#include <QLabel>
#include <QMessageBox>
#include <QPointer>
#include <QProxyStyle>

#include <memory>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

// A desktop whose dialogue buttons have icons.
class Symbolstil final : public QProxyStyle
{
public:
    int styleHint(StyleHint hinweis, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *antwort) const override
    {
        return hinweis == SH_DialogButtonBox_ButtonsHaveIcons
                   ? 1
                   : QProxyStyle::styleHint(hinweis, option, widget, antwort);
    }
};

} // namespace

class TestHinweisfenster final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void zeigtAllesWoertlich();
    void einKnopfUndWeg();
    void gehoertZumFenster();
    void knopfOhneSymbol();
    void zeigtDasProgramm();
    void gehalteneEingabeSchliesstNicht();
};

void TestHinweisfenster::zeigtAllesWoertlich()
{
    const QString meldung = u"<b>Titel</b> &amp; mehr"_s;
    const QString grund = u"<img src=x> <i>Grund</i>"_s;
    const std::unique_ptr<QMessageBox> fenster(hinweisfenster(meldung, grund));
    fenster->open();
    QStringList texte;
    const auto labels = fenster->findChildren<QLabel *>();
    for (const QLabel *label : labels) {
        if (!label->text().isEmpty()) {
            QCOMPARE(label->textFormat(), Qt::PlainText);
            texte.append(label->text());
        }
    }
    QVERIFY(texte.contains(meldung));
    QVERIFY(texte.contains(grund));
    QCOMPARE(fenster->windowTitle(), u"kalvaro"_s);
    QVERIFY(fenster->isModal());
}

void TestHinweisfenster::einKnopfUndWeg()
{
    const QPointer<QMessageBox> fenster = hinweisfenster(u"Titel"_s, u"Grund"_s);
    fenster->open();
    QCOMPARE(fenster->buttons().size(), 1);
    QTest::keyClick(fenster, Qt::Key_Return);
    QTRY_VERIFY(fenster.isNull());
}

void TestHinweisfenster::gehoertZumFenster()
{
    QWidget fenster;
    auto *const verborgen = hinweisfenster({}, {}, &fenster);
    QCOMPARE(verborgen->parentWidget(), &fenster);
    QCOMPARE(verborgen->windowModality(), Qt::WindowModal);
    verborgen->open();
    verborgen->hide(); // and comes back with the window
    QCOMPARE(verborgen->windowModality(), Qt::WindowModal);
    const std::unique_ptr<QMessageBox> allein(hinweisfenster({}, {}));
    QCOMPARE(allein->windowModality(), Qt::ApplicationModal);
}

void TestHinweisfenster::knopfOhneSymbol()
{
    QApplication::setStyle(new Symbolstil);
    const std::unique_ptr<QMessageBox> fremd(new QMessageBox);
    fremd->setStandardButtons(QMessageBox::Ok);
    QVERIFY(!fremd->button(QMessageBox::Ok)->icon().isNull()); // or this test says nothing
    const std::unique_ptr<QMessageBox> fenster(hinweisfenster(u"Titel"_s, u"Grund"_s));
    fenster->open();
    QVERIFY(fenster->button(QMessageBox::Ok)->icon().isNull());
    QApplication::setStyle(u"fusion"_s);
}

void TestHinweisfenster::zeigtDasProgramm()
{
    const std::unique_ptr<QMessageBox> fenster(hinweisfenster(u"Titel"_s, u"Grund"_s));
    QCOMPARE(fenster->iconPixmap().deviceIndependentSize(), QSizeF(64, 64));
    QCOMPARE(fenster->iconPixmap().toImage(), programmsymbol().pixmap(64).toImage());
    QVERIFY(!fenster->windowIcon().isNull());
}

// Return held since it pressed the start button would take the alert away unread.
void TestHinweisfenster::gehalteneEingabeSchliesstNicht()
{
    const std::unique_ptr<QMessageBox> fenster(hinweisfenster(u"Titel"_s, u"Grund"_s));
    fenster->setAttribute(Qt::WA_DeleteOnClose, false);
    fenster->open();
    QWidget *const ok = fenster->button(QMessageBox::Ok);
    QKeyEvent gehalten(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, u"\r"_s, true);
    QApplication::sendEvent(ok, &gehalten);
    QVERIFY(fenster->isVisible());
    QTest::keyClick(ok, Qt::Key_Return);
    QVERIFY(!fenster->isVisible());
}

KALVARO_FENSTERTEST(TestHinweisfenster)
#include "tst_hinweisfenster.moc"
