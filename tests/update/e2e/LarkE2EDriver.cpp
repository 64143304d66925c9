// Drives the update dialog of an unmodified larkTools from inside its own process:
// Qt loads this generic plugin into any application started with
// QT_QPA_GENERIC_PLUGINS=larke2edriver and QT_PLUGIN_PATH naming the folder above
// generic/. The program knows nothing of it; the restarted program inherits the
// environment and so is driven too. What the dialogs show goes, line by line, into
// the file $LARK_E2E_REPORT for tst_updateendtoend to judge:
//   first run:  <n> pid=, title=, status=, then "update-clicked" after pressing "更新"
//   second run: the same, then "done", and the program quits.
#include <QAction>
#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QTimer>
#include <QtGui/qgenericplugin.h>

namespace {

QWidget *visibleTopLevel(const char *className, const QString &objectName = QString())
{
    for (QWidget *w : QApplication::topLevelWidgets()) {
        if (w->isVisible() && w->inherits(className) && (objectName.isEmpty() || w->objectName() == objectName))
            return w;
    }
    return nullptr;
}

template <class T>
T *childWithText(QWidget *parent, const QString &prefix)
{
    for (T *child : parent->findChildren<T *>()) {
        if (child->text().startsWith(prefix))
            return child;
    }
    return nullptr;
}

class DialogScript : public QObject
{
public:
    DialogScript()
    {
        m_file.setFileName(QString::fromLocal8Bit(qgetenv("LARK_E2E_REPORT")));
        if (m_file.open(QIODevice::ReadOnly))
            m_nRun = m_file.readAll().contains("update-clicked") ? 2 : 1;
        m_file.close();
        connect(&m_timer, &QTimer::timeout, this, &DialogScript::step);
        m_timer.start(100);
    }

private:
    void report(const QString &line)
    {
        if (m_file.open(QIODevice::Append | QIODevice::Text)) {
            m_file.write(QString("%1 %2\n").arg(m_nRun).arg(line).toUtf8());
            m_file.close();
        }
    }

    // one look at the widgets every tick: the program runs at its own pace
    void step()
    {
        QWidget *dialog = visibleTopLevel("QtUpdateDialog");
        if (!dialog) {
            if (!m_bAsked)
                openDialog();
            return;
        }
        // the status line is the dialog's one label of its own; the title is the bar's
        QLabel *status = dialog->findChild<QLabel *>(QString(), Qt::FindDirectChildrenOnly);
        if (!status || status->text().startsWith("正在检查"))
            return;
        m_timer.stop();
        QLabel *title = childWithText<QLabel>(dialog, "版本更新[");
        report(QString("pid=%1").arg(QCoreApplication::applicationPid()));
        report("title=" + (title ? title->text() : QString()));
        report("status=" + status->text());
        if (m_nRun == 1) {
            QPushButton *update = childWithText<QPushButton>(dialog, "更新");
            report(update && update->isEnabled() ? "update-clicked" : "update-disabled");
            if (update && update->isEnabled())
                QTimer::singleShot(0, update, &QPushButton::click);
        } else {
            report("done");
            QTimer::singleShot(0, qApp, &QCoreApplication::quit);
        }
    }

    // the user's way: the about menu's entry, through the menu's own signal
    void openDialog()
    {
        QWidget *window = visibleTopLevel("QWidget", "MainWindow");
        QPushButton *about = window ? childWithText<QPushButton>(window, "关于...") : nullptr;
        QMenu *menu = about ? about->menu() : nullptr;
        if (!menu)
            return;
        for (QAction *action : menu->actions()) {
            if (action->text() == "检查版本更新") {
                m_bAsked = true;
                // queued: the slot runs the dialog's own event loop until it closes
                QTimer::singleShot(0, menu, [menu, action] { emit menu->triggered(action); });
            }
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
