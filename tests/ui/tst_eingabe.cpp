#include "testlauf.h"
#include "ui/eingabe.h"
#include "ui/knoepfe.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QProxyStyle>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <memory>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

// A desktop that lays its dialogues out as a Mac does.
class Macstil final : public QProxyStyle
{
public:
    int styleHint(StyleHint hinweis, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *antwort) const override
    {
        return hinweis == SH_DialogButtonLayout
                   ? QDialogButtonBox::MacLayout
                   : QProxyStyle::styleHint(hinweis, option, widget, antwort);
    }
};

// One of each control, and what became of them.
struct Fenster : QWidget
{
    Fenster()
    {
        auto *const reihe = new QVBoxLayout(this);
        const auto dazu = [&](QWidget *teil, const QString &name) {
            teil->setObjectName(name);
            reihe->addWidget(teil);
        };
        dazu(vorgabe, u"default button"_s);
        dazu(verweis(u"Verweis"_s, this, [this] { taten.append(u"link"_s); }), u"link"_s);
        dazu(knopf, u"button"_s);
        dazu(haken, u"check box"_s);
        dazu(new QLineEdit, u"field"_s);
        dazu(auswahl, u"list"_s);
        dazu(baum, u"tree"_s);
        auswahl->addItems({u"a"_s, u"b"_s});
        auto *const zeile = new QTreeWidgetItem(baum, {u"Zeile"_s});
        zeile->setCheckState(0, Qt::Unchecked);
        baum->setCurrentItem(zeile);
        connect(vorgabe, &QPushButton::clicked, this, [this] { taten.append(u"default"_s); });
        connect(knopf, &QPushButton::clicked, this, [this] { taten.append(u"button"_s); });
        connect(haken, &QCheckBox::clicked, this, [this] { taten.append(u"ticked"_s); });
        connect(baum, &QTreeWidget::itemChanged, this, [this] { taten.append(u"row"_s); });
        auswahl->view(); // newer versions of Qt have the list from the beginning
        new Eingabe(*this, *vorgabe);
        show();
    }

    void druecken(const QString &ort, Qt::Key taste, bool gehalten = false)
    {
        auto *const ziel = ort.isEmpty() ? this : findChild<QWidget *>(ort);
        if (!ort.isEmpty()) {
            ziel->setFocus(Qt::TabFocusReason);
        }
        if (gehalten) {
            QKeyEvent ereignis(QEvent::KeyPress, taste, Qt::NoModifier, u"\r"_s, true);
            QApplication::sendEvent(ziel, &ereignis);
        } else {
            QTest::keyClick(ziel, taste);
        }
    }

    Startknopf *const vorgabe = new Startknopf(u"Vorgabe"_s);
    QPushButton *const knopf = new QPushButton(u"Knopf"_s);
    Haken *const haken = new Haken(u"Haken"_s);
    QComboBox *const auswahl = new QComboBox;
    QTreeWidget *const baum = new QTreeWidget;
    QStringList taten;
};

} // namespace

// Run on each kind of desktop by tst_schreibtischtasten, too.
class TestEingabe final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { QApplication::setStyle(u"fusion"_s); }

    void jedeTasteAnJedemOrt_data();
    void jedeTasteAnJedemOrt();
    void gehalteneTasteDruecktNicht_data() { orte(); }
    void gehalteneTasteDruecktNicht();
    void wieAufDemMac_data() { orte(); }
    void wieAufDemMac();
    void leertasteOeffnetDieAuswahlUndEscapeNurSie();
    void eingabeInDerAuswahlWaehlt();
    void gesperrtesWirdNichtGedrueckt();
    void ruhendesFensterTutNichts();

private:
    static void orte()
    {
        QTest::addColumn<QString>("ort");
        for (const char *ort :
             {"", "default button", "link", "button", "check box", "field", "list", "tree"}) {
            QTest::newRow(*ort == '\0' ? "window" : ort) << QString::fromLatin1(ort);
        }
    }
};

void TestEingabe::jedeTasteAnJedemOrt_data()
{
    QTest::addColumn<QString>("ort");
    QTest::addColumn<QString>("eingabe");
    QTest::addColumn<QString>("leertaste");
    QTest::newRow("window") << QString() << u"default"_s << QString();
    QTest::newRow("default button") << u"default button"_s << u"default"_s << u"default"_s;
    QTest::newRow("link") << u"link"_s << u"link"_s << u"link"_s;
    QTest::newRow("button") << u"button"_s << u"button"_s << u"button"_s;
    QTest::newRow("check box") << u"check box"_s << u"default"_s << u"ticked"_s;
    QTest::newRow("field") << u"field"_s << u"default"_s << QString();
    QTest::newRow("tree") << u"tree"_s << u"default"_s << u"row"_s;
    QTest::newRow("list") << u"list"_s << u"default"_s << QString(); // its own test
}

void TestEingabe::jedeTasteAnJedemOrt()
{
    QFETCH(const QString, ort);
    QFETCH(const QString, eingabe);
    QFETCH(const QString, leertaste);
    for (const Qt::Key taste : {Qt::Key_Return, Qt::Key_Enter}) {
        Fenster fenster;
        fenster.druecken(ort, taste);
        QCOMPARE(fenster.taten, QStringList{eingabe});
        QVERIFY(QApplication::activePopupWidget() == nullptr);
    }
    if (ort != u"list") {
        Fenster fenster;
        fenster.druecken(ort, Qt::Key_Space);
        QCOMPARE(fenster.taten.join(u' '), leertaste);
    }
}

void TestEingabe::gehalteneTasteDruecktNicht()
{
    QFETCH(const QString, ort);
    Fenster fenster;
    fenster.druecken(ort, Qt::Key_Return, true);
    fenster.druecken(ort, Qt::Key_Enter, true);
    QCOMPARE(fenster.taten, QStringList());
}

// Return belongs to the default button there, and Space works on what has the focus.
void TestEingabe::wieAufDemMac()
{
    QFETCH(const QString, ort);
    QApplication::setStyle(new Macstil);
    Fenster fenster;
    fenster.druecken(ort, Qt::Key_Return);
    QCOMPARE(fenster.taten, QStringList{u"default"_s});
}

void TestEingabe::leertasteOeffnetDieAuswahlUndEscapeNurSie()
{
    Fenster fenster;
    fenster.druecken(u"list"_s, Qt::Key_Space);
    QWidget *const liste = QApplication::activePopupWidget();
    QVERIFY(liste != nullptr);
    QTest::keyClick(fenster.auswahl->view(), Qt::Key_Escape);
    QTRY_VERIFY(!liste->isVisible());
    QVERIFY(fenster.isVisible());
    QCOMPARE(fenster.taten, QStringList());
}

void TestEingabe::eingabeInDerAuswahlWaehlt()
{
    Fenster fenster;
    fenster.druecken(u"list"_s, Qt::Key_Space);
    QVERIFY(QApplication::activePopupWidget() != nullptr);
    QTest::keyClick(fenster.auswahl->view(), Qt::Key_Down);
    QTest::keyClick(fenster.auswahl->view(), Qt::Key_Return);
    QTRY_VERIFY(QApplication::activePopupWidget() == nullptr);
    QCOMPARE(fenster.auswahl->currentText(), u"b"_s);
    QCOMPARE(fenster.taten, QStringList());
}

void TestEingabe::gesperrtesWirdNichtGedrueckt()
{
    Fenster fenster;
    fenster.vorgabe->setEnabled(false);
    fenster.druecken(u"check box"_s, Qt::Key_Return);
    QCOMPARE(fenster.taten, QStringList());
}

// The focus rests in the window itself.
void TestEingabe::ruhendesFensterTutNichts()
{
    Fenster fenster;
    fenster.setFocus();
    QTest::keyClick(&fenster, Qt::Key_Return);
    QTest::keyClick(&fenster, Qt::Key_Space);
    QCOMPARE(fenster.taten, QStringList());
}

KALVARO_FENSTERTEST(TestEingabe)
#include "tst_eingabe.moc"
