#include "MainWindow.h"
#include "MyApp.h"
#include "UiSkin.h"

#include <QApplication>
#include <QFont>
#include <QIcon>
#include <QTranslator>

int main(int argc, char *argv[])
{
    // Nothing here draws with OpenGL, yet on X the first window would load the GL
    // driver to pick its visual: tens of milliseconds before anything shows. A choice
    // the user made in the environment stands.
    if (qEnvironmentVariableIsEmpty("QT_XCB_GL_INTEGRATION"))
        qputenv("QT_XCB_GL_INTEGRATION", "none");
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication *app = new QApplication(argc, argv);
    QApplication::setApplicationName(QString::fromUtf8("云雀多功能调试助手"));
    QApplication::setApplicationVersion("V1.0.1");
    QApplication::setWindowIcon(QIcon(":/resources/images/app_logo.png"));
    QApplication::setFont(QFont(UiSkin::m_strAppFontNormal, 9));

    QTranslator *translator = new QTranslator;
    translator->load(":/resources/qm/qt_zh_CN.qm");
    QApplication::installTranslator(translator);

    MyApp::InitApp();

    int ret;
    {
        MainWindow window;
        window.show();
        ret = app->exec();
    }
    delete translator;
    delete app;
    return ret;
}
