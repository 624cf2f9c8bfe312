#pragma once

#include "platform/linux/leisteneintrag.h"
#include "platform/linux/traywache.h"
#include "platform/statusobjekt.h"

#include <QObject>
#include <QPointer>

#include <memory>
#include <optional>

class QSystemTrayIcon;

namespace kalvaro {

// The item in the tray of a Linux desktop. Needs a QApplication.
class TrayStatusobjekt final : public QObject, public Statusobjekt
{
    Q_OBJECT

public:
    explicit TrayStatusobjekt(Uhr &uhr, const QDBusConnection &sitzung = sitzungsbus());
    ~TrayStatusobjekt() override;

    void symbolSetzen(const QString &name) override;
    void hinweisSetzen(const QString &hinweis) override;
    void menueSetzen(QMenu *menue) override;
    [[nodiscard]] bool erreichbar() const override;
    void beiWechsel(std::function<void()> gewechselt) override;

protected:
    // The application's palette: what colour the symbol takes may follow it.
    bool eventFilter(QObject *objekt, QEvent *ereignis) override;

private:
    void platzGewechselt(std::optional<Trayart> art);
    void einbetten();
    void symbolZeichnen();
    void hinweisZeigen();
    void menueZeigen();
    [[nodiscard]] Leistentinte tinte() const;

    XEmbedtray xembed_;
    QString symbol_;
    QString hinweis_;
    QPointer<QMenu> menue_;
    std::function<void()> gewechselt_;
    std::optional<Trayart> art_; // the place that there is
    bool angemeldet_ = false;    // with a watcher; only while that is the place
    Leisteneintrag eintrag_;
    std::unique_ptr<QSystemTrayIcon> zeichen_; // exactly while the place is XEmbed
    Traywache wache_;
};

} // namespace kalvaro
