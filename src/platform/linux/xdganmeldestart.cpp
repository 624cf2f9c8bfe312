#include "platform/linux/xdganmeldestart.h"

#include "platform/linux/autostarteintrag.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QIcon>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

// The formats of this file: "Desktop Entry Specification" 1.5, "Possible value types" and "The Exec
// key".
QString alsWert(const QString &text)
{
    QString wert;
    for (const QChar zeichen : text) {
        switch (zeichen.unicode()) {
        case u'\\':
            wert += u"\\\\"_s;
            break;
        case u'\n':
            wert += u"\\n"_s;
            break;
        case u'\t':
            wert += u"\\t"_s;
            break;
        case u'\r':
            wert += u"\\r"_s;
            break;
        default:
            wert += zeichen;
        }
    }
    return wert;
}

QString argument(const QString &text)
{
    QString gefasst;
    for (const QChar zeichen : text) {
        if (u"\"`$\\"_s.contains(zeichen)) {
            gefasst += u'\\';
        } else if (zeichen == u'%') { // would begin a field code
            gefasst += u'%';
        }
        gefasst += zeichen;
    }
    return u'"' + gefasst + u'"';
}

// The standard allows no equal sign in the name of the program, and GLib 2.74 looks for it before
// it has undone "%%"; a shell takes either as an argument.
QString kommandozeile(const QString &programm)
{
    const bool heikel = programm.contains(u'=') || programm.contains(u'%');
    const QString schale = u"/bin/sh -c "_s + argument(u"exec \"$0\" \"$@\""_s) + u' ';
    return (heikel ? schale : QString()) + argument(programm) + u" --hintergrund"_s;
}

// `pruefbar`: sessions are to skip the entry where the program is gone.
QString eintrag(const QString &programm, const QString &symbol, bool pruefbar)
{
    QString text = u"[Desktop Entry]\n"
                   "Type=Application\n"
                   "Version=1.5\n"
                   "Name=kalvaro\n"
                   "Comment=Hält die rekordbox-Bibliothek mit der Cloud im Gleichstand\n"_s;
    if (!symbol.isEmpty()) {
        text += u"Icon="_s + symbol + u'\n';
    }
    if (pruefbar) {
        text += u"TryExec="_s + alsWert(programm) + u'\n';
    }
    return text + u"Exec="_s + alsWert(kommandozeile(programm)) +
           u"\nTerminal=false\nStartupNotify=false\n"_s;
}

} // namespace

QString startprogramm(const QString &eigenes)
{
    // Programs that an AppImage starts inherit these variables without lying in it.
    const QString abbild = qEnvironmentVariable("APPIMAGE");
    const QString wurzel = qEnvironmentVariable("APPDIR");
    const bool darin = !wurzel.isEmpty() && eigenes.startsWith(wurzel + u'/');
    return darin && abbild.startsWith(u'/') ? abbild : eigenes;
}

QString autostartordner()
{
    // A relative path is to be ignored ("XDG Base Directory Specification" 0.8).
    QString ordner = qEnvironmentVariable("XDG_CONFIG_HOME");
    if (!ordner.startsWith(u'/')) {
        ordner = QDir::homePath() + u"/.config"_s;
    }
    while (ordner.endsWith(u'/')) {
        ordner.chop(1);
    }
    return ordner + u"/autostart"_s;
}

QString autostartdatei(const QString &ordner)
{
    return ordner + u'/' + KENNUNG + u".desktop"_s;
}

XdgAnmeldestart::XdgAnmeldestart(QString programm, const QString &ordner,
                                 std::optional<QString> symbol)
    : Startdatei(autostartdatei(ordner))
    , programm_(std::move(programm))
    , symbol_(std::move(symbol))
{
}

XdgAnmeldestart::XdgAnmeldestart()
    : XdgAnmeldestart(startprogramm(QCoreApplication::applicationFilePath()), autostartordner(),
                      std::nullopt)
{
}

// Reading the theme's lists takes longer than building a window, so only an entry that is to be
// written or compared asks for it.
QByteArray XdgAnmeldestart::inhalt() const
{
    const QString symbol = symbol_ ? *symbol_ : QIcon::hasThemeIcon(KENNUNG) ? KENNUNG : QString();
    return eintrag(programm_, symbol, true).toUtf8();
}

bool XdgAnmeldestart::ueberholt(const QByteArray &vorhanden) const
{
    const QString text = QString::fromUtf8(vorhanden);
    const QString genannt = autostarteintragLesen(vorhanden).programm();
    // 1.4 wrote the icon always and never a TryExec.
    const bool unserer = text == eintrag(genannt, KENNUNG, true) ||
                         text == eintrag(genannt, {}, true) ||
                         text == eintrag(genannt, KENNUNG, false);
    const bool weg = !QFileInfo(genannt).isFile() || !QFileInfo(genannt).isExecutable();
    return unserer && (weg || genannt == programm_) && vorhanden != inhalt();
}

} // namespace kalvaro
