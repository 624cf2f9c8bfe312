#pragma once

#include <QDBusAbstractAdaptor>
#include <QDBusArgument>
#include <QDBusVariant>
#include <QList>
#include <QPointer>
#include <QStringList>
#include <QVariantMap>

#include <functional>

class QAction;
class QMenu;

namespace kalvaro {

// A row of the menu as it goes over the bus. (ia{sv})
struct Zeilenwerte
{
    int id = 0;
    QVariantMap werte{};

    bool operator==(const Zeilenwerte &) const = default;
};

// The names of values that a row no longer has. (ias)
struct Zeilenverlust
{
    int id = 0;
    QStringList namen{};
};

// A row and, for the menu itself, its rows. (ia{sv}av)
struct Zeilenbaum
{
    Zeilenwerte zeile{};
    QList<Zeilenwerte> kinder{};
};

// What the user does to a row. (isvu)
struct Zeilenereignis
{
    int id = 0;
    QString art{};
    QDBusVariant angabe{};
    uint zeitpunkt = 0;
};

QDBusArgument &operator<<(QDBusArgument &ziel, const Zeilenwerte &wert);
const QDBusArgument &operator>>(const QDBusArgument &quelle, Zeilenwerte &wert);
QDBusArgument &operator<<(QDBusArgument &ziel, const Zeilenverlust &wert);
const QDBusArgument &operator>>(const QDBusArgument &quelle, Zeilenverlust &wert);
QDBusArgument &operator<<(QDBusArgument &ziel, const Zeilenbaum &wert);
const QDBusArgument &operator>>(const QDBusArgument &quelle, Zeilenbaum &wert);
QDBusArgument &operator<<(QDBusArgument &ziel, const Zeilenereignis &wert);
const QDBusArgument &operator>>(const QDBusArgument &quelle, Zeilenereignis &wert);

// The menu of the item, drawn by the panel: com.canonical.dbusmenu, version 3. One without menus
// inside; its rows have their place, from 1, as id.
class Leistenmenue final : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ fassung)
    Q_PROPERTY(QString TextDirection READ richtung)
    Q_PROPERTY(QString Status READ zustand)
    Q_PROPERTY(QStringList IconThemePath READ themenordner)

public:
    // `gewaehlt` is called, from the event loop, with a row that the user has chosen.
    Leistenmenue(QObject *objekt, std::function<void(QAction &)> gewaehlt);

    // Shows `menue` from now on, and follows it while it lives.
    void setzen(QMenu *menue);

    [[nodiscard]] uint fassung() const { return 3; }
    [[nodiscard]] QString richtung() const;
    [[nodiscard]] QString zustand() const { return QStringLiteral("normal"); }
    [[nodiscard]] QStringList themenordner() const { return {}; }

    bool eventFilter(QObject *wer, QEvent *was) override;

public Q_SLOTS:
    uint GetLayout(int id, int tiefe, const QStringList &namen, kalvaro::Zeilenbaum &baum);
    QList<kalvaro::Zeilenwerte> GetGroupProperties(const QList<int> &ids, const QStringList &namen);
    QDBusVariant GetProperty(int id, const QString &name);
    void Event(int id, const QString &art, const QDBusVariant &angabe, uint zeitpunkt);
    QList<int> EventGroup(const QList<kalvaro::Zeilenereignis> &ereignisse);
    bool AboutToShow(int id);
    QList<int> AboutToShowGroup(const QList<int> &ids, QList<int> &unbekannt);

Q_SIGNALS:
    void ItemsPropertiesUpdated(const QList<kalvaro::Zeilenwerte> &neu,
                                const QList<kalvaro::Zeilenverlust> &verloren);
    void LayoutUpdated(uint stand, int id);
    void ItemActivationRequested(int id, uint zeitpunkt);

private:
    [[nodiscard]] QAction *zeile(int id) const;
    [[nodiscard]] QList<Zeilenwerte> zeilen() const;
    [[nodiscard]] Zeilenwerte werte(int id, const QStringList &namen) const;
    bool nachfuehren();

    const std::function<void(QAction &)> gewaehlt_;
    QPointer<QMenu> menue_;
    QList<Zeilenwerte> bekannt_; // as the panels know it
    uint stand_ = 1;
    bool geaendert_ = false; // since bekannt_
};

} // namespace kalvaro

Q_DECLARE_METATYPE(kalvaro::Zeilenwerte)
Q_DECLARE_METATYPE(kalvaro::Zeilenverlust)
Q_DECLARE_METATYPE(kalvaro::Zeilenbaum)
Q_DECLARE_METATYPE(kalvaro::Zeilenereignis)
