#pragma once

#include "platform/linux/dbusverbindung.h"
#include "platform/linux/traysymbol.h"

#include <QDBusAbstractAdaptor>
#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QList>
#include <QObject>
#include <QPoint>

#include <functional>

class QAction;
class QMenu;

namespace kalvaro {

class Leistenmenue;
class Leistendienst;

// A picture as it goes over the bus, ARGB32 in network byte order. (iiay)
struct Leistenbild
{
    int breite = 0;
    int hoehe = 0;
    QByteArray bytes{};
};

// (sa(iiay)ss)
struct Leistenhinweis
{
    QString symbol{};
    QList<Leistenbild> bilder{};
    QString titel{};
    QString text{};
};

QDBusArgument &operator<<(QDBusArgument &ziel, const Leistenbild &wert);
const QDBusArgument &operator>>(const QDBusArgument &quelle, Leistenbild &wert);
QDBusArgument &operator<<(QDBusArgument &ziel, const Leistenhinweis &wert);
const QDBusArgument &operator>>(const QDBusArgument &quelle, Leistenhinweis &wert);

// The item in a tray that speaks "StatusNotifierItem" 0.1, under the names of org.kde that desktops
// use. The panel draws it and its menu; a click with the main button opens that menu too.
//
// In place of QSystemTrayIcon, which serves one kind of tray for the whole life of a process, takes
// "_" in a text for the mark of a key, and lets the main button open a menu of another look.
class Leisteneintrag final : public QObject
{
    Q_OBJECT

public:
    // `gedrueckt` is called when a panel leaves it to the program to show the menu.
    Leisteneintrag(const QDBusConnection &sitzung, std::function<void()> gedrueckt);
    ~Leisteneintrag() override;

    // Makes itself known to the watcher that is there now.
    void anmelden();

    // `thema`: the name under which a panel finds the drawing in its icon theme; empty when it is
    // not there.
    void symbolSetzen(const QString &name, const Leistentinte &tinte, const QString &thema);
    void hinweisSetzen(const QString &hinweis);
    void menueSetzen(QMenu *menue);

private:
    friend class Leistendienst;
    void gewaehlt(QAction &aktion);

    QDBusConnection bus_;
    const QString name_;
    const std::function<void()> gedrueckt_;
    QObject element_;     // what stands on the bus
    QObject menueobjekt_; // the same for the menu
    Leistendienst *const dienst_;
    Leistenmenue *const menue_;

    QString symbol_;
    Leistentinte tinte_;
    QString thema_;
    QString hinweis_;
    QByteArray marke_; // of the click that is about to come
};

// org.kde.StatusNotifierItem
class Leistendienst final : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ kategorie)
    Q_PROPERTY(QString Id READ kennung)
    Q_PROPERTY(QString Title READ titel)
    Q_PROPERTY(QString Status READ zustand)
    Q_PROPERTY(int WindowId READ fenster)
    Q_PROPERTY(QString IconThemePath READ leer)
    Q_PROPERTY(QDBusObjectPath Menu READ menue)
    Q_PROPERTY(bool ItemIsMenu READ istMenue)
    Q_PROPERTY(QString IconName READ symbol)
    Q_PROPERTY(QList<kalvaro::Leistenbild> IconPixmap READ bilder)
    Q_PROPERTY(QString OverlayIconName READ leer)
    Q_PROPERTY(QList<kalvaro::Leistenbild> OverlayIconPixmap READ keineBilder)
    Q_PROPERTY(QString AttentionIconName READ leer)
    Q_PROPERTY(QList<kalvaro::Leistenbild> AttentionIconPixmap READ keineBilder)
    Q_PROPERTY(QString AttentionMovieName READ leer)
    Q_PROPERTY(kalvaro::Leistenhinweis ToolTip READ hinweis)

public:
    Leistendienst(QObject *objekt, Leisteneintrag *eintrag);

    [[nodiscard]] QString kategorie() const { return QStringLiteral("ApplicationStatus"); }
    [[nodiscard]] QString kennung() const { return QStringLiteral("kalvaro"); }
    [[nodiscard]] QString titel() const { return QStringLiteral("kalvaro"); }
    [[nodiscard]] QString zustand() const { return QStringLiteral("Active"); }
    [[nodiscard]] int fenster() const { return 0; }
    [[nodiscard]] QString leer() const { return {}; }
    [[nodiscard]] QDBusObjectPath menue() const;
    [[nodiscard]] bool istMenue() const { return true; }
    [[nodiscard]] QString symbol() const { return eintrag_->thema_; }
    [[nodiscard]] QList<Leistenbild> bilder() const;
    [[nodiscard]] QList<Leistenbild> keineBilder() const { return {}; }
    [[nodiscard]] Leistenhinweis hinweis() const { return {{}, {}, eintrag_->hinweis_, {}}; }

public Q_SLOTS:
    void Activate(int x, int y);
    void ContextMenu(int x, int y);
    void SecondaryActivate(int x, int y);
    void Scroll(int weite, const QString &richtung);
    void ProvideXdgActivationToken(const QString &marke);

Q_SIGNALS:
    void NewTitle();
    void NewIcon();
    void NewAttentionIcon();
    void NewOverlayIcon();
    void NewToolTip();
    void NewStatus(const QString &zustand);

private:
    Leisteneintrag *const eintrag_;
};

} // namespace kalvaro

Q_DECLARE_METATYPE(kalvaro::Leistenbild)
Q_DECLARE_METATYPE(kalvaro::Leistenhinweis)
