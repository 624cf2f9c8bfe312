// Text from outside before it reaches a terminal.

#include "foundation/klartext.h"

#include "testlauf.h"

using namespace kalvaro;
using namespace Qt::StringLiterals;

class TestKlartext final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void klar_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("erwartet");
        QTest::newRow("nothing") << QString() << QString();
        QTest::newRow("plain text") << u"Maß „5“ …"_s << u"Maß „5“ …"_s;
        QTest::newRow("lines") << u"a\nb\r\nc"_s << u"a b  c"_s;
        QTest::newRow("an escape sequence") << u"\u001b[31mrot"_s << u" [31mrot"_s;
        QTest::newRow("a bell, a zero, a delete")
            << QString(u"a\aa\u007f"_s + QChar(0)) << u"a a  "_s;
        QTest::newRow("a control sequence in one character") << u"\u009b2J"_s << u" 2J"_s;
        QTest::newRow("separators of lines and paragraphs") << u"a\u2028b\u2029c"_s << u"a b c"_s;
        QTest::newRow("direction turned round") << u"\u202egnp.exe\u2066"_s << u" gnp.exe "_s;
        QTest::newRow("just short enough") << u"1234567890"_s << u"1234567890"_s;
        QTest::newRow("too long") << u"12345678901"_s << u"1234567890…"_s;
        QTest::newRow("not within a character") << u"123456789😀"_s << u"123456789…"_s;
    }
    void klar()
    {
        QFETCH(const QString, text);
        QTEST(klartext(text, 10), "erwartet");
    }
};

KALVARO_TEST(TestKlartext)
#include "tst_klartext.moc"
