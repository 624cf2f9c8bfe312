#include "platform/linux/leisteneintrag.h"

#include "platform/linux/dbusaktivierung.h"
#include "platform/linux/leistenmenue.h"

#include <QAction>
#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCall>
#include <QImage>
#include <QtEndian>

#include <utility>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

const QString elementpfad = u"/StatusNotifierItem"_s;
const QString menuepfad = u"/MenuBar"_s;

// The usual sizes of panels, at 1x and 2x.
constexpr int groessen[] = {22, 24, 32, 44, 48, 64};

Leistenbild alsLeistenbild(const QImage &bild)
{
    const QImage pixel = bild.convertToFormat(QImage::Format_ARGB32);
    QByteArray bytes(pixel.sizeInBytes(), Qt::Uninitialized);
    qToBigEndian<quint32>(pixel.constBits(), pixel.sizeInBytes() / qsizetype(sizeof(quint32)),
                          bytes.data());
    return {pixel.width(), pixel.height(), bytes};
}

} // namespace

QDBusArgument &operator<<(QDBusArgument &ziel, const Leistenbild &wert)
{
    ziel.beginStructure();
    ziel << wert.breite << wert.hoehe << wert.bytes;
    ziel.endStructure();
    return ziel;
}

const QDBusArgument &operator>>(const QDBusArgument &quelle, Leistenbild &wert)
{
    quelle.beginStructure();
    quelle >> wert.breite >> wert.hoehe >> wert.bytes;
    quelle.endStructure();
    return quelle;
}

QDBusArgument &operator<<(QDBusArgument &ziel, const Leistenhinweis &wert)
{
    ziel.beginStructure();
    ziel << wert.symbol << wert.bilder << wert.titel << wert.text;
    ziel.endStructure();
    return ziel;
}

const QDBusArgument &operator>>(const QDBusArgument &quelle, Leistenhinweis &wert)
{
    quelle.beginStructure();
    quelle >> wert.symbol >> wert.bilder >> wert.titel >> wert.text;
    quelle.endStructure();
    return quelle;
}

Leisteneintrag::Leisteneintrag(const QDBusConnection &sitzung, std::function<void()> gedrueckt)
    : bus_(sitzung)
    , name_(u"org.kde.StatusNotifierItem-%1-1"_s.arg(QCoreApplication::applicationPid()))
    , gedrueckt_(std::move(gedrueckt))
    , dienst_(new Leistendienst(&element_, this))
    , menue_(new Leistenmenue(&menueobjekt_, [this](QAction &aktion) { gewaehlt(aktion); }))
{
}

Leisteneintrag::~Leisteneintrag()
{
    if (bus_.isConnected()) {
        bus_.unregisterObject(elementpfad);
        bus_.unregisterObject(menuepfad);
        bus_.send(anDenBus(u"ReleaseName"_s, {name_}));
    }
}

// Nobody waits for the answers: a watcher that does not take it has nothing to show it with.
void Leisteneintrag::anmelden()
{
    constexpr uint nichtAnstellen = 4; // "D-Bus Specification" 0.38, RequestName
    bus_.registerObject(elementpfad, &element_, QDBusConnection::ExportAdaptors);
    bus_.registerObject(menuepfad, &menueobjekt_, QDBusConnection::ExportAdaptors);
    bus_.asyncCall(anDenBus(u"RequestName"_s, {name_, nichtAnstellen}));
    QDBusMessage ruf = QDBusMessage::createMethodCall(
        u"org.kde.StatusNotifierWatcher"_s, u"/StatusNotifierWatcher"_s,
        u"org.kde.StatusNotifierWatcher"_s, u"RegisterStatusNotifierItem"_s);
    ruf.setArguments({name_});
    ruf.setAutoStartService(false);
    bus_.asyncCall(ruf);
}

void Leisteneintrag::symbolSetzen(const QString &name, const Leistentinte &tinte,
                                  const QString &thema)
{
    symbol_ = name;
    tinte_ = tinte;
    thema_ = thema;
    Q_EMIT dienst_->NewIcon();
}

void Leisteneintrag::hinweisSetzen(const QString &hinweis)
{
    hinweis_ = hinweis;
    Q_EMIT dienst_->NewToolTip();
}

void Leisteneintrag::menueSetzen(QMenu *menue)
{
    menue_->setzen(menue);
}

void Leisteneintrag::gewaehlt(QAction &aktion)
{
    const Aktivierungsrahmen rahmen({std::exchange(marke_, {}), {}});
    aktion.trigger();
}

Leistendienst::Leistendienst(QObject *objekt, Leisteneintrag *eintrag)
    : QDBusAbstractAdaptor(objekt)
    , eintrag_(eintrag)
{
    qDBusRegisterMetaType<Leistenbild>();
    qDBusRegisterMetaType<QList<Leistenbild>>();
    qDBusRegisterMetaType<Leistenhinweis>();
}

QDBusObjectPath Leistendienst::menue() const
{
    return QDBusObjectPath(menuepfad);
}

QList<Leistenbild> Leistendienst::bilder() const
{
    QList<Leistenbild> liste;
    for (const int seite : groessen) {
        liste.append(alsLeistenbild(traybild(eintrag_->symbol_, seite, eintrag_->tinte_)));
    }
    return liste;
}

void Leistendienst::Activate(int /*x*/, int /*y*/)
{
    eintrag_->gedrueckt_();
}

void Leistendienst::ContextMenu(int /*x*/, int /*y*/)
{
    eintrag_->gedrueckt_();
}

void Leistendienst::SecondaryActivate(int /*x*/, int /*y*/)
{
}

void Leistendienst::Scroll(int /*weite*/, const QString & /*richtung*/)
{
}

void Leistendienst::ProvideXdgActivationToken(const QString &marke)
{
    eintrag_->marke_ = Aktivierung::ausPlattformdaten({{u"activation-token"_s, marke}}).marke;
}

} // namespace kalvaro
