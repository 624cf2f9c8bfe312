#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusServiceWatcher>
#include <QList>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

namespace kalvaro {

// One row of a menu, "com.canonical.dbusmenu" version 3.
struct Menuezeile
{
    int id = 0;
    QVariantMap angaben; // "label", "enabled", "toggle-state", "type" …
    QList<Menuezeile> kinder;
};

struct Pixmap
{
    int breite = 0;
    int hoehe = 0;
    QByteArray bytes; // ARGB32 in network byte order
};

// Tray of a desktop: watcher and host of "StatusNotifierItem" 0.1 under the names of org.kde. Items
// live in another process, and what is asked of them here waits for their answer.
class Statushost : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ elemente)
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hostDa)
    Q_PROPERTY(int ProtocolVersion READ fassung)

public:
    // With `mitHost` false, only the watcher is there until hostAnmelden().
    explicit Statushost(const QDBusConnection &bus, bool mitHost = true);
    ~Statushost() override;

    void hostAnmelden();
    void hostAbmelden();

    // The bus names of the items that are there.
    [[nodiscard]] QStringList elemente() const { return angemeldet; }
    [[nodiscard]] bool hostDa() const
    {
        ++gefragt;
        return host;
    }

    // How often somebody has asked whether there is a host.
    [[nodiscard]] int fragen() const { return gefragt; }
    [[nodiscard]] int fassung() const { return 0; }

    [[nodiscard]] QVariant eigenschaft(const QString &name) const;
    [[nodiscard]] QList<Pixmap> pixmaps() const;
    [[nodiscard]] QString hinweis() const;

    void klicken() const;

    // Hands over the activation token of the click that follows.
    void markeGeben(const QString &marke) const;

    // Tells the menu that it is about to open, as a panel does before it shows it.
    void menueOeffnen() const;
    [[nodiscard]] QList<Menuezeile> menue() const;
    void menueKlicken(int id) const;

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString &dienst);
    void RegisterStatusNotifierHost(const QString &dienst);

Q_SIGNALS:
    void StatusNotifierItemRegistered(const QString &dienst);
    void StatusNotifierItemUnregistered(const QString &dienst);
    void StatusNotifierHostRegistered();
    void StatusNotifierHostUnregistered();

private:
    [[nodiscard]] QDBusMessage rufen(const QString &pfad, const QString &schnittstelle,
                                     const QString &methode, const QVariantList &werte) const;
    [[nodiscard]] QString menuepfad() const;

    QDBusConnection bus;
    QDBusServiceWatcher waechter;
    QStringList angemeldet;
    bool host;
    mutable int gefragt = 0;
};

} // namespace kalvaro
