#include "DeviceReopener.h"
#include "LarkTestCore.h"

#include <QDir>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

// socat pseudo-terminals play a device that goes away and comes back: the same link
// name made again, or (an adapter the kernel numbered anew) another device behind
// the same by-id name.
class tst_DeviceReopener : public QObject
{
    Q_OBJECT
private slots:
    void aDeviceThatComesBackIsAskedForWithinTwoTicksOnlyWhenOn_data();
    void aDeviceThatComesBackIsAskedForWithinTwoTicksOnlyWhenOn();
    void aCloseByTheUserIsNotReopened();

private:
    // a socat pty whose device end is linked at `link`; the real path of that end
    bool startDevice(QProcess &socat, const QString &link, QString *path);
    QTemporaryDir m_dir;
};

bool tst_DeviceReopener::startDevice(QProcess &socat, const QString &link, QString *path)
{
    socat.start("socat", {"pty,raw,echo=0,link=" + link, "pty,raw,echo=0"});
    if (!socat.waitForStarted())
        return false;
    if (!QTest::qWaitFor([&] { return QFileInfo(link).exists(); }, 5000))
        return false;
    *path = QFileInfo(link).canonicalFilePath();
    return true;
}

void tst_DeviceReopener::aDeviceThatComesBackIsAskedForWithinTwoTicksOnlyWhenOn_data()
{
    QTest::addColumn<bool>("on");
    QTest::addColumn<bool>("byId");
    QTest::newRow("same path, on") << true << false;
    QTest::newRow("same path, off") << false << false;
    QTest::newRow("renumbered adapter, same by-id name") << true << true;
}

void tst_DeviceReopener::aDeviceThatComesBackIsAskedForWithinTwoTicksOnlyWhenOn()
{
    QFETCH(bool, on);
    QFETCH(bool, byId);
    const QString byIdDir = m_dir.filePath("by-id");
    QVERIFY(QDir().mkpath(byIdDir));
    const QString link = byId ? byIdDir + "/usb-FTDI_FT232R_A1B2-if00-port0" : m_dir.filePath("ttyV0");
    QProcess socat;
    QString first;
    QVERIFY(startDevice(socat, link, &first));

    DeviceReopener reopener;
    reopener.setByIdDir(byIdDir);
    reopener.setInterval(1000);
    reopener.setEnabled(on);
    QSignalSpy wanted(&reopener, SIGNAL(reopenWanted(QString)));
    // the page opened the device by its own name (the by-id name is found from it)
    const QString opened = byId ? first : link;
    reopener.linkOpened(opened);
    if (byId)
        QCOMPARE(DeviceReopener::byIdName(first, byIdDir), link);

    socat.terminate();
    QVERIFY(socat.waitForFinished());
    QTRY_VERIFY(!QFileInfo(link).exists());
    reopener.linkClosed(true);
    // something else takes the freed number first, as another adapter would
    QProcess other;
    QString otherPath;
    if (byId)
        QVERIFY(startDevice(other, m_dir.filePath("other"), &otherPath));
    QString again;
    QVERIFY(startDevice(socat, link, &again));
    if (on) {
        QVERIFY(wanted.wait(2000));
        QCOMPARE(wanted.first().first().toString(), byId ? again : link);
    } else {
        QVERIFY(!wanted.wait(2000));
    }
    socat.terminate();
    socat.waitForFinished();
    other.terminate();
    other.waitForFinished();
}

void tst_DeviceReopener::aCloseByTheUserIsNotReopened()
{
    QProcess socat;
    QString path;
    const QString link = m_dir.filePath("ttyV1");
    QVERIFY(startDevice(socat, link, &path));
    DeviceReopener reopener;
    reopener.setEnabled(true);
    reopener.setInterval(100);
    QSignalSpy wanted(&reopener, SIGNAL(reopenWanted(QString)));
    reopener.linkOpened(link);
    reopener.linkClosed(false);
    QVERIFY(!wanted.wait(500));
    // the same link closed by the port watcher, device still there: back at once
    reopener.linkClosed(true);
    QVERIFY(wanted.wait(500));
    socat.terminate();
    socat.waitForFinished();
}

LARK_TEST_GUILESS_MAIN(tst_DeviceReopener)
#include "tst_devicereopener.moc"
