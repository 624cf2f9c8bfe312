#pragma once

#include <QByteArray>
#include <QList>

#include <tl/expected.hpp>

namespace kalvaro {

// A program to start, all in the file system's encoding.
struct Startbefehl
{
    QByteArray programm;         // absolute path; its only argument is this path
    QList<QByteArray> variablen; // "NAME=value", the whole environment
    QByteArray ordner;           // working directory; "/" when it cannot be entered
};

// Starts a program that has nothing to do with this one any more: a session and process group of
// its own, no child of ours (so never a zombie), no descriptors of ours, all signals as they are
// by default.
//
// Returns a descriptor that the caller closes: it yields an errno as an int when the program could
// not be run, and its end when it runs. Fails with an errno when it does not come that far.
[[nodiscard]] tl::expected<int, int> losgeloestStarten(const Startbefehl &befehl);

} // namespace kalvaro
