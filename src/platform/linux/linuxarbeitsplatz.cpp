#include "platform/linux/linuxarbeitsplatz.h"

#include "foundation/einmalruf.h"
#include "platform/buendel.h"
#include "platform/linux/dbusaktivierung.h"
#include "platform/linux/loesen.h"
#include "platform/linux/logindwache.h"
#include "platform/linux/startfehler.h"
#include "platform/linux/vordergrund.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QSocketNotifier>
#include <QUrl>
#include <QWindow>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <unistd.h>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

using Rueckruf = std::function<void(std::optional<QString>)>;
using Startruf = Einmalruf<std::optional<QString>>;

// Waits for word of a program that is being started.
class Startwacht final : public Startruf
{
public:
    Startwacht(int meldung, QString programm, QObject *besitzer, Rueckruf fertig)
        : Einmalruf(besitzer, std::move(fertig))
        , fd_(meldung)
        , programm_(std::move(programm))
        , horcher_(meldung, QSocketNotifier::Read)
    {
        connect(&horcher_, &QSocketNotifier::activated, this, &Startwacht::lesen);
    }

    ~Startwacht() override
    {
        horcher_.setEnabled(false);
        ::close(fd_);
    }

private:
    void lesen()
    {
        int fehler = 0;
        const ssize_t anzahl = ::read(fd_, &fehler, sizeof fehler);
        if (anzahl < 0 && errno == EINTR) {
            return;
        }
        horcher_.setEnabled(false);
        const bool gescheitert = anzahl == sizeof fehler;
        antworten(gescheitert ? std::optional(grund(fehler)) : std::optional<QString>());
    }

    // The program was there a moment ago: what the system misses then is what runs it.
    [[nodiscard]] QString grund(int fehler) const
    {
        return fehler == ENOENT && QFileInfo::exists(programm_)
                   ? u"Zu „%1“ fehlt das Programm, das es ausführt."_s.arg(programm_)
                   : startfehlertext(fehler, programm_);
    }

    const int fd_;
    const QString programm_;
    QSocketNotifier horcher_;
};

// The path with all links resolved, or the errno that tells why there is none.
tl::expected<QString, int> aufgeloest(const QString &pfad)
{
    const std::unique_ptr<char, void (*)(void *)> ziel(
        ::realpath(QFile::encodeName(pfad).constData(), nullptr), std::free);
    if (!ziel) {
        return tl::unexpected(errno);
    }
    return QFile::decodeName(ziel.get());
}

// The name of the program that a bundle wants run, or why it tells none.
tl::expected<QString, QString> programmname(const QString &buendel)
{
    const QString info = infodatei(buendel);
    const auto ort = aufgeloest(info);
    if (!ort && ort.error() != EACCES) {
        return tl::unexpected(startfehlertext(ort.error(), info));
    }
    const auto name = infotext(buendel, u"CFBundleExecutable");
    if (!name || name->isEmpty()) {
        return tl::unexpected(u"„%1“ ist nicht lesbar oder nennt kein Programm."_s.arg(info));
    }
    return *name;
}

// The executable of a bundle, or why there is none. It must lie in "Contents/MacOS", links
// resolved: a bundle does not start other people's programs.
tl::expected<QString, QString> programmVon(const QString &buendel)
{
    const auto paket = aufgeloest(buendel);
    if (!paket) {
        return tl::unexpected(startfehlertext(paket.error(), buendel));
    }
    const auto name = programmname(*paket);
    if (!name) {
        return tl::unexpected(name.error());
    }
    const QString ordner = *paket + u"/Contents/MacOS/"_s;
    const auto programm = aufgeloest(ordner + *name);
    if (!programm) {
        return tl::unexpected(startfehlertext(programm.error(), ordner + *name));
    }
    const auto darin = aufgeloest(ordner);
    if (!darin || !programm->startsWith(*darin + u'/')) {
        return tl::unexpected(u"„%1“ liegt außerhalb von „%2“."_s.arg(*programm, *paket));
    }
    return *programm;
}

// Our environment without what concerns only this program: how its window comes to the front, how
// Qt and we ourselves are set up, and where we were started.
QList<QByteArray> variablen()
{
    static constexpr std::array unsere = {
        "DESKTOP_STARTUP_ID=", "XDG_ACTIVATION_TOKEN=", "QT_", "KALVARO_", "PWD=", "OLDPWD="};
    QList<QByteArray> liste;
    for (char **eintrag = environ; *eintrag != nullptr; ++eintrag) {
        const QByteArrayView text(*eintrag);
        if (std::none_of(unsere.begin(), unsere.end(),
                         [&text](const char *anfang) { return text.startsWith(anfang); })) {
            liste.append(text.toByteArray());
        }
    }
    return liste;
}

} // namespace

LinuxArbeitsplatz::LinuxArbeitsplatz(Uhr &uhr)
    : uhr_(uhr)
{
}

LinuxArbeitsplatz::~LinuxArbeitsplatz() = default;

void LinuxArbeitsplatz::starten(const QString &buendel, QObject *besitzer, Rueckruf fertig)
{
    const auto scheitern = [&](const QString &grund) {
        (new Startruf(besitzer, std::move(fertig)))->antworten(grund);
    };
    const auto programm = programmVon(buendel);
    if (!programm) {
        scheitern(programm.error());
        return;
    }
    const auto meldung = losgeloestStarten(
        {QFile::encodeName(*programm), variablen(), QFile::encodeName(QDir::homePath())});
    if (!meldung) {
        scheitern(startfehlertext(meldung.error(), *programm));
        return;
    }
    new Startwacht(*meldung, *programm, besitzer, std::move(fertig));
}

void LinuxArbeitsplatz::oeffnen(const QUrl &adresse)
{
    if (adresse.isValid() && (adresse.scheme() == u"http" || adresse.scheme() == u"https")) {
        // Queued: finding the browser can take a moment, and the click is to be over by then. What
        // the click brought along so that the browser may come to the front goes with it.
        QMetaObject::invokeMethod(
            qApp,
            [adresse, aktivierung = Aktivierung::desStarts()] {
                const Aktivierungsrahmen rahmen(aktivierung);
                QDesktopServices::openUrl(adresse);
            },
            Qt::QueuedConnection);
    }
}

void LinuxArbeitsplatz::nachVorn(QWindow &fenster)
{
    if (!vordergrund_) {
        vordergrund_ = std::make_unique<Vordergrund>();
    }
    if (!vordergrund_->holen(fenster, Aktivierung::desStarts().kennung)) {
        fenster.requestActivate();
    }
}

void LinuxArbeitsplatz::beiAufwachen(std::function<void()> geweckt)
{
    wache_ = geweckt ? std::make_unique<Logindwache>(uhr_, std::move(geweckt)) : nullptr;
}

void LinuxArbeitsplatz::auftreten(Auftritt /*auftritt*/)
{
}

} // namespace kalvaro
