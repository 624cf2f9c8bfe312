#pragma once

#include "server/transport.h"

#include <QPointer>
#include <QStringList>

namespace kalvaro {

// A transport without a network: records every request and answers from a script, from the event
// loop. A request for which the script has nothing hangs until beantworten(), the death of its
// owner or, with a clock, its limit.
class Scripttransport final : public Transport
{
public:
    // The answer to a request; nothing: it hangs.
    using Plan = std::function<std::optional<Ergebnis>(const Netzanfrage &)>;

    // With `zeit`, which must outlive this object, a hanging request times out at its limit.
    explicit Scripttransport(Uhr *zeit = nullptr);
    ~Scripttransport() override;

    void senden(const Netzanfrage &anfrage, QObject *besitzer, Rueckruf fertig) override;

    // The queue: each entry serves one request, first come, first served. Requests past its end
    // are for the plan.
    void dann(Ergebnis ergebnis) { schlange.append(std::move(ergebnis)); }
    void dannHaengen() { schlange.append(std::nullopt); }
    void nach(Plan p) { plan = std::move(p); }

    [[nodiscard]] static Ergebnis antwort(int status, const QByteArray &daten = {});
    [[nodiscard]] static Ergebnis fehler(const QString &text);
    [[nodiscard]] static Ergebnis zeitUeberschritten();

    // Every request, in order.
    [[nodiscard]] const QList<Netzanfrage> &anfragen() const { return gesehen; }

    // Every request as "GET http://host/path", in order.
    [[nodiscard]] QStringList zeilen() const;

    // How many requests hang whose owner still lives.
    [[nodiscard]] qsizetype haengend() const;

    // Answers hanging request `welche` (0: the oldest).
    void beantworten(const Ergebnis &ergebnis, qsizetype welche = 0);

    // Forgets the requests seen so far; what hangs goes on hanging.
    void vergessen() { gesehen.clear(); }

private:
    class Austausch;

    [[nodiscard]] QList<Austausch *> wartende() const;

    Uhr *const uhr;
    QList<std::optional<Ergebnis>> schlange;
    Plan plan;
    QList<Netzanfrage> gesehen;
    QList<QPointer<Austausch>> alle; // in order of request
};

} // namespace kalvaro
