#include "platform/linux/dbusaktivierung.h"

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype laengste = 4096; // bytes; a longer one is no token of any desktop

void setzen(const char *name, const QByteArray &wert)
{
    if (wert.isEmpty()) {
        qunsetenv(name);
    } else {
        qputenv(name, wert);
    }
}

void setzen(const Aktivierung &aktivierung)
{
    setzen("XDG_ACTIVATION_TOKEN", aktivierung.marke);
    setzen("DESKTOP_STARTUP_ID", aktivierung.kennung);
}

QByteArray bemessen(const QByteArray &wert)
{
    return wert.size() <= laengste && !wert.contains('\0') ? wert : QByteArray();
}

QByteArray angabe(const QVariantMap &daten, const QString &name)
{
    return bemessen(daten.value(name).toString().toUtf8());
}

} // namespace

Aktivierung Aktivierung::desStarts()
{
    return {bemessen(qgetenv("XDG_ACTIVATION_TOKEN")), bemessen(qgetenv("DESKTOP_STARTUP_ID"))};
}

Aktivierung Aktivierung::ausPlattformdaten(const QVariantMap &daten)
{
    return {angabe(daten, u"activation-token"_s), angabe(daten, u"desktop-startup-id"_s)};
}

QVariantMap Aktivierung::plattformdaten() const
{
    QVariantMap daten;
    if (!marke.isEmpty()) {
        daten.insert(u"activation-token"_s, QString::fromUtf8(marke));
    }
    if (!kennung.isEmpty()) {
        daten.insert(u"desktop-startup-id"_s, QString::fromUtf8(kennung));
    }
    return daten;
}

Aktivierungsrahmen::Aktivierungsrahmen(const Aktivierung &aktivierung)
    : vorher_(Aktivierung::desStarts())
{
    setzen(aktivierung);
}

Aktivierungsrahmen::~Aktivierungsrahmen()
{
    setzen(vorher_);
}

} // namespace kalvaro
