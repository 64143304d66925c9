#ifndef MAINWINDOW_H
#define MAINWINDOW_H

#include "QtWidgetBase.h"

class MainWindow : public QtWidgetBase
{
    Q_OBJECT
public:
    explicit MainWindow(QWidget *parent = nullptr);
};

#endif // MAINWINDOW_H
