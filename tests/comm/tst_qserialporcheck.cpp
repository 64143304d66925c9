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

    // a tick reads the system's ports; a new interval starts a stopped watcher, start()
    // does not restart a running one
    void ticksReadTheSystemAndFollowTheTimerRules()
    {
        QStringList ports;
        for (const QSerialPortInfo &info : QSerialPortInfo::availablePorts())
            ports << info.portName();
        QSerialPorCheck check;
        QSignalSpy spy(&check, SIGNAL(signalSerialChanged(QStringList)));
        QVERIFY(check.interval() == 1000 && !check.isActive());
        QTimer *timer = check.findChild<QTimer *>();
        QSignalSpy ticks(timer, SIGNAL(timeout()));
        check.setInterval(50);
        QVERIFY(check.isActive());
        QTRY_VERIFY(ticks.count() >= 3);
        check.SltCheckSerialport(); // the count is unchanged: still one report at most
        QCOMPARE(QList<QVariantList>(spy), ports.isEmpty() ? QList<QVariantList>() : QList<QVariantList>{{ports}});
        check.setInterval(1000);
        QTRY_VERIFY(timer->remainingTime() < 900);
        const int left = timer->remainingTime();
        check.start();
        QVERIFY(timer->remainingTime() <= left);
    }
};

LARK_TEST_GUILESS_MAIN(TstQSerialPorCheck)
#include "tst_qserialporcheck.moc"
