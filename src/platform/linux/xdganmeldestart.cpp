#include "platform/linux/xdganmeldestart.h"

#include "foundation/konstanten.h"

#include <QCoreApplication>
#include <QDir>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

// One argument of an "Exec" key, "Desktop Entry Specification" 1.5, "The Exec key". The key is a
// string, so its own escapes come on top: what the quoting wants as one backslash stands as two in
// the file.
QString argument(const QString &text)
{
    QString gefasst;
    for (const QChar zeichen : text) {
        switch (zeichen.unicode()) {
        case u'"':
        case u'`':
        case u'$':
            gefasst += u"\\\\"_s + zeichen;
            break;
        case u'\\':
            gefasst += u"\\\\\\\\"_s;
            break;
        case u'%': // would begin a field code
            gefasst += u"%%"_s;
            break;
        case u'\n':
            gefasst += u"\\n"_s;
            break;
        case u'\t':
            gefasst += u"\\t"_s;
            break;
        case u'\r':
            gefasst += u"\\r"_s;
            break;
        default:
            gefasst += zeichen;
        }
    }
    return u'"' + gefasst + u'"';
}

// The standard allows no equal sign in the name of the program, and GLib 2.74 looks for it before
// it has undone "%%"; a shell takes either as an argument.
QString kommandozeile(const QString &programm)
{
    const QString aufruf = argument(programm) + u" --hintergrund"_s;
    const bool heikel = programm.contains(u'=') || programm.contains(u'%');
    return heikel ? u"/bin/sh -c "_s + argument(u"exec \"$0\" \"$@\""_s) + u' ' + aufruf : aufruf;
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
    const QString gesetzt = qEnvironmentVariable("XDG_CONFIG_HOME");
    const bool gilt = gesetzt.startsWith(u'/');
    return (gilt ? gesetzt : QDir::homePath() + u"/.config"_s) + u"/autostart"_s;
}

XdgAnmeldestart::XdgAnmeldestart(QString programm, const QString &ordner)
    : Startdatei(ordner + u'/' + KENNUNG + u".desktop"_s)
    , programm_(std::move(programm))
{
}

XdgAnmeldestart::XdgAnmeldestart()
    : XdgAnmeldestart(startprogramm(QCoreApplication::applicationFilePath()))
{
}

QByteArray XdgAnmeldestart::inhalt() const
{
    const QString eintrag = u"[Desktop Entry]\n"
                            "Type=Application\n"
                            "Version=1.5\n"
                            "Name=kalvaro\n"
                            "Comment=Hält die rekordbox-Bibliothek mit der Cloud im Gleichstand\n"
                            "Icon="_s +
                            KENNUNG + u"\nExec="_s + kommandozeile(programm_) +
                            u"\nTerminal=false\nStartupNotify=false\n"_s;
    return eintrag.toUtf8();
}

} // namespace kalvaro
