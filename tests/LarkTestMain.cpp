#include "LarkTest.h"

#include <QApplication>

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    app.setAttribute(Qt::AA_Use96Dpi, true);
    return LarkTest::runAll(argc, argv);
}
