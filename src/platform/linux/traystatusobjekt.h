#pragma once

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

protected:
    // The application's palette: what colour the symbol takes may follow it.
    bool eventFilter(QObject *objekt, QEvent *ereignis) override;

private:
    void erscheinen(Trayart art);
    void symbolZeichnen();
    void hinweisZeigen();
    void menueZeigen();
    [[nodiscard]] QColor leistenfarbe() const;

    XEmbedtray xembed_;
    QString symbol_;
    QString hinweis_;
    QPointer<QMenu> menue_;
    Trayart art_ = Trayart::StatusNotifier;
    std::unique_ptr<QSystemTrayIcon> zeichen_; // once there is a place for it
    Traywache wache_;
};

} // namespace kalvaro
