#include "mainwindow.h"

#include <QApplication>

#include <cstdio>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    MainWindow window;
    window.show();
    std::printf("Address book ready, %d contacts\n", window.contactCount());
    return QApplication::exec();
}
