#include "platform/linux/leistenmenue.h"

#include <QAction>
#include <QDBusMetaType>
#include <QEvent>
#include <QGuiApplication>
#include <QMenu>

#include <algorithm>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr int wurzel = 0; // the id of the menu itself

// "&" marks the letter of a row and "&&" is one; on the bus "_" does the marking.
QString beschriftung(const QString &text)
{
    QString auf;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar zeichen = text.at(i);
        if (zeichen == u'_') {
            auf += u"__"_s;
        } else if (zeichen != u'&') {
            auf += zeichen;
        } else if (++i < text.size()) {
            auf += text.at(i) == u'&' ? u"&"_s : u'_' + QString(text.at(i));
        }
    }
    return auf;
}

// What is as usual is left out.
QVariantMap angaben(const QAction &aktion)
{
    QVariantMap werte;
    if (aktion.isSeparator()) {
        werte.insert(u"type"_s, u"separator"_s);
    } else {
        werte.insert(u"label"_s, beschriftung(aktion.text()));
    }
    if (!aktion.isEnabled()) {
        werte.insert(u"enabled"_s, false);
    }
    if (!aktion.isVisible()) {
        werte.insert(u"visible"_s, false);
    }
    if (aktion.isCheckable()) {
        werte.insert(u"toggle-type"_s, u"checkmark"_s);
        werte.insert(u"toggle-state"_s, aktion.isChecked() ? 1 : 0);
    }
    return werte;
}

// Without names, all of them.
Zeilenwerte nur(Zeilenwerte zeile, const QStringList &namen)
{
    if (!namen.isEmpty()) {
        zeile.werte.removeIf([&](const auto &wert) { return !namen.contains(wert.key()); });
    }
    return zeile;
}

} // namespace

QDBusArgument &operator<<(QDBusArgument &ziel, const Zeilenwerte &wert)
{
    ziel.beginStructure();
    ziel << wert.id << wert.werte;
    ziel.endStructure();
    return ziel;
}

const QDBusArgument &operator>>(const QDBusArgument &quelle, Zeilenwerte &wert)
{
    quelle.beginStructure();
    quelle >> wert.id >> wert.werte;
    quelle.endStructure();
    return quelle;
}

QDBusArgument &operator<<(QDBusArgument &ziel, const Zeilenverlust &wert)
{
    ziel.beginStructure();
    ziel << wert.id << wert.namen;
    ziel.endStructure();
    return ziel;
}

const QDBusArgument &operator>>(const QDBusArgument &quelle, Zeilenverlust &wert)
{
    quelle.beginStructure();
    quelle >> wert.id >> wert.namen;
    quelle.endStructure();
    return quelle;
}

QDBusArgument &operator<<(QDBusArgument &ziel, const Zeilenbaum &wert)
{
    ziel.beginStructure();
    ziel << wert.zeile.id << wert.zeile.werte;
    ziel.beginArray(QMetaType::fromType<QDBusVariant>());
    for (const Zeilenwerte &kind : wert.kinder) {
        ziel << QDBusVariant(QVariant::fromValue(Zeilenbaum{kind, {}}));
    }
    ziel.endArray();
    ziel.endStructure();
    return ziel;
}

// Only ever written; registering the type asks for both.
const QDBusArgument &operator>>(const QDBusArgument &quelle, Zeilenbaum & /*wert*/)
{
    return quelle;
}

QDBusArgument &operator<<(QDBusArgument &ziel, const Zeilenereignis &wert)
{
    ziel.beginStructure();
    ziel << wert.id << wert.art << wert.angabe << wert.zeitpunkt;
    ziel.endStructure();
    return ziel;
}

const QDBusArgument &operator>>(const QDBusArgument &quelle, Zeilenereignis &wert)
{
    quelle.beginStructure();
    quelle >> wert.id >> wert.art >> wert.angabe >> wert.zeitpunkt;
    quelle.endStructure();
    return quelle;
}

Leistenmenue::Leistenmenue(QObject *objekt, std::function<void(QAction &)> gewaehlt)
    : QDBusAbstractAdaptor(objekt)
    , gewaehlt_(std::move(gewaehlt))
{
    qDBusRegisterMetaType<Zeilenwerte>();
    qDBusRegisterMetaType<QList<Zeilenwerte>>();
    qDBusRegisterMetaType<Zeilenverlust>();
    qDBusRegisterMetaType<QList<Zeilenverlust>>();
    qDBusRegisterMetaType<Zeilenbaum>();
    qDBusRegisterMetaType<Zeilenereignis>();
    qDBusRegisterMetaType<QList<Zeilenereignis>>();
}

void Leistenmenue::setzen(QMenu *menue)
{
    if (menue_) {
        menue_->removeEventFilter(this);
    }
    menue_ = menue;
    if (menue_) {
        menue_->installEventFilter(this);
    }
    nachfuehren();
}

QString Leistenmenue::richtung() const
{
    return QGuiApplication::layoutDirection() == Qt::RightToLeft ? u"rtl"_s : u"ltr"_s;
}

bool Leistenmenue::eventFilter(QObject * /*wer*/, QEvent *was)
{
    const QEvent::Type art = was->type();
    const bool zeile =
        art == QEvent::ActionChanged || art == QEvent::ActionAdded || art == QEvent::ActionRemoved;
    if (zeile && !std::exchange(geaendert_, true)) {
        QMetaObject::invokeMethod(
            this, [this] { nachfuehren(); }, Qt::QueuedConnection);
    }
    return false;
}

// Tells the panels what is new. False when nothing is.
bool Leistenmenue::nachfuehren()
{
    geaendert_ = false;
    const QList<Zeilenwerte> jetzt = zeilen();
    const QList<Zeilenwerte> vorher = std::exchange(bekannt_, jetzt);
    if (jetzt.size() != vorher.size()) {
        Q_EMIT LayoutUpdated(++stand_, wurzel);
        return true;
    }
    QList<Zeilenwerte> neu;
    QList<Zeilenverlust> verloren;
    for (qsizetype i = 0; i < jetzt.size(); ++i) {
        const Zeilenwerte &eine = jetzt.at(i);
        if (eine == vorher.at(i)) {
            continue;
        }
        neu.append(eine);
        Zeilenverlust verlust{.id = eine.id};
        const QStringList namen = vorher.at(i).werte.keys();
        std::copy_if(namen.begin(), namen.end(), std::back_inserter(verlust.namen),
                     [&](const QString &name) { return !eine.werte.contains(name); });
        if (!verlust.namen.isEmpty()) {
            verloren.append(verlust);
        }
    }
    if (!neu.isEmpty()) {
        Q_EMIT ItemsPropertiesUpdated(neu, verloren);
    }
    return !neu.isEmpty();
}

QAction *Leistenmenue::zeile(int id) const
{
    return menue_ ? menue_->actions().value(id - 1) : nullptr;
}

QList<Zeilenwerte> Leistenmenue::zeilen() const
{
    QList<Zeilenwerte> liste;
    if (menue_) {
        const auto aktionen = menue_->actions();
        for (const QAction *aktion : aktionen) {
            liste.append({static_cast<int>(liste.size()) + 1, angaben(*aktion)});
        }
    }
    return liste;
}

Zeilenwerte Leistenmenue::werte(int id, const QStringList &namen) const
{
    const QAction *aktion = zeile(id);
    const QVariantMap alle = id == wurzel ? QVariantMap{{u"children-display"_s, u"submenu"_s}}
                                          : (aktion != nullptr ? angaben(*aktion) : QVariantMap());
    return nur({id, alle}, namen);
}

uint Leistenmenue::GetLayout(int id, int tiefe, const QStringList &namen, Zeilenbaum &baum)
{
    baum.zeile = werte(id, namen);
    if (id == wurzel && tiefe != 0) {
        const auto liste = zeilen();
        for (const Zeilenwerte &eine : liste) {
            baum.kinder.append(nur(eine, namen));
        }
    }
    return stand_;
}

QList<Zeilenwerte> Leistenmenue::GetGroupProperties(const QList<int> &ids, const QStringList &namen)
{
    QList<Zeilenwerte> liste;
    if (ids.isEmpty()) { // all of them
        const auto alle = zeilen();
        for (const Zeilenwerte &eine : alle) {
            liste.append(nur(eine, namen));
        }
    }
    for (const int id : ids) {
        if (id == wurzel || zeile(id) != nullptr) {
            liste.append(werte(id, namen));
        }
    }
    return liste;
}

QDBusVariant Leistenmenue::GetProperty(int id, const QString &name)
{
    const QVariant wert = werte(id, {}).werte.value(name);
    return QDBusVariant(wert.isValid() ? wert : QVariant(QString()));
}

void Leistenmenue::Event(int id, const QString &art, const QDBusVariant & /*angabe*/,
                         uint /*zeitpunkt*/)
{
    QAction *const aktion = art == u"clicked" ? zeile(id) : nullptr;
    if (aktion == nullptr || aktion->isSeparator() || !aktion->isVisible()) {
        return;
    }
    // The answer goes first: what the row does may end the program.
    QMetaObject::invokeMethod(
        aktion,
        [this, aktion] {
            if (aktion->isEnabled()) {
                gewaehlt_(*aktion);
            }
        },
        Qt::QueuedConnection);
}

QList<int> Leistenmenue::EventGroup(const QList<Zeilenereignis> &ereignisse)
{
    QList<int> unbekannt;
    for (const Zeilenereignis &eines : ereignisse) {
        if (eines.id != wurzel && zeile(eines.id) == nullptr) {
            unbekannt.append(eines.id);
        } else {
            Event(eines.id, eines.art, eines.angabe, eines.zeitpunkt);
        }
    }
    return unbekannt;
}

// Whether the panel has to look at the menu again.
bool Leistenmenue::AboutToShow(int id)
{
    if (id != wurzel || !menue_) {
        return false;
    }
    Q_EMIT menue_->aboutToShow();
    return nachfuehren();
}

QList<int> Leistenmenue::AboutToShowGroup(const QList<int> &ids, QList<int> &unbekannt)
{
    QList<int> neu;
    for (const int id : ids) {
        if (id != wurzel && zeile(id) == nullptr) {
            unbekannt.append(id);
        } else if (AboutToShow(id)) {
            neu.append(id);
        }
    }
    return neu;
}

} // namespace kalvaro
