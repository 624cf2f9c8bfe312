#include "platform/macos/systemzertifikate.h"
#include "testlauf.h"

#include <QTemporaryFile>

using namespace kalvaro;
using namespace Qt::StringLiterals;

class TestSystemzertifikate final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        qunsetenv("SSL_CERT_FILE");
        qunsetenv("SSL_CERT_DIR");
        QVERIFY(datei.open());
    }

    void dieDesSystemsGelten()
    {
        systemzertifikateNehmen(datei.fileName());
        QCOMPARE(qgetenv("SSL_CERT_FILE"), datei.fileName().toLocal8Bit());
    }

    void andereGehenVor()
    {
        qputenv("SSL_CERT_FILE", "/eigene.pem");
        systemzertifikateNehmen(datei.fileName());
        QCOMPARE(qgetenv("SSL_CERT_FILE"), QByteArray("/eigene.pem"));
        qunsetenv("SSL_CERT_FILE");
        qputenv("SSL_CERT_DIR", "/eigene");
        systemzertifikateNehmen(datei.fileName());
        QVERIFY(!qEnvironmentVariableIsSet("SSL_CERT_FILE"));
    }

    void ohneDateiBleibtEsBeimUeblichen()
    {
        systemzertifikateNehmen(datei.fileName() + u".fehlt"_s);
        QVERIFY(!qEnvironmentVariableIsSet("SSL_CERT_FILE"));
    }

private:
    QTemporaryFile datei;
};

KALVARO_TEST(TestSystemzertifikate)
#include "tst_systemzertifikate.moc"
