#include "doubles/buendel.h"
#include "foundation/gewoehnlichedatei.h"
#include "platform/buendel.h"
#include "platform/plist.h"
#include "testlauf.h"

#include <QElapsedTimer>
#include <QFile>
#include <QStringEncoder>
#include <QTemporaryDir>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

using Objekte = QByteArrayList;

// A binary property list from raw objects, the first being the top one; numbers of objects take
// two bytes.
QByteArray binaer(const Objekte &objekte)
{
    QByteArray bytes("bplist00");
    QByteArray tabelle;
    const auto zahl = [](quint64 wert, int breite) {
        QByteArray text;
        for (int i = breite - 1; i >= 0; --i) {
            text += static_cast<char>(wert >> (8 * i));
        }
        return text;
    };
    for (const QByteArray &objekt : objekte) {
        tabelle += zahl(static_cast<quint64>(bytes.size()), 4);
        bytes += objekt;
    }
    const auto anfang = static_cast<quint64>(bytes.size());
    return bytes + tabelle + QByteArray(6, '\0') + "\x04\x02" +
           zahl(static_cast<quint64>(objekte.size()), 8) + zahl(0, 8) + zahl(anfang, 8);
}

QByteArray xml(const QByteArray &inhalt)
{
    return R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0">)" + inhalt + "</plist>";
}

QByteArray utf16(const QByteArray &ascii)
{
    QByteArray bytes;
    for (const char zeichen : ascii) {
        bytes += zeichen;
        bytes += '\0';
    }
    return bytes;
}

// Declared as it is; only readers that know hundreds of encodings see the markup.
QByteArray ebcdic(const QByteArray &ascii)
{
    QStringEncoder schreiber("IBM037");
    const QByteArray ohne =
        ascii.startsWith("<?xml") ? ascii : "<?xml version='1.0' encoding='IBM037'?>" + ascii;
    const QByteArray bytes = schreiber(QString::fromLatin1(ohne));
    return schreiber.isValid() ? bytes : ohne; // Qt without ICU does not know it
}

// Bytes of address space that this process has; 0 where the system does not say.
rlim_t adressraum()
{
    QFile stand(u"/proc/self/statm"_s);
    const bool offen = stand.open(QIODevice::ReadOnly);
    return offen ? stand.readLine().split(' ').first().toULongLong() *
                       static_cast<rlim_t>(::sysconf(_SC_PAGESIZE))
                 : 0;
}

QByteArray gift(const QByteArray &art)
{
    constexpr qsizetype viel = 60000;
    if (art == "deep xml") {
        return xml("<dict><key>X</key>" + QByteArray("<array>").repeated(viel) +
                   QByteArray("</array>").repeated(viel) + "</dict>");
    }
    if (art == "attributes") {
        QByteArray text("<dict ");
        for (int i = 0; text.size() < 900000; ++i) {
            text += "a" + QByteArray::number(i) + "='' ";
        }
        return xml(text + "></dict>");
    }
    if (art == "entities") {
        QByteArray text("<!DOCTYPE plist [<!ENTITY e0 'lol'>");
        for (int i = 1; i < 30; ++i) {
            const auto vorige = "&e" + QByteArray::number(i - 1) + ";";
            text += "<!ENTITY e" + QByteArray::number(i) + " '" + vorige + vorige + "'>";
        }
        return text + "]><plist><dict><key>V</key><string>&e29;</string></dict></plist>";
    }
    if (art == "deep binary" || art == "shared containers") {
        // { V: object 2 }, and from there on each list holds the next object, once or twice.
        Objekte objekte{QByteArray("\xD1\x00\x01\x00\x02", 5), "\x51V"};
        const int mal = art == "deep binary" ? 1 : 2;
        for (int i = 3; i < viel; ++i) {
            QByteArray nummer;
            nummer += static_cast<char>(i >> 8);
            nummer += static_cast<char>(i);
            objekte += static_cast<char>(0xA0 + mal) + nummer.repeated(mal);
        }
        return binaer(objekte + Objekte{"\x09"});
    }
    if (art == "shared giant text") {
        const QByteArray zahl("\x12\x00\x03\x00\x00", 5); // 196608 keys, all of them object 1
        return binaer({"\xDF" + zahl + QByteArray("\x00\x01", 2).repeated(393216),
                       "\x5F" + zahl + QByteArray(196608, 'V')});
    }
    const QByteArray selbst("\xD1\x00\x00\x00\x00",
                            5); // a dictionary that is its own key and value
    return binaer({selbst});
}

} // namespace

class TestPlist final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(ordner.isValid()); }

    void liest_data()
    {
        QTest::addColumn<QVariant>("wert");
        QTest::addColumn<std::optional<QString>>("erwartet");
        const auto text = [](const char *zeile, const QString &wert) {
            QTest::newRow(zeile) << QVariant(wert) << std::optional(wert);
        };
        text("a version", u"7.1.4.0012"_s);
        text("empty", u""_s);
        text("blanks and line feeds", u" 7.1\n\n 4 "_s);
        text("markup", u"<b>7 & 8</b> ]]> \"'"_s);
        text("umlauts", u"7.1 – größer ✓"_s);
        text("beyond the basic plane", u"7 🎧"_s);
        text("15 characters, where the binary count grows", QString(15, u'7'));
        text("256 characters", QString(256, u'7'));
        text("very long", QString(300000, u'7'));
        text("very long, not ASCII", QString(100000, u'ü'));
        QTest::newRow("a number") << QVariant(7) << std::optional<QString>();
        QTest::newRow("a list") << QVariant(QStringList{u"7"_s}) << std::optional<QString>();
        QTest::newRow("no such key") << QVariant() << std::optional<QString>();
    }

    // Whatever the neighbours are, in both forms.
    void liest()
    {
        QFETCH(const QVariant, wert);
        QFETCH(const std::optional<QString>, erwartet);
        for (const Plistform form : {Plistform::Xml, Plistform::Binaer}) {
            QMap<QString, QVariant> eintraege{{u"A"_s, QStringList{u"V"_s, u"falsch"_s}},
                                              {u"W"_s, u"falsch"_s},
                                              {u"Ü"_s, 9},
                                              {u"VV"_s, u"V"_s}};
            if (wert.isValid()) {
                eintraege.insert(u"V"_s, wert);
            }
            QCOMPARE(plistText(plistBytes(form, eintraege), u"V"), erwartet);
        }
    }

    void kaputt_data()
    {
        QTest::addColumn<QByteArray>("inhalt");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("not a property list") << QByteArray("Version 7.1.4\n");
        QTest::newRow("zeroes") << QByteArray(4096, '\0');
        QTest::newRow("JSON") << QByteArray(R"({"V": "7"})");
        QTest::newRow("another document") << QByteArray("<html><dict/></html>");
        QTest::newRow("a list on top") << xml("<array><key>V</key><string>7</string></array>");
        QTest::newRow("value missing") << xml("<dict><key>V</key></dict>");
        QTest::newRow("key missing") << xml("<dict><string>V</string><string>7</string></dict>");
        QTest::newRow("markup in the value")
            << xml("<dict><key>V</key><string>7<b/></string></dict>");
        QTest::newRow("broken behind the value")
            << xml("<dict><key>V</key><string>7</string><key>W</key><string></dict>");
        QTest::newRow("magic only") << QByteArray("bplist00");
        QTest::newRow("magic and zeroes") << QByteArray("bplist00") + QByteArray(400, '\0');
        QTest::newRow("magic and ones") << QByteArray("bplist00") + QByteArray(400, '\xFF');
        QTest::newRow("binary text on top") << binaer({"\x51V"});
        QTest::newRow("pairs beyond the end") << binaer({"\xDE"});
        QTest::newRow("more pairs than anything can hold")
            << binaer({QByteArray("\xDF\x13\x7F\xFF\xFF\xFF\xFF\xFF\xFF\xFF", 10)});
        // What follows the table of two objects reads as the offset of the word "bplist".
        QTest::newRow("object after the last")
            << binaer({QByteArray("\xD1\x00\x01\x00\x02", 5), "\x51V"});
        QTest::newRow("more objects than anything can hold")
            << binaer({QByteArray("\xD1\x00\x01\x00\x01", 5), "\x51V"})
                   .replace(QByteArray("\0\0\0\0\0\0\0\2", 8), QByteArray("\x7F\0\0\0\0\0\0\2", 8));
        QTest::newRow("object beyond the end")
            << binaer({QByteArray("\xD1\x00\x01\x00\x09", 5), "\x51V"});
        QTest::newRow("text beyond the end")
            << binaer({QByteArray("\xD1\x00\x01\x00\x02", 5), "\x51V",
                       QByteArray("\x5F\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF", 10)});
        QTest::newRow("UTF-16 text whose bytes cannot be counted")
            << binaer({QByteArray("\xD1\x00\x01\x00\x02", 5), "\x51V",
                       QByteArray("\x6F\x13\x80\x00\x00\x00\x00\x00\x00\x00", 10)});
        // The table begins at 0x5F13: the last two bytes look like a text with a count to come.
        QByteArray amEnde = binaer(
            {QByteArray("\xD1\x00\x01\x00\x02", 5), "\x51V", QByteArray(0x5F13 - 8 - 5 - 2, '\0')});
        amEnde.replace(0x5F13 + 10, 2, QByteArray("\x5F\x3D", 2));
        QTest::newRow("a count beyond the end") << amEnde;
    }

    void kaputt()
    {
        QFETCH(const QByteArray, inhalt);
        QCOMPARE(plistText(inhalt, u"V"), std::nullopt);
    }

    // Cut off or damaged anywhere: another answer perhaps, but nothing worse.
    void beschaedigt()
    {
        const QMap<QString, QVariant> eintraege{
            {u"V"_s, u"7.1.4"_s}, {u"Ü"_s, QStringList{u"a"_s, u"b"_s}}, {u"Z"_s, 300}};
        for (const Plistform form : {Plistform::Xml, Plistform::Binaer}) {
            const QByteArray ganz = plistBytes(form, eintraege);
            QCOMPARE(plistText(ganz, u"V"), std::optional(u"7.1.4"_s));
            for (qsizetype i = 0; i < ganz.trimmed().size(); ++i) {
                QCOMPARE(plistText(ganz.first(i), u"V"), std::nullopt);
                for (const int muster : {0x01, 0x10, 0x80, 0xFF}) {
                    QByteArray anders = ganz;
                    anders[i] = static_cast<char>(anders[i] ^ muster);
                    (void)plistText(anders, u"V");
                }
            }
        }
    }

    void boesartig_data()
    {
        QTest::addColumn<QByteArray>("art");
        for (const char *art : {"deep xml", "attributes", "entities", "deep binary",
                                "shared containers", "shared giant text", "circular"}) {
            QTest::newRow(art) << QByteArray(art);
        }
    }

    // Files below 1 MiB that would take a reader of the whole tree its stack, memory or hours.
    void boesartig()
    {
        QFETCH(const QByteArray, art);
        const QByteArray inhalt = gift(art);
        QVERIFY(inhalt.size() <= 1 << 20);
        QElapsedTimer uhr;
        uhr.start();
        QCOMPARE(plistText(inhalt, u"V"), std::nullopt);
        QVERIFY2(uhr.elapsed() < 5000, QByteArray::number(uhr.elapsed()).constData());
    }

    void kostetNichtMehrAlsSeineGroesse_data()
    {
        QTest::addColumn<QByteArray>("inhalt");
        QTest::addColumn<std::optional<QString>>("erwartet");
        const auto zeile = [](const char *name, const QByteArray &inhalt) {
            QTest::newRow(name) << inhalt << std::optional<QString>();
        };
        const QByteArray lang(4096, 'a');
        const QByteArray viele = QByteArray("&a;").repeated(groessteDatei / 3 - 3000);
        const QByteArray wurzel =
            "<plist><dict><key>V</key><string>" + viele + "</string></dict></plist>";
        zeile("an entity of 4096 characters",
              "<!DOCTYPE plist [<!ENTITY a '" + lang + "'>]>" + wurzel);
        zeile("an entity behind a > in quotes",
              "<!DOCTYPE plist SYSTEM \"a>b\" [<!ENTITY a '" + lang + "'>]>" + wurzel);
        zeile("an entity behind a document type in a comment",
              "<!-- <!DOCTYPE plist> --><!DOCTYPE plist [<!ENTITY a '" + lang + "'>]>" + wurzel);
        QByteArray regeln("<!DOCTYPE plist [<!ATTLIST b ");
        for (int i = 0; i < 2000; ++i) {
            regeln += "a" + QByteArray::number(i) + " CDATA 'x' ";
        }
        zeile("attributes for every element", regeln + ">]><plist><dict><key>V</key><a>" +
                                                  QByteArray("<b/>").repeated(200000) +
                                                  "</a></dict></plist>");
        QByteArray attribute("<plist><dict ");
        for (int i = 0; i < 100000; ++i) {
            attribute += "a" + QByteArray::number(i) + "='' ";
        }
        attribute += "/></plist>";
        zeile("attributes in UTF-16", "\xFF\xFE" + utf16(attribute));
        zeile("attributes in EBCDIC", ebcdic(attribute));
        const QByteArray tief = QByteArray("<a>").repeated(600000);
        zeile("deep", xml("<dict><key>W</key>" + tief));
        zeile("deep behind the dictionary", xml("<dict></dict>" + tief));
        QTest::newRow("a text that fills the file")
            << xml("<dict><key>V</key><string>" + QByteArray(4000000, '7') + "</string></dict>")
            << std::optional(QString(4000000, u'7'));
    }

    // In a process of its own that is given 160 MiB more than it has, where that can be told.
    void kostetNichtMehrAlsSeineGroesse()
    {
        QFETCH(const QByteArray, inhalt);
        QFETCH(const std::optional<QString>, erwartet);
        QVERIFY(inhalt.size() <= groessteDatei);
        const pid_t kind = ::fork();
        if (kind == 0) {
            constexpr unsigned geduld = 20; // seconds
            ::alarm(geduld);
            if (const rlim_t bisher = adressraum(); bisher > 0) {
                const rlim_t platz = bisher + (rlim_t{160} << 20U);
                const rlimit grenze{platz, platz};
                ::setrlimit(RLIMIT_AS, &grenze);
            }
            ::_exit(plistText(inhalt, u"V") == erwartet ? 0 : 1);
        }
        int ausgang = -1;
        ::waitpid(kind, &ausgang, 0);
        QCOMPARE(ausgang, 0);
    }

    void kodierung_data()
    {
        QTest::addColumn<QByteArray>("inhalt");
        QTest::addColumn<std::optional<QString>>("erwartet");
        const auto mit = [](const QByteArray &name, const QByteArray &wert) {
            return "<?xml version=\"1.0\" encoding=\"" + name +
                   "\"?>\n<plist><dict><key>V</key><string>" + wert + "</string></dict></plist>";
        };
        const auto ja = [](const char *zeile, const QByteArray &inhalt, const QString &wert) {
            QTest::newRow(zeile) << inhalt << std::optional(wert);
        };
        const auto nein = [](const char *zeile, const QByteArray &inhalt) {
            QTest::newRow(zeile) << inhalt << std::optional<QString>();
        };
        ja("UTF-8", mit("UTF-8", "\xC3\xBC"), u"ü"_s);
        ja("utf-8 with its mark", "\xEF\xBB\xBF" + mit("utf-8", "\xC3\xBC"), u"ü"_s);
        ja("none declared", "<plist><dict><key>V</key><string>\xC3\xBC</string></dict></plist>",
           u"ü"_s);
        ja("US-ASCII", mit("US-ASCII", "7"), u"7"_s);
        ja("ISO-8859-1", mit("ISO-8859-1", "\xFC"), u"ü"_s);
        ja("UTF-16, little end first", "\xFF\xFE" + utf16(mit("UTF-16", "7")), u"7"_s);
        ja("the document type that Apple writes",
           "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist PUBLIC \"-//Apple//DTD "
           "PLIST "
           "1.0//EN\" \"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n<plist "
           "version=\"1.0\"><dict><key>V</key><string>7 &amp; 8</string></dict></plist>",
           u"7 & 8"_s);
        nein("bytes that are not UTF-8", mit("UTF-8", "\xFC"));
        nein("UTF-16 declared, not kept to", mit("UTF-16", "7"));
        nein("windows-1252", mit("windows-1252", "7"));
        nein("UTF-7", mit("UTF-7", "7"));
        nein("IBM037", mit("IBM037", "7"));
        nein("IBM037, kept to", ebcdic(mit("IBM037", "7")));
        nein("an empty set of rules", "<!DOCTYPE plist []>" + mit("UTF-8", "7").mid(39));
    }

    void kodierung()
    {
        QFETCH(const QByteArray, inhalt);
        QFETCH(const std::optional<QString>, erwartet);
        QCOMPARE(plistText(inhalt, u"V"), erwartet);
    }

    void groesse_data()
    {
        QTest::addColumn<qsizetype>("groesse");
        QTest::addColumn<std::optional<QString>>("erwartet");
        QTest::newRow("4 MiB") << qsizetype(4194304) << std::optional(u"7"_s);
        QTest::newRow("a byte more") << qsizetype(4194305) << std::optional<QString>();
    }

    void groesse()
    {
        QFETCH(const qsizetype, groesse);
        QFETCH(const std::optional<QString>, erwartet);
        const QByteArray info = xml("<dict><key>V</key><string>7</string></dict>");
        const QString buendel = ordner.filePath(u"Groesse.app"_s);
        buendelSchreiben(buendel, info + QByteArray(groesse - info.size(), ' '));
        QCOMPARE(infotext(buendel, u"V"), erwartet);
    }

    void keineGewoehnlicheDatei_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name : {"missing", "folder", "named pipe", "named pipe in use",
                                 "endless device", "link loop"}) {
            QTest::newRow(name) << QString::fromLatin1(name);
        }
    }

    void keineGewoehnlicheDatei()
    {
        QFETCH(const QString, name);
        const QString buendel = ordner.filePath(name);
        const QString info = infodatei(buendel);
        QVERIFY(QDir().mkpath(buendel + u"/Contents"_s));
        if (name == u"folder") {
            QVERIFY(QDir().mkdir(info));
        } else if (name.startsWith(u"named pipe")) {
            QCOMPARE(::mkfifo(QFile::encodeName(info).constData(), 0666), 0);
        } else if (name == u"endless device") {
            QVERIFY(QFile::link(u"/dev/zero"_s, info));
        } else if (name == u"link loop") {
            QVERIFY(QFile::link(info, info));
        }
        QFile rohr(info);
        if (name == u"named pipe in use") {
            QVERIFY(rohr.open(QIODevice::ReadWrite | QIODevice::Unbuffered));
            rohr.write(xml("<dict><key>V</key><string>7</string></dict>"));
        }
        QCOMPARE(infotext(buendel, u"V"), std::nullopt);
    }

private:
    QTemporaryDir ordner;
};

KALVARO_TEST(TestPlist)
#include "tst_plist.moc"
