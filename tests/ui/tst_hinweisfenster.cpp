#include "testlauf.h"
#include "ui/hinweisfenster.h"

#include <QAbstractButton>
#include <QLabel>
#include <QMessageBox>
#include <QPointer>

#include <memory>

using namespace kalvaro;
using namespace Qt::StringLiterals;

class TestHinweisfenster final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void zeigtAllesWoertlich();
    void einKnopfUndWeg();
    void elternteil();
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

// A dialogue of a window that cannot be seen could not be seen either.
void TestHinweisfenster::elternteil()
{
    QWidget fenster;
    const std::unique_ptr<QMessageBox> verborgen(hinweisfenster({}, {}, &fenster));
    QVERIFY(verborgen->parentWidget() == nullptr);
    fenster.showMinimized();
    const std::unique_ptr<QMessageBox> abgelegt(hinweisfenster({}, {}, &fenster));
    QVERIFY(abgelegt->parentWidget() == nullptr);
    fenster.showNormal();
    const std::unique_ptr<QMessageBox> sichtbar(hinweisfenster({}, {}, &fenster));
    QCOMPARE(sichtbar->parentWidget(), &fenster);
}

KALVARO_FENSTERTEST(TestHinweisfenster)
#include "tst_hinweisfenster.moc"
