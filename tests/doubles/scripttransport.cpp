#include "doubles/scripttransport.h"

#include <QObject>

namespace kalvaro {

using namespace Qt::StringLiterals;

// A request under way. A child of its owner, so that it ends with it.
class Scripttransport::Austausch final : public QObject
{
public:
    Austausch(QObject *besitzer, Rueckruf ruf)
        : QObject(besitzer)
        , fertig(std::move(ruf))
    {
    }

    void befristen(Uhr &zeit, Sekunden limit)
    {
        frist = zeit.nach(limit, [this] { rufen(zeitUeberschritten()); });
    }

    void beantworten(const Ergebnis &ergebnis)
    {
        wartet = false;
        frist.reset();
        QMetaObject::invokeMethod(
            this, [this, ergebnis] { rufen(ergebnis); }, Qt::QueuedConnection);
    }

    [[nodiscard]] bool haengt() const { return wartet; }

private:
    void rufen(const Ergebnis &ergebnis)
    {
        wartet = false;
        const Rueckruf ruf = std::move(fertig);
        deleteLater();
        ruf(ergebnis);
    }

    Rueckruf fertig;
    Weckruf frist;
    bool wartet = true;
};

Scripttransport::Scripttransport(Uhr *zeit)
    : uhr(zeit)
{
}

Scripttransport::~Scripttransport() = default;

void Scripttransport::senden(const Netzanfrage &anfrage, QObject *besitzer, Rueckruf fertig)
{
    gesehen.append(anfrage);
    auto *austausch = new Austausch(besitzer, std::move(fertig));
    alle.append(austausch);

    std::optional<Ergebnis> ergebnis;
    if (!schlange.isEmpty()) {
        ergebnis = schlange.takeFirst();
    } else if (plan) {
        ergebnis = plan(anfrage);
    }
    if (ergebnis) {
        austausch->beantworten(*ergebnis);
    } else if (uhr) {
        austausch->befristen(*uhr, anfrage.limit);
    }
}

Transport::Ergebnis Scripttransport::antwort(int status, const QByteArray &daten)
{
    return Netzantwort{status, daten};
}

Transport::Ergebnis Scripttransport::fehler(const QString &text)
{
    return tl::unexpected(Netzfehler{false, text});
}

Transport::Ergebnis Scripttransport::zeitUeberschritten()
{
    return tl::unexpected(Netzfehler{true, {}});
}

QStringList Scripttransport::zeilen() const
{
    QStringList liste;
    for (const Netzanfrage &a : gesehen) {
        liste.append(QString::fromLatin1(a.methode) + u' ' +
                     QString::fromLatin1(a.url.toEncoded()));
    }
    return liste;
}

QList<Scripttransport::Austausch *> Scripttransport::wartende() const
{
    QList<Austausch *> liste;
    for (const auto &austausch : alle) {
        if (austausch && austausch->haengt()) {
            liste.append(austausch);
        }
    }
    return liste;
}

qsizetype Scripttransport::haengend() const
{
    return wartende().size();
}

void Scripttransport::beantworten(const Ergebnis &ergebnis, qsizetype welche)
{
    const auto liste = wartende();
    if (welche >= liste.size()) {
        qFatal("There is no hanging request %lld", static_cast<long long>(welche));
    }
    liste.at(welche)->beantworten(ergebnis);
}

} // namespace kalvaro
