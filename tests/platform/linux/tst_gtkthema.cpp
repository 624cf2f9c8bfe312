#include "doubles/dateien.h"
#include "platform/linux/gtkthema.h"
#include "platform/linux/linuxfarbschema.h"
#include "testlauf.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtEndian>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

// Writes the property as settings managers do.
class Eigenschaft
{
public:
    explicit Eigenschaft(bool grossZuerst = false)
        : grossZuerst_(grossZuerst)
    {
    }

    Eigenschaft &text(const QByteArray &name, const QByteArray &wert)
    {
        kopf(1, name);
        zahl<quint32>(static_cast<quint32>(wert.size()));
        bytes_ += wert;
        auffuellen();
        return *this;
    }

    Eigenschaft &ganzzahl(const QByteArray &name, qint32 wert)
    {
        kopf(0, name);
        zahl(wert);
        return *this;
    }

    Eigenschaft &farbe(const QByteArray &name)
    {
        kopf(2, name);
        bytes_ += QByteArray(8, '\x7f');
        return *this;
    }

    [[nodiscard]] QByteArray fertig() const
    {
        Eigenschaft ganz(grossZuerst_);
        ganz.bytes_ = QByteArray(1, grossZuerst_ ? '\1' : '\0') + QByteArray(3, '\0');
        ganz.zahl<quint32>(1);
        ganz.zahl<quint32>(anzahl_);
        return ganz.bytes_ + bytes_;
    }

private:
    void kopf(char art, const QByteArray &name)
    {
        ++anzahl_;
        bytes_ += art;
        bytes_ += '\0';
        zahl<quint16>(static_cast<quint16>(name.size()));
        bytes_ += name;
        auffuellen();
        zahl<quint32>(1);
    }

    template<typename Zahl>
    void zahl(Zahl wert)
    {
        const Zahl gedreht = grossZuerst_ ? qToBigEndian(wert) : qToLittleEndian(wert);
        bytes_.append(reinterpret_cast<const char *>(&gedreht), sizeof gedreht);
    }

    void auffuellen() { bytes_.resize((bytes_.size() + 3) / 4 * 4, '\0'); }

    const bool grossZuerst_;
    quint32 anzahl_ = 0;
    QByteArray bytes_;
};

} // namespace

class TestGtkthema final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void xsettings_data();
    void xsettings();
    void abgeschnitteneXsettings();
    void zuVieleAngekuendigt();
    void ini_data();
    void ini();
    void umgebung_data();
    void umgebung();
    void dunkleThemen_data();
    void dunkleThemen();
    void dateiDesBenutzers();
};

void TestGtkthema::xsettings_data()
{
    QTest::addColumn<bool>("grossZuerst");
    QTest::newRow("little end first") << false;
    QTest::newRow("big end first") << true;
}

void TestGtkthema::xsettings()
{
    QFETCH(bool, grossZuerst);
    const QByteArray alles = Eigenschaft(grossZuerst)
                                 .ganzzahl("Xft/DPI", 98304)
                                 .farbe("Irgend/Farbe")
                                 .text("Net/ThemeName", "Greybird-dark")
                                 .text("Gtk/FontName", "Sans 10")
                                 .ganzzahl("Gtk/ApplicationPreferDarkTheme", 1)
                                 .fertig();
    QCOMPARE(xsettingsLesen(alles), (GtkThema{u"Greybird-dark"_s, true}));
    QCOMPARE(xsettingsLesen(Eigenschaft(grossZuerst).fertig()), GtkThema{});
    QCOMPARE(xsettingsLesen({}), GtkThema{});
}

// At any length: what is there is read, and nothing beyond it.
void TestGtkthema::abgeschnitteneXsettings()
{
    const QByteArray alles = Eigenschaft()
                                 .text("Net/ThemeName", "Adwaita")
                                 .ganzzahl("Gtk/ApplicationPreferDarkTheme", 1)
                                 .fertig();
    for (qsizetype laenge = 0; laenge < alles.size(); ++laenge) {
        const GtkThema thema = xsettingsLesen(alles.first(laenge));
        QVERIFY(!thema.name || u"Adwaita"_s.startsWith(*thema.name));
    }
}

void TestGtkthema::zuVieleAngekuendigt()
{
    QByteArray viele = Eigenschaft().text("Net/ThemeName", "Adwaita-dark").fertig();
    viele.replace(8, 4, QByteArray(4, '\xff'));
    QCOMPARE(xsettingsLesen(viele).name, u"Adwaita-dark"_s);
    QByteArray lang = Eigenschaft().text("Net/ThemeName", "x").fertig();
    lang.replace(lang.indexOf("Net/") - 2, 2, QByteArray(2, '\xff'));
    QCOMPARE(xsettingsLesen(lang).name, std::optional<QString>());
}

void TestGtkthema::ini_data()
{
    QTest::addColumn<QByteArray>("inhalt");
    QTest::addColumn<Helligkeit>("erwartet");
    QTest::newRow("nothing in it") << QByteArray("[Settings]\n") << Helligkeit::Offen;
    QTest::newRow("dark preferred")
        << QByteArray("[Settings]\ngtk-application-prefer-dark-theme=1\n") << Helligkeit::Dunkel;
    QTest::newRow("written out")
        << QByteArray("[Settings]\r\ngtk-application-prefer-dark-theme = TRUE\r\n")
        << Helligkeit::Dunkel;
    QTest::newRow("not preferred")
        << QByteArray("[Settings]\ngtk-application-prefer-dark-theme=0") << Helligkeit::Hell;
    QTest::newRow("dark theme") << QByteArray("[Settings]\ngtk-theme-name=Yaru-dark\n")
                                << Helligkeit::Dunkel;
    QTest::newRow("a remark") << QByteArray("#gtk-theme-name=Yaru-dark\n") << Helligkeit::Offen;
}

void TestGtkthema::ini()
{
    QFETCH(QByteArray, inhalt);
    QTEST(helligkeit(gtkIniLesen(inhalt)), "erwartet");
}

void TestGtkthema::umgebung_data()
{
    QTest::addColumn<QString>("wert");
    QTest::addColumn<Helligkeit>("erwartet");
    QTest::newRow("not set") << QString() << Helligkeit::Offen;
    QTest::newRow("variant") << u"Adwaita:dark"_s << Helligkeit::Dunkel;
    QTest::newRow("name") << u"Adwaita-dark"_s << Helligkeit::Dunkel;
    QTest::newRow("light") << u"Adwaita"_s << Helligkeit::Hell;
}

void TestGtkthema::umgebung()
{
    QFETCH(QString, wert);
    QTEST(helligkeit(gtkUmgebungLesen(wert)), "erwartet");
}

void TestGtkthema::dunkleThemen_data()
{
    QTest::addColumn<Helligkeit>("erwartet");
    for (const char *name :
         {"Adwaita-dark", "Greybird-dark", "Arc-Dark", "Mint-Y-Dark-Aqua", "HighContrastInverse"}) {
        QTest::newRow(name) << Helligkeit::Dunkel;
    }
    for (const char *name : {"Adwaita", "Arc-Darker", "Darkness", "HighContrast", ""}) {
        QTest::addRow("\"%s\"", name) << Helligkeit::Hell;
    }
}

void TestGtkthema::dunkleThemen()
{
    const QString name = QString::fromLatin1(QTest::currentDataTag()).remove(u'"');
    QTEST(helligkeit({name, {}}), "erwartet");
}

void TestGtkthema::dateiDesBenutzers()
{
    const QTemporaryDir ablage;
    const QString ordner = ablage.path();
    qputenv("XDG_CONFIG_HOME", ordner.toUtf8());
    const QDBusConnection ohneBus(u"nie verbunden"_s);
    const LinuxFarbschema schema(ohneBus, Helligkeit::Offen);
    QCOMPARE(schema.wunsch(), Farbwunsch{});
    QVERIFY(QDir().mkpath(ordner + u"/gtk-3.0"_s));
    dateiSchreiben(ordner + u"/gtk-3.0/settings.ini"_s,
                   "[Settings]\ngtk-theme-name=Adwaita-dark\n");
    QCOMPARE(schema.wunsch(), (Farbwunsch{.thema = Helligkeit::Dunkel}));
    qputenv("GTK_THEME", "Adwaita");
    QCOMPARE(schema.wunsch(), (Farbwunsch{.thema = Helligkeit::Hell}));
    qunsetenv("GTK_THEME");
    const LinuxFarbschema gewuenscht(ohneBus, Helligkeit::Hell);
    QCOMPARE(gewuenscht.wunsch(), (Farbwunsch{.ausdruecklich = Helligkeit::Hell}));
}

KALVARO_FENSTERTEST(TestGtkthema)
#include "tst_gtkthema.moc"
