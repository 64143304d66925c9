#include "DataManagerWidget.h"
#include "LarkTest.h"
#include "QtMessageBox.h"
#include "QtMessageTip.h"

#include <QAbstractButton>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTemporaryDir>
#include <QTextCodec>
#include <QTimer>

static QByteArray gb(const QString &text) { return QTextCodec::codecForName("GB18030")->fromUnicode(text); }

// The window over a model the test lends it; files go through the real file dialog.
class TstDataManagerWidget : public QObject
{
    Q_OBJECT

    DataManagerWidget *m_w = nullptr;
    QStandardItemModel *m_model = nullptr;
    QTemporaryDir *m_dir = nullptr;
    QTimer *m_modals = nullptr;
    QStringList m_warnings;

    QPushButton *button(const QString &text) const
    {
        for (QPushButton *b : m_w->findChildren<QPushButton *>()) {
            if (b->text() == text)
                return b;
        }
        return nullptr;
    }
    // rows joined by ';', cells by '|'
    QString cells() const
    {
        QStringList rows;
        for (int r = 0; r < m_model->rowCount(); ++r) {
            QStringList row;
            for (int c = 0; c < m_model->columnCount(); ++c)
                row << m_model->index(r, c).data().toString();
            rows << row.join('|');
        }
        return rows.join(';');
    }
    void fill(const QStringList &rows)
    {
        m_model->clear();
        m_model->setRowCount(rows.size());
        m_model->setColumnCount(4);
        for (int r = 0; r < rows.size(); ++r) {
            const QStringList row = rows.at(r).split('|');
            for (int c = 0; c < 4; ++c)
                m_model->setData(m_model->index(r, c), row.value(c));
        }
    }
    QString path(const QString &name) const { return m_dir->filePath(name); }
    void writeFile(const QString &name, const QByteArray &bytes)
    {
        QFile f(path(name));
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(bytes);
    }
    QByteArray readFile(const QString &name) const
    {
        QFile f(path(name));
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
    void exportTo(const QString &name)
    {
        LarkTest::answerNextFileDialog(path(name), "*.csv");
        QTest::mouseClick(button("导出"), Qt::LeftButton);
    }
    void importFrom(const QString &name)
    {
        LarkTest::answerNextFileDialog(path(name));
        QTest::mouseClick(button("导入"), Qt::LeftButton);
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
        // Qt's own "replace the file?" is answered yes; the program's warnings are read
        // and closed
        m_modals = new QTimer;
        connect(m_modals, &QTimer::timeout, this, [this] {
            QWidget *w = QApplication::activeModalWidget();
            if (auto *box = qobject_cast<QMessageBox *>(w)) {
                box->button(QMessageBox::Yes)->click();
            } else if (auto *box = qobject_cast<QtMessageBox *>(w)) {
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

    void tableRoundTripsThroughAGb18030File()
    {
        const QStringList rows{"1|10|20|曝光时间", "2|3B|FFFFFFFF80000000|", "||"};
        fill(rows);
        exportTo("regs");
        QCOMPARE(QtMessageTip::Instance()->text(), QString("文件导出成功！"));
        // the filter's suffix is added; header and rows end in a comma; blank rows stay
        QCOMPARE(readFile("regs.csv"), gb("寄存器编号,寄存器地址,寄存器值,描述,\n1,10,20,曝光时间,\n"
                                          "2,3B,FFFFFFFF80000000,,\n,,,,\n"));
        QTest::mouseClick(button("清空"), Qt::LeftButton);
        QCOMPARE(m_model->rowCount(), 50);
        QCOMPARE(m_model->index(49, 0).data().toString(), QString("50"));
        QVERIFY(m_model->index(0, 1).data().toString().isEmpty());
        importFrom("regs.csv");
        QCOMPARE(QtMessageTip::Instance()->text(), QString("数据导入完成！！"));
        m_model->setRowCount(3);
        QCOMPARE(cells(), rows.join(';') + "|");
    }

    void exportOverALongerFileKeepsItsTail()
    {
        const QByteArray old("h,\n1,A,,,\n2,B,,,\n3,C,,,\n4,D,,,\n5,E,,,\n6,F,,,\n7,G,,,\n8,H,,,\n9,I,,,\n");
        writeFile("old.csv", old);
        fill({"7|70|71|新"});
        exportTo("old.csv");
        const QByteArray head = gb("寄存器编号,寄存器地址,寄存器值,描述,\n7,70,71,新,\n");
        QCOMPARE(readFile("old.csv"), head + old.mid(head.size()));
        // the tail comes back on import: the cut line ",," is too short but takes its row
        fill({"", "", "", ""});
        importFrom("old.csv");
        QCOMPARE(cells(), QString("7|70|71|新;|||;8|H||;9|I||"));
    }

    void import_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("cells");
        QTest::newRow("header dropped") << QByteArray("x\n1,A,B,C\n") << "1|A|B|C;o|o|o|o;o|o|o|o";
        QTest::newRow("no header: first row lost") << QByteArray("1,A,B,C\n2,D,E,F\n") << "2|D|E|F;o|o|o|o;o|o|o|o";
        QTest::newRow("short line keeps its row") << QByteArray("x\n1,A\n2,D,E,F\n") << "o|o|o|o;2|D|E|F;o|o|o|o";
        QTest::newRow("CR LF") << QByteArray("x\r\n1,A,B,C\r\n2,D,E,F\r\n") << "1|A|B|C;2|D|E|F;o|o|o|o";
        QTest::newRow("longer than the model") << QByteArray("x\n1,,,\n2,,,\n3,,,\n4,,,\n") << "1|||;2|||;3|||";
        QTest::newRow("GB18030 text") << gb("x\n1,A,B,曝光\n") << "1|A|B|曝光;o|o|o|o;o|o|o|o";
    }
    void import()
    {
        QFETCH(QByteArray, file);
        QFETCH(QString, cells);
        writeFile("in.txt", file);
        fill({"o|o|o|o", "o|o|o|o", "o|o|o|o"});
        importFrom("in.txt");
        QCOMPARE(this->cells(), cells);
    }

    void missingFileIsReportedAndChangesNothing()
    {
        fill({"o|o|o|o"});
        importFrom("missing.csv");
        QTRY_VERIFY(m_warnings.contains("文件打开失败，请重试！"));
        QCOMPARE(cells(), QString("o|o|o|o"));
    }

    void tabsAndButtonsTellTheOwner()
    {
        QSignalSpy pages(m_w, SIGNAL(signalChangePage(int)));
        QSignalSpy refresh(m_w, SIGNAL(signalRefreshData(int)));
        const auto tabs = m_w->findChildren<QAbstractButton *>(QString(), Qt::FindChildrenRecursively);
        QAbstractButton *readTab = nullptr;
        for (QAbstractButton *b : tabs)
            if (b->text() == "    读管理    ")
                readTab = b;
        QTest::mouseClick(readTab, Qt::LeftButton);
        QTest::mouseClick(readTab, Qt::LeftButton); // the same tab again: nothing
        QCOMPARE(pages.count(), 1);
        QCOMPARE(m_w->currentPage(), 1);
        QTest::mouseClick(button("取消"), Qt::LeftButton);
        QVERIFY(!m_w->isVisible());
        QCOMPARE(refresh.count(), 0);
        m_w->show();
        QTest::mouseClick(button("确定"), Qt::LeftButton);
        QVERIFY(!m_w->isVisible());
        QCOMPARE(refresh.count(), 1);
        QCOMPARE(refresh.at(0).at(0).toInt(), 1);
    }
};

LARK_TEST_MAIN(TstDataManagerWidget)
#include "tst_datamanagerwidget.moc"
