#include "LarkTestCore.h"
#include "QSerialPorCheck.h"

#include <QSerialPortInfo>
#include <QSignalSpy>
#include <QtTest>

// The port watcher: the decision of a tick fed with port lists, then the real
// system's ports and the timer rules.
class TstQSerialPorCheck : public QObject
{
    Q_OBJECT
private slots:
    void onlyAChangeOfTheCountIsReported_data()
    {
        // each row: successive port lists, and the lists the signal carries
        QTest::addColumn<QList<QStringList>>("ticks");
        QTest::addColumn<QList<QStringList>>("reported");
        QTest::newRow("none at start reports nothing")
            << QList<QStringList>{{}, {}} << QList<QStringList>{};
        QTest::newRow("same ports every tick report once")
            << QList<QStringList>{{"ttyS0", "ttyUSB0"}, {"ttyS0", "ttyUSB0"}}
            << QList<QStringList>{{"ttyS0", "ttyUSB0"}};
        QTest::newRow("a swap in one tick goes unnoticed")
            << QList<QStringList>{{"ttyUSB0"}, {"ttyACM0"}} << QList<QStringList>{{"ttyUSB0"}};
        QTest::newRow("last port leaving reports an empty list")
            << QList<QStringList>{{"ttyUSB0"}, {}} << QList<QStringList>{{"ttyUSB0"}, {}};
        QTest::newRow("a plug keeps the system's order")
            << QList<QStringList>{{"ttyUSB1"}, {"ttyUSB1", "ttyACM0"}}
            << QList<QStringList>{{"ttyUSB1"}, {"ttyUSB1", "ttyACM0"}};
    }

    void onlyAChangeOfTheCountIsReported()
    {
        QFETCH(QList<QStringList>, ticks);
        QFETCH(QList<QStringList>, reported);
        QSerialPorCheck check;
        QSignalSpy spy(&check, SIGNAL(signalSerialChanged(QStringList)));
        for (const QStringList &t : ticks)
            check.updateSerialports(t);
        QCOMPARE(spy.count(), reported.size());
        for (int i = 0; i < reported.size(); ++i)
            QCOMPARE(spy.at(i).at(0).toStringList(), reported.at(i));
    }

    void ticksReportTheSystemPortsOnceAndFollowTheTimerRules()
    {
        QStringList expected;
        for (const QSerialPortInfo &info : QSerialPortInfo::availablePorts())
            expected << info.portName();
        QSerialPorCheck check;
        QSignalSpy spy(&check, SIGNAL(signalSerialChanged(QStringList)));
        QCOMPARE(check.interval(), 1000);
        QVERIFY(!check.isActive());
        check.setInterval(50); // starts a stopped watcher
        QVERIFY(check.isActive());
        QTest::qWait(300);
        check.SltCheckSerialport();
        QCOMPARE(spy.count(), expected.isEmpty() ? 0 : 1);
        if (!expected.isEmpty())
            QCOMPARE(spy.at(0).at(0).toStringList(), expected);

        check.setInterval(1000);
        auto *timer = check.findChild<QTimer *>();
        QTest::qWait(300);
        const int left = timer->remainingTime();
        check.start(); // does not restart a running watcher
        QVERIFY(timer->remainingTime() <= left);
    }
};

LARK_TEST_GUILESS_MAIN(TstQSerialPorCheck)
#include "tst_qserialporcheck.moc"
