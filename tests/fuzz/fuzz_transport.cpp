// One exchange over the loopback; the input is what the server answers. A zero byte ends the answer
// to the first connection, what follows it answers the next one, to which a redirect may lead.

#include "fuzz/muss.h"
#include "server/netztransport.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTcpServer>
#include <QTcpSocket>

#include <memory>
#include <optional>

using namespace kalvaro;

namespace {

class Gegenueber : public QObject
{
public:
    explicit Gegenueber(QList<QByteArray> antworten)
        : antworten_(std::move(antworten))
    {
        muss(lauscher_.listen(QHostAddress::LocalHost), "a server");
        connect(&lauscher_, &QTcpServer::newConnection, this, [this] { annehmen(); });
    }

    [[nodiscard]] quint16 port() const { return lauscher_.serverPort(); }

    int posts = 0;

private:
    void annehmen()
    {
        QTcpSocket *const leitung = lauscher_.nextPendingConnection();
        auto bisher = std::make_shared<QByteArray>();
        connect(leitung, &QTcpSocket::readyRead, this, [this, leitung, bisher] {
            *bisher += leitung->readAll();
            if (!bisher->isNull() && bisher->contains("{}")) {
                posts += bisher->startsWith("POST ") ? 1 : 0;
                antworten(leitung);
                bisher->clear();
            } else if (bisher->startsWith("GET ") && bisher->contains("\r\n\r\n")) {
                antworten(leitung);
                bisher->clear();
            }
        });
        connect(leitung, &QTcpSocket::disconnected, leitung, &QObject::deleteLater);
    }

    void antworten(QTcpSocket *leitung)
    {
        leitung->write(antworten_.value(naechste_++));
        leitung->disconnectFromHost();
    }

    QTcpServer lauscher_;
    const QList<QByteArray> antworten_;
    qsizetype naechste_ = 0;
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *daten, std::size_t anzahl)
{
    static int argc = 1;
    static char name[] = "fuzz_transport";
    static char *argv[] = {name, nullptr};
    static QCoreApplication anwendung(argc, argv);
    static Systemuhr uhr;
    static Netztransport transport(uhr);

    Gegenueber server(bytes(daten, anzahl).split('\0'));
    QEventLoop schleife;
    int rufe = 0;
    QObject besitzer;
    const QString adresse = QStringLiteral("http://127.0.0.1:%1/api/abgleich").arg(server.port());
    transport.senden({.url = QUrl(adresse),
                      .methode = "POST",
                      .kopf = {{"X-Schluessel", "geheim"}, {"Content-Type", "application/json"}},
                      .body = "{}",
                      .limit = Sekunden(5)},
                     &besitzer, [&](const Transport::Ergebnis &ergebnis) {
                         ++rufe;
                         muss(!ergebnis || (ergebnis->status >= 200 && ergebnis->status <= 999),
                              "an answer is a final one");
                         muss(ergebnis || ergebnis.error().zeitUeberschritten ||
                                  !ergebnis.error().text.isEmpty(),
                              "a failure has a sentence");
                         schleife.quit();
                     });
    schleife.exec();
    muss(rufe == 1, "one answer");
    // 307 and 308 to the same service are the one way to a second one.
    muss(server.posts <= 11, "one request, and redirects");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return 0;
}
