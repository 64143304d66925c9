#ifndef LARKGUITEST_H
#define LARKGUITEST_H

#include "LarkTestCore.h"

#include <QGuiApplication>

// main() of a test class that needs fonts, images or pixmaps but no widget: a
// QGuiApplication on the offscreen platform
#define LARK_TEST_GUI_MAIN(Class) \
    int main(int argc, char **argv) { return LarkTest::runTest<QGuiApplication, Class>(argc, argv); }

#endif // LARKGUITEST_H
