#include "buehne.h"
#include "szenen.h"

#include "doubles/ereignisse.h"
#include "settingswindow/antworten.h"
#include "settingswindow/baumansicht.h"
#include "settingswindow/playlistenmodell.h"

#include <QScrollBar>
#include <QTest>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr QSize platz(420, 220);

QJsonArray playlisten()
{
    const auto benannt = [](const QString &name, int titel, int seq) {
        return QJsonObject{{u"name"_s, name}, {u"titel"_s, titel}, {u"seq"_s, seq}};
    };
    return {ordner(u"1"_s, u""_s, benannt(u"Sets 2026"_s, 0, 1)),
            eintrag(u"2"_s, u"1"_s, benannt(u"Warm-up"_s, 124, 1)),
            eintrag(u"3"_s, u"1"_s, benannt(u"Peak Time"_s, 1208, 2)),
            ordner(u"4"_s, u"1"_s, benannt(u"Nach Orten"_s, 0, 3)),
            eintrag(u"5"_s, u"4"_s, benannt(u"Köln"_s, 1, 1)),
            ordner(u"6"_s, u""_s, benannt(u"Genres"_s, 0, 2)),
            eintrag(u"7"_s, u"6"_s, benannt(u"House"_s, 2341, 1)),
            ordner(u"8"_s, u""_s, benannt(u"Leer"_s, 0, 3)),
            eintrag(u"9"_s, u""_s,
                    benannt(u"Alles, was seit dem letzten Sommer in keiner anderen Liste steht und "
                            "noch gehört werden will"_s,
                            12345, 4)),
            eintrag(u"10"_s, u""_s, benannt(u"תקליטייה 12, חדר ראשון"_s, 77, 5))};
}

// A tree on a stage.
struct Baum
{
    explicit Baum(const QJsonArray &liste = playlisten(), const QStringList &lokal = {u"u2"_s})
        : ansicht(new Baumansicht(modell))
        , buehne(ansicht, platz)
    {
        modell.setKnoten(baumAus(antwort(liste, lokal)));
        ereignisseAbarbeiten();
    }

    [[nodiscard]] QModelIndex zeile(const QString &name) const
    {
        for (int i = 0; i < std::ssize(modell.alle()); ++i) {
            if (modell.alle()[size_t(i)].name == name) {
                return modell.zuStelle(i);
            }
        }
        return {};
    }

    PlaylistenModell modell;
    Baumansicht *const ansicht; // the stage's
    Buehne buehne;
};

QImage zugeklappt()
{
    return Baum(playlisten(), {u"u2"_s, u"u5"_s}).buehne.bild();
}

QImage aufgeklappt()
{
    Baum baum;
    baum.ansicht->expandAll();
    return baum.buehne.bild();
}

QImage angehakt()
{
    Baum baum(playlisten(), {});
    baum.ansicht->expandAll();
    baum.modell.setData(baum.zeile(u"Sets 2026"_s), Qt::Checked, Qt::CheckStateRole);
    baum.modell.setData(baum.zeile(u"Köln"_s), Qt::Unchecked, Qt::CheckStateRole);
    return baum.buehne.bild();
}

QImage mitTasten()
{
    Baum baum;
    baum.ansicht->expandAll();
    baum.buehne.mitTasten();
    baum.ansicht->setCurrentIndex(baum.zeile(u"Sets 2026"_s));
    QTest::keyClick(baum.ansicht, Qt::Key_Down);
    return baum.buehne.bild();
}

QImage gesperrt()
{
    Baum baum;
    baum.ansicht->expandAll();
    baum.ansicht->setEnabled(false);
    return baum.buehne.bild();
}

QImage gefiltert(const QString &suchwort)
{
    Baum baum;
    baum.ansicht->filtern(suchwort);
    return baum.buehne.bild();
}

QImage tief()
{
    Baum baum(kette(14), {});
    baum.ansicht->expandAll();
    ereignisseAbarbeiten();
    baum.ansicht->setCurrentIndex(baum.modell.zuStelle(14));
    baum.buehne.mitTasten();
    return baum.buehne.bild();
}

QImage leer()
{
    return Baum({}, {}).buehne.bild();
}

// A scroll bar where it belongs: in what it scrolls.
QImage rollbalken()
{
    const auto balken = [](Baum &baum) { return baum.ansicht->verticalScrollBar(); };
    const auto lang = [] {
        QJsonArray liste;
        for (int i = 0; i < 30; ++i) {
            liste.append(eintrag(QString::number(i), u""_s));
        }
        return liste;
    };
    Bogen bogen;
    const auto rechts = [](Buehne &buehne) {
        const QImage ganz = buehne.bild();
        const double m = ganz.devicePixelRatio();
        const bool gespiegelt = QGuiApplication::isRightToLeft();
        const QRectF streifen(gespiegelt ? 0 : platz.width() - 30, 0, 50, platz.height() + 20);
        return ganz.copy(QRectF(streifen.topLeft() * m, streifen.size() * m).toRect());
    };
    {
        Baum baum(lang(), {});
        bogen.dazu(u"oben"_s, rechts(baum.buehne));
        zeigen(*balken(baum), QPoint(6, 10));
        bogen.dazu(u"überfahren"_s, rechts(baum.buehne));
        QTest::mousePress(balken(baum), Qt::LeftButton, {}, QPoint(6, 10));
        bogen.dazu(u"gegriffen"_s, rechts(baum.buehne));
        QTest::mouseRelease(balken(baum), Qt::LeftButton, {}, QPoint(6, 10));
    }
    Baum baum(lang(), {});
    balken(baum)->setValue(balken(baum)->maximum());
    bogen.dazu(u"unten"_s, rechts(baum.buehne));
    baum.ansicht->setEnabled(false);
    bogen.dazu(u"gesperrt"_s, rechts(baum.buehne));
    return bogen.bild();
}

} // namespace

QList<Szene> baumszenen()
{
    return {
        {u"baum-zu"_s, zugeklappt, farben | anordnung},
        {u"baum-offen"_s, aufgeklappt, alles | Ansicht::Krumm},
        {u"baum-angehakt"_s, angehakt, farben},
        {u"baum-tasten"_s, mitTasten},
        {u"baum-gesperrt"_s, gesperrt, farben},
        {u"baum-gefiltert"_s, [] { return gefiltert(u"peak"_s); }, anordnung},
        {u"baum-nichts"_s, [] { return gefiltert(u"gibt es nicht"_s); }, farben | Ansicht::Gross},
        {u"baum-tief"_s, tief, anordnung},
        {u"baum-leer"_s, leer, farben},
        {u"rollbalken"_s, rollbalken}};
}

} // namespace kalvaro
