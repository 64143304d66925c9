#include "DeviceReopener.h"
#include "LarkTestCore.h"

#include <QtTest>

// socat pseudo-terminals play a device that goes away and comes back: the same link
// name made again, or (an adapter the kernel numbered anew) another device behind
// the same by-id name.
class tst_DeviceReopener : public QObject
{
    Q_OBJECT
    QTemporaryDir m_dir;

    // a socat pty whose device end is linked at `link`; the real path of that end
    static QString startDevice(QProcess &socat, const QString &link)
    {
        socat.start("socat", {"pty,raw,echo=0,link=" + link, "pty,raw,echo=0"});
        if (!socat.waitForStarted() || !QTest::qWaitFor([&] { return QFileInfo(link).exists(); }, 5000))
            return QString();
        return QFileInfo(link).canonicalFilePath();
    }

private slots:
    void aLostDeviceThatComesBackIsAskedForWithinTwoTicksOnlyWhenOn_data()
    {
        QTest::addColumn<bool>("on");
        QTest::addColumn<bool>("byId");
        QTest::addColumn<bool>("lost");
        QTest::newRow("same path, on") << true << false << true;
        QTest::newRow("same path, off") << false << false << true;
        QTest::newRow("closed by the user") << true << false << false;
        QTest::newRow("renumbered adapter, same by-id name") << true << true << true;
    }

    void aLostDeviceThatComesBackIsAskedForWithinTwoTicksOnlyWhenOn()
    {
        QFETCH(bool, on);
        QFETCH(bool, byId);
        QFETCH(bool, lost);
        const QString byIdDir = m_dir.filePath("by-id");
        QVERIFY(QDir().mkpath(byIdDir));
        const QString link = byId ? byIdDir + "/usb-FTDI_FT232R_A1B2-if00-port0" : m_dir.filePath("ttyV0");
        QProcess socat, other;
        const QString first = startDevice(socat, link);
        QVERIFY(!first.isEmpty());

        DeviceReopener reopener;
        reopener.setByIdDir(byIdDir);
        reopener.setInterval(1000); // the port watcher's tick
        reopener.setEnabled(on);
        QSignalSpy wanted(&reopener, SIGNAL(reopenWanted(QString)));
        // the page opened the device by its own name (the by-id name is found from it)
        reopener.linkOpened(byId ? first : link);
        socat.terminate();
        QVERIFY(socat.waitForFinished());
        QTRY_VERIFY(!QFileInfo(link).exists());
        reopener.linkClosed(lost);
        // something else takes the freed number first, as another adapter would
        if (byId)
            QVERIFY(!startDevice(other, m_dir.filePath("other")).isEmpty());
        const QString again = startDevice(socat, link);
        QVERIFY(!again.isEmpty());
        QCOMPARE(wanted.wait(2000), on && lost);
        if (on && lost)
            QCOMPARE(wanted.first().first().toString(), byId ? again : link);
        for (QProcess *p : {&socat, &other}) {
            p->terminate();
            p->waitForFinished();
        }
    }
};

LARK_TEST_GUILESS_MAIN(tst_DeviceReopener)
#include "tst_devicereopener.moc"
