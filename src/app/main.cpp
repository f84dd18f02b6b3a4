// Placeholder entry point until the start-up sequence lands.
#include <QApplication>
#include <QMainWindow>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QMainWindow w;
    w.setWindowTitle("Tessarelle");
    w.show();
    return app.exec();
}
