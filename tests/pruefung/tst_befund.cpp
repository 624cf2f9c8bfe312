// Findings on their way out: as text, as JSON, without the key and without control characters.

#include "pruefung/befund.h"

#include "testlauf.h"

#include <QJsonArray>
#include <QJsonDocument>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

const Befund gut{u"a"_s, u"Konto"_s, u"da"_s, {}};
const Befund schlecht{u"b"_s, u"Bus"_s, u"fehlt"_s, u"Hole einen."_s};

Befund mit(const QString &text)
{
    return {u"a"_s, text, text, text};
}

} // namespace

class TestBefund final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void alles()
    {
        QVERIFY(allesGut({}));
        QVERIFY(allesGut({gut, gut}));
        QVERIFY(!allesGut({gut, schlecht}));
    }

    void text()
    {
        QCOMPARE(alsText({gut, schlecht}), u"✓ Konto: da\n✗ Bus: fehlt → Hole einen.\n"_s);
        QCOMPARE(alsText({}), QString());
    }

    void json()
    {
        const QByteArray bytes = alsJson({gut, schlecht}, {{u"qt"_s, u"6"_s}});
        QVERIFY(bytes.endsWith("}\n"));
        const QJsonObject erwartet{
            {u"gut"_s, false},
            {u"qt"_s, u"6"_s},
            {u"befunde"_s, QJsonArray{QJsonObject{{u"bereich"_s, u"a"_s},
                                                  {u"name"_s, u"Konto"_s},
                                                  {u"gut"_s, true},
                                                  {u"text"_s, u"da"_s}},
                                      QJsonObject{{u"bereich"_s, u"b"_s},
                                                  {u"name"_s, u"Bus"_s},
                                                  {u"gut"_s, false},
                                                  {u"text"_s, u"fehlt"_s},
                                                  {u"schritt"_s, u"Hole einen."_s}}}}};
        QCOMPARE(QJsonDocument::fromJson(bytes).object(), erwartet);
        QCOMPARE(QJsonDocument::fromJson(alsJson({gut}, {})).object()[u"gut"], QJsonValue(true));
    }

    void bereinigen_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("schluessel");
        QTest::addColumn<QString>("erwartet");
        QTest::newRow("plain") << u"da"_s << u"geheim"_s << u"da"_s;
        QTest::newRow("the key") << u"x geheim geheim"_s << u"geheim"_s << u"x ••• •••"_s;
        QTest::newRow("the key within a word")
            << u"ungeheimlich"_s << u"geheim"_s << u"un•••lich"_s;
        const QString heikel = u"ab\"cd\\ef/ü"_s;
        QTest::newRow("the key in JSON")
            << u"{\"k\":\"ab\\\"cd\\\\ef/ü\"}"_s << heikel << u"{\"k\":\"•••\"}"_s;
        QTest::newRow("the key in a URL") << u"?k=ab%22cd%5Cef%2F%C3%BC"_s << heikel << u"?k=•••"_s;
        QTest::newRow("the key taken for Latin-1")
            << QString::fromLatin1(heikel.toUtf8()) << heikel << u"•••"_s;
        QTest::newRow("no key") << u"da"_s << QString() << u"da"_s;
        QTest::newRow("a key of three characters stays, or none of our words were safe")
            << u"das Konto"_s << u"das"_s << u"das Konto"_s;
        QTest::newRow("a key with a blank from a tab") << u"a\tbcd"_s << u"a bcd"_s << u"•••"_s;
        QTest::newRow("a key with a tab") << u"x a\tbcd"_s << u"a\tbcd"_s << u"x •••"_s;
        QTest::newRow("an escape sequence") << u"\u001b[2Jx\ny"_s << QString() << u" [2Jx y"_s;
        QTest::newRow("too long") << QString(601, u'x') << QString() << QString(600, u'x') + u'…';
        QTest::newRow("no part of the key where it is cut")
            << QString(597, u'x') + u"geheim"_s << u"geheim"_s << QString(597, u'x') + u"•••"_s;
    }
    void bereinigen()
    {
        QFETCH(const QString, text);
        QFETCH(const QString, schluessel);
        QFETCH(const QString, erwartet);
        QCOMPARE(bereinigt({mit(text)}, schluessel), QList<Befund>{mit(erwartet)});
    }
};

KALVARO_TEST(TestBefund)
#include "tst_befund.moc"
