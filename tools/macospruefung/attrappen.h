// For the check on other systems alone (cmake/macospruefung.cmake): what the stand-ins for Apple's
// frameworks answer, and what they have been asked. They keep to Apple's public documentation as
// far as kalvaro asks for it, and prove nothing about a Mac.
#pragma once

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <optional>
#include <vector>

namespace kalvaro::attrappen {

// What the frameworks answer, they answer later and on a thread of theirs: now, and before this
// returns.
void nachreichen();

// For the stand-ins: `antwort` is to be given then.
void spaeter(std::function<void()> antwort);

// NSWorkspace and NSApplication.
struct Arbeitsplatzlage
{
    struct Fehler
    {
        QString bereich;
        long nummer = 0;
    };

    QStringList laufende{}; // bundles of the applications that run; an empty one has none
    std::vector<Fehler>
        fehler{};            // why nothing opens, each with the next one beneath; empty: it does
    QStringList geoeffnet{}; // paths, with " vorn" where the application was to come to the front
    long auftritt = -1;      // the activation policy that was set last
    QString aussehen{};      // of the application object
};
Arbeitsplatzlage &arbeitsplatz();

// There is an application object from now on.
void anwendungDa();

// The computer has woken from sleep. Who observes that on the main queue has been called by the
// end.
void wecken();

// UNUserNotificationCenter, and the bundle that it serves.
struct Mitteilungslage
{
    struct Bitte
    {
        QString kennung;
        QString titel;
        QString inhalt;
        QMap<QString, QString> angaben; // the user info
        bool sofort = false;            // without a trigger
    };

    QString buendelkennung{};           // of the main bundle; empty: the program is in none
    std::vector<long> erlaubnisse{};    // that were asked for
    std::optional<QString> ablehnung{}; // why requests fail
    std::vector<Bitte> bitten{};
};
Mitteilungslage &mitteilungen();

// How a notification is to be shown while the program is in front; absent without an answer.
std::optional<long> zeigeart();

// A notification with `wert`, a text or a number, under `feld` of its user info is clicked, or has
// something else done to it. The answer is how often the delegate said that it was done.
int anfassen(const QString &feld, const QVariant &wert, bool geklickt);

// The Apple event with these codes arrives; false when nobody handles it.
bool ereignis(unsigned int klasse, unsigned int nummer);

// CoreFoundation and Quartz.
struct Systemlage
{
    std::optional<long long> frei{}; // bytes that the volume would have for what is important
    QString ort{};                   // what was asked about
    int lebende = 0;                 // objects that nobody has released yet
    bool sitzung = true;             // there is one with a window server
};
Systemlage &system();

} // namespace kalvaro::attrappen
