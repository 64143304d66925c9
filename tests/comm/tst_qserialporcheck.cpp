#include "LarkTestCore.h"
#include "QSerialPorCheck.h"

#include <QSerialPortInfo>
#include <QSignalSpy>
#include <QtTest>

class TstQSerialPorCheck : public QObject
{
    Q_OBJECT
private slots:
    void onlyAChangeOfTheCountIsReported_data();
    void onlyAChangeOfTheCountIsReported();
    void firstTickReportsTheSystemPortsOnce();
    void setIntervalStartsAStoppedWatcher();
    void startDoesNotRestartARunningWatcher();
};

void TstQSerialPorCheck::onlyAChangeOfTheCountIsReported_data()
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

void TstQSerialPorCheck::onlyAChangeOfTheCountIsReported()
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

void TstQSerialPorCheck::firstTickReportsTheSystemPortsOnce()
{
    QStringList expected;
    for (const QSerialPortInfo &info : QSerialPortInfo::availablePorts())
        expected << info.portName();
    QSerialPorCheck check;
    QVERIFY(!check.isActive());
    QSignalSpy spy(&check, SIGNAL(signalSerialChanged(QStringList)));
    check.setInterval(50);
    QTest::qWait(300);
    check.SltCheckSerialport();
    if (expected.isEmpty()) {
        QCOMPARE(spy.count(), 0);
    } else {
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.at(0).at(0).toStringList(), expected);
        QVERIFY(!expected.first().startsWith("/dev/"));
    }
}

void TstQSerialPorCheck::setIntervalStartsAStoppedWatcher()
{
    QSerialPorCheck check;
    QCOMPARE(check.interval(), 1000);
    QVERIFY(!check.isActive());
    check.setInterval(500);
    QVERIFY(check.isActive());
    QCOMPARE(check.interval(), 500);
}

void TstQSerialPorCheck::startDoesNotRestartARunningWatcher()
{
    QSerialPorCheck check;
    check.start();
    QVERIFY(check.isActive());
    auto *timer = check.findChild<QTimer *>();
    QVERIFY(timer);
    QTest::qWait(300);
    const int left = timer->remainingTime();
    check.start();
    QVERIFY(timer->remainingTime() <= left);
}

LARK_TEST_GUILESS_MAIN(TstQSerialPorCheck)
#include "tst_qserialporcheck.moc"
