#include "platform/linux/xdganmeldestart.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QIcon>

#include <algorithm>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

// The formats of this file: "Desktop Entry Specification" 1.5, "Possible value types" and "The Exec
// key".
constexpr auto schluesselZeile = "\nExec="_L1;
const QString schalter = u" --hintergrund"_s;

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

QString ausWert(QStringView wert)
{
    QString text;
    for (qsizetype i = 0; i < wert.size(); ++i) {
        const bool maskiert = wert[i] == u'\\' && i + 1 < wert.size();
        const QChar zeichen = maskiert ? wert[++i] : wert[i];
        switch (maskiert ? zeichen.unicode() : u'\\') {
        case u'n':
            text += u'\n';
            break;
        case u't':
            text += u'\t';
            break;
        case u'r':
            text += u'\r';
            break;
        default:
            text += zeichen;
        }
    }
    return text;
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

// What `argument` put between its quotation marks.
QString ausArgument(const QString &gefasst)
{
    QString text;
    for (qsizetype i = 0; i < gefasst.size(); ++i) {
        const bool maskiert = gefasst[i] == u'\\' || gefasst[i] == u'%';
        text += gefasst[maskiert && i + 1 < gefasst.size() ? ++i : i];
    }
    return text;
}

// The standard allows no equal sign in the name of the program, and GLib 2.74 looks for it before
// it has undone "%%"; a shell takes either as an argument.
QString umweg()
{
    return u"/bin/sh -c "_s + argument(u"exec \"$0\" \"$@\""_s) + u' ';
}

QString kommandozeile(const QString &programm)
{
    const bool heikel = programm.contains(u'=') || programm.contains(u'%');
    return (heikel ? umweg() : QString()) + argument(programm) + schalter;
}

// The program that an entry of ours starts; anything for another's.
QString programmAus(const QString &eintrag)
{
    const qsizetype zeile = eintrag.indexOf(schluesselZeile);
    if (zeile < 0) {
        return {};
    }
    const qsizetype anfang = zeile + schluesselZeile.size();
    const qsizetype laenge = std::max<qsizetype>(0, eintrag.indexOf(u'\n', anfang) - anfang);
    QString befehl = ausWert(QStringView(eintrag).mid(anfang, laenge));
    if (befehl.startsWith(umweg())) {
        befehl.remove(0, umweg().size());
    }
    befehl.chop(schalter.size() + 1);
    return ausArgument(befehl.mid(1));
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
    const QString gesetzt = qEnvironmentVariable("XDG_CONFIG_HOME");
    const bool gilt = gesetzt.startsWith(u'/');
    return (gilt ? gesetzt : QDir::homePath() + u"/.config"_s) + u"/autostart"_s;
}

XdgAnmeldestart::XdgAnmeldestart(QString programm, const QString &ordner, QString symbol)
    : Startdatei(ordner + u'/' + KENNUNG + u".desktop"_s)
    , programm_(std::move(programm))
    , symbol_(std::move(symbol))
{
}

XdgAnmeldestart::XdgAnmeldestart()
    : XdgAnmeldestart(startprogramm(QCoreApplication::applicationFilePath()), autostartordner(),
                      QIcon::hasThemeIcon(KENNUNG) ? KENNUNG : QString())
{
}

QByteArray XdgAnmeldestart::inhalt() const
{
    return eintrag(programm_, symbol_, true).toUtf8();
}

bool XdgAnmeldestart::ueberholt(const QByteArray &vorhanden) const
{
    const QString text = QString::fromUtf8(vorhanden);
    const QString genannt = programmAus(text);
    // 1.4 wrote the icon always and never a TryExec.
    const bool unserer = text == eintrag(genannt, KENNUNG, true) ||
                         text == eintrag(genannt, {}, true) ||
                         text == eintrag(genannt, KENNUNG, false);
    const bool weg = !QFileInfo(genannt).isFile() || !QFileInfo(genannt).isExecutable();
    return unserer && (weg || genannt == programm_) && vorhanden != inhalt();
}

} // namespace kalvaro
