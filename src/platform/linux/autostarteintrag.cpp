#include "platform/linux/autostarteintrag.h"

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

// The escapes of a value of type string.
QString entschluesselt(const QString &wert)
{
    QString klar;
    for (qsizetype i = 0; i < wert.size(); ++i) {
        if (wert[i] != u'\\' || i + 1 == wert.size()) {
            klar += wert[i];
            continue;
        }
        const QChar zeichen = wert[++i];
        klar += zeichen == u's'   ? QChar(u' ')
                : zeichen == u'n' ? QChar(u'\n')
                : zeichen == u't' ? QChar(u'\t')
                : zeichen == u'r' ? QChar(u'\r')
                                  : zeichen;
    }
    return klar;
}

// The arguments of an "Exec" key: parted at blanks, those in quotes as a whole.
QStringList argumente(const QString &exec)
{
    QStringList liste;
    QString wort;
    bool begonnen = false;
    bool gefasst = false;
    for (qsizetype i = 0; i < exec.size(); ++i) {
        const QChar zeichen = exec[i];
        if (zeichen == u'"') {
            gefasst = !gefasst;
            begonnen = true;
        } else if (zeichen == u' ' && !gefasst) {
            if (begonnen) {
                liste.append(wort);
            }
            wort.clear();
            begonnen = false;
        } else if (zeichen == u'\\' && gefasst && i + 1 < exec.size()) {
            wort += exec[++i];
        } else if (zeichen == u'%' && i + 1 < exec.size()) {
            // "%%" is a percent sign, anything else a field code, for which nothing stands here.
            wort += exec[++i] == u'%' ? u"%"_s : QString();
            begonnen = begonnen || exec[i] == u'%';
        } else {
            wort += zeichen;
            begonnen = true;
        }
    }
    if (begonnen) {
        liste.append(wort);
    }
    return liste;
}

} // namespace

QString Autostarteintrag::programm() const
{
    // sh -c SCRIPT PROGRAM …, as it is written for a program whose name no entry can hold.
    const bool schale = kommando.value(0) == u"/bin/sh" && kommando.value(1) == u"-c";
    return kommando.value(schale ? 3 : 0);
}

Autostarteintrag autostarteintragLesen(const QByteArray &inhalt)
{
    Autostarteintrag eintrag;
    bool drin = false;
    const QStringList zeilen = QString::fromUtf8(inhalt).split(u'\n');
    for (const QString &zeile : zeilen) {
        if (zeile.startsWith(u'[')) {
            drin = zeile.trimmed() == u"[Desktop Entry]";
            continue;
        }
        const qsizetype gleich = zeile.indexOf(u'=');
        if (!drin || gleich < 0) {
            continue;
        }
        const QString schluessel = zeile.first(gleich).trimmed();
        const QString wert = zeile.sliced(gleich + 1).trimmed();
        if ((schluessel == u"Hidden" && wert == u"true") ||
            (schluessel == u"X-GNOME-Autostart-enabled" && wert == u"false")) {
            eintrag.abgeschaltet = schluessel + u'=' + wert;
        } else if (schluessel == u"Exec") {
            eintrag.kommando = argumente(entschluesselt(wert));
        } else if (schluessel == u"TryExec") {
            eintrag.voraussetzung = entschluesselt(wert);
        }
    }
    return eintrag;
}

} // namespace kalvaro
