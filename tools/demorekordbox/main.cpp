// Stands in for rekordbox in the demo: a process of that name, in a bundle, that ends when its
// window is closed, on SIGTERM or SIGINT, or DEMO_REKORDBOX_DAUER seconds after its start.

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

int main(int argc, char **argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        const bool wayland = qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
        // The first one that works; without any display it just waits, unseen.
        qputenv("QT_QPA_PLATFORM", wayland ? "wayland;xcb;offscreen" : "xcb;offscreen");
    }
    const QApplication app(argc, argv);

    QWidget fenster;
    fenster.setWindowTitle(u"Demo-rekordbox"_s);
    QVBoxLayout stapel(&fenster);
    stapel.setContentsMargins(32, 24, 32, 24);
    stapel.setSpacing(16);
    QLabel text(u"Hier liefe jetzt rekordbox."_s);
    text.setAlignment(Qt::AlignCenter);
    QPushButton beenden(u"Beenden"_s);
    stapel.addWidget(&text);
    stapel.addWidget(&beenden);
    QObject::connect(&beenden, &QPushButton::clicked, &fenster, &QWidget::close);
    fenster.show();

    bool begrenzt = false;
    const double dauer = qEnvironmentVariable("DEMO_REKORDBOX_DAUER").toDouble(&begrenzt);
    if (begrenzt && dauer >= 0 && dauer < 1e6) {
        QTimer::singleShot(static_cast<int>(dauer * 1000), &fenster, &QWidget::close);
    }
    return QApplication::exec();
}
