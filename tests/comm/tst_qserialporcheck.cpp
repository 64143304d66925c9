#include "LarkPtyPair.h"
#include "LarkTestCore.h"
#include "QSerialPorCheck.h"

#include <QtTest>
#include <unistd.h>

// The port watcher: the decision of a tick fed with port lists, then the timer rules
// and the real system's ports.
class TstQSerialPorCheck : public QObject
{
    Q_OBJECT
private slots:
    void onlyAChangeOfTheCountIsReported_data()
    {
        using Lists = QList<QStringList>;
        QTest::addColumn<Lists>("ticks");
        QTest::addColumn<Lists>("reported");
        QTest::newRow("none at start reports nothing") << Lists{{}, {}} << Lists{};
        QTest::newRow("same ports every tick report once") << Lists{{"ttyS0", "ttyUSB0"}, {"ttyS0", "ttyUSB0"}} << Lists{{"ttyS0", "ttyUSB0"}};
        QTest::newRow("a swap in one tick goes unnoticed") << Lists{{"ttyUSB0"}, {"ttyACM0"}} << Lists{{"ttyUSB0"}};
        QTest::newRow("last port leaving reports an empty list") << Lists{{"ttyUSB0"}, {}} << Lists{{"ttyUSB0"}, {}};
        QTest::newRow("a plug keeps the system's order") << Lists{{"ttyUSB1"}, {"ttyUSB1", "ttyACM0"}} << Lists{{"ttyUSB1"}, {"ttyUSB1", "ttyACM0"}};
    }
    void onlyAChangeOfTheCountIsReported()
    {
        QFETCH(QList<QStringList>, ticks);
        QSerialPorCheck check;
        QSignalSpy spy(&check, SIGNAL(signalSerialChanged(QStringList)));
        for (const QStringList &t : ticks)
            check.updateSerialports(t);
        QList<QStringList> reported;
        for (const QVariantList &args : qAsConst(spy))
            reported << args.at(0).toStringList();
        QTEST(reported, "reported");
    }

    // a new interval starts a stopped watcher, start() does not restart a running one
    void ticksFollowTheTimerRules()
    {
        QSerialPorCheck check;
        QSignalSpy spy(&check, SIGNAL(signalSerialChanged(QStringList)));
        QVERIFY(check.interval() == 1000 && !check.isActive());
        QTimer *timer = check.findChild<QTimer *>();
        QSignalSpy ticks(timer, SIGNAL(timeout()));
        check.setInterval(50);
        QVERIFY(check.isActive());
        QTRY_VERIFY(ticks.count() >= 3);
        check.SltCheckSerialport(); // the count is unchanged: still one report at most
        QVERIFY(spy.count() <= 1);
        check.setInterval(1000);
        QTRY_VERIFY(timer->remainingTime() < 900);
        const int left = timer->remainingTime();
        check.start();
        QVERIFY(timer->remainingTime() <= left);
    }

    // Virtual ports are links to a live pseudo-terminal, named by the link; anything
    // else in the folder is not a port.
    void virtualPortsAreLinksToALivePseudoTerminal_data()
    {
        QTest::addColumn<QString>("target"); // "PTY" stands for the socat end
        QTest::addColumn<QStringList>("listed");
        QTest::newRow("link to a pty") << "PTY" << QStringList{"ttyV0"};
        QTest::newRow("link to a regular file") << "plain" << QStringList();
        QTest::newRow("dangling link") << "/dev/pts/999999" << QStringList();
        QTest::newRow("the multiplexer") << "/dev/pts/ptmx" << QStringList();
        // /dev/stdin leads to a terminal only through /proc
        QTest::newRow("link to a link to a pty") << "inner" << QStringList();
    }
    void virtualPortsAreLinksToALivePseudoTerminal()
    {
        QFETCH(QString, target);
        LarkPtyPair pty;
        QVERIFY(pty.start());
        QTemporaryDir dir;
        QFile file(dir.filePath("plain"));
        QVERIFY(file.open(QIODevice::WriteOnly) && QFile::link(pty.programPath(), dir.filePath("inner")));
        const QDir d(dir.path()); // takes the absolute targets too, as QTemporaryDir does not
        const QString links = d.filePath("links");
        QVERIFY(d.mkdir("links"));
        QVERIFY(QFile::link(target == "PTY" ? pty.programPath() : d.filePath(target), links + "/ttyV0"));
        QTEST(QSerialPorCheck::virtualPorts(links), "listed");
        pty.stop();
        QTRY_VERIFY(QSerialPorCheck::virtualPorts(links).isEmpty()); // its pty is gone
    }

    // A tick enumerates only when a device can have come or gone: /dev changed, or a
    // listed virtual port lost its pty. Nothing else on the machine may touch /dev in
    // the moment between two ticks, so a quiet pair of ticks is looked for a few times.
    // A socat that ends takes its pty and leaves its link in /dev as it was: the next
    // tick looks again all the same, and the port leaves the list.
    void aTickEnumeratesOnlyWhenADeviceCanHaveComeOrGone()
    {
        QSerialPorCheck check;
        check.SltCheckSerialport();
        QCOMPARE(check.scanCount(), 1);
        bool quiet = false;
        for (int i = 0; i < 5 && !quiet; ++i) {
            const int before = check.scanCount();
            check.SltCheckSerialport();
            quiet = check.scanCount() == before;
        }
        QVERIFY(quiet);

        LarkPtyPair pty;
        QVERIFY(pty.start());
        const QString name = QString("ttyLarkDead%1").arg(getpid());
        const QString path = "/dev/" + name;
        const auto guard = qScopeGuard([&] { QFile::remove(path); });
        if (!QFile::link(pty.programPath(), path))
            QSKIP("/dev is not writable here");
        check.SltCheckSerialport();
        QVERIFY(check.serialports().contains(name));
        pty.stop();
        QTRY_VERIFY(!QFile::exists(pty.programPath()));
        const int scans = check.scanCount();
        check.SltCheckSerialport();
        QCOMPARE(check.scanCount(), scans + 1);
        QVERIFY(!check.serialports().contains(name));
    }
};

LARK_TEST_GUILESS_MAIN(TstQSerialPorCheck)
#include "tst_qserialporcheck.moc"
