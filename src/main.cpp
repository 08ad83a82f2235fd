// Process entry: the self-test, a snapshot mode, or the application.
#include <QApplication>
#include <QMainWindow>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QMainWindow window;
    window.show();
    return app.exec();
}
