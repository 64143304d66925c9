#include "HexEditWidget.h"
#include "LarkTest.h"
#include "QHexEdit.h"

#include "UiSkin.h"

#include <Okteta/AbstractByteArrayModel>
#include <Okteta/Bookmarkable>
#include <QtTest>
#include <QtWidgets>

// The editor page, driven through its buttons, the file dialog, drops and keys, on
// real files in a temporary folder.
class TstHexEditWidget : public QObject
{
    Q_OBJECT
    std::unique_ptr<HexEditWidget> m_page;
    std::unique_ptr<QTemporaryDir> m_dir;

    QHexEdit *edit() const { return m_page->hexEdit(); }
    QString file(const QString &name, const QByteArray &bytes)
    {
        const QString path = m_dir->filePath(name);
        QFile f(path);
        if (!f.open(QIODevice::WriteOnly) || f.write(bytes) != bytes.size())
            qFatal("cannot write %s", qPrintable(path));
        return path;
    }
    void press(int id) { QTest::mouseClick(m_page->findChildren<QToolButton *>().at(id), Qt::LeftButton); }
    void drop(const QList<QUrl> &urls)
    {
        QMimeData mime;
        mime.setUrls(urls);
        const QPoint at = m_page->rect().center();
        QDragEnterEvent enter(at, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_page.get(), &enter);
        QVERIFY(enter.isAccepted());
        QDropEvent dropped(at, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_page.get(), &dropped);
    }
    void type(const QString &keys)
    {
        edit()->setFocus();
        QTest::keyClicks(edit(), keys);
    }

private slots:
    void init()
    {
        m_dir.reset(new QTemporaryDir);
        m_page.reset(new HexEditWidget);
        m_page->resize(800, 500);
        m_page->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_page.get()));
    }
    void cleanup()
    {
        m_page.reset();
        m_dir.reset();
    }

    void fileShowsInTheView_data()
    {
        QTest::addColumn<bool>("byDialog");
        QTest::newRow("open dialog") << true;
        QTest::newRow("dropped") << false;
    }
    void fileShowsInTheView()
    {
        QFETCH(bool, byDialog);
        const QByteArray bytes = QByteArray::fromHex("00ff4c41524b0d0a") + QByteArray(100, 'x');
        const QString path = file("a.bin", bytes);
        QSignalSpy refresh(m_page.get(), SIGNAL(signalRefresCounts(int)));
        if (byDialog) {
            LarkTest::answerNextFileDialog(path);
            press(0);
        } else {
            drop({QUrl::fromLocalFile(path), QUrl::fromLocalFile(file("b.bin", "other"))});
        }
        QTRY_COMPARE(edit()->data(), bytes);
        QCOMPARE(m_page->getCounts(), (QStringList{"Address: 0", "Size: 108"}));
        QVERIFY(refresh.contains(QVariantList{4}));
    }

    void badSourceKeepsTheContent_data()
    {
        QTest::addColumn<QString>("how");
        QTest::addColumn<bool>("notified");
        QTest::newRow("missing file") << "missing" << true;
        QTest::newRow("folder, not a file") << "folder" << true;
        QTest::newRow("dropped web address") << "web" << true;
        QTest::newRow("dialog cancelled") << "cancel" << false;
    }
    void badSourceKeepsTheContent()
    {
        QFETCH(QString, how);
        QFETCH(bool, notified);
        m_page->loadFile(file("a.bin", "keep me"));
        type("41");
        const QByteArray before = edit()->data();
        QSignalSpy notify(m_page.get(), SIGNAL(signalNotify(QString, int)));
        if (how == "missing")
            m_page->loadFile(m_dir->filePath("none.bin"));
        else if (how == "folder")
            m_page->loadFile(m_dir->path());
        else if (how == "web")
            drop({QUrl("http://example.com/a.bin")});
        else {
            LarkTest::onNextModal([](QWidget *w) { static_cast<QDialog *>(w)->reject(); });
            press(0);
            QTRY_VERIFY(!QApplication::activeModalWidget());
        }
        QCOMPARE(edit()->data(), before);
        QCOMPARE(notify.count(), notified ? 1 : 0);
        if (notified)
            QCOMPARE(notify.first(), (QVariantList{"打开文件失败!", 255}));
        press(2);
        QCOMPARE(edit()->data(), QByteArray("keep me"));
    }

    void typedDigitsOverwriteAndUndoRedoRestore()
    {
        const QString path = file("a.bin", QByteArray::fromHex("00112233"));
        m_page->loadFile(path);
        type("ab");
        QCOMPARE(edit()->data(), QByteArray::fromHex("ab112233"));
        type("cd");
        QCOMPARE(edit()->data(), QByteArray::fromHex("abcd2233"));
        QCOMPARE(m_page->getCounts().first(), QString("Address: 2"));
        press(2);
        QCOMPARE(edit()->data(), QByteArray::fromHex("ab112233"));
        press(2);
        QCOMPARE(edit()->data(), QByteArray::fromHex("00112233"));
        press(2);
        QCOMPARE(edit()->data(), QByteArray::fromHex("00112233"));
        press(3);
        press(3);
        press(3);
        QCOMPARE(edit()->data(), QByteArray::fromHex("abcd2233"));
        // the button without action keeps the edits and writes nothing
        press(1);
        QCOMPARE(edit()->data(), QByteArray::fromHex("abcd2233"));
        QFile f(path);
        QVERIFY(f.open(QIODevice::ReadOnly));
        QCOMPARE(f.readAll(), QByteArray::fromHex("00112233"));
    }

    void newDataEmptiesTheUndoHistory()
    {
        m_page->loadFile(file("a.bin", "first"));
        type("41");
        m_page->loadFile(file("b.bin", "second"));
        press(2);
        QCOMPARE(edit()->data(), QByteArray("second"));
        QCOMPARE(m_page->getCounts().last(), QString("Size: 6"));
    }

    void changedBytesAreMarkedUntilUndone()
    {
        m_page->loadFile(file("a.bin", QByteArray(8, 0)));
        auto *marks = qobject_cast<Okteta::Bookmarkable *>(edit()->byteArrayModel());
        type("0102");
        QVERIFY(marks->containsBookmarkFor(0) && marks->containsBookmarkFor(1) && !marks->containsBookmarkFor(2));
        press(2);
        QVERIFY(marks->containsBookmarkFor(0) && !marks->containsBookmarkFor(1));
        press(3);
        QVERIFY(marks->containsBookmarkFor(1));
        press(2);
        type("03"); // a new edit drops the one undone before it
        QVERIFY(marks->containsBookmarkFor(0) && !marks->containsBookmarkFor(1) && marks->containsBookmarkFor(2));
        m_page->loadFile(file("b.bin", "b"));
        marks = qobject_cast<Okteta::Bookmarkable *>(edit()->byteArrayModel());
        QCOMPARE(marks->bookmarksCount(), 0u);
    }

    // the view takes both skins' colours: address column, background and a text colour
    // that stays readable on it (the bytes are not painted from the palette alone)
    void viewFollowsTheSkin_data()
    {
        QTest::addColumn<int>("skin");
        QTest::addColumn<QColor>("address");
        QTest::addColumn<QColor>("background");
        QTest::addColumn<QColor>("text");
        QTest::newRow("light") << 1 << QColor("#eeeeee") << QColor("#ffffff") << QColor("#333333");
        QTest::newRow("dark") << 0 << QColor("#1e1e1e") << QColor("#252526") << QColor("#f2f2f2");
    }
    void viewFollowsTheSkin()
    {
        QFETCH(int, skin);
        QFETCH(QColor, address);
        QFETCH(QColor, background);
        QFETCH(QColor, text);
        UiSkin::LoadStyleSheet(skin);
        m_page->loadFile(file("a.bin", QByteArray(64, '\x88')));
        const QImage shot = edit()->viewport()->grab().toImage();
        QCOMPARE(shot.pixelColor(1, 1), address);
        QCOMPARE(shot.pixelColor(shot.width() - 2, shot.height() - 2), background);
        int textPixels = 0;
        for (int y = 0; y < shot.height(); ++y)
            for (int x = shot.width() / 8; x < shot.width(); ++x)
                textPixels += shot.pixelColor(x, y) == text;
        QVERIFY2(textPixels > 50, qPrintable(QString::number(textPixels)));
        qApp->setStyleSheet(QString());
    }

    // a file of 100 MB opens, and its last byte can be reached and edited
    void largeFileScrollsToItsEndAndEdits()
    {
        const qint64 size = 100 << 20;
        const QString path = m_dir->filePath("big.bin");
        {
            QFile f(path);
            QVERIFY(f.open(QIODevice::WriteOnly));
            QVERIFY(f.resize(size));   // sparse: nothing written but the length
        }
        m_page->loadFile(path);
        QCOMPARE(m_page->getCounts().last(), QString("Size: %1").arg(size));
        edit()->setFocus();
        QTest::keyClick(edit(), Qt::Key_End, Qt::ControlModifier);
        QScrollBar *bar = edit()->verticalScrollBar();
        QCOMPARE(bar->value(), bar->maximum());
        QTest::keyClick(edit(), Qt::Key_Left);
        QCOMPARE(m_page->getCounts().first(), QString("Address: %1").arg(size - 1));
        type("5a");
        const Okteta::AbstractByteArrayModel *model = edit()->byteArrayModel();
        QCOMPARE(model->byte(size - 1), Okteta::Byte(0x5a));
        QCOMPARE(model->byte(size - 2), Okteta::Byte(0));
    }
};

LARK_TEST_MAIN(TstHexEditWidget)
#include "tst_hexeditwidget.moc"
