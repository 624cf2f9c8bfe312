// The floor: the least that a Qt Widgets program can be. Shows an empty window and ends on SIGTERM.

#include <QApplication>
#include <QWidget>

int main(int argc, char *argv[])
{
    QApplication anwendung(argc, argv);
    QWidget fenster;
    fenster.setFixedSize(520, 600);
    fenster.show();
    return QApplication::exec();
}
