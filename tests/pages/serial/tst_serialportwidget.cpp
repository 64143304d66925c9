#include "LarkLineSettings.h"
#include "LarkPtyPair.h"
#include "LarkTapSpy.h"
#include "LinkTap.h"
#include "QSerialPorCheck.h"
#include "QtRecvSaveFormat.h"
#include "QtSendBoxWidget.h"
#include "SerialPageRig.h"
#include "UiSkin.h"

namespace {

// a page whose port is one end of a socat pty pair; the test plays the board
struct Rig : SerialPageRig {
    LarkPtyPair pty;

    bool open() { return pty.start() && openOn(pty.programShortName()); }
    // the board writes, and the test waits until the page has taken one read
    bool boardSendsOneRead(const QByteArray &bytes)
    {
        QSignalSpy ready(page.serialport(), SIGNAL(readyRead()));
        return pty.boardWrite(bytes) && ready.wait(5000);
    }
};

// lines a board prints, GB18030 text among them
QByteArray boardLines(int size)
{
    const QByteArray line = MyApp::strToUnicode(QString("temp=25.3 状态正常 <ok> 0123456789\r\n"));
    return line.repeated(size / line.size() + 1).left(size);
}

bool s_portGone = false;

} // namespace

class TstSerialportWidget : public QObject
{
    Q_OBJECT
private slots:
    void init() { SerialPageRig::reset(); }

    // a port the system does not list is typed into the port box and opened as "/dev/" + the text
    void aTypedPortOpensAsItsDevicePathAndOpenAndCloseAreAnnounced()
    {
        Rig rig;
        rig.press(); // an empty port box tries the bare "/dev/"
        QCOMPARE(rig.notify.last(), (QVariantList{QString("串口[/dev/]打开失败!!!"), 255}));
        QComboBox *box = rig.child<QComboBox>("cbxPort");
        QVERIFY(rig.pty.start() && box->isEditable());
        QTest::keyClicks(box->lineEdit(), rig.pty.programShortName());
        rig.press();
        const QString path = rig.pty.programPath();
        QVERIFY(rig.page.serialport()->isOpen() && rig.page.serialport()->portName() == path);
        QCOMPARE(rig.notify.last(), (QVariantList{QString("串口[%1]打开成功!").arg(path), 0}));
        rig.press();
        QVERIFY(!rig.page.serialport()->isOpen());
        QCOMPARE(rig.notify.last(), (QVariantList{QString("串口[%1]已关闭!!").arg(path), 0}));
    }

    // the tap sees raw bytes also when the view holds them, writes like the send box
    // and sees every close
    void theTapSeesTheLinkAndWritesLikeTheSendBox_data()
    {
        QTest::addColumn<bool>("byWatcher");
        QTest::newRow("closed by the user") << false;
        QTest::newRow("closed by the port watcher") << true;
    }
    void theTapSeesTheLinkAndWritesLikeTheSendBox()
    {
        QFETCH(bool, byWatcher);
        Rig rig;
        LarkTapSpy tap(rig.page.linkTap());
        QCOMPARE(rig.page.linkTap()->write("early"), qint64(-1));
        QVERIFY(rig.open());
        rig.child<QCheckBox>("chkStopShow")->setChecked(true);
        QVERIFY(rig.boardSendsOneRead("ab\xE4"));
        QCOMPARE(tap.received(), QByteArray("ab\xE4"));
        QCOMPARE(rig.page.linkTap()->write("ping") + rig.page.sendCount(), 8);
        QCOMPARE(rig.pty.boardReadAtLeast(4) + tap.sent(), QByteArray("pingping"));
        byWatcher ? rig.page.SltSerialportChanged({}) : rig.press();
        QCOMPARE(tap.life(), "open " + rig.pty.programPath() + " closed x1");
    }

    // a skin's borders and padding move the bar's end: a view left at its end follows
    // new data in the other skin too, one scrolled up stays where the user left it
    void theViewFollowsNewDataAcrossASkinSwitch_data()
    {
        QTest::addColumn<bool>("scrolledUp");
        QTest::newRow("at the end") << false;
        QTest::newRow("scrolled up") << true;
    }
    void theViewFollowsNewDataAcrossASkinSwitch()
    {
        QFETCH(bool, scrolledUp);
        Rig rig;
        UiSkin::LoadStyleSheet(0);
        rig.page.show();
        QVERIFY(QTest::qWaitForWindowExposed(&rig.page) && rig.open() && rig.boardSendsOneRead(boardLines(3000)));
        rig.shown();
        // the view lays out a long text over a few turns of the event loop
        QScrollBar *bar = rig.page.terminal()->verticalScrollBar();
        QTRY_VERIFY(bar->maximum() > 0);
        bar->setValue(scrolledUp ? bar->maximum() / 2 : bar->maximum());
        const int left = bar->value(), end = bar->maximum();
        UiSkin::LoadStyleSheet(1);
        QVERIFY(rig.boardSendsOneRead(boardLines(3000)));
        rig.shown();
        QTRY_VERIFY(bar->maximum() > end + 100);
        QCOMPARE(bar->value(), scrolledUp ? left : bar->maximum());
        qApp->setStyleSheet(QString());
    }

    // the tail of a split character is waited for 50 ms from the read that held it
    void aChunkEndingHighWaitsForTheNextReadOrTheTick()
    {
        Rig rig;
        // a long tick first, so that a slow relay cannot let the first half go out alone
        QTimer *tick = rig.page.findChild<QTimer *>();
        QVERIFY(tick->isSingleShot() && tick->interval() == 50);
        tick->setInterval(10000);
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

        // held, not counted, and nothing follows: the 50 ms tick shows it
        tick->setInterval(50);
        QElapsedTimer held;
        QVERIFY(rig.boardSendsOneRead("1234567\x81"));
        held.start();
        QVERIFY(!rig.shown().contains("1234567"));
        QCOMPARE(rig.page.recvCount(), quint32(11));
        QTRY_VERIFY(rig.shown().contains("1234567"));
        QVERIFY2(held.elapsed() >= 40, qPrintable(QString::number(held.elapsed())));
        QVERIFY(rig.page.recvBuffer().isEmpty());
        QCOMPARE(rig.page.getCounts(), (QStringList{"发送字节: 0", "接收字节: 19"}));
        QCOMPARE(rig.counts.last().at(0).toInt(), 0);
    }

    void stoppedDisplayHoldsAndCountsTheWholeBufferEachRead()
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
        const QByteArray block = boardLines(512 * 1024);
        QVERIFY(rig.pty.boardWrite(block));
        QTRY_COMPARE_WITH_TIMEOUT(rig.page.recvBuffer().size(), 3 + block.size(), 30000);
        QVERIFY(rig.shown().isEmpty());

        // closing and clearing keep the held bytes; the next read shows them in one
        // block, and a later read comes after it
        rig.page.CloseSerialport();
        rig.page.clearRecv();
        rig.page.SltOpenSerialport();
        rig.child<QCheckBox>("chkStopShow")->setChecked(false);
        rig.page.clearCounts();
        QVERIFY(rig.boardSendsOneRead("!"));
        QCOMPARE(rig.page.recvCount(), quint32(3 + block.size() + 1));
        QVERIFY(rig.boardSendsOneRead("tail"));
        QTRY_VERIFY_WITH_TIMEOUT(!rig.page.recvFeeder()->isPending(), 30000);
        const QString all = RecvViewText::plainTextOf(MyApp::toUnicode("abc" + block + "!") + "\ntail");
        QVERIFY(rig.page.recvFeeder()->plainText() == all);
        // the view keeps the tail, from a line start
        const QString tail = rig.shown();
        QVERIFY(tail.size() <= SerialportWidget::RecvViewMaxChars + SerialportWidget::RecvViewSlackChars);
        QVERIFY(tail.size() > SerialportWidget::RecvViewMaxChars / 2);
        QVERIFY(all.endsWith(tail));
        QVERIFY(tail.startsWith("temp=25.3"));
    }

    void typedListedAndAutoSentDataReachTheBoard()
    {
        Rig rig;
        QVERIFY(rig.open());
        QtSendBoxWidget *box = rig.page.sendBox();

        // typed, with new line: "\n" becomes "\r\n" and the new line follows
        rig.child<QCheckBox>("chkSendNewLine")->click();
        box->findChild<QTextEdit *>()->setPlainText("AT+中\nB");
        LarkTest::click(box, "发送数据");
        const QByteArray typed("AT+\xD6\xD0\r\nB\r\n");
        QCOMPARE(rig.pty.boardReadAtLeast(typed.size()), typed);

        // hex, from a listed row of the multi page
        rig.child<QRadioButton>("rbtnSendHex")->click();
        rig.child<QCheckBox>("chkSendNewLine")->click();
        rig.child<QComboBox>("cbxSendOption")->setCurrentIndex(1);
        auto row = [box](int id) { return LarkTest::byId<QLineEdit>(box, id); };
        row(1)->setText("01 03 00 FF");
        box->SltMultiBtnClicked(1);
        QCOMPARE(rig.pty.boardReadAtLeast(4), QByteArray("\x01\x03\x00\xFF", 4));

        // auto send over rows 2 and 4, in text again
        rig.child<QRadioButton>("rbtnSendAscii")->click();
        row(1)->setText("r2");
        row(3)->setText("r4");
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

    void clearThenSaveInTheRealDialogWritesAllReceivedSince()
    {
        SerialportWidget page;
        QTemporaryDir dir;
        // clearing drops also what is not shown yet
        page.parseSerialportData(boardLines(256 * 1024));
        QVERIFY(page.recvFeeder()->isPending());
        page.findChild<QPushButton *>("btnClearRecv")->click();
        QVERIFY(page.terminal()->toPlainText().isEmpty());
        // saved while a large block still goes into the view: all of it goes out
        const QByteArray block = boardLines(512 * 1024);
        page.parseSerialportData(block);
        page.parseSerialportData("tail");
        QVERIFY(page.recvFeeder()->isPending());
        LarkTest::answerNextFileDialog(dir.filePath("received"), "*.txt");
        QSignalSpy notify(&page, SIGNAL(signalNotify(QString, int)));
        page.findChild<QPushButton *>("btnSaveFile")->click();
        QCOMPARE(notify.value(0), (QVariantList{QString("文件保存完成!"), 0}));
        const QString expected = RecvViewText::plainTextOf(MyApp::toUnicode(block) + "\ntail");
        QVERIFY(MyApp::toUnicode(LarkTest::fileBytes(dir.filePath("received.txt"))) == expected);
        QTRY_VERIFY(!page.recvFeeder()->isPending());
        QVERIFY(expected.endsWith(page.terminal()->toPlainText()));
        QVERIFY(page.terminal()->toPlainText().endsWith("\ntail"));
    }

    // Reads that come within one display frame go into the view together, yet each
    // stays a paragraph of its own with its own tag, and the saved file is unchanged.
    void readsOfOneFrameStayParagraphsOfTheirOwn_data()
    {
        QTest::addColumn<bool>("hex");
        QTest::addColumn<bool>("log");
        QTest::addColumn<QByteArrayList>("reads");
        QTest::addColumn<QStringList>("paragraphs");
        const QByteArrayList reads{"ab", "c\r\n", "\xD6\xD0\xCE\xC4", "\r", "\nz"};
        // a read's lines are lines of its paragraph ('\n' here)
        QTest::newRow("ascii") << false << false << reads << QStringList{"ab", "c\n", "中文", "\n", "\nz"};
        QTest::newRow("hex") << true << false << reads
                             << QStringList{"61 62 ", "63 0D 0A ", "D6 D0 CE C4 ", "0D ", "0A 7A "};
        QTest::newRow("ascii log") << false << true << QByteArrayList{"x", "y\n"}
                                   << QStringList{"ASCII >", "x", "ASCII >", "y\n"};
    }

    void readsOfOneFrameStayParagraphsOfTheirOwn()
    {
        QFETCH(bool, hex);
        QFETCH(bool, log);
        QFETCH(QByteArrayList, reads);
        QFETCH(QStringList, paragraphs);
        Rig rig;
        if (hex)
            rig.child<QRadioButton>("rbtnRecvHex")->click();
        rig.child<QCheckBox>("chkLogMode")->setChecked(log);
        for (const QByteArray &read : reads)
            rig.page.parseSerialportData(read);
        // the first read after a quiet spell shows at once, the frame's others wait for one edit
        QCOMPARE(rig.page.terminal()->document()->blockCount(), 1);
        QTRY_VERIFY(!rig.page.recvFeeder()->isPending());
        QStringList shown;
        for (QTextBlock b = rig.page.terminal()->document()->begin(); b.isValid(); b = b.next())
            shown << b.text().replace(QChar(QChar::LineSeparator), QLatin1Char('\n'));
        if (log) {
            // the time of the tag is the read's; the rest is fixed
            for (QString &line : shown)
                line.remove(QRegularExpression("^\\[\\d\\d:\\d\\d:\\d\\d\\.\\d\\d\\d\\] "));
        }
        QCOMPARE(shown, paragraphs);
        QCOMPARE(rig.page.recvFeeder()->plainText(), rig.page.terminal()->toPlainText());
        if (log)
            return; // the tags' times differ from run to run
        // the file is made from all the paragraphs, exactly as shown
        QTemporaryDir dir;
        const QString name = dir.filePath(hex ? "x.bin" : "x.txt");
        rig.page.saveDataToFile(name);
        QCOMPARE(LarkTest::fileBytes(name), QtRecvSaveFormat::saveBytes(name, paragraphs.join('\n')));
    }

    // A megabyte held in HEX resumes as one paragraph of the saved text, while the view
    // shows its tail in lines of bounded length, cut after whole bytes.
    void aHeldMegabyteOfHexResumesInBoundedViewLines()
    {
        Rig rig;
        QVERIFY(rig.open());
        rig.child<QRadioButton>("rbtnRecvHex")->click();
        rig.child<QCheckBox>("chkStopShow")->setChecked(true);
        QByteArray block(1 << 20, Qt::Uninitialized);
        for (int i = 0; i < block.size(); ++i)
            block[i] = char((i * 7) ^ (i >> 8));
        QVERIFY(rig.pty.boardWrite(block));
        QTRY_COMPARE_WITH_TIMEOUT(rig.page.recvBuffer().size(), block.size(), 30000);
        rig.child<QCheckBox>("chkStopShow")->setChecked(false);
        QVERIFY(rig.boardSendsOneRead("!"));
        const QString saved = rig.page.recvFeeder()->plainText();
        QVERIFY(saved == NumberTool::byteToHex(block + "!"));
        QTRY_VERIFY(!rig.page.recvFeeder()->isPending());
        const QTextDocument *doc = rig.page.terminal()->document();
        QVERIFY(doc->characterCount() <= SerialportWidget::RecvViewMaxChars + SerialportWidget::RecvViewSlackChars + 1);
        QString joined;
        for (QTextBlock b = doc->begin(); b.isValid(); b = b.next()) {
            QVERIFY(b.text().size() <= SerialportWidget::RecvViewLineChars + 2);
            QVERIFY(b.text().endsWith(' '));
            joined += b.text();
        }
        QVERIFY(saved.endsWith(joined));
        QVERIFY(joined.size() > SerialportWidget::RecvViewMaxChars / 2);
    }

    void aVanishingPortIsSurvivedAndAnyChangeInPortCountClosesIt()
    {
        Rig rig;
        QVERIFY(rig.open());
        QVERIFY(rig.pty.boardWrite(QByteArray(64 * 1024, 'z')));
        s_portGone = false;
        QtMessageHandler previous = qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &m) {
            s_portGone = s_portGone || m.contains("has gone away");
        });
        rig.pty.stop();
        QTRY_VERIFY(s_portGone);
        qInstallMessageHandler(previous);
        // no message while reading; the watcher's next change closes it
        QCOMPARE(rig.notify.count(), 1);
        QSerialPorCheck check;
        QObject::connect(&check, SIGNAL(signalSerialChanged(QStringList)), &rig.page,
                         SLOT(SltSerialportChanged(QStringList)));
        // the list holds short names, the port its full path: its own name counts as pulled
        check.updateSerialports({rig.pty.programShortName(), "ttyUSB0"});
        QVERIFY(!rig.page.serialport()->isOpen());
        QCOMPARE(rig.notify.last(), (QVariantList{QString("当前串口已拔出，请重新打开!"), 255}));

        // closed: the box follows the list silently; the port neither writes nor counts
        const int notes = rig.notify.count();
        const int reports = rig.counts.count();
        check.updateSerialports({});
        QCOMPARE(rig.child<QComboBox>("cbxPort")->count(), 0);
        QCOMPARE(rig.notify.count(), notes);
        rig.page.SltWriteDataToSerialport("late");
        QCOMPARE(rig.page.sendCount(), quint32(0));
        QCOMPARE(rig.counts.count(), reports);
    }

    // every option of the four boxes reaches the tty, as the kernel holds it
    void everySerialOptionReachesTheTty()
    {
        Rig rig;
        QVERIFY(rig.open());
        rig.press();
        QCOMPARE(LarkTest::sweepQextPage(&rig.page, rig.pty.programPath(), rig.page.serialport(), [&] { rig.press(); }),
                 LarkTest::qextSerialSweep());
    }
};

LARK_TEST_MAIN(TstSerialportWidget)
#include "tst_serialportwidget.moc"
