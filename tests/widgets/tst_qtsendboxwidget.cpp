#include "LarkTest.h"
#include "MyApp.h"
#include "NumberTool.h"
#include "QtMessageTip.h"
#include "QtPageBar.h"
#include "QtSendBoxFiles.h"
#include "QtSendBoxWidget.h"

#include <QtWidgets>
#include <QtTest>

namespace {

QString confPath(const QString &name) { return QCoreApplication::applicationDirPath() + "/conf/" + name; }

QStringList comboItems(QtSendBoxWidget &box) { return LarkTest::itemTexts(box.findChild<QComboBox *>()); }

// a multi-send row by its "id"
QLineEdit *row(QtSendBoxWidget &box, int id) { return LarkTest::byId<QLineEdit>(&box, id); }

} // namespace

class TstQtSendBoxWidget : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { NumberTool::m_newLine = QByteArray("\r\n"); } // the serial page sets it
    void init()
    {
        LarkTest::cleanAppDirs();
        MyApp::CheckDirs({"conf"});
        MyApp::m_nTextCodecIndex = 1;
        QtMessageTip::Instance()->hide();
    }
    void cleanup() { LarkTest::cleanAppDirs(); }

    void messageBecomesTheBytesOnTheWire_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("options");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("line breaks become CRLF") << "a\nb" << "new line" << QByteArray("a\r\nb\r\n");
        QTest::newRow("no new line") << "AT" << "" << QByteArray("AT");
        QTest::newRow("text codec") << "中文" << "" << QByteArray("\xD6\xD0\xCE\xC4");
        QTest::newRow("hex with new line") << "41 42" << "hex, new line" << QByteArray("AB\r\n");
        // the line break is widened before the hex text is read
        QTest::newRow("hex line breaks too") << "41\n42" << "hex" << NumberTool::hexStrToByteArray("41\r\n42");
    }

    void messageBecomesTheBytesOnTheWire()
    {
        QFETCH(QString, text);
        QFETCH(QString, options);
        QtSendBoxWidget box(nullptr, 7);
        box.setDeviceStatus(true);
        box.setHexSend(options.contains("hex") ? 1 : 2); // only index 1 is hex
        box.setNewline(options.contains("new line"));
        QSignalSpy sent(&box, SIGNAL(signalSendData(QByteArray)));
        box.findChild<QTextEdit *>()->setPlainText(text);
        box.SltSingleSendPage();
        box.SltSingleSendPage();
        QCOMPARE(sent.count(), 2);
        QTEST(sent.at(1).at(0).toByteArray(), "bytes");
        QCOMPARE(comboItems(box), QStringList{text}); // once per run
    }

    void sendListsSurviveARestart_data()
    {
        QTest::addColumn<int>("flags");
        QTest::addColumn<QString>("prefix");
        QTest::newRow("serial page") << 7 << "ser";
        QTest::newRow("network page") << 3 << "net";
    }

    void sendListsSurviveARestart()
    {
        QFETCH(int, flags);
        QFETCH(QString, prefix);
        {
            QtSendBoxWidget box(nullptr, flags);
            box.setDeviceStatus(true);
            for (const char *msg : {"AT+GMR", "hello world"}) {
                box.findChild<QTextEdit *>()->setPlainText(msg);
                box.SltSingleSendPage();
            }
            row(box, 0)->setText("AT+RST");
            box.SltMultiBtnClicked(0);
            row(box, 1)->setText("01 03 00 00");
            emit row(box, 1)->editingFinished();
            box.findChild<QtPageBar *>()->SltNextPage();
            row(box, 0)->setText("hello#world");
            box.SltMultiBtnClicked(0);
        }
        QCOMPARE(LarkTest::readFile(confPath(prefix + "_multi_conf.txt")), QByteArray("1#AT+RST\n2#01 03 00 00\n11#hello#world\n"));
        {
            QtSendBoxWidget box(nullptr, flags);
            // the history comes back word by word
            QCOMPARE(comboItems(box), (QStringList{"AT+GMR", "hello", "world"}));
            QCOMPARE(row(box, 1)->text(), QString("01 03 00 00"));
            QCOMPARE(box.multiData().value(11), QString("hello#world"));
            // the run's own list starts empty, so a word from the file is added again
            box.setDeviceStatus(true);
            box.findChild<QTextEdit *>()->setPlainText("hello");
            box.SltSingleSendPage();
        }
        // one entry a line, as the combo held them
        QCOMPARE(LarkTest::readFile(confPath(prefix + "_send_data.txt")), QByteArray("AT+GMR\nhello\nworld\nhello\n"));
    }

    // the box starts from the table file; clearing takes the keys one below the rows
    void clearTakesTheKeysOneBelowTheRows()
    {
        QVERIFY(LarkTest::writeFile(confPath("ser_multi_conf.txt"), "1#first\n10#page1row10\n12#x\n20#page2row10\n23#c\n"));
        QMap<int, QString> stored;
        {
            QtSendBoxWidget box(nullptr, 7);
            row(box, 0)->clear(); // an emptied row keeps its stored text
            emit row(box, 0)->editingFinished();
            box.SltMultiChangePage(3);
            QCOMPARE(row(box, 2)->text(), QString("c"));
            box.findChild<QtPageBar *>()->SltNextPage();
            box.SltClearMultiEdit();
            // keys 10..19 go: the tenth row of page 1 with them, while page 2's tenth stays
            QCOMPARE(box.multiData().keys(), (QList<int>{1, 20, 23}));
            QVERIFY(row(box, 9)->text().isEmpty());
            box.SltMultiChangePage(2);
            QCOMPARE(row(box, 9)->text(), QString("page2row10"));
            stored = box.multiData();
        }
        // written back as the box held it
        QCOMPARE(QtSendBoxFiles::readMultiConfig(confPath("ser_multi_conf.txt")), stored);
        // a list left empty does not overwrite the old file
        QVERIFY(LarkTest::writeFile(confPath("ser_multi_conf.txt"), "1#keep\n"));
        QtSendBoxWidget(nullptr, 7).SltClearMultiEdit();
        QCOMPARE(LarkTest::readFile(confPath("ser_multi_conf.txt")), QByteArray("1#keep\n"));
    }

    void autoSendStopsOnProblems()
    {
        QtSendBoxWidget box(nullptr, 7);
        QCheckBox chk;
        box.m_chkAutoSend = &chk;
        QSignalSpy sent(&box, SIGNAL(signalSendData(QByteArray)));
        QStringList warnings;
        const auto answerWarning = [&warnings] {
            LarkTest::onNextModal([&warnings](QWidget *w) { for (QLabel *l : w->findChildren<QLabel *>()) warnings << l->text(); w->close(); });
        };
        // an empty message: the tip, and the timer stops
        box.setDeviceStatus(true);
        chk.setChecked(true);
        box.setAutoSend(true);
        box.SltAutoSendData();
        QCOMPARE(QtMessageTip::Instance()->text(), QString("请输入需要发送的数据"));
        QVERIFY(!box.autoTimer()->isActive() && !chk.isChecked());
        // device open: the box starts the timer; then the owner closes without stopping it
        box.findChild<QTextEdit *>()->setPlainText("ping");
        chk.setChecked(true);
        box.setAutoSend(true);
        QVERIFY(box.autoTimer()->isActive());
        box.setDeviceStatus(false);
        answerWarning();
        box.SltAutoSendData();
        QCOMPARE(warnings.count("请确认通信设备是否打开?"), 1);
        QVERIFY(!box.autoTimer()->isActive() && !chk.isChecked());
        // checking auto send on a closed device warns and leaves it off
        answerWarning();
        chk.setChecked(true);
        box.setAutoSend(true);
        QCOMPARE(warnings.count("请确认通信设备是否打开?"), 2);
        QVERIFY(!box.autoTimer()->isActive());
        QCOMPARE(sent.count(), 0);
    }

    // the filled rows in turn, an empty one costing a silent tick
    void autoSendCyclesFilledRows()
    {
        QtSendBoxWidget box(nullptr, 7);
        QCheckBox chk;
        box.m_chkAutoSend = &chk;
        QSignalSpy sent(&box, SIGNAL(signalSendData(QByteArray)));
        // checked on the single page, the cycle starts at row 0 all the same
        box.setDeviceStatus(true);
        chk.setChecked(true);
        row(box, 0)->setText("one");
        row(box, 2)->setText("three");
        box.setAutoSend(true);
        box.setCurrentPage(QtSendBoxWidget::MultiPage);
        for (int tick = 0; tick < 5; ++tick)
            box.SltAutoSendData();
        const QByteArray one("one"), three("three");
        QCOMPARE(QList<QVariantList>(sent), (QList<QVariantList>{{one}, {three}, {one}, {three}}));
        // checking again on the multi page restarts at row 0
        box.setAutoSend(true);
        box.SltAutoSendData();
        QCOMPARE(sent.last().at(0).toByteArray(), QByteArray("one"));
        QVERIFY(box.multiData().isEmpty()); // the cycle uses the rows as they stand
        // 0 is refused: it would flood the port
        box.setAutoInterval(0);
        QCOMPARE(box.autoTimer()->interval(), 1000);
    }

    void fileChosenInTheRealDialogFillsTheEdit()
    {
        QTemporaryDir dir; // a folder of its own: the dialog watches the folder it shows
        const QString path = dir.filePath("chosen.txt");
        QVERIFY(LarkTest::writeFile(path, QByteArray("AT+\xD6\xD0\r\nline2")));
        QtSendBoxWidget box(nullptr, 7);
        LarkTest::answerNextFileDialog(path);
        box.SltLoadDataFile();
        QCOMPARE(box.findChild<QTextEdit *>()->toPlainText(), QString("AT+中\nline2"));
        QVERIFY(!box.loadDataFile(confPath("missing.txt")));
        QCOMPARE(QtMessageTip::Instance()->text(), QString("文件加载失败!"));
    }
};

LARK_TEST_MAIN(TstQtSendBoxWidget)
#include "tst_qtsendboxwidget.moc"
