#pragma once

#include <QTest>

#include <functional>
#include <map>
#include <memory>

namespace kalvaro {

// What a port promises is tested once, for each adapter that is built and for the double that takes
// its place in other tests. A Pruefling is one of these together with the world around it, as far
// as the test has a hand in it.
struct Pruefling
{
    Pruefling() = default;
    Pruefling(const Pruefling &) = delete;
    Pruefling &operator=(const Pruefling &) = delete;
    virtual ~Pruefling() = default;
};

template<typename Art>
class Vertrag
{
public:
    using Bau = std::function<std::unique_ptr<Art>()>;

    // A static object for each that keeps to the contract. The first word of its name is the
    // system, or "double"; `braucht` are the programs that it needs installed.
    Vertrag(const QString &name, Bau bau, const QStringList &braucht = {})
    {
        alle()[name] = {std::move(bau), braucht};
    }

    // In initTestCase_data(): has the tests run for each of them. These, and no others, are to be
    // there of the systems that are built: a file may be missing from a list.
    static void zeilen(QStringList erwartet)
    {
        static const QStringList systeme = QStringLiteral(KALVARO_SYSTEME).split(u' ');
        erwartet.removeIf(
            [](const QString &name) { return !systeme.contains(name.section(u',', 0, 0)); });
        erwartet.sort();
        QStringList namen;
        QTest::addColumn<QString>("pruefling");
        for (const auto &[name, einer] : alle()) {
            namen.append(name);
            QTest::newRow(qPrintable(name)) << name;
        }
        if (namen != erwartet) {
            qFatal("The contract is kept by %s, not by %s", qPrintable(namen.join(u" | ")),
                   qPrintable(erwartet.join(u" | ")));
        }
    }

    // In init(), for the row that runs.
    [[nodiscard]] static QStringList braucht() { return dieser().braucht; }
    [[nodiscard]] static std::unique_ptr<Art> neu() { return dieser().bau(); }

private:
    struct Eintrag
    {
        Bau bau;
        QStringList braucht;
    };

    static std::map<QString, Eintrag> &alle()
    {
        static std::map<QString, Eintrag> liste;
        return liste;
    }

    static const Eintrag &dieser()
    {
        QFETCH_GLOBAL(QString, pruefling);
        return alle().at(pruefling);
    }
};

} // namespace kalvaro
