#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QList>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

namespace kalvaro {

// A notification server as the "Desktop Notifications Specification" 1.3 describes it. Records
// what it is sent; the test plays the user.
class Mitteilungsserver : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    // A call of Notify, as it came.
    struct Aufruf
    {
        uint id = 0;
        QString programm;
        uint ersetzt = 0;
        QString symbol;
        QString titel;
        QString inhalt;
        QStringList aktionen;
        QVariantMap hinweise;
        int dauer = 0;
    };

    // Takes the name on the bus with its first listen().
    Mitteilungsserver(const QDBusConnection &bus, QStringList faehigkeiten);
    ~Mitteilungsserver() override;

    // While true, nothing is answered.
    void schweigen(bool ja) { stumm = ja; }

    // What a click does: hands over `marke` unless it is empty, then invokes `aktion`.
    void klicken(uint id, const QString &marke, const QString &aktion = QStringLiteral("default"));
    void schliessen(uint id);

    [[nodiscard]] const QList<Aufruf> &mitteilungen() const { return erhalten; }
    [[nodiscard]] int fragen() const { return gefragt; }

public Q_SLOTS:
    QStringList GetCapabilities();
    QString GetServerInformation(QString &hersteller, QString &fassung, QString &norm);
    uint Notify(const QString &programm, uint ersetzt, const QString &symbol, const QString &titel,
                const QString &inhalt, const QStringList &aktionen, const QVariantMap &hinweise,
                int dauer);

private:
    void melden(const QString &signal, const QVariantList &werte);

    QDBusConnection bus;
    const QStringList kann;
    QList<Aufruf> erhalten;
    uint letzte = 0;
    int gefragt = 0;
    bool stumm = false;
};

} // namespace kalvaro
