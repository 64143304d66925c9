// Drives the update dialog of an unmodified larkTools from inside its own process: Qt
// loads this generic plugin into any application started with
// QT_QPA_GENERIC_PLUGINS=larke2edriver and QT_PLUGIN_PATH naming the folder above
// generic/. The restarted program inherits the environment and is driven too. What
// the dialog shows goes into the file $LARK_E2E_REPORT, one "RUN key=value" a line:
// the first run presses "更新" ("update-clicked"), the second one quits ("done").
#include <QAction>
#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QTimer>
#include <QtGui/qgenericplugin.h>

namespace {

template <class T>
T *withText(QWidget *parent, const QString &prefix)
{
    for (T *child : parent->findChildren<T *>())
        if (child->text().startsWith(prefix))
            return child;
    return nullptr;
}

class DialogScript : public QObject
{
public:
    DialogScript()
    {
        m_file.setFileName(QString::fromLocal8Bit(qgetenv("LARK_E2E_REPORT")));
        if (m_file.open(QIODevice::ReadOnly) && m_file.readAll().contains("update-clicked"))
            m_nRun = 2;
        m_file.close();
        connect(&m_timer, &QTimer::timeout, this, &DialogScript::step);
        m_timer.start(100);
    }

private:
    void report(const QString &line)
    {
        if (m_file.open(QIODevice::Append))
            m_file.write(QString("%1 %2\n").arg(m_nRun).arg(line).toUtf8());
        m_file.close();
    }

    // one look at the widgets a tick: the program goes at its own pace
    void step()
    {
        QWidget *window = nullptr, *dialog = nullptr;
        for (QWidget *w : QApplication::topLevelWidgets()) {
            window = w->isVisible() && w->objectName() == "MainWindow" ? w : window;
            dialog = w->isVisible() && w->inherits("QtUpdateDialog") ? w : dialog;
        }
        if (!dialog) {
            QPushButton *about = window && !m_bAsked ? withText<QPushButton>(window, "关于...") : nullptr;
            QMenu *menu = about ? about->menu() : nullptr;
            const QList<QAction *> actions = menu ? menu->actions() : QList<QAction *>();
            // the user's way, through the menu's own signal; queued, as the slot runs the
            // dialog's event loop until it closes
            for (QAction *action : actions) {
                if (action->text() == "检查版本更新") {
                    m_bAsked = true;
                    QTimer::singleShot(0, menu, [menu, action] { emit menu->triggered(action); });
                }
            }
            return;
        }
        // the status line is the dialog's one label of its own
        QLabel *status = dialog->findChild<QLabel *>(QString(), Qt::FindDirectChildrenOnly);
        if (!status || status->text().startsWith("正在检查"))
            return;
        m_timer.stop();
        report(QString("pid=%1").arg(QCoreApplication::applicationPid()));
        report("status=" + status->text());
        QPushButton *update = withText<QPushButton>(dialog, "更新");
        if (m_nRun == 2) {
            report("done");
            QTimer::singleShot(0, qApp, &QCoreApplication::quit);
        } else if (update && update->isEnabled()) {
            report("update-clicked");
            QTimer::singleShot(0, update, &QPushButton::click);
        }
    }

    QFile m_file;
    QTimer m_timer;
    int m_nRun = 1;
    bool m_bAsked = false;
};

} // namespace

class LarkE2EDriver : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "larke2edriver.json")
public:
    QObject *create(const QString &key, const QString &) override
    {
        return key.compare("larke2edriver", Qt::CaseInsensitive) == 0 ? new DialogScript : nullptr;
    }
};

#include "LarkE2EDriver.moc"
