#include "platform/linux/logindwache.h"

#include <QFileInfo>
#include <QUuid>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

// The path of the bus's socket; empty when it has none.
QString socketpfad(const QString &adresse)
{
    const qsizetype anfang = adresse.indexOf(u"unix:path="_s);
    if (anfang < 0) {
        return {};
    }
    const QString rest = adresse.mid(anfang + 10);
    const QString pfad = rest.section(u',', 0, 0).section(u';', 0, 0);
    return QString::fromUtf8(QByteArray::fromPercentEncoding(pfad.toUtf8()));
}

} // namespace

Logindwache::Logindwache(Uhr &uhr, std::function<void()> aufgewacht, QString adresse)
    : uhr_(uhr)
    , aufgewacht_(std::move(aufgewacht))
    , adresse_(std::move(adresse))
    , name_(u"logind-"_s + QUuid::createUuid().toString(QUuid::WithoutBraces))
{
    connect(&ordner_, &QFileSystemWatcher::directoryChanged, this, &Logindwache::neuVersuchen);
    verbinden();
}

Logindwache::~Logindwache()
{
    QDBusConnection::disconnectFromBus(name_);
}

void Logindwache::neuVersuchen()
{
    versuche_ = 0;
    verbinden();
}

void Logindwache::verbinden()
{
    naechsterVersuch_.reset();
    if (!verbunden_) {
        verbunden_ = angeschlossen();
        ordnerBeobachten();
    }
    if (!verbunden_ && QFileInfo::exists(socketpfad(adresse_))) {
        spaeterWieder();
    }
}

bool Logindwache::angeschlossen()
{
    if (!busAntwortet(adresse_, std::chrono::milliseconds(200))) {
        return false;
    }
    QDBusConnection bus = QDBusConnection::connectToBus(adresse_, name_);
    // By the service's name: signals of other senders do not count, and it may start later.
    return bus.isConnected() &&
           bus.connect(u"org.freedesktop.login1"_s, u"/org/freedesktop/login1"_s,
                       u"org.freedesktop.login1.Manager"_s, u"PrepareForSleep"_s, this,
                       SLOT(schlafWechselt(bool))) &&
           bus.connect({}, u"/org/freedesktop/DBus/Local"_s, u"org.freedesktop.DBus.Local"_s,
                       u"Disconnected"_s, this, SLOT(getrennt()));
}

// Watches the folder that the socket will appear in, or the nearest one above it that exists.
void Logindwache::ordnerBeobachten()
{
    const QStringList bisher = ordner_.directories();
    QString naechster = verbunden_ ? QString() : QFileInfo(socketpfad(adresse_)).path();
    while (naechster.startsWith(u'/') && naechster.size() > 1 && !QFileInfo(naechster).isDir()) {
        naechster = QFileInfo(naechster).path();
    }
    if (!bisher.isEmpty() && bisher != QStringList(naechster)) {
        ordner_.removePaths(bisher);
    }
    if (naechster.startsWith(u'/')) {
        ordner_.addPath(naechster);
    }
}

// A socket that does not answer belongs to a bus that is just starting, or is left of a dead one.
void Logindwache::spaeterWieder()
{
    constexpr int hoechstens = 12;
    constexpr Sekunden abstand{5};
    if (versuche_++ < hoechstens) {
        naechsterVersuch_ = uhr_.nach(abstand, [this] { verbinden(); });
    }
}

void Logindwache::schlafWechselt(bool beginnt)
{
    if (!beginnt) {
        aufgewacht_();
    }
}

void Logindwache::getrennt()
{
    QDBusConnection::disconnectFromBus(name_);
    verbunden_ = false;
    neuVersuchen();
}

} // namespace kalvaro
