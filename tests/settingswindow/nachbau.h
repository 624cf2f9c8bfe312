#pragma once

#include "foundation/formate.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QSet>

#include <map>
#include <memory>
#include <vector>

namespace kalvaro {

using namespace Qt::StringLiterals;

// The rules once more, as simply as they can be said: nodes with pointers, recursion, and
// everything recomputed from the entries each time.
class Nachbau
{
public:
    struct Ast
    {
        QString uuid;
        QString name;
        bool ordner = false;
        double titel = 0;
        bool haken = false;
        Ast *eltern = nullptr;
        std::vector<std::unique_ptr<Ast>> kinder;
    };

    explicit Nachbau(const QJsonObject &antwort)
    {
        for (const QJsonValue &uuid : antwort.value(u"lokal"_s).toArray()) {
            lokal.insert(alsText(uuid));
        }
        for (const QJsonValue &wert : antwort.value(u"playlisten"_s).toArray()) {
            if (wert.isObject()) {
                const QJsonObject felder = wert.toObject();
                eintraege.append(
                    {felder, alsText(felder.value(u"id"_s)), alsText(felder.value(u"eltern"_s))});
            }
        }
        QStringList gruppen;
        for (const Eintrag &e : std::as_const(eintraege)) {
            const bool bekannt = !e.eltern.isEmpty() && besitzer(e.eltern) >= 0;
            if (!bekannt && !gruppen.contains(e.eltern)) {
                gruppen.append(e.eltern);
            }
        }
        for (const QString &gruppe : gruppen) {
            gruppeBauen(gruppe, nullptr, wurzeln);
        }
    }

    [[nodiscard]] QList<Ast *> alle() const
    {
        QList<Ast *> liste;
        sammeln(wurzeln, liste);
        return liste;
    }

    void klicken(qsizetype nummer, bool an)
    {
        Ast *const ast = alle().at(nummer);
        nachUnten(*ast, an);
        for (Ast *oben = ast->eltern; !an && oben != nullptr; oben = oben->eltern) {
            oben->haken = false;
        }
    }

    [[nodiscard]] QStringList auswahl() const
    {
        QStringList uuids;
        for (const Ast *ast : alle()) {
            if (ast->haken && !ast->uuid.isEmpty() && !uuids.contains(ast->uuid)) {
                uuids.append(ast->uuid);
            }
        }
        return uuids;
    }

    [[nodiscard]] QString zusammenfassung() const
    {
        int n = 0;
        double t = 0;
        for (const Ast *ast : alle()) {
            n += ast->haken && !ast->ordner ? 1 : 0;
            t += ast->haken && !ast->ordner ? ast->titel : 0;
        }
        if (n == 0) {
            return u"Keine Playlist ausgewählt – alle Titel kommen von der Musikplatte."_s;
        }
        return u"%1 %2 ausgewählt (%3 Einträge). Kopiert wird beim nächsten Abgleich."_s.arg(
            QString::number(n), n == 1 ? u"Playlist"_s : u"Playlisten"_s, fZahl(t));
    }

private:
    struct Eintrag
    {
        QJsonObject felder;
        QString id;
        QString eltern;
    };

    static QString alsText(const QJsonValue &wert)
    {
        if (wert.isBool()) {
            return wert.toBool() ? u"1"_s : u"0"_s;
        }
        return wert.isDouble() ? QString::number(wert.toDouble()) : wert.toString();
    }
    static double alsZahl(const QJsonValue &wert)
    {
        return wert.isString() ? wert.toString().toDouble() : wert.toVariant().toDouble();
    }

    [[nodiscard]] qsizetype besitzer(const QString &id) const
    {
        for (qsizetype i = 0; i < eintraege.size(); ++i) {
            if (eintraege[i].id == id) {
                return i;
            }
        }
        return -1;
    }

    void gruppeBauen(const QString &gruppe, Ast *oben, std::vector<std::unique_ptr<Ast>> &ziel)
    {
        std::multimap<double, qsizetype> geordnet; // equal keys keep the order of insertion
        for (qsizetype i = 0; i < eintraege.size(); ++i) {
            if (eintraege[i].eltern == gruppe) {
                geordnet.emplace(alsZahl(eintraege[i].felder.value(u"seq"_s)), i);
            }
        }
        for (const auto &[seq, i] : geordnet) {
            const QJsonObject &e = eintraege[i].felder;
            auto ast = std::make_unique<Ast>();
            ast->uuid = alsText(e.value(u"uuid"_s));
            ast->name = alsText(e.value(u"name"_s));
            const QJsonValue ordner = e.value(u"ordner"_s);
            ast->ordner = ordner.toBool() || ordner.toDouble() != 0;
            ast->titel = alsZahl(e.value(u"titel"_s));
            ast->haken = !ast->uuid.isEmpty() && lokal.contains(ast->uuid);
            ast->eltern = oben;
            const QString id = eintraege[i].id;
            Ast *const neu = ast.get();
            ziel.push_back(std::move(ast));
            if (neu->ordner && !id.isEmpty() && besitzer(id) == i) {
                gruppeBauen(id, neu, neu->kinder);
            }
        }
    }

    static void sammeln(const std::vector<std::unique_ptr<Ast>> &aeste, QList<Ast *> &liste)
    {
        for (const auto &ast : aeste) {
            liste.append(ast.get());
            sammeln(ast->kinder, liste);
        }
    }

    static void nachUnten(Ast &ast, bool an)
    {
        ast.haken = an;
        for (const auto &kind : ast.kinder) {
            nachUnten(*kind, an);
        }
    }

    QSet<QString> lokal;
    QList<Eintrag> eintraege;
    std::vector<std::unique_ptr<Ast>> wurzeln;
};

// Random answers, most of them broken in some way.
class Zufall
{
public:
    explicit Zufall(quint32 keim)
        : quelle(keim)
    {
    }

    int bis(int ende) { return int(quelle.bounded(ende)); }
    QJsonValue eines(const QJsonArray &werte) { return werte.at(bis(int(werte.size()))); }

    QJsonObject antwort()
    {
        const int n = bis(16);
        QJsonArray liste;
        for (int i = 0; i < n; ++i) {
            if (bis(25) == 0) {
                liste.append(eines({7, u"x"_s, QJsonValue::Null, QJsonArray{1}}));
                continue;
            }
            liste.append(eintragBauen(i, n));
        }
        QJsonArray lokal;
        for (int i = bis(8); i > 0; --i) {
            lokal.append(eines({u"u1"_s, u"u2"_s, u"u3"_s, u"u4"_s, u"u5"_s, u"weg"_s, u""_s, 7}));
        }
        return {{u"playlisten"_s, liste}, {u"lokal"_s, lokal}};
    }

private:
    QJsonObject eintragBauen(int nummer, int n)
    {
        QJsonObject e{{u"name"_s, u"N%1"_s.arg(nummer)}};
        const auto setzen = [&](const QString &schluessel, const QJsonValue &wert) {
            if (bis(12) != 0) {
                e.insert(schluessel, wert);
            }
        };
        // Mostly ids of their own, so that trees grow deep.
        setzen(u"id"_s, bis(4) == 0 ? eines({1, u"1"_s, u"2"_s, u""_s, true})
                                    : QJsonValue(QString::number(nummer)));
        setzen(u"eltern"_s, bis(4) == 0 ? eines({u"root"_s, u""_s, u"fremd"_s, QJsonValue::Null, 2})
                                        : QJsonValue(QString::number(bis(n))));
        setzen(u"uuid"_s, eines({u"u1"_s, u"u2"_s, u"u3"_s, u"u4"_s, u"u5"_s, u"u6"_s, u""_s, 7}));
        setzen(u"ordner"_s, eines({true, true, true, false, 1, 0, u"true"_s}));
        setzen(u"titel"_s, eines({3, 1208, u"44"_s, u"viele"_s, -2, 2.5, true}));
        setzen(u"seq"_s, eines({0, 1, 2, 10, u"1"_s, u"b"_s, -1, 1.5, false}));
        return e;
    }

    QRandomGenerator quelle;
};

} // namespace kalvaro
