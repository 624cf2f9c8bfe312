#pragma once

#include "antworten.h"
#include "doubles/datenordner.h"
#include "doubles/ereignisse.h"
#include "doubles/fakeanmeldestart.h"
#include "doubles/scripttransport.h"
#include "doubles/testuhr.h"
#include "foundation/einstellungen.h"
#include "settingswindow/baumansicht.h"
#include "settingswindow/einstellungenfenster.h"
#include "settingswindow/playlistenmodell.h"
#include "ui/beschriftung.h"

#include <QPointer>
#include <QSignalSpy>
#include <QTest>

namespace kalvaro {

// What the tests of the settings sheet stand on: a sheet on a parent window, with a cloud, a clock
// and a start at login that they hold in their hands, all new for each test.
class Fensterpruefstand : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

protected:
    EinstellungenFenster &oeffnen(const QString &betrieb = {});
    void laden(const QJsonObject &daten);
    void zentraleErneuern();
    template<typename T>
    [[nodiscard]] T *feld(const QString &name) const
    {
        return fenster->findChild<T *>(name);
    }
    [[nodiscard]] Beschriftung *info() const
    {
        return feld<Beschriftung>(QStringLiteral("lblInfo"));
    }
    [[nodiscard]] PlaylistenModell &modell() const
    {
        return feld<Baumansicht>(QStringLiteral("baum"))->modell();
    }
    void anhaken(int stelle, bool an = true) const
    {
        modell().setData(modell().zuStelle(stelle), an ? Qt::Checked : Qt::Unchecked,
                         Qt::CheckStateRole);
    }
    [[nodiscard]] QJsonObject gesendet() const
    {
        return QJsonDocument::fromJson(weg->anfragen().last().body.value_or(QByteArray())).object();
    }

    Datenordner ordner;
    std::unique_ptr<Testuhr> uhr;
    std::unique_ptr<Scripttransport> weg;
    std::unique_ptr<Zentrale> zentrale;
    std::unique_ptr<Einstellungen> einst;
    std::unique_ptr<FakeAnmeldestart> anmeldestart;
    QList<Installation> installationen;
    std::unique_ptr<QWidget> eltern;
    QPointer<EinstellungenFenster> fenster;
    std::unique_ptr<QSignalSpy> ende;
};

} // namespace kalvaro
