#include "settingswindow/knotenliste.h"

#include "settingswindow/suchform.h"

#include <QHashFunctions>

#include <algorithm>
#include <utility>

namespace kalvaro {

Knotenliste::Knotenliste(std::initializer_list<Knoten> knoten)
{
    Textvorrat texte;
    for (const Knoten &k : knoten) {
        anfuegen({.titel = k.titel,
                  .eltern = k.eltern,
                  .ende = k.ende,
                  .uuid = texte.hinzu(k.uuid),
                  .name = texte.hinzu(k.name),
                  .ordner = k.ordner,
                  .haken = k.haken});
        aeste_.back().ende = k.ende;
    }
    abschliessen(std::move(texte));
}

Knoten Knotenliste::operator[](size_t i) const
{
    const Ast &a = aeste_[i];
    return {texte_.text(a.uuid), texte_.text(a.name), a.ordner, a.titel, a.haken, a.eltern, a.ende};
}

bool Knotenliste::operator==(const Knotenliste &andere) const
{
    bool gleich = size() == andere.size();
    for (size_t i = 0; gleich && i < size(); ++i) {
        gleich = (*this)[i] == andere[i];
    }
    return gleich;
}

QByteArrayView Knotenliste::suchname(int i) const
{
    const qsizetype ab = i > 0 ? ast(i - 1).suchname : 0;
    return QByteArrayView(suchnamen_).sliced(ab, ast(i).suchname - ab);
}

int Knotenliste::anfuegen(const Ast &ast)
{
    const int stelle = static_cast<int>(size());
    aeste_.push_back(ast);
    aeste_.back().ende = stelle + 1;
    return stelle;
}

void Knotenliste::abschliessen(Textvorrat texte)
{
    texte_ = std::move(texte);
    texte_.abschliessen();
    aeste_.shrink_to_fit();
    namensvetternSuchen();
    suchnamenBilden();
}

// By the hashes of the uuids, in order; equal ones are compared as texts. Different texts with one
// hash are as good as never.
void Knotenliste::namensvetternSuchen()
{
    const size_t saat = QHashSeed::globalSeed();
    const auto wert = [this, saat](Textort ort) {
        return ort.breit != 0 ? qHash(texte_.breit(ort), saat)
                              : qHash(QByteArrayView(texte_.schmal(ort)), saat);
    };
    const auto gleich = [this](Textort a, Textort b) {
        return a.breit == b.breit && (a.breit != 0 ? texte_.breit(a) == texte_.breit(b)
                                                   : texte_.schmal(a) == texte_.schmal(b));
    };
    std::vector<std::pair<size_t, int>> reihe;
    reihe.reserve(size());
    for (size_t i = 0; i < size(); ++i) {
        if (aeste_[i].uuid.laenge > 0) {
            reihe.emplace_back(wert(aeste_[i].uuid), static_cast<int>(i));
        }
    }
    std::sort(reihe.begin(), reihe.end());
    for (size_t von = 0, i = 0; i < reihe.size(); ++i) {
        von = reihe[i].first == reihe[von].first ? von : i;
        Ast &a = aeste_[static_cast<size_t>(reihe[i].second)];
        for (size_t j = von; a.namensvetter < 0; ++j) {
            const Ast &b = aeste_[static_cast<size_t>(reihe[j].second)];
            a.namensvetter = gleich(a.uuid, b.uuid) ? reihe[j].second : -1;
        }
    }
}

// Some characters unfold to eighteen; whoever sends megabytes of them is not searched any more.
void Knotenliste::suchnamenBilden()
{
    constexpr qint64 immerErlaubt = qint64{16} * 1024 * 1024;
    const qint64 hoechstens = immerErlaubt + 2 * texte_.bytes();
    suchnamen_.reserve(texte_.bytes() / 2);
    for (Ast &a : aeste_) {
        const QByteArray form = a.name.breit != 0 ? suchform(texte_.text(a.name)).toUtf8()
                                                  : suchbytes(texte_.schmal(a.name));
        suchnamen_ += suchnamen_.size() + form.size() <= hoechstens ? form : QByteArray();
        a.suchname = static_cast<quint32>(suchnamen_.size());
    }
    suchnamen_.squeeze();
}

} // namespace kalvaro
