#include "HexEditWidget.h"
#include "HexFindBar.h"
#include "LarkTest.h"
#include "QHexEdit.h"
#include "QtMessageBox.h"

#include <Okteta/AbstractByteArrayModel>
#include <QtTest>
#include <QtWidgets>

// The editor page, driven through its buttons, the file dialog, drops and keys, on
// real files in a temporary folder.
class TstHexEditWidget : public QObject
{
    Q_OBJECT
    std::unique_ptr<HexEditWidget> m_page;
    QTemporaryDir m_dir;

    QHexEdit *edit() const { return m_page->hexEdit(); }
    QString file(const QString &name, const QByteArray &bytes)
    {
        return LarkTest::writeFile(m_dir.filePath(name), bytes) ? m_dir.filePath(name) : QString();
    }
    void press(int id) { QTest::mouseClick(m_page->findChildren<QToolButton *>().at(id), Qt::LeftButton); }
    void type(const QString &keys) { edit()->setFocus(), QTest::keyClicks(edit(), keys); }
    QString label() { return m_page->findChild<QLabel *>("labHexFile")->text(); }
    QString m_strAsked;
    // answers the question box, once it is up, with the button so labelled
    void answerQuestion(const QString &button)
    {
        QTimer *timer = new QTimer(m_page.get());
        connect(timer, &QTimer::timeout, [this, timer, button] {
            auto *box = qobject_cast<QtMessageBox *>(QApplication::activeModalWidget());
            if (box && box->isVisible()) {
                timer->stop();
                m_strAsked = box->findChild<QLabel *>("labMsgText")->text();
                LarkTest::click(box, button);
            }
        });
        timer->start(10);
    }
    static qint64 rssKb()
    {
        const QByteArray status = LarkTest::fileBytes("/proc/self/status");
        return status.mid(status.indexOf("VmRSS:") + 6, 20).trimmed().split(' ').first().toLongLong();
    }

private slots:
    void init()
    {
        m_page.reset(new HexEditWidget);
        m_page->resize(800, 500);
        m_page->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_page.get()));
    }

    void loading_data()
    {
        QTest::addColumn<QString>("how");
        QTest::addColumn<QString>("answer"); // to the question about the unsaved edit
        QTest::addColumn<int>("result"); // 0 loaded, 1 kept with a notice, 2 kept silently
        QTest::newRow("open dialog") << "dialog" << "放弃修改" << 0;
        QTest::newRow("dropped with another") << "drop" << "放弃修改" << 0;
        QTest::newRow("dropped web address") << "web" << "放弃修改" << 1;
        QTest::newRow("dialog cancelled") << "cancel" << "" << 2;
        QTest::newRow("dropped, edits kept") << "drop" << "保留修改" << 2;
    }
    void loading()
    {
        QFETCH(QString, how);
        QFETCH(QString, answer);
        QFETCH(int, result);
        m_strAsked.clear();
        const QString old = file("old.bin", "old");
        m_page->loadFile(old);
        type("41");
        const QByteArray before = edit()->data(), bytes = QByteArray::fromHex("00ff4c41524b0d0a");
        const QString path = file("new.bin", bytes);
        QSignalSpy notify(m_page.get(), SIGNAL(signalNotify(QString, int)));
        if (!answer.isEmpty())
            answerQuestion(answer);
        if (how == "dialog" || how == "cancel") {
            if (how == "dialog")
                LarkTest::answerNextFileDialog(path);
            else
                LarkTest::onNextModal([](QWidget *w) { static_cast<QDialog *>(w)->reject(); });
            press(0);
        } else {
            QMimeData mime;
            mime.setUrls(how == "web" ? QList<QUrl>{QUrl("http://example.com/new.bin")}
                                      : QList<QUrl>{QUrl::fromLocalFile(path), QUrl::fromLocalFile(old)});
            QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
            QDropEvent drop(QPoint(5, 5), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
            QVERIFY(QApplication::sendEvent(m_page.get(), &enter) && enter.isAccepted());
            QApplication::sendEvent(m_page.get(), &drop);
        }
        QCOMPARE(edit()->data(), result ? before : bytes);
        const QList<QVariantList> failed{{"打开文件失败!", 255}};
        QCOMPARE(notify, result == 1 ? failed : QList<QVariantList>());
        QCOMPARE(m_page->getCounts().last(), QString("Size: %1").arg(result ? 3 : 8));
        QVERIFY(answer.isEmpty() ? m_strAsked.isEmpty() : m_strAsked.startsWith("old.bin 有未保存的修改"));
        // new data starts a new history; kept data keeps its edit to undo
        press(2);
        QCOMPARE(edit()->data(), result ? QByteArray("old") : bytes);
    }

    void typedDigitsOverwriteAndUndoRedoRestore()
    {
        const QString path = file("a.bin", QByteArray::fromHex("00112233"));
        m_page->loadFile(path);
        type("abcd");
        QCOMPARE(edit()->data().toHex(), QByteArray("abcd2233"));
        QCOMPARE(m_page->getCounts().first(), QString("Address: 2"));
        press(2);
        QCOMPARE(edit()->data().toHex(), QByteArray("ab112233"));
        press(2), press(2);
        QCOMPARE(edit()->data().toHex(), QByteArray("00112233"));
        press(3), press(3), press(3);
        QCOMPARE(edit()->data().toHex(), QByteArray("abcd2233"));
        // an edit after undo drops the undone one
        press(2), type("ef"), press(3);
        QCOMPARE(edit()->data().toHex(), QByteArray("ab11ef33"));
        // the button without action keeps the edits and writes nothing
        press(1);
        QCOMPARE(edit()->data().toHex(), QByteArray("ab11ef33"));
        QCOMPARE(LarkTest::fileBytes(path).toHex(), QByteArray("00112233"));
    }

    void savingWritesTheEditsAndKeepsUndo()
    {
        const QString path = file("a.bin", QByteArray::fromHex("00112233"));
        const QString expected = file("expected.bin", QByteArray::fromHex("ab112233"));
        m_page->loadFile(path);
        type("ab");
        // a failed save says why and keeps the edits and the file as they were
        const QString told = LarkTest::modalText([&] { QVERIFY(!m_page->saveFile(m_dir.filePath("gone/a.bin"))); });
        QVERIFY2(told.contains("保存文件失败!\n" + m_dir.filePath("gone/a.bin")), qPrintable(told));
        QCOMPARE(LarkTest::fileBytes(path).toHex(), QByteArray("00112233"));
        m_page->SltSave();
        QCOMPARE(QProcess::execute("cmp", {path, expected}), 0);
        // an edit in place of the saved version: no step leads back to it
        press(2), edit()->setCursorPosition(0), type("cd"), press(2), press(3);
        QCOMPARE(label(), "a.bin *");
        LarkTest::answerNextFileDialog(m_dir.filePath("copy.bin"));
        m_page->SltSaveAs();
        QCOMPARE(label(), "copy.bin");
        QCOMPARE(LarkTest::fileBytes(m_dir.filePath("copy.bin")).toHex(), QByteArray("cd112233"));
        QCOMPARE(LarkTest::fileBytes(path).toHex(), QByteArray("ab112233"));
    }

    // the bar's fields typed into and confirmed with Return, over "LARK" at 14 (across
    // the 16-byte line) and at 50
    void findAndGoto_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("text");
        QTest::addColumn<qint64>("cursor");
        QTest::addColumn<qint64>("at"); // -1: nothing found
        QTest::addColumn<int>("selected");
        QTest::newRow("find across the line") << "edtFind" << "4C 41 52 4B" << qint64(0) << qint64(14) << 4;
        QTest::newRow("go back relative") << "edtGoto" << "-0x10" << qint64(50) << qint64(34) << 0;
        QTest::newRow("go past the end") << "edtGoto" << "64" << qint64(3) << qint64(-1) << 0;
    }
    void findAndGoto()
    {
        QFETCH(QString, field);
        QFETCH(QString, text);
        QFETCH(qint64, cursor);
        QFETCH(qint64, at);
        QFETCH(int, selected);
        m_page->loadFile(file("a.bin", QByteArray(64, '\x11').replace(14, 4, "LARK").replace(50, 4, "LARK")));
        edit()->setCursorPosition(Okteta::Address(cursor));
        field == "edtFind" ? m_page->SltShowFind() : m_page->SltShowGoto();
        QLineEdit *line = m_page->findBar()->findChild<QLineEdit *>(field);
        QTest::keyClicks(line, text);
        QTest::keyClick(line, Qt::Key_Return);
        // the cursor ends behind a match, as after selecting it by hand
        QCOMPARE(m_page->getCounts().first(), QString("Address: %1").arg(at < 0 ? cursor : at + selected));
        QCOMPARE(edit()->selection().width(), selected);
        if (selected)
            QCOMPARE(edit()->selection().start(), Okteta::Address(at));
    }

    // 4 GiB, beyond the view's int addresses: mapped, shown a window at a time, found in
    // across a window's end, edited at its last byte and saved as a sparse copy, with
    // the process growing by less than 100 MB on the way
    void fileBeyondTheViewsReachIsMappedEditedAndSaved()
    {
        const qint64 size = qint64(4) << 30, mark = (qint64(3) << 30) - 2;
        QFile big(m_dir.filePath("big.bin"));
        QVERIFY(big.open(QIODevice::WriteOnly) && big.resize(size) && big.seek(mark) && big.write("LARK") == 4);
        big.close();
        const qint64 before = rssKb();
        m_page->loadFile(big.fileName());
        QCOMPARE(m_page->getCounts().last(), QString("Size: %1").arg(size));
        m_page->SltGoto("0xFFFFFFFF");
        QCOMPARE(m_page->getCounts().first(), QString("Address: %1").arg(size - 1));
        type("5a");
        m_page->findBar()->findChild<QLineEdit *>("edtFind")->setText("4C41524B");
        m_page->SltFind(false);
        // selected up to the window's end, where the cursor stops
        QCOMPARE(edit()->selection().width(), 2);
        QCOMPARE(m_page->getCounts().first(), QString("Address: %1").arg(mark + 2));
        const QString copy = m_dir.filePath("copy.bin");
        QVERIFY(m_page->saveFile(copy));
        QCOMPARE(label(), "copy.bin  [0x80000000 - 0xbfffffff]");
        QVERIFY2(rssKb() - before < 100 * 1024, qPrintable(QString("grew by %1 kB").arg(rssKb() - before)));
        QCOMPARE(QFileInfo(copy).size(), size);
        QCOMPARE(LarkTest::fileBytes(copy, mark - 1, 6), QByteArray("\0LARK\0", 6));
        QCOMPARE(LarkTest::fileBytes(copy, size - 2, 2), QByteArray("\0\x5a", 2));
        QCOMPARE(LarkTest::fileBytes(big.fileName(), size - 1, 1), QByteArray(1, '\0'));
    }
};

LARK_TEST_MAIN(TstHexEditWidget)
#include "tst_hexeditwidget.moc"
