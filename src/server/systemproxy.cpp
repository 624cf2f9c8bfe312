#include "server/systemproxy.h"

#include "foundation/deskriptoren.h"
#include "foundation/einmalruf.h"
#include "server/proxyumgebung.h"

#include <QFutureWatcher>
#include <QHostAddress>
#include <QNetworkProxyFactory>
#include <QPromise>

#include <system_error>
#include <thread>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr int fuerFragen = 16; // descriptors: for threads, modules, a helper, a connection

const Proxyliste direkt{QNetworkProxy::NoProxy};

// This machine, or one on the same wire: no proxy leads there.
bool istNah(const QString &host)
{
    const QHostAddress adresse(host);
    return host == u"localhost" || host.endsWith(u".localhost") || adresse.isLoopback() ||
           adresse.isLinkLocal();
}

// The one question that is under way, or was.
struct Offen
{
    QUrl ziel{};
    std::chrono::milliseconds seit{}; // in Uhr::laufzeit()
    QFuture<Proxyliste> antwort{};
};

Offen &offen()
{
    static Offen eine;
    return eine;
}

// The thread outlives the program's end if it must; it touches nothing of ours.
QFuture<Proxyliste> aufEigenemFaden(const QUrl &ziel)
{
    QPromise<Proxyliste> versprechen;
    versprechen.start();
    QFuture<Proxyliste> antwort = versprechen.future();
    try {
        std::thread([ziel, versprechen = std::move(versprechen)]() mutable {
            versprechen.addResult(
                QNetworkProxyFactory::systemProxyForQuery(QNetworkProxyQuery(ziel)));
            versprechen.finish();
        }).detach();
    } catch (const std::system_error &) {
        // No thread to be had: the promise goes and cancels the question.
    }
    return antwort;
}

class Proxyfrage final : public Einmalruf<Proxyliste>
{
public:
    Proxyfrage(QUrl ziel, Sekunden geduld, Uhr &uhr, QObject *besitzer, Ruf fertig)
        : Einmalruf(besitzer, std::move(fertig))
        , ziel_(std::move(ziel))
        , geduld_(geduld)
        , uhr_(uhr)
    {
    }

    void stellen()
    {
        if (istNah(ziel_.host()) || ohneProxy(ziel_)) {
            antworten(direkt);
            return;
        }
        if (const auto proxy = umgebungsproxy(ziel_)) {
            antworten(Proxyliste{*proxy, QNetworkProxy::NoProxy});
            return;
        }
        if (!deskriptorenFrei(fuerFragen)) {
            antworten(direkt);
            return;
        }
        frist_ = uhr_.nach(geduld_, [this] { antworten(direkt); });
        connect(&warter_, &QFutureWatcherBase::finished, this, &Proxyfrage::gekommen);
        fragen();
    }

private:
    void fragen()
    {
        Offen &frage = offen();
        if (frage.antwort.isRunning() && uhr_.laufzeit() - frage.seit > geduld_) {
            antworten(direkt);
            return;
        }
        if (!frage.antwort.isRunning()) {
            frage = {ziel_, uhr_.laufzeit(), aufEigenemFaden(ziel_)};
        }
        gefragt_ = frage.ziel;
        warter_.setFuture(frage.antwort);
    }

    void gekommen()
    {
        if (gefragt_ != ziel_) {
            fragen(); // that was somebody else's
            return;
        }
        const QFuture<Proxyliste> antwort = warter_.future();
        const Proxyliste liste = antwort.resultCount() > 0 ? antwort.result() : Proxyliste();
        antworten(liste.isEmpty() ? direkt : liste);
    }

    const QUrl ziel_;
    const Sekunden geduld_;
    Uhr &uhr_;
    Weckruf frist_;
    QUrl gefragt_;
    QFutureWatcher<Proxyliste> warter_;
};

} // namespace

void systemproxy(const QUrl &ziel, Sekunden geduld, Uhr &uhr, QObject *besitzer,
                 std::function<void(Proxyliste)> fertig)
{
    // What the system needs to know: no path, no password.
    QUrl gefragt;
    gefragt.setScheme(ziel.scheme());
    gefragt.setHost(ziel.host());
    gefragt.setPort(ziel.port());
    gefragt.setPath(u"/"_s);
    (new Proxyfrage(gefragt, geduld, uhr, besitzer, std::move(fertig)))->stellen();
}

} // namespace kalvaro
