// What the check-up is told of the start at login, whatever brings it about.

#include "doubles/dateien.h"
#include "platform/schreibtischauskunft.h"
#include "prueflinge.h"
#include "testlauf.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <sys/stat.h>

using namespace kalvaro;
using namespace Qt::StringLiterals;

using Eintrag = Schreibtischauskunft::Anmeldeeintrag;

class TestVertragSchreibtisch final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data() { Vertrag<Schreibtischpruefling>::zeilen({u"linux"_s, u"macos"_s}); }
    void init() { p = Vertrag<Schreibtischpruefling>::neu(); }
    void cleanup() { p.reset(); }

    void ausgeschaltet() { QCOMPARE(gefragt(), (Eintrag{p->datei(), false, {}, {}, false})); }

    // What the program itself writes is sound, whatever it is called.
    void angeschaltet()
    {
        for (const QString &name : {u"kalvaro"_s, u"mein \"kal & varo\" <5%>"_s, u"größer/das"_s}) {
            const QString programm = ordner.filePath(name);
            dateiSchreiben(programm, "#!/bin/sh\n", true);
            p->anschalten(programm);
            QCOMPARE(gefragt(), (Eintrag{p->datei(), true, {}, programm, true}));
        }
    }

    void dasProgrammIstWeg()
    {
        p->anschalten(u"/gibt/es/nicht"_s);
        QCOMPARE(gefragt(), (Eintrag{p->datei(), true, {}, u"/gibt/es/nicht"_s, false}));
    }

    void nichtAusfuehrbar()
    {
        const QString programm = ordner.filePath(u"nur Text"_s);
        dateiSchreiben(programm, "x");
        for (const QString &was : {programm, ordner.path()}) {
            p->anschalten(was);
            QCOMPARE(gefragt(), (Eintrag{p->datei(), true, {}, was, false}));
        }
    }

    void abgeschaltet()
    {
        p->anschalten(u"/bin/sh"_s);
        const QString zeile = p->abschalten();
        QCOMPARE(gefragt(), (Eintrag{p->datei(), true, zeile, u"/bin/sh"_s, true}));
    }

    void unleserliches()
    {
        for (const QByteArray &inhalt : {QByteArray(), QByteArray("by hand\n"),
                                         QByteArray("\0\xff", 2), QByteArray(1 << 20, '<')}) {
            dateiSchreiben(p->datei(), inhalt);
            QCOMPARE(gefragt(), (Eintrag{p->datei(), true, {}, {}, false}));
        }
    }

    // Neither would ever end when it was read.
    void wasKeineDateiIst()
    {
        QVERIFY(QDir().mkpath(QFileInfo(p->datei()).path()));
        QVERIFY(QFile::link(u"/dev/zero"_s, p->datei()));
        QCOMPARE(gefragt(), (Eintrag{p->datei(), true, {}, {}, false}));
        QVERIFY(QFile::remove(p->datei()));
        QCOMPARE(::mkfifo(QFile::encodeName(p->datei()).constData(), 0600), 0);
        QCOMPARE(gefragt(), (Eintrag{p->datei(), true, {}, {}, false}));
    }

private:
    // Looking changes nothing.
    [[nodiscard]] Eintrag gefragt() const
    {
        const bool da = QFile::exists(p->datei());
        const Eintrag eintrag = p->auskunft().anmeldeeintrag();
        return QFile::exists(p->datei()) == da ? eintrag : Eintrag();
    }

    const QTemporaryDir ordner;
    std::unique_ptr<Schreibtischpruefling> p;
};

KALVARO_TEST(TestVertragSchreibtisch)
#include "tst_vertrag_schreibtisch.moc"
