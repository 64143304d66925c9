#include "LarkTest.h"
#include "MyApp.h"
#include "NumberTool.h"
#include "QtFileDialog.h"
#include "QtMessageTip.h"
#include "QtPageBar.h"
#include "QtSendBoxFiles.h"
#include "QtSendBoxWidget.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTextCodec>
#include <QTemporaryDir>
#include <QTextEdit>
#include <QTimer>
#include <QtTest>

#include <memory>

namespace {

QString confPath(const QString &name)
{
    return QCoreApplication::applicationDirPath() + "/conf/" + name;
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    f.write(bytes);
}

QByteArray readFile(const QString &path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return QByteArray();
    return f.readAll();
}

QStringList comboItems(QComboBox *box)
{
    QStringList items;
    for (int i = 0; i < box->count(); ++i)
        items << box->itemText(i);
    return items;
}

// answers the next modal box and remembers its text
struct ModalCatcher {
    QStringList texts;
    int count = 0;
    void arm()
    {
        LarkTest::onNextModal([this](QWidget *w) {
            ++count;
            for (QLabel *l : w->findChildren<QLabel *>())
                texts << l->text();
            w->close();
        });
    }
};

} // namespace

class TstQtSendBoxWidget : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void messageBecomesTheBytesOnTheWire_data();
    void messageBecomesTheBytesOnTheWire();
    void multiSendLinesParseByTheirFirstHash_data();
    void multiSendLinesParseByTheirFirstHash();

    void sendListsSurviveARestart();
    void historyComesBackWordByWord();
    void corruptOrBinaryListFilesLoseOnlyTheirBadLines();
    void emptyTableLeavesTheOldFile();
    void unknownFlagsKeepNoFiles();

    void singleSendAddsToHistoryOncePerRun();
    void emptyMessageShowsTheTipAndSendsNothing();
    void sendingOnAClosedDeviceWarnsAndStopsAutoSend();
    void autoSendCyclesFilledRowsWithOneSilentTick();
    void autoSendStartsAtRowZeroFromAnyStrayRow_data();
    void autoSendStartsAtRowZeroFromAnyStrayRow();
    void emptySinglePageStopsAutoSend();
    void clearRemovesTheKeysOneBelowTheRows();
    void emptiedRowKeepsItsStoredText();
    void pageChangeShowsThatPagesTexts();
    void unknownPageKeyChangesNothing();
    void autoIntervalIgnoresValuesBelowOne();
    void loadedFileFillsTheEditInTheTextCodec();
    void loadChosenInTheRealDialog();
};

void TstQtSendBoxWidget::initTestCase()
{
    // set by the serial page at start in the program
    NumberTool::m_newLine = QByteArray("\r\n");
}

void TstQtSendBoxWidget::init()
{
    LarkTest::cleanAppDirs();
    MyApp::CheckDirs({"conf"});
    MyApp::m_nTextCodecIndex = 1;
}

void TstQtSendBoxWidget::cleanup()
{
    LarkTest::cleanAppDirs();
}

void TstQtSendBoxWidget::messageBecomesTheBytesOnTheWire_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("hex");
    QTest::addColumn<bool>("newLine");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("line breaks become CRLF") << "a\nb" << false << true << QByteArray("a\r\nb\r\n");
    QTest::newRow("no new line") << "AT" << false << false << QByteArray("AT");
    QTest::newRow("text codec") << "中文" << false << false << QByteArray("\xD6\xD0\xCE\xC4");
    QTest::newRow("hex with new line") << "41 42" << true << true << QByteArray("AB\r\n");
    QTest::newRow("empty hex with new line") << "" << true << true << QByteArray("\r\n");
}

void TstQtSendBoxWidget::messageBecomesTheBytesOnTheWire()
{
    QFETCH(QString, text);
    QFETCH(bool, hex);
    QFETCH(bool, newLine);
    QFETCH(QByteArray, bytes);
    QCOMPARE(QtSendBoxWidget::makeSendData(text, hex, newLine), bytes);
}

void TstQtSendBoxWidget::multiSendLinesParseByTheirFirstHash_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("text");
    QTest::newRow("plain") << QByteArray("1#AT+RST\n") << true << 1 << "AT+RST";
    QTest::newRow("hash in text") << QByteArray("11#hello#world\n") << true << 11 << "hello#world";
    QTest::newRow("empty text") << QByteArray("5#\n") << true << 5 << "";
    QTest::newRow("no hash") << QByteArray("7\n") << false << 0 << "";
    QTest::newRow("blank") << QByteArray("\n") << false << 0 << "";
    QTest::newRow("not a number") << QByteArray("abc#x\n") << true << 0 << "x";
    QTest::newRow("carriage return kept") << QByteArray("3#AT\r\n") << true << 3 << "AT\r";
    QTest::newRow("last line without end") << QByteArray("4#x") << true << 4 << "x";
    QTest::newRow("NUL ends the line") << QByteArray("6#ab\0cd\n", 8) << true << 6 << "ab";
    QTest::newRow("NUL before the hash") << QByteArray("6\0#ab\n", 6) << false << 0 << "";
    QTest::newRow("UTF-8 text") << QByteArray("2#\xE4\xB8\xAD\n") << true << 2 << "中";
}

void TstQtSendBoxWidget::multiSendLinesParseByTheirFirstHash()
{
    QFETCH(QByteArray, line);
    QFETCH(bool, ok);
    QFETCH(int, key);
    QFETCH(QString, text);
    int k = -1;
    QString t;
    QCOMPARE(QtSendBoxFiles::parseMultiLine(line, k, t), ok);
    if (ok) {
        QCOMPARE(k, key);
        QCOMPARE(t, text);
    }
}

void TstQtSendBoxWidget::sendListsSurviveARestart()
{
    {
        QtSendBoxWidget box(nullptr, 7);
        box.setDeviceStatus(true);
        QSignalSpy sent(&box, SIGNAL(signalSendData(QByteArray)));
        box.findChild<QTextEdit *>()->setPlainText("AT+GMR");
        box.SltSingleSendPage();
        auto edits = box.findChildren<QLineEdit *>();
        QLineEdit *row1 = nullptr;
        QLineEdit *row2 = nullptr;
        for (QLineEdit *e : edits) {
            if (e->property("id").toInt() == 0 && e->property("id").isValid())
                row1 = e;
            if (e->property("id").toInt() == 1)
                row2 = e;
        }
        QVERIFY(row1 && row2);
        row1->setText("AT+RST");
        box.SltMultiBtnClicked(0);
        row2->setText("01 03 00 00");
        emit row2->editingFinished();
        box.findChild<QtPageBar *>()->SltNextPage();
        row1->setText("hello#world");
        box.SltMultiBtnClicked(0);
        QCOMPARE(sent.count(), 3);
    }
    QCOMPARE(readFile(confPath("ser_send_data.txt")), QByteArray("AT+GMR\n"));
    QCOMPARE(readFile(confPath("ser_multi_conf.txt")),
             QByteArray("1#AT+RST\n2#01 03 00 00\n11#hello#world\n"));

    QtSendBoxWidget box(nullptr, 7);
    QCOMPARE(comboItems(box.findChild<QComboBox *>()), QStringList{"AT+GMR"});
    QCOMPARE(box.multiData().value(11), QString("hello#world"));
    // the first page's rows are filled at start
    QStringList rows;
    for (QLineEdit *e : box.findChildren<QLineEdit *>())
        if (e->property("id").isValid() && e->property("id").toInt() < 2)
            rows << e->text();
    QCOMPARE(rows, (QStringList{"AT+RST", "01 03 00 00"}));
}

void TstQtSendBoxWidget::historyComesBackWordByWord()
{
    {
        QtSendBoxWidget box(nullptr, 3);
        box.setDeviceStatus(true);
        auto *edit = box.findChild<QTextEdit *>();
        edit->setPlainText("hello world");
        box.SltSingleSendPage();
        edit->setPlainText("two\nlines");
        box.SltSingleSendPage();
    }
    QCOMPARE(readFile(confPath("net_send_data.txt")), QByteArray("hello world\ntwo\nlines\n"));
    {
        QtSendBoxWidget box(nullptr, 3);
        QCOMPARE(comboItems(box.findChild<QComboBox *>()),
                 (QStringList{"hello", "world", "two", "lines"}));
        // the run's own list starts empty, so a word from the file is added again
        box.setDeviceStatus(true);
        box.findChild<QTextEdit *>()->setPlainText("hello");
        box.SltSingleSendPage();
        QCOMPARE(box.findChild<QComboBox *>()->count(), 5);
    }
    QCOMPARE(readFile(confPath("net_send_data.txt")), QByteArray("hello\nworld\ntwo\nlines\nhello\n"));
}

void TstQtSendBoxWidget::corruptOrBinaryListFilesLoseOnlyTheirBadLines()
{
    QByteArray multi("1#first\n");
    for (int i = 0; i < 4096; ++i)
        multi.append(char((i * 7919) & 0xFF)); // binary noise, NULs and stray '#' included
    multi.append("\n12#twelve\n-3#negative\n99#far\nno hash here\n3#last");
    writeFile(confPath("ser_multi_conf.txt"), multi);
    QByteArray history;
    for (int i = 0; i < 2048; ++i)
        history.append(char((i * 31) & 0xFF));
    history.append("\nAT+GMR\n");
    writeFile(confPath("ser_send_data.txt"), history);

    QMap<int, QString> stored;
    {
        QtSendBoxWidget box(nullptr, 7);
        stored = box.multiData();
        QCOMPARE(stored.value(1), QString("first"));
        QCOMPARE(stored.value(12), QString("twelve"));
        QCOMPARE(stored.value(-3), QString("negative"));
        QCOMPARE(stored.value(99), QString("far"));
        QCOMPARE(stored.value(3), QString("last"));
        QVERIFY(comboItems(box.findChild<QComboBox *>()).contains("AT+GMR"));
    }
    // written back: every key kept, unreachable ones too, the noise lines gone
    const QMap<int, QString> again = QtSendBoxFiles::readMultiConfig(confPath("ser_multi_conf.txt"));
    QCOMPARE(again, stored);
    QVERIFY(!readFile(confPath("ser_multi_conf.txt")).contains("no hash here"));
}

void TstQtSendBoxWidget::emptyTableLeavesTheOldFile()
{
    writeFile(confPath("ser_multi_conf.txt"), "1#keep\n");
    {
        QtSendBoxWidget box(nullptr, 7);
        box.SltClearMultiEdit(); // removes keys 0..9: the stored row 1 goes
        QVERIFY(box.multiData().isEmpty());
    }
    QCOMPARE(readFile(confPath("ser_multi_conf.txt")), QByteArray("1#keep\n"));
    QVERIFY(!QFile::exists(confPath("ser_send_data.txt")));
}

void TstQtSendBoxWidget::unknownFlagsKeepNoFiles()
{
    {
        QtSendBoxWidget box(nullptr, 1 | 2);
        QCOMPARE(box.historyFile(), confPath("net_send_data.txt"));
    }
    {
        QtSendBoxWidget box(nullptr, 2);
        QVERIFY(box.historyFile().isEmpty());
        QCOMPARE(box.multiConfigFile(), confPath(""));
        for (QLineEdit *e : box.findChildren<QLineEdit *>())
            if (e->property("id").toInt() == 0 && e->property("id").isValid())
                e->setText("x");
        ModalCatcher catcher;
        catcher.arm();
        box.SltMultiBtnClicked(0); // stored, then refused on the closed device
        QCOMPARE(catcher.count, 1);
        QCOMPARE(box.multiData().value(1), QString("x"));
    }
    QCOMPARE(QDir(confPath("")).entryList(QDir::Files), QStringList());
}

void TstQtSendBoxWidget::singleSendAddsToHistoryOncePerRun()
{
    QtSendBoxWidget box(nullptr, 7);
    box.setDeviceStatus(true);
    box.setNewline(true);
    QSignalSpy sent(&box, SIGNAL(signalSendData(QByteArray)));
    auto *edit = box.findChild<QTextEdit *>();
    edit->setPlainText("a\nb");
    box.SltSingleSendPage();
    box.SltSingleSendPage();
    QCOMPARE(sent.count(), 2);
    QCOMPARE(sent.at(1).at(0).toByteArray(), QByteArray("a\r\nb\r\n"));
    QCOMPARE(comboItems(box.findChild<QComboBox *>()), QStringList{"a\nb"});
    box.setHexSend(1);
    edit->setPlainText("41 42");
    box.SltSingleSendPage();
    QCOMPARE(sent.at(2).at(0).toByteArray(), QByteArray("AB\r\n"));
    box.setHexSend(0);
    box.setNewline(false);
    box.SltSingleSendPage();
    QCOMPARE(sent.at(3).at(0).toByteArray(), QByteArray("41 42"));
}

void TstQtSendBoxWidget::emptyMessageShowsTheTipAndSendsNothing()
{
    QtSendBoxWidget box(nullptr, 7);
    box.setDeviceStatus(true);
    QSignalSpy sent(&box, SIGNAL(signalSendData(QByteArray)));
    box.SltSingleSendPage();
    QCOMPARE(QtMessageTip::Instance()->text(), QString("请输入需要发送的数据"));
    box.SltMultiBtnClicked(3);
    box.SltMultiBtnClicked(10); // no such row
    QCOMPARE(sent.count(), 0);
    QVERIFY(box.multiData().isEmpty());
}

void TstQtSendBoxWidget::sendingOnAClosedDeviceWarnsAndStopsAutoSend()
{
    QtSendBoxWidget box(nullptr, 7);
    QCheckBox chk;
    box.m_chkAutoSend = &chk;
    QSignalSpy sent(&box, SIGNAL(signalSendData(QByteArray)));

    // device open: the box starts the timer; then the owner closes without stopping it
    box.setDeviceStatus(true);
    box.findChild<QTextEdit *>()->setPlainText("ping");
    chk.setChecked(true);
    box.setAutoSend(true);
    QVERIFY(box.autoTimer()->isActive());
    box.setDeviceStatus(false);

    ModalCatcher catcher;
    catcher.arm();
    box.SltAutoSendData();
    QCOMPARE(catcher.count, 1);
    QVERIFY(catcher.texts.contains("请确认通信设备是否打开?"));
    QVERIFY(!box.autoTimer()->isActive());
    QVERIFY(!chk.isChecked());
    QCOMPARE(sent.count(), 0);

    // checking auto send on a closed device warns and leaves it off
    catcher.arm();
    chk.setChecked(true);
    box.setAutoSend(true);
    QCOMPARE(catcher.count, 2);
    QVERIFY(!box.autoTimer()->isActive());
    QVERIFY(!chk.isChecked());
}

void TstQtSendBoxWidget::autoSendCyclesFilledRowsWithOneSilentTick()
{
    QtSendBoxWidget box(nullptr, 7);
    box.setDeviceStatus(true);
    QSignalSpy sent(&box, SIGNAL(signalSendData(QByteArray)));
    QLineEdit *rows[10] = {};
    for (QLineEdit *e : box.findChildren<QLineEdit *>())
        if (e->property("id").isValid())
            rows[e->property("id").toInt()] = e;
    rows[0]->setText("one");
    rows[2]->setText("three");
    box.setCurrentPage(QtSendBoxWidget::MultiPage);
    box.setAutoSend(true);
    QCOMPARE(box.autoRow(), 0);
    QStringList got;
    for (int tick = 0; tick < 4; ++tick) {
        const int before = sent.count();
        box.SltAutoSendData();
        got << (sent.count() > before ? QString::fromLatin1(sent.last().at(0).toByteArray()) : QString("-"));
    }
    QCOMPARE(got, (QStringList{"one", "three", "-", "one"}));
    // the cycle uses the rows as they stand, not the stored table
    QVERIFY(box.multiData().isEmpty());
    box.setAutoSend(false);
    QVERIFY(!box.autoTimer()->isActive());
}

void TstQtSendBoxWidget::autoSendStartsAtRowZeroFromAnyStrayRow_data()
{
    QTest::addColumn<bool>("startOnMultiPage");
    QTest::newRow("auto send checked on the single page (-1)") << false;
    QTest::newRow("cycle finished (10)") << true;
}

void TstQtSendBoxWidget::autoSendStartsAtRowZeroFromAnyStrayRow()
{
    QFETCH(bool, startOnMultiPage);
    QtSendBoxWidget box(nullptr, 7);
    box.setDeviceStatus(true);
    QSignalSpy sent(&box, SIGNAL(signalSendData(QByteArray)));
    QLineEdit *rows[10] = {};
    for (QLineEdit *e : box.findChildren<QLineEdit *>())
        if (e->property("id").isValid())
            rows[e->property("id").toInt()] = e;
    rows[9]->setText("ten");
    box.findChild<QTextEdit *>()->setPlainText("single");
    if (startOnMultiPage) {
        box.setCurrentPage(QtSendBoxWidget::MultiPage);
        box.setAutoSend(true);
        box.SltAutoSendData(); // row 10
        QCOMPARE(box.autoRow(), 10);
    } else {
        box.setAutoSend(true);
        QCOMPARE(box.autoRow(), -1);
        box.setCurrentPage(QtSendBoxWidget::MultiPage);
    }
    rows[0]->setText("one");
    box.SltAutoSendData();
    QCOMPARE(sent.last().at(0).toByteArray(), QByteArray("one"));
    QCOMPARE(box.autoRow(), 1);
}

void TstQtSendBoxWidget::emptySinglePageStopsAutoSend()
{
    QtSendBoxWidget box(nullptr, 7);
    QCheckBox chk(QString::fromUtf8("自动发送"));
    box.m_chkAutoSend = &chk;
    box.setDeviceStatus(true);
    chk.setChecked(true);
    box.setAutoSend(true);
    box.SltAutoSendData();
    QVERIFY(!box.autoTimer()->isActive());
    QVERIFY(!chk.isChecked());
    QCOMPARE(QtMessageTip::Instance()->text(), QString("请输入需要发送的数据"));
    QCOMPARE(box.findChild<QComboBox *>()->count(), 0);
}

void TstQtSendBoxWidget::clearRemovesTheKeysOneBelowTheRows()
{
    writeFile(confPath("ser_multi_conf.txt"), "1#a\n10#page1row10\n11#b\n20#page2row10\n");
    QtSendBoxWidget box(nullptr, 7);
    auto *bar = box.findChild<QtPageBar *>();
    bar->SltNextPage();
    box.SltClearMultiEdit();
    // keys 10..19 go: the tenth row of page 1 with them, while page 2's tenth stays
    QCOMPARE(box.multiData().keys(), (QList<int>{1, 20}));
    for (QLineEdit *e : box.findChildren<QLineEdit *>())
        if (e->property("id").isValid())
            QVERIFY(e->text().isEmpty());
    bar->SltPrevPage();
    bar->SltNextPage();
    QLineEdit *row10 = nullptr;
    for (QLineEdit *e : box.findChildren<QLineEdit *>())
        if (e->property("id").toInt() == 9)
            row10 = e;
    QCOMPARE(row10->text(), QString("page2row10"));
}

void TstQtSendBoxWidget::emptiedRowKeepsItsStoredText()
{
    writeFile(confPath("ser_multi_conf.txt"), "1#AT\n");
    QtSendBoxWidget box(nullptr, 7);
    QLineEdit *row1 = nullptr;
    for (QLineEdit *e : box.findChildren<QLineEdit *>())
        if (e->property("id").isValid() && e->property("id").toInt() == 0)
            row1 = e;
    QCOMPARE(row1->text(), QString("AT"));
    row1->clear();
    emit row1->editingFinished();
    QCOMPARE(box.multiData().value(1), QString("AT"));
}

void TstQtSendBoxWidget::pageChangeShowsThatPagesTexts()
{
    writeFile(confPath("ser_multi_conf.txt"), "1#a\n23#c\n");
    QtSendBoxWidget box(nullptr, 7);
    box.SltMultiChangePage(3);
    QStringList buttons;
    QString row3;
    for (QPushButton *b : box.findChildren<QPushButton *>())
        if (b->text().toInt() >= 21 && b->text().toInt() <= 30)
            buttons << b->text();
    for (QLineEdit *e : box.findChildren<QLineEdit *>())
        if (e->property("id").toInt() == 2)
            row3 = e->text();
    QCOMPARE(buttons.size(), 10);
    QCOMPARE(row3, QString("c"));
}

void TstQtSendBoxWidget::unknownPageKeyChangesNothing()
{
    QtSendBoxWidget box(nullptr, 3);
    box.setCurrentPage(2);
    box.setCurrentPage(4);
    QCOMPARE(box.currentPage(), 2);
    box.setCurrentPage(3);
    QCOMPARE(box.currentPage(), 2);
}

void TstQtSendBoxWidget::autoIntervalIgnoresValuesBelowOne()
{
    QtSendBoxWidget box(nullptr, 7);
    QCOMPARE(box.autoTimer()->interval(), 1000);
    box.setAutoInterval(0);
    box.setAutoInterval(-5);
    QCOMPARE(box.autoTimer()->interval(), 1000);
    box.setAutoInterval(250);
    QCOMPARE(box.autoTimer()->interval(), 250);
}

void TstQtSendBoxWidget::loadedFileFillsTheEditInTheTextCodec()
{
    const QString path = confPath("load.txt");
    writeFile(path, QByteArray("AT+\xD6\xD0\r\nline2"));
    QtSendBoxWidget box(nullptr, 7);
    QVERIFY(box.loadDataFile(path));
    QCOMPARE(box.findChild<QTextEdit *>()->toPlainText(), QString("AT+中\nline2"));
    QVERIFY(!box.loadDataFile(confPath("missing.txt")));
    QCOMPARE(QtMessageTip::Instance()->text(), QString("文件加载失败!"));
    QCOMPARE(box.loadFile(), confPath("missing.txt"));
}

void TstQtSendBoxWidget::loadChosenInTheRealDialog()
{
    // a folder of its own: the dialog watches the folder it shows
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString path = dir.filePath("chosen.txt");
    writeFile(path, "AT+CSQ");
    QtSendBoxWidget box(nullptr, 7);
    LarkTest::answerNextFileDialog(path);
    box.SltLoadDataFile();
    QCOMPARE(box.findChild<QTextEdit *>()->toPlainText(), QString("AT+CSQ"));
    QCOMPARE(box.loadFile(), path);
}

LARK_TEST_MAIN(TstQtSendBoxWidget)
#include "tst_qtsendboxwidget.moc"
