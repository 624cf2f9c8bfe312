#pragma once

#include "settingswindow/textvorrat.h"

#include <QByteArray>
#include <QString>

#include <initializer_list>
#include <vector>

namespace kalvaro {

// One playlist or folder.
struct Knoten
{
    QString uuid;
    QString name;
    bool ordner = false;
    double titel = 0; // number of tracks
    bool haken = false;
    int eltern = -1; // place of the folder that holds it; -1 at the top level
    int ende = 0;    // one past the place of its last descendant

    bool operator==(const Knoten &) const = default;
};

// A whole tree, depth first: each folder stands right before what it holds, so the descendants of
// the node at place `i` are those from `i + 1` up to before `ende`. Whoever walks this list never
// recurses, however deep the tree is.
//
// Kept in a few large blocks, so that a tree of 100,000 takes little and goes at once.
class Knotenliste
{
public:
    Knotenliste() = default;
    Knotenliste(std::initializer_list<Knoten> knoten);

    [[nodiscard]] size_t size() const { return aeste_.size(); }
    [[nodiscard]] bool empty() const { return aeste_.empty(); }
    [[nodiscard]] Knoten operator[](size_t i) const;
    [[nodiscard]] Knoten front() const { return (*this)[0]; }
    [[nodiscard]] Knoten back() const { return (*this)[size() - 1]; }
    bool operator==(const Knotenliste &andere) const;

    // A single field of the node at `i`.
    [[nodiscard]] int eltern(int i) const { return ast(i).eltern; }
    [[nodiscard]] int ende(int i) const { return ast(i).ende; }
    [[nodiscard]] bool ordner(int i) const { return ast(i).ordner; }
    [[nodiscard]] bool haken(int i) const { return ast(i).haken; }
    [[nodiscard]] double titel(int i) const { return ast(i).titel; }
    [[nodiscard]] QString name(int i) const { return texte_.text(ast(i).name); }
    [[nodiscard]] QString uuid(int i) const { return texte_.text(ast(i).uuid); }

    // The first node with the same uuid; -1 for one without, which cannot be named.
    [[nodiscard]] int namensvetter(int i) const { return ast(i).namensvetter; }

    // The name in search form, UTF-8.
    [[nodiscard]] QByteArrayView suchname(int i) const;

    void setHaken(int i, bool an) { aeste_[static_cast<size_t>(i)].haken = an; }

    // For whoever builds it: nodes are appended in order, what they hold before they are closed.
    // `uuid` and `name` lie in `texte`, which is handed over at the end.
    struct Ast
    {
        double titel = 0;
        int eltern = -1;
        int ende = 0;
        int namensvetter = -1;
        Textort uuid{};
        Textort name{};
        quint32 suchname = 0; // where its search form ends
        bool ordner = false;
        bool haken = false;
    };
    void reservieren(size_t anzahl) { aeste_.reserve(anzahl); }
    int anfuegen(const Ast &ast);
    void schliessen(int i) { aeste_[static_cast<size_t>(i)].ende = static_cast<int>(size()); }
    void abschliessen(Textvorrat texte);

private:
    [[nodiscard]] const Ast &ast(int i) const { return aeste_[static_cast<size_t>(i)]; }
    void namensvetternSuchen();
    void suchnamenBilden();

    std::vector<Ast> aeste_;
    Textvorrat texte_;
    QByteArray suchnamen_; // side by side
};

} // namespace kalvaro
