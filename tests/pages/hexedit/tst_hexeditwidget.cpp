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
    QTemporaryDir m_dir;

    QHexEdit *edit() const { return m_page->hexEdit(); }
    QString file(const QString &name, const QByteArray &bytes)
    {
        QFile f(m_dir.filePath(name));
        return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size() ? f.fileName() : QString();
    }
    void press(int id) { QTest::mouseClick(m_page->findChildren<QToolButton *>().at(id), Qt::LeftButton); }
    void type(const QString &keys) { edit()->setFocus(), QTest::keyClicks(edit(), keys); }
    bool marked(int at) { return qobject_cast<Okteta::Bookmarkable *>(edit()->byteArrayModel())->containsBookmarkFor(at); }

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
        QTest::addColumn<int>("result"); // 0 loaded, 1 kept with a notice, 2 kept silently
        QTest::newRow("open dialog") << "dialog" << 0;
        QTest::newRow("dropped with another") << "drop" << 0;
        QTest::newRow("dropped web address") << "web" << 1;
        QTest::newRow("dialog cancelled") << "cancel" << 2;
    }
    void loading()
    {
        QFETCH(QString, how);
        QFETCH(int, result);
        const QString old = file("old.bin", "old");
        m_page->loadFile(old);
        type("41");
        const QByteArray before = edit()->data(), bytes = QByteArray::fromHex("00ff4c41524b0d0a");
        const QString path = file("new.bin", bytes);
        QSignalSpy notify(m_page.get(), SIGNAL(signalNotify(QString, int)));
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
        QVERIFY(marked(0) && marked(1) && !marked(2));
        press(2);
        QCOMPARE(edit()->data().toHex(), QByteArray("ab112233"));
        QVERIFY(marked(0) && !marked(1));
        press(2), press(2);
        QCOMPARE(edit()->data().toHex(), QByteArray("00112233"));
        press(3), press(3), press(3);
        QCOMPARE(edit()->data().toHex(), QByteArray("abcd2233"));
        // an edit after undo drops the undone one, its mark too
        press(2);
        type("ef");
        press(3);
        QCOMPARE(edit()->data().toHex(), QByteArray("ab11ef33"));
        QVERIFY(marked(0) && !marked(1) && marked(2));
        // the button without action keeps the edits and writes nothing
        press(1);
        QCOMPARE(edit()->data().toHex(), QByteArray("ab11ef33"));
        QFile f(path);
        QVERIFY(f.open(QIODevice::ReadOnly) && f.readAll() == QByteArray::fromHex("00112233"));
    }

    // the view takes both skins' colours: address column, background and a text colour
    // readable on it (Okteta does not paint the bytes from the palette alone)
    void viewFollowsTheSkin_data()
    {
        QTest::addColumn<int>("skin");
        QTest::addColumn<QStringList>("colors"); // address column, background, text
        QTest::newRow("light") << 1 << QStringList{"#eeeeee", "#ffffff", "#333333"};
        QTest::newRow("dark, after light") << 0 << QStringList{"#1e1e1e", "#252526", "#f2f2f2"};
    }
    void viewFollowsTheSkin()
    {
        QFETCH(int, skin);
        QFETCH(QStringList, colors);
        UiSkin::LoadStyleSheet(skin);
        m_page->loadFile(file("a.bin", QByteArray(64, '\x88')));
        const QImage shot = edit()->viewport()->grab().toImage();
        QCOMPARE(shot.pixelColor(1, 1), QColor(colors[0]));
        QCOMPARE(shot.pixelColor(shot.width() - 2, shot.height() - 2), QColor(colors[1]));
        int textPixels = 0;
        for (int y = 0; y < shot.height(); ++y)
            for (int x = shot.width() / 8; x < shot.width(); ++x)
                textPixels += shot.pixelColor(x, y) == QColor(colors[2]);
        QVERIFY(textPixels > 50);
    }

    // a file of 100 MB (sparse, so quick to make) opens and is edited at its last byte
    void largeFileScrollsToItsEndAndEdits()
    {
        const int size = 100 << 20;
        QFile big(m_dir.filePath("big.bin"));
        QVERIFY(big.open(QIODevice::WriteOnly) && big.resize(size));
        m_page->loadFile(big.fileName());
        QCOMPARE(m_page->getCounts().last(), QString("Size: %1").arg(size));
        edit()->setFocus();
        QTest::keyClick(edit(), Qt::Key_End, Qt::ControlModifier);
        QCOMPARE(edit()->verticalScrollBar()->value(), edit()->verticalScrollBar()->maximum());
        QTest::keyClick(edit(), Qt::Key_Left);
        QCOMPARE(m_page->getCounts().first(), QString("Address: %1").arg(size - 1));
        type("5a");
        QCOMPARE(edit()->byteArrayModel()->byte(size - 1), Okteta::Byte(0x5a));
        QCOMPARE(edit()->byteArrayModel()->byte(size - 2), Okteta::Byte(0));
    }
};

LARK_TEST_MAIN(TstHexEditWidget)
#include "tst_hexeditwidget.moc"
