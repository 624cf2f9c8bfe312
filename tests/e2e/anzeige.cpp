#include "e2e/anzeige.h"

#include "doubles/kindprogramm.h"

#include <QTest>

namespace kalvaro {

using namespace Qt::StringLiterals;

bool bald(const std::function<bool()> &bedingung, int geduld)
{
    return QTest::qWaitFor(bedingung, geduld);
}

Anzeige::Anzeige(Letzter letzter)
{
    server.setStandardErrorFile(QProcess::nullDevice());
    anTestBinden(server);
    QStringList argumente{u"-displayfd"_s, u"1"_s,         u"-screen"_s, u"0"_s,
                          u"800x600x24"_s, u"-nolisten"_s, u"tcp"_s};
    if (letzter == Letzter::Egal) {
        argumente.append(u"-noreset"_s);
    }
    server.start(u"Xvfb"_s, argumente);
    if (!server.waitForReadyRead(20000)) {
        qFatal("Xvfb does not start");
    }
    wo = u':' + QString::fromUtf8(server.readAllStandardOutput()).trimmed();
}

Anzeige::~Anzeige()
{
    server.kill();
    server.waitForFinished();
}

QProcessEnvironment Anzeige::umgebung(const QString &busadresse) const
{
    auto liste = QProcessEnvironment::systemEnvironment();
    for (const QString &name : {u"WAYLAND_DISPLAY"_s, u"XDG_CURRENT_DESKTOP"_s, u"XAUTHORITY"_s,
                                u"DESKTOP_SESSION"_s, u"QT_QPA_PLATFORMTHEME"_s}) {
        liste.remove(name);
    }
    liste.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
    liste.insert(u"DISPLAY"_s, wo);
    liste.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, busadresse);
    liste.insert(u"HOME"_s, ablage.path());
    liste.insert(u"XDG_RUNTIME_DIR"_s, ablage.path());
    liste.insert(u"NO_AT_BRIDGE"_s, u"1"_s);
    for (const QString &name : {u"XDG_CONFIG_HOME"_s, u"XDG_CACHE_HOME"_s, u"XDG_DATA_HOME"_s}) {
        liste.insert(name, ablage.filePath(name));
    }
    return liste;
}

void Anzeige::ausfuehren(const QString &werkzeug, const QStringList &argumente) const
{
    [[maybe_unused]] const QString ungelesen = ausgabe(werkzeug, argumente);
}

QString Anzeige::ausgabe(const QString &werkzeug, const QStringList &argumente) const
{
    QProcess prozess;
    prozess.setProcessEnvironment(umgebung(u"disabled:"_s));
    prozess.start(werkzeug, argumente);
    prozess.waitForFinished();
    return QString::fromUtf8(prozess.readAllStandardOutput());
}

void Anzeige::klicken(QPoint punkt, int knopf) const
{
    ausfuehren(u"xdotool"_s, {u"mousemove"_s, QString::number(punkt.x()),
                              QString::number(punkt.y()), u"click"_s, QString::number(knopf)});
}

QImage Anzeige::bild() const
{
    const QString ort = ablage.filePath(u"bild.png"_s);
    ausfuehren(u"import"_s, {u"-silent"_s, u"-window"_s, u"root"_s, ort});
    return QImage(ort).convertToFormat(QImage::Format_RGB32);
}

} // namespace kalvaro
