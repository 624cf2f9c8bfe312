#include "platform/linux/dbusverbindung.h"

#include "doubles/testbus.h"
#include "testlauf.h"

#include <QElapsedTimer>
#include <QTemporaryDir>

#include <array>
#include <cstring>
#include <linux/sockios.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype feld = sizeof(sockaddr_un::sun_path); // the kernel's, for a socket's path

const QByteArray zugelassen("OK 0123456789abcdef0123456789abcdef\r\n");
const QByteArray rueckgabe("l\2\1\1\0\0\0\0\1\0\0\0\0\0\0\0", 16); // of the first call
const QByteArray fehler("l\3\1\1\0\0\0\0\1\0\0\0\0\0\0\0", 16);

// Something at a socket that says the same, a byte at a time, to whoever connects, and then nothing
// more.
class Gegenstelle
{
public:
    enum class Danach { Wartet, Schliesst };
    explicit Gegenstelle(const QByteArray &pfad, QByteArray sagt = zugelassen + rueckgabe,
                         Danach danach = Danach::Wartet)
        : sagt_(std::move(sagt))
        , danach_(danach)
        , fd_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_un ort = {};
        ort.sun_family = AF_UNIX;
        std::memcpy(ort.sun_path, pfad.constData(), static_cast<size_t>(pfad.size()));
        const auto laenge = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path)) +
                            static_cast<socklen_t>(pfad.size());
        if (::bind(fd_, reinterpret_cast<const sockaddr *>(&ort), laenge) != 0 ||
            ::listen(fd_, 8) != 0) {
            qFatal("Cannot listen on %s", pfad.constData());
        }
        bedienung_ = std::thread([this] { bedienen(); });
    }
    ~Gegenstelle()
    {
        ::shutdown(fd_, SHUT_RDWR);
        bedienung_.join();
        ::close(fd_);
    }
    Gegenstelle(const Gegenstelle &) = delete;
    Gegenstelle &operator=(const Gegenstelle &) = delete;

private:
    void bedienen() const
    {
        for (int gast = ::accept(fd_, nullptr, nullptr); gast >= 0;
             gast = ::accept(fd_, nullptr, nullptr)) {
            for (const char zeichen : sagt_) {
                int ungelesen = 1;
                if (::send(gast, &zeichen, 1, MSG_NOSIGNAL) != 1) {
                    break;
                }
                while (::ioctl(gast, SIOCOUTQ, &ungelesen) == 0 && ungelesen > 0) {
                    std::this_thread::yield(); // each byte is read by itself
                }
            }
            if (danach_ == Danach::Schliesst) {
                ::shutdown(gast, SHUT_WR);
            }
            std::array<char, 1024> bitte = {};
            while (::recv(gast, bitte.data(), bitte.size(), 0) > 0) { // until the other side goes
            }
            ::close(gast);
        }
    }

    const QByteArray sagt_;
    const Danach danach_;
    const int fd_;
    std::thread bedienung_;
};

} // namespace

class TestDbusverbindung final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void langePfade_data()
    {
        QTest::addColumn<qsizetype>("laenge");
        QTest::addColumn<bool>("antwortet");
        QTest::newRow("short") << qsizetype{80} << true;
        QTest::newRow("as long as a path can be") << feld - 1 << true;
        QTest::newRow("no room for the zero") << feld << false;
    }

    // Something answers on each of them, whether or not it may be asked.
    void langePfade()
    {
        QFETCH(const qsizetype, laenge);
        QFETCH(const bool, antwortet);
        const QByteArray pfad = ort_.leftJustified(laenge, 'x');
        const Gegenstelle bus(pfad);
        QCOMPARE(busAntwortet(QString::fromUtf8("unix:path=" + pfad)), antwortet);
    }

    void vielZuLangePfade_data()
    {
        QTest::addColumn<QString>("adresse");
        QTest::addColumn<bool>("antwortet");
        const QString lang = u'/' + QString(5000, u'x');
        QTest::newRow("path") << u"unix:path="_s + lang << false;
        QTest::newRow("abstract name") << u"unix:abstract="_s + lang << false;
        QTest::newRow("the next address counts")
            << u"unix:path=%1;unix:path=%2"_s.arg(lang, QString::fromUtf8(ort_)) << true;
    }

    void vielZuLangePfade()
    {
        QFETCH(const QString, adresse);
        QFETCH(const bool, antwortet);
        ::unlink(ort_.constData());
        const Gegenstelle bus(ort_);
        QCOMPARE(busAntwortet(adresse), antwortet);
    }

    void einBusNimmtUnsAuf_data()
    {
        QTest::addColumn<QByteArray>("sagt");
        QTest::addColumn<bool>("antwortet");
        QTest::newRow("welcome") << zugelassen + rueckgabe << true;
        QTest::newRow("silent") << QByteArray() << false;
        QTest::newRow("half a line") << QByteArray("OK 0123") << false;
        QTest::newRow("hangs after the handshake's first line") << zugelassen << false;
        QTest::newRow("hangs within the answer") << zugelassen + rueckgabe.first(1) << false;
        QTest::newRow("does not let us in") << QByteArray("REJECTED ANONYMOUS\r\n") << false;
        QTest::newRow("answers with an error") << zugelassen + fehler << false;
        QTest::newRow("answers with a call") << zugelassen + QByteArray("l\1\0\1", 4) << false;
        QTest::newRow("another word than OK") << QByteArray("OKAY 0123\r\n") + rueckgabe << false;
        QTest::newRow("garbage") << QByteArray("HTTP/1.1 400 Bad Request\r\n\r\n") << false;
        QTest::newRow("only a line end") << QByteArray("\r\n") << false;
        QTest::newRow("talks without end") << QByteArray(10000, 'x') << false;
        QTest::newRow("a long line, and then an end") // as long as it may be
            << "OK " + QByteArray(4000, '0') + "\r\n" + rueckgabe << true;
    }

    // One that took its first line and then hung held up start and check-up.
    void einBusNimmtUnsAuf()
    {
        QFETCH(const QByteArray, sagt);
        QFETCH(const bool, antwortet);
        ::unlink(ort_.constData());
        const Gegenstelle bus(ort_, sagt);
        QElapsedTimer dauer;
        dauer.start();
        QCOMPARE(busAntwortet(adresse(ort_)), antwortet);
        QVERIFY(dauer.elapsed() < 2000);
    }

    void werEsAnfangsSagtHaeltNichtAuf_data()
    {
        QTest::addColumn<QByteArray>("sagt");
        QTest::addColumn<Gegenstelle::Danach>("danach");
        constexpr auto schliesst = Gegenstelle::Danach::Schliesst;
        QTest::newRow("closes at once") << QByteArray() << schliesst;
        QTest::newRow("closes within the line") << QByteArray("OK 01") << schliesst;
        QTest::newRow("closes after the line") << zugelassen << schliesst;
        QTest::newRow("closes within the answer") << zugelassen + rueckgabe.first(1) << schliesst;
        QTest::newRow("refuses") << QByteArray("REJECTED\r\n") << Gegenstelle::Danach::Wartet;
        QTest::newRow("talks without end") << QByteArray(10000, 'x') << Gegenstelle::Danach::Wartet;
    }

    // Whoever has shown that it is none is not waited for.
    void werEsAnfangsSagtHaeltNichtAuf()
    {
        QFETCH(const QByteArray, sagt);
        QFETCH(const Gegenstelle::Danach, danach);
        ::unlink(ort_.constData());
        const Gegenstelle bus(ort_, sagt, danach);
        QElapsedTimer dauer;
        dauer.start();
        QVERIFY(!busAntwortet(adresse(ort_), std::chrono::seconds(20)));
        QVERIFY(dauer.elapsed() < 10'000);
    }

    void einStummerWirdNichtLangeGefragt_data()
    {
        QTest::addColumn<QByteArray>("sagt");
        QTest::newRow("silent") << QByteArray();
        QTest::newRow("half") << zugelassen;
    }

    void einStummerWirdNichtLangeGefragt()
    {
        QFETCH(const QByteArray, sagt);
        ::unlink(ort_.constData());
        const Gegenstelle bus(ort_, sagt);
        QElapsedTimer dauer;
        dauer.start();
        QVERIFY(!busAntwortet(adresse(ort_), std::chrono::milliseconds(200)));
        QVERIFY(dauer.elapsed() >= 190);
        QVERIFY(dauer.elapsed() < 900);
    }

    // One that checks what it is told: dbus-daemon drops whoever errs.
    void einEchterBusNimmtUnsAuf_data()
    {
        QTest::addColumn<QString>("wie");
        QTest::newRow("path") << u"unix:path=%1"_s;
        QTest::newRow("with other keys") << u"unix:guid=0123,path=%1,x"_s;
        QTest::newRow("escaped") << u"unix:path=%2"_s;
        QTest::newRow("behind others")
            << u"autolaunch:;unix:dir=/tmp;unix:path=/gibt/es/nicht;unix:path=%1"_s;
    }

    void einEchterBusNimmtUnsAuf()
    {
        QFETCH(QString, wie);
        KALVARO_BRAUCHT(u"dbus-daemon"_s);
        const Testbus bus;
        const QString pfad = bus.adresse().section(u'=', 1);
        wie.replace(u"%1"_s, pfad).replace(u"%2"_s, QString(pfad).replace(u"/"_s, u"%2F"_s));
        QVERIFY(busAntwortet(wie));
    }

    void einNameOhneDateiIstEinWeg()
    {
        const QByteArray name = "kalvaro-test-" + QByteArray::number(::getpid());
        const Gegenstelle bus('\0' + name);
        QVERIFY(busAntwortet(QString::fromLatin1("unix:abstract=" + name)));
        QVERIFY(!busAntwortet(QString::fromLatin1("unix:abstract=" + name + 'x')));
    }

    void woDieBusseSind()
    {
        const auto gesetzt = [](const char *name, const QByteArray &wert) {
            const QByteArray vorher = qgetenv(name);
            wert.isEmpty() ? qunsetenv(name) : qputenv(name, wert);
            return vorher;
        };
        const QByteArray vorher = gesetzt("DBUS_SESSION_BUS_ADDRESS", "autolaunch:;;unix:path=/x");
        const QString ohneStarter = sitzungsbusAdresse();
        gesetzt("DBUS_SESSION_BUS_ADDRESS", "autolaunch:scope=*install-path");
        const QString nurStarter = sitzungsbusAdresse();
        sitzungsbusFestlegen();
        const QByteArray festgelegt = qgetenv("DBUS_SESSION_BUS_ADDRESS");
        gesetzt("DBUS_SESSION_BUS_ADDRESS", vorher);
        const QByteArray system = gesetzt("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/y");
        const QString eigener = systembusAdresse();
        gesetzt("DBUS_SYSTEM_BUS_ADDRESS", {});
        const QString ueblicher = systembusAdresse();
        gesetzt("DBUS_SYSTEM_BUS_ADDRESS", system);
        QCOMPARE(ohneStarter, u"unix:path=/x"_s);
        QCOMPARE(nurStarter, QString());
        QCOMPARE(festgelegt, "disabled:");
        QCOMPARE(eigener, u"unix:path=/y"_s);
        QCOMPARE(ueblicher, u"unix:path=/run/dbus/system_bus_socket"_s);
    }

    void nurSocketsWerdenGefragt_data()
    {
        QTest::addColumn<QString>("adresse");
        QTest::newRow("a program") << u"unixexec:path=/bin/cat"_s;
        QTest::newRow("a computer") << u"tcp:host=127.0.0.1,port=9"_s;
        QTest::newRow("nothing") << QString();
    }

    void nurSocketsWerdenGefragt()
    {
        QFETCH(const QString, adresse);
        QVERIFY(!busAntwortet(adresse));
    }

    // The library asks them in turn too, and would hang at the first.
    void einHaengenderEintragFaelltWeg()
    {
        ::unlink(ort_.constData());
        const QByteArray anderer = ort_ + "2";
        const Gegenstelle haengt(ort_, {});
        const Gegenstelle bus(anderer);
        qputenv("DBUS_SESSION_BUS_ADDRESS", (adresse(ort_) + u';' + adresse(anderer)).toUtf8());
        sitzungsbusFestlegen();
        const QByteArray festgelegt = qgetenv("DBUS_SESSION_BUS_ADDRESS");
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
        QCOMPARE(festgelegt, adresse(anderer).toUtf8());
    }

private:
    static QString adresse(const QByteArray &pfad)
    {
        return QString::fromUtf8("unix:path=" + pfad);
    }

    const QTemporaryDir ordner_;
    const QByteArray ort_ = QFile::encodeName(ordner_.filePath(u"bus"_s));
};

KALVARO_TEST(TestDbusverbindung)
#include "tst_dbusverbindung.moc"
