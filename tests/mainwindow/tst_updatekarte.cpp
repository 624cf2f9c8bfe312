#include "mainwindow/updatekarte.h"
#include "testlauf.h"
#include "ui/beschriftung.h"

#include <QPushButton>
#include <QSignalSpy>

using namespace kalvaro;
using namespace Qt::StringLiterals;

class TestUpdatekarte final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void amAnfangVerborgen();
    void ohneAdresseNichts();
    void zeigtUndOeffnet();
    void spaeteresAngebotErsetztDasFruehere();
    void tastenDruecken_data();
    void tastenDruecken();
    void versionWoertlichUndGekuerzt();
};

void TestUpdatekarte::amAnfangVerborgen()
{
    const Updatekarte karte;
    QVERIFY(karte.isHidden());
}

void TestUpdatekarte::ohneAdresseNichts()
{
    Updatekarte karte;
    QSignalSpy gedrueckt(&karte, &Updatekarte::gedrueckt);
    karte.findChild<QPushButton *>(u"knUpdate"_s)->click();
    QCOMPARE(gedrueckt.size(), 0);
}

void TestUpdatekarte::zeigtUndOeffnet()
{
    Updatekarte karte;
    QSignalSpy gedrueckt(&karte, &Updatekarte::gedrueckt);
    karte.zeige(u"1.10"_s, u"https://cloud/kalvaro"_s);
    QVERIFY(!karte.isHidden());
    auto *const label = karte.findChild<Beschriftung *>(u"lblUpdate"_s);
    QCOMPARE(label->text(), u"Neue Version 1.10 verfügbar"_s);
    QVERIFY(qAbs(label->font().pointSizeF() * label->logicalDpiY() / 72 - 13.5) < 0.05);
    QCOMPARE(label->font().weight(), QFont::DemiBold);
    QCOMPARE(label->farbe(), Farbe::verweis(karte.palette()));
    auto *const knopf = karte.findChild<QPushButton *>(u"knUpdate"_s);
    QCOMPARE(knopf->text(), u"Herunterladen"_s);
    QTest::mouseClick(knopf, Qt::LeftButton);
    QCOMPARE(gedrueckt, (QList<QVariantList>{{u"https://cloud/kalvaro"_s}}));
}

void TestUpdatekarte::spaeteresAngebotErsetztDasFruehere()
{
    Updatekarte karte;
    QSignalSpy gedrueckt(&karte, &Updatekarte::gedrueckt);
    karte.zeige(u"1.10"_s, u"https://cloud/a"_s);
    karte.zeige(u"1.11"_s, u"https://cloud/b"_s);
    QCOMPARE(karte.findChild<Beschriftung *>(u"lblUpdate"_s)->text(),
             u"Neue Version 1.11 verfügbar"_s);
    karte.findChild<QPushButton *>(u"knUpdate"_s)->click();
    QCOMPARE(gedrueckt, (QList<QVariantList>{{u"https://cloud/b"_s}}));
}

void TestUpdatekarte::tastenDruecken_data()
{
    QTest::addColumn<Qt::Key>("taste");
    QTest::newRow("space") << Qt::Key_Space;
    QTest::newRow("return") << Qt::Key_Return;
    QTest::newRow("enter") << Qt::Key_Enter;
}

// Return on the focused button once started rekordbox instead.
void TestUpdatekarte::tastenDruecken()
{
    QFETCH(Qt::Key, taste);
    Updatekarte karte;
    QSignalSpy gedrueckt(&karte, &Updatekarte::gedrueckt);
    karte.zeige(u"1.10"_s, u"https://cloud/a"_s);
    QTest::keyClick(karte.findChild<QPushButton *>(u"knUpdate"_s), taste);
    QCOMPARE(gedrueckt.size(), 1);
}

void TestUpdatekarte::versionWoertlichUndGekuerzt()
{
    Updatekarte karte;
    karte.zeige(u"<b>"_s + QString(500, u'9'), u"https://cloud/a"_s);
    karte.resize(472, karte.sizeHint().height());
    karte.grab();
    auto *const label = karte.findChild<Beschriftung *>(u"lblUpdate"_s);
    QVERIFY(label->text().startsWith(u"Neue Version <b>999"_s));
    QVERIFY(label->geometry().right() < karte.findChild<QPushButton *>(u"knUpdate"_s)->x());
    QVERIFY(!label->toolTip().isEmpty());
    QVERIFY(karte.minimumSizeHint().width() <= 472);
}

KALVARO_FENSTERTEST(TestUpdatekarte)
#include "tst_updatekarte.moc"
