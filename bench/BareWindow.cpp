// bare-window: a window of the toolkit with two labels and a button, and nothing else. The least
// that the first paint of the installer's window can cost.

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWidget>

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QWidget window;
    QVBoxLayout layout(&window);
    layout.addWidget(new QLabel("A title"));
    layout.addWidget(new QLabel("A text below it"));
    layout.addWidget(new QPushButton("Continue"));
    window.resize(760, 520);
    window.show();
    return QApplication::exec();
}
