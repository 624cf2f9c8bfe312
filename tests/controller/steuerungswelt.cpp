#include "steuerungswelt.h"

#include <QMenu>
#include <QRegularExpression>

namespace kalvaro {

using namespace Qt::StringLiterals;

Steuerungswelt::~Steuerungswelt()
{
    beenden();
}

void Steuerungswelt::starten(bool hintergrund, const Steuerung::Fensterruf &neuesFenster,
                             Transport *anderes)
{
    beenden();
    ablauf = std::make_unique<Ablauf>(konto, mitNetz(anderes != nullptr ? *anderes : netz));
    steuerung = std::make_unique<Steuerung>(*ablauf, hintergrund, neuesFenster);
    vor();
}

void Steuerungswelt::beenden()
{
    steuerung.reset();
    ablauf.reset();
}

QStringList Steuerungswelt::anfragen() const
{
    return netz.zeilen().filter(QRegularExpression(u"^(?!GET http://cloud/api/status$)"_s));
}

QString Steuerungswelt::kopf() const
{
    return statusobjekt.menue->actions().first()->text();
}

QAction *Steuerungswelt::zeile(const QString &text) const
{
    const auto zeilen = statusobjekt.menue->actions();
    for (QAction *aktion : zeilen) {
        if (aktion->text() == text) {
            return aktion;
        }
    }
    qFatal("The menu has no row %s", qPrintable(text));
}

QString Steuerungswelt::beschriftung(const QString &name) const
{
    const Hauptfenster *const fenster = steuerung->fenster();
    const auto *const element = fenster != nullptr ? fenster->findChild<QWidget *>(name) : nullptr;
    return element != nullptr ? element->property("text").toString() : QString();
}

} // namespace kalvaro
