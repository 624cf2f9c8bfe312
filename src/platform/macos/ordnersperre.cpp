#include "platform/macos/ordnersperre.h"

#include "foundation/konstanten.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>
#include <QTimer>

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

// Guests bring their message along; who does not has nothing to say. None of ours waits longer than
// three seconds for an answer.
constexpr qsizetype meisteGaeste = 64;
constexpr std::chrono::seconds laengsterBesuch{5};

constexpr qint64 groessteNachricht = 64 * 1024; // bytes
constexpr char zusage = 1;

int rest(const QDeadlineTimer &bis)
{
    return static_cast<int>(bis.remainingTime());
}

} // namespace

Ordnersperre::Ordnersperre(const QString &ordner,
                           std::function<bool(const QByteArray &)> angekommen)
    : ordner_(ordner)
    , angekommen_(std::move(angekommen))
{
    QDir().mkpath(ordner_);
}

// The socket goes before the lock: the next holder opens its own.
Ordnersperre::~Ordnersperre()
{
    for (QLocalSocket *const gast : std::exchange(gaeste_, {})) {
        gast->disconnect(this);
        gast->abort();
    }
    tuer_.reset();
    if (sperre_ >= 0) {
        ::close(sperre_);
    }
}

QString Ordnersperre::socketort(const QString &ordner)
{
    constexpr auto laengster = static_cast<qsizetype>(sizeof(sockaddr_un::sun_path)) - 1;
    const QString hier = ordner + u'/' + KENNUNG + u".socket"_s;
    if (QFile::encodeName(hier).size() <= laengster) {
        return hier;
    }
    const QByteArray kurz = QCryptographicHash::hash(ordner.toUtf8(), QCryptographicHash::Sha256);
    return QDir::tempPath() + u"/kalvaro-"_s + QString::fromLatin1(kurz.toHex().first(16));
}

Ordnersperre::Stand Ordnersperre::nehmen()
{
    // The file stays for good: removing it would let two processes lock two files of one name.
    const QByteArray datei = QFile::encodeName(ordner_ + u'/' + KENNUNG + u".lock"_s);
    constexpr int wie = O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
    int fd = ::open(datei.constData(), O_RDWR | O_CREAT | wie, 0600);
    if (fd < 0) { // a folder that can only be read since may hold one from before
        fd = ::open(datei.constData(), O_RDONLY | wie);
    }
    struct stat art = {};
    if (fd < 0 || ::fstat(fd, &art) != 0 || !S_ISREG(art.st_mode)) {
        ::close(fd);
        return Stand::Unmoeglich;
    }
    if (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
        const bool vergeben = errno == EWOULDBLOCK;
        ::close(fd);
        return vergeben ? Stand::Vergeben : Stand::Unmoeglich;
    }
    sperre_ = fd;
    horchen();
    return Stand::Gehalten;
}

void Ordnersperre::horchen()
{
    constexpr int schlange = 1024; // starts that may wait until the event loop runs
    const QString ort = socketort(ordner_);
    QLocalServer::removeServer(ort);
    tuer_ = std::make_unique<QLocalServer>();
    tuer_->setSocketOptions(QLocalServer::UserAccessOption);
    tuer_->setListenBacklogSize(schlange);
    connect(tuer_.get(), &QLocalServer::newConnection, this, &Ordnersperre::annehmen);
    tuer_->listen(ort);
}

// What has come meanwhile is taken, also from those who did not wait for it.
void Ordnersperre::ruhen(bool ja)
{
    ruht_ = ja;
    if (!ja) {
        const auto alle = gaeste_;
        for (QLocalSocket *const gast : alle) {
            lesen(gast);
            if (!ruht_ && gast->state() == QLocalSocket::UnconnectedState) {
                verabschieden(gast);
            }
        }
        annehmen();
    }
}

Ordnersperre::Antwort Ordnersperre::fragen(const QByteArray &nachricht,
                                           const QDeadlineTimer &bis) const
{
    QLocalSocket gespraech;
    gespraech.connectToServer(socketort(ordner_));
    if (!gespraech.waitForConnected(rest(bis))) {
        return bis.hasExpired() ? Antwort::Stumm : Antwort::Niemand;
    }
    gespraech.write(nachricht + '\n');
    while (gespraech.bytesAvailable() == 0 && !bis.hasExpired()) {
        if (!gespraech.waitForReadyRead(rest(bis)) &&
            gespraech.state() != QLocalSocket::ConnectedState) {
            break;
        }
    }
    char wort = 0;
    if (gespraech.getChar(&wort) && wort == zusage) {
        return Antwort::Angenommen;
    }
    return gespraech.state() == QLocalSocket::ConnectedState ? Antwort::Stumm : Antwort::Niemand;
}

// Who finds no room waits at the door.
void Ordnersperre::annehmen()
{
    while (tuer_ && gaeste_.size() < meisteGaeste) {
        QLocalSocket *const gast = tuer_->nextPendingConnection();
        if (gast == nullptr) {
            return;
        }
        gaeste_.insert(gast);
        gast->setReadBufferSize(groessteNachricht);
        connect(gast, &QLocalSocket::readyRead, this, [this, gast] { lesen(gast); });
        connect(gast, &QLocalSocket::disconnected, this, [this, gast] {
            if (!ruht_) {
                verabschieden(gast);
            }
        });
        QTimer::singleShot(laengsterBesuch, gast, [this, gast] { verabschieden(gast); });
        lesen(gast);
    }
}

void Ordnersperre::lesen(QLocalSocket *gast)
{
    if (ruht_ || !gaeste_.contains(gast)) {
        return;
    }
    if (gast->canReadLine()) {
        if (angekommen_(gast->readLine().chopped(1))) {
            gast->write(&zusage, 1);
            gast->flush();
        } else {
            ruhen(true);
        }
        verabschieden(gast);
    } else if (gast->bytesAvailable() >= groessteNachricht) {
        verabschieden(gast);
    }
}

void Ordnersperre::verabschieden(QLocalSocket *gast)
{
    if (gaeste_.remove(gast)) {
        gast->disconnect(this);
        gast->disconnectFromServer();
        gast->deleteLater();
        QMetaObject::invokeMethod(this, &Ordnersperre::annehmen, Qt::QueuedConnection);
    }
}

} // namespace kalvaro
