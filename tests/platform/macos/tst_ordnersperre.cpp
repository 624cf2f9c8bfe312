#include "doubles/dateien.h"
#include "doubles/einschraenkung.h"
#include "doubles/ereignisse.h"
#include "platform/macos/ordnersperre.h"
#include "testlauf.h"

#include <QDir>
#include <QElapsedTimer>
#include <QLocalSocket>
#include <QTemporaryDir>
#include <QThread>

#include <memory>
#include <sys/stat.h>
#include <vector>

using namespace kalvaro;
using namespace Qt::StringLiterals;

using Antwort = Ordnersperre::Antwort;
using Stand = Ordnersperre::Stand;

class TestOrdnersperre final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        erhalten.clear();
        nimmt = true;
        ordner = std::make_unique<QTemporaryDir>();
    }

    void nurEinerHaeltSie()
    {
        auto erste = neu();
        QCOMPARE(erste->nehmen(), Stand::Gehalten);
        const auto zweite = neu();
        QCOMPARE(zweite->nehmen(), Stand::Vergeben);
        erste.reset();
        QCOMPARE(zweite->nehmen(), Stand::Gehalten);
    }

    void legtDenOrdnerAn()
    {
        const Ordnersperre sperre(pfad(u"a/b"_s), {});
        QVERIFY(QDir(pfad(u"a/b"_s)).exists());
    }

    void nurDerBenutzerDarfSprechen()
    {
        const auto sperre = neu();
        QCOMPARE(sperre->nehmen(), Stand::Gehalten);
        QCOMPARE(rechte(pfad(u"de.kalvaro.kalvaro.lock"_s)), 0600U);
        QCOMPARE(Ordnersperre::socketort(ordner->path()), pfad(u"de.kalvaro.kalvaro.socket"_s));
        QCOMPARE(rechte(pfad(u"de.kalvaro.kalvaro.socket"_s)) & 0077U, 0U);
        QVERIFY(QDir(ordner->path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot).isEmpty());
    }

    // The next holder opens its own; the lock's file stays.
    void amEndeIstDerSocketWeg()
    {
        auto sperre = neu();
        QCOMPARE(sperre->nehmen(), Stand::Gehalten);
        sperre.reset();
        QVERIFY(!QFile::exists(pfad(u"de.kalvaro.kalvaro.socket"_s)));
        QVERIFY(QFile::exists(pfad(u"de.kalvaro.kalvaro.lock"_s)));
    }

    void raeumtDenSocketEinesAbgestuerztenWeg()
    {
        dateiSchreiben(pfad(u"de.kalvaro.kalvaro.socket"_s), "left");
        const auto sperre = neu();
        QCOMPARE(sperre->nehmen(), Stand::Gehalten);
        QCOMPARE(gefragt("x", 5000), Antwort::Angenommen);
    }

    void keineSperre_data()
    {
        QTest::addColumn<QString>("was");
        for (const char *was : {"a folder", "a pipe", "a link", "no folder"}) {
            QTest::newRow(was) << QString::fromLatin1(was);
        }
    }
    void keineSperre()
    {
        QFETCH(const QString, was);
        const QString datei = pfad(u"de.kalvaro.kalvaro.lock"_s);
        QString wo = ordner->path();
        if (was == u"a folder") {
            QVERIFY(QDir().mkdir(datei));
        } else if (was == u"a pipe") {
            QCOMPARE(::mkfifo(QFile::encodeName(datei).constData(), 0600), 0);
        } else if (was == u"a link") {
            dateiSchreiben(pfad(u"anderswo"_s), "");
            QVERIFY(QFile::link(pfad(u"anderswo"_s), datei));
        } else {
            dateiSchreiben(pfad(u"datei"_s), "");
            wo = pfad(u"datei"_s);
        }
        Ordnersperre sperre(wo, {});
        QCOMPARE(sperre.nehmen(), Stand::Unmoeglich);
    }

    // One from before still locks.
    void einOrdnerDerNurNochLesbarIst()
    {
        dateiSchreiben(pfad(u"de.kalvaro.kalvaro.lock"_s), "");
        QVERIFY(
            QFile::setPermissions(pfad(u"de.kalvaro.kalvaro.lock"_s), QFile::Permissions(0x4444)));
        QVERIFY(QFile::setPermissions(ordner->path(), QFile::Permissions(0x5555)));
        {
            const OhneRechte niemand;
            const auto erste = neu();
            const auto zweite = neu();
            QCOMPARE(erste->nehmen(), Stand::Gehalten);
            QCOMPARE(zweite->nehmen(), Stand::Vergeben);
        }
        QVERIFY(QFile::setPermissions(ordner->path(), QFile::Permissions(0x7755)));
    }

    void einLangerPfadGenuegt()
    {
        const QString lang = pfad(QString(200, u'x'));
        const QString auch = pfad(QString(199, u'x') + u'y');
        QVERIFY(QFile::encodeName(Ordnersperre::socketort(lang)).size() <
                104); // the shortest limit
        QVERIFY(Ordnersperre::socketort(lang) != Ordnersperre::socketort(auch));
        Ordnersperre sperre(lang, annehmer());
        QCOMPARE(sperre.nehmen(), Stand::Gehalten);
        QCOMPARE(gefragt("x", 5000, lang), Antwort::Angenommen);
        QCOMPARE(erhalten, QList<QByteArray>{"x"});
    }

    void fragtUndBekommtAntwort()
    {
        const auto sperre = neu();
        QCOMPARE(sperre->nehmen(), Stand::Gehalten);
        QCOMPARE(gefragt("oeffnen", 5000), Antwort::Angenommen);
        QCOMPARE(gefragt("", 5000), Antwort::Angenommen);
        QCOMPARE(gefragt("abgleichen", 5000), Antwort::Angenommen);
        QCOMPARE(erhalten, (QList<QByteArray>{"oeffnen", "", "abgleichen"}));
    }

    void niemandDa() { QCOMPARE(gefragt("x", 5000), Antwort::Niemand); }

    void werNichtAntwortetIstStumm()
    {
        const auto sperre = neu();
        QCOMPARE(sperre->nehmen(), Stand::Gehalten);
        sperre->ruhen(true);
        QCOMPARE(gefragt("x", 200), Antwort::Stumm);
        QVERIFY(erhalten.isEmpty());
        sperre->ruhen(false); // it takes what has come meanwhile
        QTRY_COMPARE(erhalten, QList<QByteArray>{"x"});
    }

    // Nothing is taken from then on, and who waits hears of the end at once.
    void werAblehntRuht()
    {
        nimmt = false;
        auto sperre = neu();
        QCOMPARE(sperre->nehmen(), Stand::Gehalten);
        QCOMPARE(gefragt("erste", 5000), Antwort::Niemand);
        QCOMPARE(gefragt("zweite", 200), Antwort::Stumm);
        QCOMPARE(erhalten, QList<QByteArray>{"erste"});
        QLocalSocket dritter;
        verbinden(dritter);
        dritter.write("dritte\n");
        ereignisseAbarbeiten();
        sperre.reset();
        QTRY_COMPARE(dritter.state(), QLocalSocket::UnconnectedState);
        QCOMPARE(dritter.readAll(), QByteArray());
    }

    void eineNachrichtInStuecken()
    {
        const auto sperre = neu();
        QCOMPARE(sperre->nehmen(), Stand::Gehalten);
        QLocalSocket gast;
        verbinden(gast);
        for (const char *stueck : {"abg", "leich"}) {
            gast.write(stueck);
            QVERIFY(gast.waitForBytesWritten());
            ereignisseAbarbeiten();
        }
        QVERIFY(erhalten.isEmpty());
        gast.write("en\n");
        QTRY_COMPARE(erhalten, QList<QByteArray>{"abgleichen"});
        QTRY_COMPARE(gast.bytesAvailable(), 1);
        QCOMPARE(gast.readAll(), QByteArray(1, '\1'));
    }

    void werNurRedetFliegtHinaus()
    {
        const auto sperre = neu();
        QCOMPARE(sperre->nehmen(), Stand::Gehalten);
        QLocalSocket gast;
        verbinden(gast);
        gast.write(QByteArray(1 << 20, 'x'));
        QTRY_COMPARE(gast.state(), QLocalSocket::UnconnectedState);
        QVERIFY(erhalten.isEmpty());
        QCOMPARE(gefragt("x", 5000), Antwort::Angenommen);
    }

    // They are asked to leave after a while; until then there is room for others.
    void stilleGaesteHaltenNichtAuf()
    {
        const auto sperre = neu();
        QCOMPARE(sperre->nehmen(), Stand::Gehalten);
        std::vector<std::unique_ptr<QLocalSocket>> gaeste;
        for (int i = 0; i < 20; ++i) {
            gaeste.push_back(std::make_unique<QLocalSocket>());
            verbinden(*gaeste.back());
        }
        ereignisseAbarbeiten();
        QCOMPARE(gefragt("x", 5000), Antwort::Angenommen);
    }

    void werKeinenPlatzFindetWartetAnDerTuer()
    {
        const auto sperre = neu();
        QCOMPARE(sperre->nehmen(), Stand::Gehalten);
        std::vector<std::unique_ptr<QLocalSocket>> gaeste;
        for (int i = 0; i < 64; ++i) {
            gaeste.push_back(std::make_unique<QLocalSocket>());
            verbinden(*gaeste.back());
        }
        ereignisseAbarbeiten();
        QLocalSocket letzter;
        verbinden(letzter);
        letzter.write("x\n");
        letzter.flush();
        ereignisseAbarbeiten();
        QVERIFY(erhalten.isEmpty());
        gaeste.front()->abort();
        QTRY_COMPARE(erhalten, QList<QByteArray>{"x"});
    }

private:
    [[nodiscard]] QString pfad(const QString &name) const { return ordner->filePath(name); }

    [[nodiscard]] std::function<bool(const QByteArray &)> annehmer()
    {
        return [this](const QByteArray &nachricht) {
            erhalten.append(nachricht);
            return nimmt;
        };
    }

    [[nodiscard]] std::unique_ptr<Ordnersperre> neu()
    {
        return std::make_unique<Ordnersperre>(ordner->path(), annehmer());
    }

    // Another process would ask; it blocks.
    [[nodiscard]] Antwort gefragt(const QByteArray &nachricht, int millisekunden,
                                  const QString &wo = {}) const
    {
        std::optional<Antwort> antwort;
        const QString dort = wo.isEmpty() ? ordner->path() : wo;
        const std::unique_ptr<QThread> faden(QThread::create([&] {
            antwort = Ordnersperre(dort, {}).fragen(nachricht, QDeadlineTimer(millisekunden));
        }));
        faden->start();
        (void)QTest::qWaitFor([&faden] { return faden->isFinished(); }, 20'000);
        faden->wait();
        return antwort.value_or(Antwort::Stumm);
    }

    void verbinden(QLocalSocket &socket) const
    {
        socket.connectToServer(Ordnersperre::socketort(ordner->path()));
        QVERIFY(socket.waitForConnected());
    }

    static mode_t rechte(const QString &datei)
    {
        struct stat art = {};
        return ::stat(QFile::encodeName(datei).constData(), &art) == 0 ? art.st_mode & 0777U : 0U;
    }

    QList<QByteArray> erhalten;
    bool nimmt = true;
    std::unique_ptr<QTemporaryDir> ordner;
};

KALVARO_TEST(TestOrdnersperre)
#include "tst_ordnersperre.moc"
