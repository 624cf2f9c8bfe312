#include "platform/linux/startfehler.h"
#include "testlauf.h"

#include <cerrno>
#include <cstring>

using namespace kalvaro;
using namespace Qt::StringLiterals;

class TestStartfehler final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nenntDieDatei_data()
    {
        QTest::addColumn<int>("fehler");
        QTest::addColumn<bool>("bekannt");
        for (const int fehler :
             {ENOENT, ENOTDIR, EACCES, EPERM, ENOEXEC, EINVAL, ELIBBAD, ELOOP, ENAMETOOLONG,
              ETXTBSY, E2BIG, EIO, ENOMEM, EAGAIN, EMFILE, ENFILE}) {
            QTest::newRow(strerrorname_np(fehler)) << fehler << true;
        }
        QTest::newRow("any other") << static_cast<int>(EFAULT) << false;
    }

    void nenntDieDatei()
    {
        QFETCH(const int, fehler);
        QFETCH(const bool, bekannt);
        const QString datei = u"/A/100 %1 %2/rekordbox"_s;
        QString text = startfehlertext(fehler, datei);
        QVERIFY(text.contains(u'„' + datei + u'“'));
        QVERIFY(text.endsWith(u'.'));
        QVERIFY(!text.remove(datei).contains(u'%'));
        QCOMPARE(text.contains(u"(Fehler %1)"_s.arg(fehler)), !bekannt);
    }
};

KALVARO_TEST(TestStartfehler)
#include "tst_startfehler.moc"
