#pragma once

#include <QCoreApplication>
#include <QTest>

#ifdef QT_WIDGETS_LIB
#include <QApplication>
#endif

namespace kalvaro {

// The test classes of a room are one program, so that they are linked only once. Its first argument
// names the class to run, the others are Qt Test's; without a name all run, each in a process of
// its own.
class Testlauf
{
public:
    using Ausfuehrung = int (*)(int argc, char **argv);

    Testlauf(const char *klasse, Ausfuehrung lauf);
};

// Before the application there is a class's static vorDerAnwendung(), where it has one.
template<typename Anwendung, typename Klasse>
int testAusfuehren(int argc, char **argv)
{
    if constexpr (requires { Klasse::vorDerAnwendung(); }) {
        Klasse::vorDerAnwendung();
    }
    Anwendung anwendung(argc, argv);
    Anwendung::setAttribute(Qt::AA_Use96Dpi);
    Klasse test;
    return QTest::qExec(&test, argc, argv);
}

// The first of these programs that is not installed; empty when all are.
[[nodiscard]] QString fehlendes(const QStringList &programme);

// Whether this process has a process namespace of its own (eigene-prozesse.sh).
[[nodiscard]] bool eigeneProzesse();

} // namespace kalvaro

// In place of QTEST_GUILESS_MAIN and QTEST_MAIN. The class is named after its file, TestXyz in
// tst_xyz.cpp, and ctest runs it under the file's name.
#define KALVARO_TEST(Klasse)                                                                       \
    static const kalvaro::Testlauf lauf##Klasse(                                                   \
        #Klasse, kalvaro::testAusfuehren<QCoreApplication, Klasse>);
#define KALVARO_FENSTERTEST(Klasse)                                                                \
    static const kalvaro::Testlauf lauf##Klasse(#Klasse,                                           \
                                                kalvaro::testAusfuehren<QApplication, Klasse>);

// Skips the test where one of these programs is missing; in initTestCase(), the whole class.
#define KALVARO_BRAUCHT(...)                                                                       \
    do {                                                                                           \
        const QString fehlt = kalvaro::fehlendes({__VA_ARGS__});                                   \
        if (!fehlt.isEmpty()) {                                                                    \
            QSKIP(qPrintable(QStringLiteral("needs ") + fehlt));                                   \
        }                                                                                          \
    } while (false)

// The same where it would count processes of the machine.
#define KALVARO_BRAUCHT_EIGENE_PROZESSE()                                                          \
    do {                                                                                           \
        if (!kalvaro::eigeneProzesse()) {                                                          \
            QSKIP("needs a process namespace: run it through tests/eigene-prozesse.sh");           \
        }                                                                                          \
    } while (false)
