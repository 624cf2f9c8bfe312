#include "fensterpruefstand.h"

#include "ui/erscheinung.h"

#include <QApplication>
#include <QLineEdit>

namespace kalvaro {

using namespace Qt::StringLiterals;

void Fensterpruefstand::initTestCase()
{
    erscheinungEinrichten(*qApp);
}

void Fensterpruefstand::init()
{
    ordner.leeren();
    uhr = std::make_unique<Testuhr>();
    weg = std::make_unique<Scripttransport>(uhr.get());
    zentraleErneuern();
    einst = std::make_unique<Einstellungen>();
    anmeldestart = std::make_unique<FakeAnmeldestart>();
    installationen = {{u"7.1.4"_s, {}}, {u"6.8.5"_s, {}}};
    eltern = std::make_unique<QWidget>();
    eltern->show();
}

// A client that remembers no address.
void Fensterpruefstand::zentraleErneuern()
{
    zentrale =
        std::make_unique<Zentrale>(Konto{u"Demo"_s, u"demo-mac"_s, {}, {u"http://cloud"_s}}, *weg);
}

void Fensterpruefstand::cleanup()
{
    ende.reset();
    eltern.reset();
    zentrale.reset();
    QCOMPARE(weg->haengend(), 0);
    QCOMPARE(uhr->offen(), 0);
}

EinstellungenFenster &Fensterpruefstand::oeffnen(const QString &betrieb)
{
    fenster = new EinstellungenFenster({*zentrale, *einst, *anmeldestart, installationen, betrieb},
                                       eltern.get());
    ende = std::make_unique<QSignalSpy>(fenster, &QDialog::finished);
    fenster->open();
    (void)QTest::qWaitForWindowActive(fenster);
    return *fenster;
}

// Opens the sheet with the playlists of `daten`.
void Fensterpruefstand::laden(const QJsonObject &daten)
{
    if (fenster.isNull()) {
        oeffnen();
    }
    weg->dann(Scripttransport::antwort(200, "{}")); // the probe
    weg->dann(Scripttransport::antwort(200, alsText(daten)));
    fenster->laden();
    QTRY_VERIFY(feld<QLineEdit>(u"suchfeld"_s)->isEnabled());
    weg->vergessen();
}

} // namespace kalvaro
