#include "LarkPtyPair.h"
#include "LarkTest.h"
#include "MyApp.h"
#include "NumberTool.h"
#include "QSerialPorCheck.h"
#include "QextSerialPort.h"
#include "QtFileDialog.h"
#include "QtSendBoxWidget.h"
#include "QtTerminalWidget.h"
#include "QtRecvViewFeeder.h"
#include "SerialRecvRule.h"
#include "SerialportWidget.h"
#include "StatusLabel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>
#include <QTimer>
#include <QToolButton>
#include <QtTest>

#include <memory>

namespace {

// a page with its port opened on one end of a socat pty pair
struct Rig {
    LarkPtyPair pty;
    SerialportWidget page;
    QSignalSpy notify{&page, SIGNAL(signalNotify(QString, int))};
    QSignalSpy counts{&page, SIGNAL(signalRefresCounts(int))};

    template <typename T>
    T *child(const char *name) { return page.findChild<T *>(QString::fromLatin1(name)); }

    bool open()
    {
        if (!pty.start())
            return false;
        page.SltSerialportChanged({pty.programShortName()});
        page.SltOpenSerialport();
        return page.serialport()->isOpen();
    }
    // the board writes, and the test waits until the page has taken one read
    bool boardSendsOneRead(const QByteArray &bytes)
    {
        QSignalSpy ready(page.serialport(), SIGNAL(readyRead()));
        return pty.boardWrite(bytes) && ready.wait(5000);
    }
    QString shown() const { return page.terminal()->toPlainText(); }
};

QString lastNotify(const QSignalSpy &spy)
{
    return spy.isEmpty() ? QString() : spy.last().at(0).toString();
}

int lastLevel(const QSignalSpy &spy)
{
    return spy.isEmpty() ? -1 : spy.last().at(1).toInt();
}

QByteArray allBytes()
{
    QByteArray b;
    for (int i = 0; i < 256; ++i)
        b.append(char(i));
    return b;
}

// lines a board prints, GB18030 text among them
QByteArray boardLines(int size)
{
    const QByteArray line = MyApp::strToUnicode(QString("temp=25.3 状态正常 <ok> 0123456789\r\n"));
    return line.repeated(size / line.size() + 1).left(size);
}

// what the view shows when each chunk is appended whole
QString shownWhole(const QList<QByteArray> &chunks, bool hex)
{
    QTextEdit view;
    for (const QByteArray &chunk : chunks) {
        QTextCursor cursor(view.document());
        cursor.movePosition(QTextCursor::End);
        if (!view.document()->isEmpty())
            cursor.insertBlock();
        cursor.insertText(SerialRecvRule::displayText(chunk, hex));
    }
    return view.toPlainText();
}

} // namespace

class TstSerialportWidget : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void holdRuleWaitsOnlyForATextChunkEndingHigh_data();
    void holdRuleWaitsOnlyForATextChunkEndingHigh();

    void pageStartsClosedWithItsDefaults();
    void openAndCloseAreAnnounced();
    void emptyPortBoxFailsOnTheBareDevicePath();
    void portTakesTheBaudTextOrKeepsItsRate_data();
    void portTakesTheBaudTextOrKeepsItsRate();
    void receivedBytesShowInTheChosenForm_data();
    void receivedBytesShowInTheChosenForm();
    void switchingFormatChangesOnlyLaterChunks();
    void chunkEndingHighWaitsForTheTick();
    void characterSplitAcrossTwoWritesShowsWhole();
    void stoppedDisplayCountsTheWholeBufferEachRead();
    void countsAreReportedForPageZero();
    void typedListedAndAutoSentDataReachTheBoard();
    void sendingOnAClosedPortWritesAndCountsNothing();
    void saveRoundTripsTextAndRawBytes();
    void saveChosenInTheRealDialog();
    void saveToAnUnwritablePathIsAnError();
    void anyChangeInPortCountClosesTheOpenPort();
    void portVanishingMidReadIsSurvived();
    void tenMegabytesWhileDisplayIsStoppedDoNotFreeze();
    void heldBlockShowsWhollyAndInOrderAfterResume_data();
    void heldBlockShowsWhollyAndInOrderAfterResume();
    void chunksArrivingWhileABlockIsShownQueueBehindIt();
    void clearingDropsWhatIsNotShownYet();
    void saveWhileABlockIsShownWritesAllOfIt();
    void foldButtonHidesAndShowsTheSettings();
};

void TstSerialportWidget::init()
{
    LarkTest::cleanAppDirs();
    // each page appends its new line to the process-wide one
    NumberTool::m_newLine.clear();
    MyApp::m_nTextCodecIndex = 1;
}

void TstSerialportWidget::cleanup()
{
    LarkTest::cleanAppDirs();
}

void TstSerialportWidget::holdRuleWaitsOnlyForATextChunkEndingHigh_data()
{
    QTest::addColumn<QByteArray>("chunk");
    QTest::addColumn<bool>("ascii");
    QTest::addColumn<QByteArray>("waiting");
    QTest::addColumn<bool>("held");
    QTest::newRow("ends in 0xE4") << QByteArray("1234567\xE4") << true << QByteArray() << true;
    QTest::newRow("ends in 0x81") << QByteArray("\x81") << true << QByteArray() << true;
    QTest::newRow("0x80 is not above") << QByteArray("\x80") << true << QByteArray() << false;
    QTest::newRow("plain text") << QByteArray("abc") << true << QByteArray() << false;
    QTest::newRow("hex shows at once") << QByteArray("abc\xE4") << false << QByteArray() << false;
    QTest::newRow("only once per buffer") << QByteArray("\xD6") << true << QByteArray("\xD6") << false;
    QTest::newRow("empty") << QByteArray() << true << QByteArray() << false;
}

void TstSerialportWidget::holdRuleWaitsOnlyForATextChunkEndingHigh()
{
    QFETCH(QByteArray, chunk);
    QFETCH(bool, ascii);
    QFETCH(QByteArray, waiting);
    QFETCH(bool, held);
    QCOMPARE(SerialRecvRule::holdChunk(chunk, ascii, waiting), held);
}

void TstSerialportWidget::pageStartsClosedWithItsDefaults()
{
    SerialportWidget page;
    QCOMPARE(page.objectName(), QString("SerialportWidget"));
    QCOMPARE(page.sizeHint(), QSize(900, 600));
    QCOMPARE(NumberTool::m_newLine, QByteArray("\r\n"));
    QCOMPARE(page.getCounts(), (QStringList{"发送字节: 0", "接收字节: 0"}));
    QCOMPARE(page.findChild<QComboBox *>("cbxBaud")->currentText(), QString("115200"));
    QCOMPARE(page.findChild<QComboBox *>("cbxDataBits")->currentText(), QString("8"));
    QCOMPARE(page.findChild<QComboBox *>("cbxStopBits")->currentText(), QString("1"));
    QCOMPARE(page.findChild<QComboBox *>("cbxParity")->currentText(), QString("无"));
    QCOMPARE(page.findChild<QComboBox *>("cbxPort")->count(), 0);
    QCOMPARE(page.findChild<QPushButton *>("btnOpen")->text(), QString("打开串口"));
    QVERIFY(page.findChild<QRadioButton *>("rbtnRecvAscii")->isChecked());
    QCOMPARE(page.findChild<QLineEdit *>("edtAutoInterval")->text(), QString("1000"));
    QCOMPARE(page.terminal()->placeholderText(), QString("数据接收区显示"));
    QCOMPARE(page.serialport()->queryMode(), QextSerialPort::EventDriven);
}

void TstSerialportWidget::openAndCloseAreAnnounced()
{
    Rig rig;
    QVERIFY(rig.open());
    const QString path = rig.pty.programPath();
    QCOMPARE(lastNotify(rig.notify), QString("串口[%1]打开成功!").arg(path));
    QCOMPARE(lastLevel(rig.notify), 0);
    QCOMPARE(rig.child<QPushButton>("btnOpen")->text(), QString("关闭串口"));
    QVERIFY(rig.page.findChild<StatusLabel *>()->isWork());
    QCOMPARE(rig.page.serialport()->portName(), path);

    rig.child<QPushButton>("btnOpen")->click();
    QVERIFY(!rig.page.serialport()->isOpen());
    QCOMPARE(lastNotify(rig.notify), QString("串口[%1]已关闭!!").arg(path));
    QCOMPARE(lastLevel(rig.notify), 0);
    QCOMPARE(rig.notify.count(), 2);
    QCOMPARE(rig.child<QPushButton>("btnOpen")->text(), QString("打开串口"));
    QVERIFY(!rig.page.findChild<StatusLabel *>()->isWork());
}

void TstSerialportWidget::emptyPortBoxFailsOnTheBareDevicePath()
{
    SerialportWidget page;
    QSignalSpy notify(&page, SIGNAL(signalNotify(QString, int)));
    page.SltOpenSerialport();
    QCOMPARE(notify.count(), 1);
    QCOMPARE(lastNotify(notify), QString("串口[/dev/]打开失败!!!"));
    QCOMPARE(lastLevel(notify), 255);
    QVERIFY(!page.serialport()->isOpen());
    QCOMPARE(page.findChild<QPushButton *>("btnOpen")->text(), QString("打开串口"));
}

void TstSerialportWidget::portTakesTheBaudTextOrKeepsItsRate_data()
{
    QTest::addColumn<QString>("baud");
    QTest::addColumn<QString>("dataBits");
    QTest::addColumn<QString>("stopBits");
    QTest::addColumn<int>("rate");
    QTest::addColumn<int>("stopIndex");
    QTest::addColumn<QString>("warning");
    QTest::newRow("listed rate") << "460800" << "8" << "2" << 460800 << 1 << "";
    QTest::newRow("listed but refused") << "128000" << "8" << "1" << 9600 << 0 << "baud rate";
    QTest::newRow("unparsable text") << "fast" << "8" << "1" << 9600 << 0 << "baud rate";
    QTest::newRow("typed rate") << "921600" << "7" << "1" << 921600 << 0 << "";
    QTest::newRow("five data bits, two stop bits") << "9600" << "5" << "2" << 9600 << 0 << "2 stop bits";
}

void TstSerialportWidget::portTakesTheBaudTextOrKeepsItsRate()
{
    QFETCH(QString, baud);
    QFETCH(QString, dataBits);
    QFETCH(QString, stopBits);
    QFETCH(int, rate);
    QFETCH(int, stopIndex);
    QFETCH(QString, warning);
    Rig rig;
    QVERIFY(rig.pty.start());
    rig.page.SltSerialportChanged({rig.pty.programShortName()});
    rig.child<QComboBox>("cbxBaud")->setCurrentText(baud);
    rig.child<QComboBox>("cbxDataBits")->setCurrentText(dataBits);
    rig.child<QComboBox>("cbxStopBits")->setCurrentText(stopBits);
    if (!warning.isEmpty())
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(warning));
    rig.page.SltOpenSerialport();
    // refusals are the port's business: the page reports success all the same
    QVERIFY(rig.page.serialport()->isOpen());
    QCOMPARE(lastLevel(rig.notify), 0);
    QCOMPARE(int(rig.page.serialport()->baudRate()), rate);
    QCOMPARE(int(rig.page.serialport()->stopBits()), stopIndex);
    QCOMPARE(int(rig.page.serialport()->dataBits()), dataBits.toInt());
}

void TstSerialportWidget::receivedBytesShowInTheChosenForm_data()
{
    QTest::addColumn<bool>("hex");
    QTest::addColumn<bool>("log");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("pattern");
    const QString tag = "\\[\\d\\d:\\d\\d:\\d\\d\\.\\d\\d\\d\\]";
    QTest::newRow("ascii") << false << false << QByteArray("hello\r\n") << "^hello\\r?\\n$";
    QTest::newRow("ascii gb18030") << false << false << QByteArray("\xD6\xD0\xCE\xC4") << "^中文$";
    QTest::newRow("hex") << true << false << QByteArray("\x00\x7F\x80\xFF", 4) << "^00 7F 80 FF $";
    QTest::newRow("markup stays text") << false << false << QByteArray("<b>bold</b>") << "^<b>bold</b>$";
    QTest::newRow("ascii log") << false << true << QByteArray("ok") << "^" + tag + " ASCII >\\nok$";
    QTest::newRow("hex log") << true << true << QByteArray("ok") << "^" + tag + " HEX >\\n6F 6B $";
}

void TstSerialportWidget::receivedBytesShowInTheChosenForm()
{
    QFETCH(bool, hex);
    QFETCH(bool, log);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, pattern);
    Rig rig;
    QVERIFY(rig.open());
    if (hex)
        rig.child<QRadioButton>("rbtnRecvHex")->click();
    rig.child<QCheckBox>("chkLogMode")->setChecked(log);
    QVERIFY(rig.boardSendsOneRead(bytes));
    QTRY_VERIFY2(QRegularExpression(pattern).match(rig.shown()).hasMatch(), qPrintable(rig.shown()));
    QCOMPARE(rig.page.recvCount(), quint32(bytes.size()));
    QVERIFY(rig.page.recvBuffer().isEmpty());
}

void TstSerialportWidget::switchingFormatChangesOnlyLaterChunks()
{
    Rig rig;
    QVERIFY(rig.open());
    rig.child<QCheckBox>("chkLogMode")->setChecked(true);
    QVERIFY(rig.boardSendsOneRead("ab"));
    rig.child<QRadioButton>("rbtnRecvHex")->click();
    QVERIFY(rig.boardSendsOneRead("cd"));
    const QStringList lines = rig.shown().split('\n');
    QCOMPARE(lines.size(), 4);
    QVERIFY(lines.at(0).endsWith("] ASCII >"));
    QCOMPARE(lines.at(1), QString("ab"));
    // each chunk gets its own tag, in the middle of the sender's line too
    QVERIFY(lines.at(2).endsWith("] HEX >"));
    QCOMPARE(lines.at(3), QString("63 64 "));
}

void TstSerialportWidget::chunkEndingHighWaitsForTheTick()
{
    Rig rig;
    QVERIFY(rig.open());
    QVERIFY(rig.boardSendsOneRead("1234567\xE4"));
    // held: nothing shown, nothing counted yet
    QCOMPARE(rig.page.recvBuffer(), QByteArray("1234567\xE4"));
    QVERIFY(rig.shown().isEmpty());
    QCOMPARE(rig.page.recvCount(), quint32(0));
    // nothing follows: the tick shows it
    QTRY_VERIFY(rig.shown().startsWith("1234567"));
    QVERIFY(rig.page.recvBuffer().isEmpty());
    QCOMPARE(rig.page.recvCount(), quint32(8));

    rig.child<QRadioButton>("rbtnRecvHex")->click();
    QVERIFY(rig.boardSendsOneRead("1234567\xE4"));
    QVERIFY(rig.shown().endsWith("31 32 33 34 35 36 37 E4 "));
}

void TstSerialportWidget::characterSplitAcrossTwoWritesShowsWhole()
{
    Rig rig;
    // a long tick, so that a slow relay cannot let the first half go out alone
    rig.page.findChild<QTimer *>()->setInterval(10000);
    QVERIFY(rig.open());
    QVERIFY(rig.boardSendsOneRead("AT+\xD6"));
    QVERIFY(rig.shown().isEmpty());
    QVERIFY(rig.boardSendsOneRead("\xD0\xCE\xC4"));
    QCOMPARE(rig.shown(), QString("AT+中文"));
    QCOMPARE(rig.page.recvCount(), quint32(7));

    // a second chunk ending high is shown at once: the hold happens once per buffer
    QVERIFY(rig.boardSendsOneRead("x\xD6"));
    QVERIFY(rig.boardSendsOneRead("y\xD6"));
    QVERIFY(rig.shown().startsWith(QString("AT+中文\nx")));
    QVERIFY(rig.page.recvBuffer().isEmpty());
}

void TstSerialportWidget::stoppedDisplayCountsTheWholeBufferEachRead()
{
    Rig rig;
    QVERIFY(rig.open());
    rig.child<QCheckBox>("chkStopShow")->setChecked(true);
    QList<quint32> counts;
    for (const char *b : {"a", "b", "c"}) {
        QVERIFY(rig.boardSendsOneRead(b));
        counts << rig.page.recvCount();
    }
    QCOMPARE(counts, (QList<quint32>{1, 3, 6}));
    QCOMPARE(rig.page.recvBuffer(), QByteArray("abc"));
    QVERIFY(rig.shown().isEmpty());

    // closing and clearing keep the held bytes; the next read shows them in one block
    rig.page.CloseSerialport();
    rig.page.clearRecv();
    QCOMPARE(rig.page.recvBuffer(), QByteArray("abc"));
    rig.page.SltOpenSerialport();
    rig.child<QCheckBox>("chkStopShow")->setChecked(false);
    QVERIFY(rig.boardSendsOneRead("d"));
    QCOMPARE(rig.shown(), QString("abcd"));
    QCOMPARE(rig.page.recvCount(), quint32(10));
}

void TstSerialportWidget::countsAreReportedForPageZero()
{
    Rig rig;
    QVERIFY(rig.open());
    QVERIFY(rig.boardSendsOneRead("12345"));
    QVERIFY(rig.counts.count() >= 1);
    for (const QList<QVariant> &args : rig.counts)
        QCOMPARE(args.at(0).toInt(), 0);
    rig.page.SltWriteDataToSerialport("xyz");
    QCOMPARE(rig.page.getCounts(), (QStringList{"发送字节: 3", "接收字节: 5"}));
    rig.page.clearCounts();
    QCOMPARE(rig.page.getCounts(), (QStringList{"发送字节: 0", "接收字节: 0"}));
}

void TstSerialportWidget::typedListedAndAutoSentDataReachTheBoard()
{
    Rig rig;
    QVERIFY(rig.open());
    QtSendBoxWidget *box = rig.page.sendBox();

    // typed, with new line: "\n" becomes "\r\n" and the new line follows
    rig.child<QCheckBox>("chkSendNewLine")->click();
    box->findChild<QTextEdit *>()->setPlainText("AT+中\nB");
    QPushButton *send = nullptr;
    for (QPushButton *b : box->findChildren<QPushButton *>())
        if (b->text() == QString("发送数据"))
            send = b;
    QVERIFY(send && send->isEnabled());
    send->click();
    const QByteArray typed("AT+\xD6\xD0\r\nB\r\n");
    QCOMPARE(rig.pty.boardReadAtLeast(typed.size()), typed);

    // hex, from a listed row of the multi page
    rig.child<QRadioButton>("rbtnSendHex")->click();
    rig.child<QCheckBox>("chkSendNewLine")->click();
    rig.child<QComboBox>("cbxSendOption")->setCurrentIndex(1);
    QCOMPARE(box->currentPage(), 2);
    QLineEdit *rows[10] = {};
    for (QLineEdit *e : box->findChildren<QLineEdit *>())
        if (e->property("id").isValid())
            rows[e->property("id").toInt()] = e;
    rows[1]->setText("01 03 00 FF");
    box->SltMultiBtnClicked(1);
    QCOMPARE(rig.pty.boardReadAtLeast(4), QByteArray("\x01\x03\x00\xFF", 4));

    // auto send over rows 2 and 4, in text again
    rig.child<QRadioButton>("rbtnSendAscii")->click();
    rows[1]->clear();
    rows[1]->setText("r2");
    rows[3]->setText("r4");
    rig.child<QLineEdit>("edtAutoInterval")->setText("20");
    emit rig.child<QLineEdit>("edtAutoInterval")->editingFinished();
    rig.child<QCheckBox>("chkAutoSend")->setChecked(true);
    const QByteArray cycle = rig.pty.boardReadAtLeast(8);
    rig.child<QCheckBox>("chkAutoSend")->setChecked(false);
    QVERIFY2(cycle.startsWith("r2r4r2r4"), cycle.constData());
    QVERIFY(!box->autoTimer()->isActive());
    QVERIFY(rig.page.sendCount() >= quint32(typed.size() + 4 + 8));
    QCOMPARE(rig.counts.last().at(0).toInt(), 0);
}

void TstSerialportWidget::sendingOnAClosedPortWritesAndCountsNothing()
{
    SerialportWidget page;
    QSignalSpy counts(&page, SIGNAL(signalRefresCounts(int)));
    page.SltWriteDataToSerialport("abc");
    QCOMPARE(page.sendCount(), quint32(0));
    QCOMPARE(counts.count(), 0);
}

void TstSerialportWidget::saveRoundTripsTextAndRawBytes()
{
    Rig rig;
    QVERIFY(rig.open());
    const QString dir = QCoreApplication::applicationDirPath() + "/conf/";
    MyApp::CheckDirs({"conf"});

    rig.child<QRadioButton>("rbtnRecvHex")->click();
    const QByteArray bytes = allBytes();
    QVERIFY(rig.pty.boardWrite(bytes));
    QTRY_COMPARE(rig.page.recvCount(), quint32(bytes.size()));
    rig.page.saveDataToFile(dir + "x.bin");
    QCOMPARE(lastNotify(rig.notify), QString("文件保存完成!"));
    QFile bin(dir + "x.bin");
    QVERIFY(bin.open(QIODevice::ReadOnly));
    QCOMPARE(bin.readAll(), bytes);

    rig.page.clearRecv();
    rig.child<QRadioButton>("rbtnRecvAscii")->click();
    QVERIFY(rig.boardSendsOneRead("\xD6\xD0\xCE\xC4 ok"));
    QTRY_COMPARE(rig.shown(), QString("中文 ok"));
    rig.page.saveDataToFile(dir + "x.txt");
    QFile txt(dir + "x.txt");
    QVERIFY(txt.open(QIODevice::ReadOnly));
    QCOMPARE(txt.readAll(), QByteArray("\xD6\xD0\xCE\xC4 ok"));
}

void TstSerialportWidget::saveChosenInTheRealDialog()
{
    SerialportWidget page;
    // a folder of its own: the dialog watches the folder it shows
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString base = dir.filePath("received");
    page.recvFeeder()->appendParagraph("41 42 43");
    LarkTest::answerNextFileDialog(base, "*.bin");
    page.SltSaveDataToFile();
    QFile bin(base + ".bin");
    QVERIFY(bin.open(QIODevice::ReadOnly));
    QCOMPARE(bin.readAll(), QByteArray("ABC"));

    // an empty view asks nothing
    page.clearRecv();
    QSignalSpy notify(&page, SIGNAL(signalNotify(QString, int)));
    page.SltSaveDataToFile();
    QCOMPARE(notify.count(), 0);
}

void TstSerialportWidget::saveToAnUnwritablePathIsAnError()
{
    SerialportWidget page;
    QSignalSpy notify(&page, SIGNAL(signalNotify(QString, int)));
    page.recvFeeder()->appendParagraph("data");
    page.saveDataToFile("/nonexistent-dir/x.txt");
    QCOMPARE(lastNotify(notify), QString("文件保存失败!"));
    QCOMPARE(lastLevel(notify), 255);
}

void TstSerialportWidget::anyChangeInPortCountClosesTheOpenPort()
{
    Rig rig;
    QVERIFY(rig.open());
    QSerialPorCheck check;
    QObject::connect(&check, SIGNAL(signalSerialChanged(QStringList)), &rig.page,
                     SLOT(SltSerialportChanged(QStringList)));
    // the list holds short names, the open port its full path: even its own name
    // in the list counts as pulled
    const QString own = rig.pty.programShortName();
    check.updateSerialports({own, "ttyUSB0"});
    QVERIFY(!rig.page.serialport()->isOpen());
    QCOMPARE(lastNotify(rig.notify), QString("当前串口已拔出，请重新打开!"));
    QCOMPARE(lastLevel(rig.notify), 255);
    QCOMPARE(rig.child<QPushButton>("btnOpen")->text(), QString("打开串口"));
    QCOMPARE(rig.child<QComboBox>("cbxPort")->count(), 2);
    QCOMPARE(rig.child<QComboBox>("cbxPort")->currentText(), own);

    // closed: the box follows the list silently
    const int notes = rig.notify.count();
    check.updateSerialports({});
    QCOMPARE(rig.child<QComboBox>("cbxPort")->count(), 0);
    QCOMPARE(rig.notify.count(), notes);
}

void TstSerialportWidget::portVanishingMidReadIsSurvived()
{
    Rig rig;
    QVERIFY(rig.open());
    QVERIFY(rig.pty.boardWrite(QByteArray(64 * 1024, 'z')));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("QextSerialPort: .* has gone away"));
    rig.pty.stop();
    QTest::qWait(200);
    // no message while reading; the watcher's next change closes it
    QCOMPARE(lastLevel(rig.notify), 0);
    rig.page.SltSerialportChanged({});
    QVERIFY(!rig.page.serialport()->isOpen());
    QCOMPARE(lastLevel(rig.notify), 255);
    rig.page.SltWriteDataToSerialport("late");
}

void TstSerialportWidget::tenMegabytesWhileDisplayIsStoppedDoNotFreeze()
{
    Rig rig;
    QVERIFY(rig.open());
    rig.child<QCheckBox>("chkStopShow")->setChecked(true);
    const int size = 10 * 1024 * 1024;
    QByteArray block(size, 'x');
    QVERIFY(rig.pty.boardWrite(block));
    QTRY_COMPARE_WITH_TIMEOUT(rig.page.recvBuffer().size(), size, 30000);
    QVERIFY(rig.shown().isEmpty());
    // the count has run ahead of the real total (and may have wrapped)
    QVERIFY(rig.page.recvCount() != quint32(size) || rig.counts.count() == 1);
    rig.child<QPushButton>("btnOpen")->click();
    QVERIFY(!rig.page.serialport()->isOpen());
}

void TstSerialportWidget::heldBlockShowsWhollyAndInOrderAfterResume_data()
{
    QTest::addColumn<bool>("hex");
    QTest::addColumn<QByteArray>("held");
    QTest::newRow("2 MB of text") << false << boardLines(2 * 1024 * 1024);
    QTest::newRow("1 MB in hex") << true << allBytes().repeated(4096);
}

void TstSerialportWidget::heldBlockShowsWhollyAndInOrderAfterResume()
{
    QFETCH(bool, hex);
    QFETCH(QByteArray, held);
    Rig rig;
    QVERIFY(rig.open());
    if (hex)
        rig.child<QRadioButton>("rbtnRecvHex")->click();
    rig.child<QCheckBox>("chkStopShow")->setChecked(true);
    QVERIFY(rig.pty.boardWrite(held));
    QTRY_COMPARE_WITH_TIMEOUT(rig.page.recvBuffer().size(), held.size(), 30000);
    QVERIFY(rig.shown().isEmpty());

    rig.child<QCheckBox>("chkStopShow")->setChecked(false);
    // the held block starts to show with the next read, together with its bytes
    QVERIFY(rig.boardSendsOneRead("!"));
    QVERIFY(!rig.shown().isEmpty());
    QVERIFY(rig.page.recvBuffer().isEmpty());
    QVERIFY(rig.boardSendsOneRead("tail"));
    // text lines go in over many turns, so the tail came while they did; hex text is
    // one line, which goes in whole with the read
    QCOMPARE(rig.page.recvFeeder()->isPending(), !hex);
    QTRY_VERIFY_WITH_TIMEOUT(!rig.page.recvFeeder()->isPending(), 30000);
    QVERIFY(rig.shown() == shownWhole({held + "!", "tail"}, hex));
}

void TstSerialportWidget::chunksArrivingWhileABlockIsShownQueueBehindIt()
{
    SerialportWidget page;
    page.findChild<QCheckBox *>("chkLogMode")->setChecked(true);
    const QByteArray block = boardLines(256 * 1024);
    page.parseSerialportData(block);
    QVERIFY(page.recvFeeder()->isPending());
    page.findChild<QRadioButton *>("rbtnRecvHex")->click();
    page.parseSerialportData("ab");
    QTRY_VERIFY(!page.recvFeeder()->isPending());

    // tag, block, tag, hex of the later chunk: in the order they came
    const QString shown = page.terminal()->toPlainText();
    const QString blockShown = shownWhole({block}, false);
    const QRegularExpression tag("^\\[\\d\\d:\\d\\d:\\d\\d\\.\\d\\d\\d\\] ");
    const int firstLine = shown.indexOf('\n');
    QVERIFY(tag.match(shown.left(firstLine)).hasMatch());
    QVERIFY(shown.left(firstLine).endsWith(" ASCII >"));
    QCOMPARE(shown.mid(firstLine + 1, blockShown.size()), blockShown);
    const QStringList rest = shown.mid(firstLine + 1 + blockShown.size()).split('\n');
    QCOMPARE(rest.size(), 3);
    QVERIFY(rest.at(0).isEmpty());
    QVERIFY(tag.match(rest.at(1)).hasMatch());
    QVERIFY(rest.at(1).endsWith(" HEX >"));
    QCOMPARE(rest.at(2), QString("61 62 "));
    QCOMPARE(page.recvCount(), quint32(block.size() + 2));
}

void TstSerialportWidget::clearingDropsWhatIsNotShownYet()
{
    SerialportWidget page;
    page.parseSerialportData(boardLines(256 * 1024));
    QVERIFY(page.recvFeeder()->isPending());
    page.findChild<QPushButton *>("btnClearRecv")->click();
    QVERIFY(!page.recvFeeder()->isPending());
    QVERIFY(page.terminal()->toPlainText().isEmpty());
    page.parseSerialportData("after");
    QCOMPARE(page.terminal()->toPlainText(), QString("after"));
}

void TstSerialportWidget::saveWhileABlockIsShownWritesAllOfIt()
{
    SerialportWidget page;
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QByteArray block = boardLines(512 * 1024);
    page.parseSerialportData(block);
    page.parseSerialportData("tail");
    QVERIFY(page.recvFeeder()->isPending());
    LarkTest::answerNextFileDialog(dir.filePath("received"), "*.txt");
    page.SltSaveDataToFile();
    QTRY_VERIFY(!page.recvFeeder()->isPending());
    QFile txt(dir.filePath("received.txt"));
    QVERIFY(txt.open(QIODevice::ReadOnly));
    const QString saved = MyApp::toUnicode(txt.readAll());
    QCOMPARE(saved.size(), page.terminal()->toPlainText().size());
    QVERIFY(saved == page.terminal()->toPlainText());
    QVERIFY(saved.endsWith("\ntail"));
}

void TstSerialportWidget::foldButtonHidesAndShowsTheSettings()
{
    SerialportWidget page;
    page.show();
    auto *fold = page.findChild<QToolButton *>("btnFold");
    QVERIFY(fold);
    QCOMPARE(fold->size(), QSize(6, 170));
    QCOMPARE(fold->toolTip(), QString("隐藏配置界面"));
    fold->click();
    QVERIFY(!page.findChild<QComboBox *>("cbxPort")->isVisible());
    QCOMPARE(fold->toolTip(), QString("显示配置界面"));
    fold->click();
    QVERIFY(page.findChild<QComboBox *>("cbxPort")->isVisible());
    QCOMPARE(fold->toolTip(), QString("隐藏配置界面"));
}

LARK_TEST_MAIN(TstSerialportWidget)
#include "tst_serialportwidget.moc"
