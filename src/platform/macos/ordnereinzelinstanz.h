#pragma once

#include "foundation/datenordner.h"
#include "platform/einzelinstanz.h"
#include "platform/macos/ordnersperre.h"

#include <QDeadlineTimer>
#include <QObject>

#include <memory>
#include <vector>

namespace kalvaro {

// Single instance by a lock in the data folder. LaunchServices keeps to one of each bundle, but
// launchd and a terminal start the executable itself, and a picture may be drawn beside.
class OrdnerEinzelinstanz final : public QObject, public Einzelinstanz
{
    Q_OBJECT

public:
    explicit OrdnerEinzelinstanz(QString ordner = appOrdner());
    ~OrdnerEinzelinstanz() override;

    // Where the folder allows for no lock, each start runs, and says so in its log.
    [[nodiscard]] Belegung belegen(std::optional<Wunsch> wunsch) override;

    // Whether this one has been told that it is the first.
    [[nodiscard]] bool belegt() const { return erste_; }

    void beiWunsch(std::function<void(Wunsch)> ruf) override;

    // Somebody wants something. Answers at once, acts from the event loop. False when the program
    // is about to end: then somebody else has to be asked.
    [[nodiscard]] bool bitten(std::optional<Wunsch> wunsch);

    // Sees the application's wish to end.
    bool eventFilter(QObject *wer, QEvent *was) override;

private:
    [[nodiscard]] Belegung ersteWerden();
    void endeErwarten();
    void ausfuehren(Wunsch wunsch);

    const QString ordner_;
    bool erste_ = false;
    bool endet_ = false; // the event loop has been told to end, or will be
    std::unique_ptr<Ordnersperre> sperre_;
    std::function<void(Wunsch)> ruf_;
    std::vector<Wunsch> versaeumt_; // came when there was nobody to call
};

} // namespace kalvaro
