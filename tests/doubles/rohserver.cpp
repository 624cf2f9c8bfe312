#include "doubles/rohserver.h"

#include <QHostAddress>

#include <sys/socket.h>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

// Whether `bytes` hold a whole request: the header lines and as much body as they announce.
bool vollstaendig(const QByteArray &bytes)
{
    const qsizetype ende = bytes.indexOf("\r\n\r\n");
    if (ende < 0) {
        return false;
    }
    qsizetype laenge = 0;
    const QList<QByteArray> zeilen = bytes.left(ende).split('\n');
    for (const QByteArray &zeile : zeilen) {
        if (zeile.toLower().startsWith("content-length:")) {
            laenge = zeile.mid(15).trimmed().toLongLong();
        }
    }
    return bytes.size() >= ende + 4 + laenge;
}

// Each word of the names of the header lines begun with a capital.
QByteArray mitGrossenNamen(QByteArray bytes)
{
    const qsizetype ende = bytes.indexOf("\r\n\r\n");
    bool imNamen = false;
    bool anfang = false;
    for (qsizetype i = bytes.indexOf("\r\n"); i >= 0 && i < ende; ++i) {
        char &zeichen = bytes[i];
        if (zeichen == '\n') {
            imNamen = anfang = true;
        } else if (zeichen == ':') {
            imNamen = false;
        } else if (imNamen) {
            if (anfang && zeichen >= 'a' && zeichen <= 'z') {
                zeichen = static_cast<char>(zeichen - 'a' + 'A');
            }
            anfang = zeichen == '-';
        }
    }
    return bytes;
}

} // namespace

Rohserver::Rohserver(const QHostAddress &wo, std::unique_ptr<QTcpServer> server, quint16 port)
    : lauscher(std::move(server))
{
    connect(lauscher.get(), &QTcpServer::pendingConnectionAvailable, this, &Rohserver::annehmen);
    if (!lauscher->listen(wo, port)) {
        qFatal("The test server cannot listen: %s", qPrintable(lauscher->errorString()));
    }
    hafen = lauscher->serverPort();
}

QByteArray Rohserver::antwort(int status, const QByteArray &daten, const QByteArray &kopf)
{
    return "HTTP/1.1 " + QByteArray::number(status) + " x\r\n" + kopf +
           "Content-Length: " + QByteArray::number(daten.size()) + "\r\n\r\n" + daten;
}

QByteArray Rohserver::umleitung(int status, const QString &ort)
{
    return antwort(status, {}, "Location: " + ort.toUtf8() + "\r\n");
}

bool Rohserver::schreiben(const QByteArray &bytes, qsizetype nummer)
{
    QTcpSocket *leitung = alle.at(static_cast<std::size_t>(nummer))->leitung;
    if (!leitung || leitung->state() != QAbstractSocket::ConnectedState) {
        return false;
    }
    leitung->write(bytes);
    leitung->flush();
    return true;
}

void Rohserver::trennen(qsizetype nummer)
{
    if (QTcpSocket *leitung = alle.at(static_cast<std::size_t>(nummer))->leitung) {
        leitung->disconnectFromHost();
    }
}

QString Rohserver::host() const
{
    const QString wo = lauscher->serverAddress().toString();
    return wo.contains(u':') ? u'[' + wo + u']' : wo;
}

QString Rohserver::adresse(const QString &schema) const
{
    return schema + u"://"_s + host() + u':' + QString::number(hafen);
}

QList<QByteArray> Rohserver::empfangen() const
{
    QList<QByteArray> liste;
    for (const auto &v : alle) {
        liste.append(mitGrossenNamen(v->empfangen));
    }
    return liste;
}

qsizetype Rohserver::befragt() const
{
    return std::count_if(alle.begin(), alle.end(),
                         [](const auto &v) { return !v->empfangen.isEmpty(); });
}

qsizetype Rohserver::offen() const
{
    return std::count_if(alle.begin(), alle.end(), [](const auto &v) {
        return v->leitung && v->leitung->state() == QAbstractSocket::ConnectedState;
    });
}

void Rohserver::annehmen()
{
    while (QTcpSocket *leitung = lauscher->nextPendingConnection()) {
        alle.push_back(std::make_unique<Verbindung>());
        Verbindung &v = *alle.back();
        v.leitung = leitung;
        v.schritt = schritte.isEmpty() ? uebrige : schritte.takeFirst();
        leitung->setParent(this);
        connect(leitung, &QTcpSocket::readyRead, this, [this, &v] { lesen(v); });
        connect(leitung, &QTcpSocket::bytesWritten, this, [this, &v](qint64 anzahl) {
            hinaus += anzahl;
            nachlegen(v);
        });
        connect(leitung, &QTcpSocket::disconnected, leitung, &QObject::deleteLater);
        if (v.schritt.ungefragt) {
            beantworten(v);
        }
        lesen(v);
    }
}

void Rohserver::lesen(Verbindung &v)
{
    if (!v.leitung || !v.leitung->isOpen()) {
        return;
    }
    v.empfangen += v.leitung->readAll();
    if (!v.beantwortet && vollstaendig(v.empfangen)) {
        beantworten(v);
    }
}

void Rohserver::beantworten(Verbindung &v)
{
    v.beantwortet = true;
    if (v.schritt.zuvor) {
        v.schritt.zuvor();
    }
    v.leitung->write(v.schritt.bytes);
    v.leitung->flush();
    if (v.schritt.endlos.isEmpty()) {
        beenden(v);
    } else {
        nachlegen(v);
    }
}

void Rohserver::nachlegen(Verbindung &v)
{
    constexpr qint64 vorrat = qint64{1024} * 1024;
    const bool offen = v.leitung && v.leitung->state() == QAbstractSocket::ConnectedState;
    while (offen && !v.schritt.endlos.isEmpty() && v.leitung->bytesToWrite() < vorrat) {
        v.leitung->write(v.schritt.endlos);
    }
}

void Rohserver::beenden(Verbindung &v)
{
    switch (v.schritt.ende) {
    case Ende::Schliessen:
        v.leitung->disconnectFromHost();
        break;
    case Ende::Offenlassen:
        break;
    case Ende::Abbrechen: {
        v.leitung->waitForBytesWritten(1000);
        const linger sofort{.l_onoff = 1, .l_linger = 0};
        ::setsockopt(static_cast<int>(v.leitung->socketDescriptor()), SOL_SOCKET, SO_LINGER,
                     &sofort, sizeof sofort);
        v.leitung->abort();
        break;
    }
    }
}

} // namespace kalvaro
