#include "platform/linux/gtkthema.h"

#include <QStringList>
#include <QtEndian>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

// Reads the property from its beginning to its end; past the end everything is 0 or empty.
class Leser
{
public:
    explicit Leser(const QByteArray &bytes)
        : bytes_(bytes)
        , grossZuerst_(!bytes.isEmpty() && bytes[0] == 1)
    {
    }

    [[nodiscard]] bool zuEnde() const { return ort_ >= bytes_.size(); }

    [[nodiscard]] QByteArray stueck(qsizetype laenge)
    {
        QByteArray teil = bytes_.mid(ort_, laenge);
        ort_ = teil.size() < laenge ? bytes_.size() : ort_ + laenge;
        return teil;
    }

    // A text fills up to a multiple of four.
    [[nodiscard]] QByteArray text(qsizetype laenge)
    {
        QByteArray inhalt = stueck(laenge);
        ueberspringen((4 - laenge % 4) % 4);
        return inhalt;
    }

    void ueberspringen(qsizetype laenge) { ort_ = std::min(ort_ + laenge, bytes_.size()); }

    template<typename Zahl>
    [[nodiscard]] Zahl zahl()
    {
        const QByteArray teil = stueck(sizeof(Zahl));
        if (teil.size() < qsizetype(sizeof(Zahl))) {
            return 0;
        }
        return grossZuerst_ ? qFromBigEndian<Zahl>(teil.constData())
                            : qFromLittleEndian<Zahl>(teil.constData());
    }

private:
    const QByteArray &bytes_;
    const bool grossZuerst_;
    qsizetype ort_ = 0;
};

} // namespace

GtkThema xsettingsLesen(const QByteArray &eigenschaft)
{
    enum Art : quint8 { Ganzzahl, Text, Farbe };
    constexpr qsizetype laengeFarbe = 8;
    Leser leser(eigenschaft);
    leser.ueberspringen(4 + 4); // byte order, serial
    GtkThema thema;
    for (auto uebrig = leser.zahl<quint32>(); uebrig > 0 && !leser.zuEnde(); --uebrig) {
        const auto art = leser.zahl<quint8>();
        leser.ueberspringen(1);
        const QByteArray name = leser.text(leser.zahl<quint16>());
        leser.ueberspringen(4); // serial of the last change
        if (art == Text) {
            const QByteArray wert = leser.text(leser.zahl<quint32>());
            if (name == "Net/ThemeName") {
                thema.name = QString::fromUtf8(wert);
            }
        } else if (art == Ganzzahl) {
            const auto wert = leser.zahl<quint32>();
            if (name == "Gtk/ApplicationPreferDarkTheme") {
                thema.dunkelBevorzugt = wert != 0;
            }
        } else if (art == Farbe) {
            leser.ueberspringen(laengeFarbe);
        } else {
            break; // how long that is, nobody knows
        }
    }
    return thema;
}

GtkThema gtkIniLesen(const QByteArray &inhalt)
{
    GtkThema thema;
    const QStringList zeilen = QString::fromUtf8(inhalt).split(u'\n');
    for (const QString &zeile : zeilen) {
        const QString name = zeile.section(u'=', 0, 0).trimmed();
        const QString wert = zeile.section(u'=', 1).trimmed();
        if (name == u"gtk-theme-name") {
            thema.name = wert;
        } else if (name == u"gtk-application-prefer-dark-theme") {
            thema.dunkelBevorzugt = wert == u"1" || wert.compare(u"true", Qt::CaseInsensitive) == 0;
        }
    }
    return thema;
}

GtkThema gtkUmgebungLesen(const QString &wert)
{
    if (wert.isEmpty()) {
        return {};
    }
    return {wert.section(u':', 0, 0), wert.section(u':', 1) == u"dark"};
}

Helligkeit helligkeit(const GtkThema &thema)
{
    if (!thema.name && !thema.dunkelBevorzugt) {
        return Helligkeit::Offen;
    }
    // "Adwaita-dark", "Mint-Y-Dark-Aqua", and the inverse of the theme with high contrast.
    const QString name = thema.name.value_or(QString()).toLower() + u'-';
    const bool dunkel = thema.dunkelBevorzugt.value_or(false) || name.contains(u"-dark-") ||
                        name == u"highcontrastinverse-";
    return dunkel ? Helligkeit::Dunkel : Helligkeit::Hell;
}

} // namespace kalvaro
