#include "MainWindow.h"

MainWindow::MainWindow(QWidget *parent)
    : QtWidgetBase(parent)
{
    setObjectName("MainWindow");
    resize(900, 600);
}
