#pragma once

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>

#include <functional>
#include <memory>

namespace kalvaro {

// A server on loopback that answers with raw bytes from a script and keeps every byte that it
// receives, connection by connection.
class Rohserver final : public QObject
{
    Q_OBJECT

public:
    enum class Ende { Schliessen, Offenlassen, Abbrechen }; // Abbrechen: the peer sees a reset

    // What happens on one connection.
    struct Schritt
    {
        QByteArray bytes = {}; // sent when the request is complete
        Ende ende = Ende::Schliessen;
        bool ungefragt = false;           // sends without waiting for a request
        QByteArray endlos = {};           // sent after `bytes`, over and over
        std::function<void()> zuvor = {}; // called right before `bytes` are sent
    };

    // Listens on a free port of `wo`, or on `port`. With `server` (say a QSslServer) on that one.
    explicit Rohserver(const QHostAddress &wo = QHostAddress::LocalHost,
                       std::unique_ptr<QTcpServer> server = std::make_unique<QTcpServer>(),
                       quint16 port = 0);

    // An answer of HTTP/1.1 with Content-Length; `kopf` holds further lines, each with its CRLF.
    [[nodiscard]] static QByteArray antwort(int status, const QByteArray &daten = {},
                                            const QByteArray &kopf = {});
    // An answer without a body.
    [[nodiscard]] static QByteArray umleitung(int status, const QString &ort);

    // The script: one entry per connection in order of their coming, then `sonst` for ever.
    void dann(const Schritt &s) { schritte.append(s); }
    void dann(const QByteArray &bytes) { schritte.append(Schritt{.bytes = bytes}); }
    void sonst(const Schritt &s) { uebrige = s; }

    // Stops listening: from now on connections are refused.
    void verweigern() { lauscher->close(); }

    // Sends more on connection `nummer`; true when it is still open.
    bool schreiben(const QByteArray &bytes, qsizetype nummer = 0);
    void trennen(qsizetype nummer = 0);

    [[nodiscard]] quint16 port() const { return hafen; }
    [[nodiscard]] QString host() const; // an IPv6 address in brackets
    [[nodiscard]] QString adresse(const QString &schema = QStringLiteral("http")) const;

    // What each connection brought, in order of their coming. The names of header lines, which mean
    // the same in any case (RFC 9110, 5.1), begin each word with a capital: newer QtNetwork writes
    // them in small letters.
    [[nodiscard]] QList<QByteArray> empfangen() const;
    // How many connections brought anything: QtNetwork may connect once more and say nothing.
    [[nodiscard]] qsizetype befragt() const;
    [[nodiscard]] qsizetype verbindungen() const { return std::ssize(alle); }
    [[nodiscard]] qsizetype offen() const; // connections that neither side has closed
    [[nodiscard]] qint64 gesendet() const { return hinaus; }

private:
    struct Verbindung
    {
        QPointer<QTcpSocket> leitung;
        Schritt schritt;
        QByteArray empfangen;
        bool beantwortet = false;
    };

    void annehmen();
    void lesen(Verbindung &v);
    void beantworten(Verbindung &v);
    void nachlegen(Verbindung &v);
    void beenden(Verbindung &v);

    std::unique_ptr<QTcpServer> lauscher;
    quint16 hafen = 0;
    QList<Schritt> schritte;
    Schritt uebrige{.bytes = antwort(200, "{}")};
    std::vector<std::unique_ptr<Verbindung>> alle;
    qint64 hinaus = 0;
};

} // namespace kalvaro
