// The floor: the least that a Qt Widgets program with something to read can be. Shows a window with
// one line of text and ends on SIGTERM.

#include <QApplication>
#include <QLabel>

int main(int argc, char *argv[])
{
    QApplication anwendung(argc, argv);
    QLabel fenster(QStringLiteral("kalvaro"));
    fenster.setFixedSize(520, 600);
    fenster.show();
    return QApplication::exec();
}
