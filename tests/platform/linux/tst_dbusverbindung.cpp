#include "platform/linux/dbusverbindung.h"

#include "testlauf.h"

#include <QTemporaryDir>

#include <array>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype feld = sizeof(sockaddr_un::sun_path); // the kernel's, for a socket's path

// Something at a socket that answers whoever connects.
class Gegenstelle
{
public:
    explicit Gegenstelle(const QByteArray &pfad)
        : fd_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
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
            std::array<char, 64> bitte = {};
            if (::recv(gast, bitte.data(), bitte.size(), 0) > 0) {
                [[maybe_unused]] const ssize_t bytes = ::send(gast, "OK", 2, MSG_NOSIGNAL);
            }
            ::close(gast);
        }
    }

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

private:
    const QTemporaryDir ordner_;
    const QByteArray ort_ = QFile::encodeName(ordner_.filePath(u"bus"_s));
};

KALVARO_TEST(TestDbusverbindung)
#include "tst_dbusverbindung.moc"
