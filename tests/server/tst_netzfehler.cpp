#include "server/transport.h"
#include "testlauf.h"

#include <QRegularExpression>
#include <QSet>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

QList<Netzfehlerart> alleArten()
{
    QList<Netzfehlerart> arten;
    for (int i = 0; i <= static_cast<int>(Netzfehlerart::ZuVieleSpruenge); ++i) {
        arten.append(static_cast<Netzfehlerart>(i));
    }
    return arten;
}

} // namespace

class TestNetzfehler final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void jedeArtHatEinenEigenenSatz()
    {
        QSet<QString> saetze;
        const QList<Netzfehlerart> arten = alleArten();
        for (const Netzfehlerart art : arten) {
            const Netzfehler fehler = netzfehler(art, u"x"_s);
            QVERIFY2(!fehler.text.isEmpty() && !fehler.text.contains(u'%'),
                     qPrintable(fehler.text));
            QVERIFY(art == Netzfehlerart::Adresse || fehler.text.endsWith(u'.'));
            QVERIFY(fehler.rat.isEmpty() || fehler.rat.endsWith(u'.'));
            QVERIFY(!fehler.zeitUeberschritten && !fehler.beantwortet);
            QCOMPARE(fehler.art, art);
            saetze.insert(fehler.text);
        }
        QCOMPARE(saetze.size(), arten.size());
    }

    // One sentence for all of them left the user to guess.
    void jederMangelEinesZertifikatsSagtWasHilft_data()
    {
        QTest::addColumn<Netzfehlerart>("art");
        QTest::addColumn<QString>("text");
        const auto zeile = [](Netzfehlerart art, const QString &text) {
            QTest::newRow(qPrintable(text)) << art << text;
        };
        zeile(Netzfehlerart::Aussteller,
              u"Dem Aussteller des Zertifikats der Cloud traut dieser Rechner nicht."_s);
        zeile(Netzfehlerart::Abgelaufen, u"Das Zertifikat der Cloud ist am 1.2.3 abgelaufen."_s);
        zeile(Netzfehlerart::NochNichtGueltig,
              u"Das Zertifikat der Cloud ist noch nicht gültig, erst ab dem 1.2.3."_s);
        zeile(Netzfehlerart::AndererName,
              u"Das Zertifikat der Cloud gilt für einen anderen Namen als „1.2.3“."_s);
        zeile(Netzfehlerart::Widerrufen, u"Das Zertifikat der Cloud wurde widerrufen."_s);
        zeile(Netzfehlerart::Schwach, u"Das Zertifikat der Cloud ist zu schwach."_s);
    }
    void jederMangelEinesZertifikatsSagtWasHilft()
    {
        QFETCH(const Netzfehlerart, art);
        const Netzfehler fehler = netzfehler(art, u"1.2.3"_s);
        QTEST(fehler.text, "text");
        QVERIFY(!fehler.rat.isEmpty());
    }
};

KALVARO_TEST(TestNetzfehler)
#include "tst_netzfehler.moc"
