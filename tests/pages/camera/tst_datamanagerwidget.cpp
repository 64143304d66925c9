#include "DataManagerWidget.h"
#include "LarkTest.h"
#include "QtMessageBox.h"

#include <QtTest>
#include <QtWidgets>

// The window over a model the test lends it; files go through the real file dialog.
class TstDataManagerWidget : public QObject
{
    Q_OBJECT

    DataManagerWidget *m_w = nullptr;
    QStandardItemModel *m_model = nullptr;
    QTemporaryDir *m_dir = nullptr;
    QTimer *m_modals = nullptr;
    QStringList m_warnings;

    void click(const QString &text) { LarkTest::click(m_w, text); }
    QString cells() const { return LarkTest::modelCells(m_model); }
    void fileButton(const QString &text, const QString &name)
    {
        LarkTest::answerNextFileDialog(m_dir->filePath(name), "*.csv");
        click(text);
    }

private slots:
    void init()
    {
        m_dir = new QTemporaryDir;
        m_w = new DataManagerWidget("寄存器多项管理");
        m_model = new QStandardItemModel(m_w);
        m_w->setDataModel(m_model);
        m_w->show();
        m_warnings.clear();
        // the program's warnings are read and closed
        m_modals = new QTimer;
        connect(m_modals, &QTimer::timeout, this, [this] {
            if (auto *box = qobject_cast<QtMessageBox *>(QApplication::activeModalWidget())) {
                for (QLabel *l : box->findChildren<QLabel *>())
                    m_warnings << l->text();
                box->close();
            }
        });
        m_modals->start(20);
    }
    void cleanup()
    {
        delete m_modals;
        delete m_w;
        delete m_dir;
    }

    // exported under the filter's suffix, cleared, imported back
    void tableRoundTripsThroughAFile()
    {
        const QString rows = "1|10|20|曝光时间;2|3B|FFFFFFFF80000000|;|||";
        LarkTest::fillModel(m_model, rows);
        fileButton("导出", "regs");
        click("清空");
        fileButton("导入", "regs.csv");
        m_model->setRowCount(3);
        QCOMPARE(cells(), rows);
        // a file that cannot be opened is refused in a box, and the table stays
        fileButton("导入", "missing.csv");
        QCOMPARE(cells(), rows);
        QVERIFY(m_warnings.contains("文件打开失败，请重试！"));
    }

    // the tab shown already is no change (the owner would refill the table, losing what
    // was typed), and cancel hides without handing the table over
    void theSameTabAgainAndCancelTellTheOwnerNothing()
    {
        QSignalSpy pages(m_w, SIGNAL(signalChangePage(int)));
        QSignalSpy refresh(m_w, SIGNAL(signalRefreshData(int)));
        click("    读管理    ");
        click("    读管理    ");
        click("取消");
        QVERIFY(!m_w->isVisible() && refresh.isEmpty());
        QCOMPARE(QList<QVariantList>(pages), QList<QVariantList>{{1}});
    }
};

LARK_TEST_MAIN(TstDataManagerWidget)
#include "tst_datamanagerwidget.moc"
