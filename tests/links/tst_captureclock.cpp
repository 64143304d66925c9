#include "CaptureClock.h"

#include <QtTest>

#include <ctime>

// The clock's text is the one QDateTime gives for the same moment, whatever order the
// moments come in: across seconds, back in time, over a change to summer time, before
// 1970 and past year 9999.
class tst_CaptureClock : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { qputenv("TZ", "Europe/Berlin"), tzset(); }
    void textIsQDateTimesForEveryMoment_data()
    {
        QTest::addColumn<QList<qint64>>("moments"); // ms since the epoch, in the order asked
        const qint64 summer = QDateTime(QDate(2026, 3, 29), QTime(1, 0), Qt::UTC).toMSecsSinceEpoch();
        QTest::newRow("within a second, then the next") << QList<qint64>{1795000000001, 1795000000999, 1795000001000, 1795000001007};
        QTest::newRow("back in time") << QList<qint64>{1795000005500, 1795000000500, 1795000005500};
        QTest::newRow("into summer time") << QList<qint64>{summer - 1, summer, summer + 1};
        QTest::newRow("before 1970") << QList<qint64>{-1, -999, -1000, -1001, 0};
        QTest::newRow("past year 9999") << QList<qint64>{253402300799999, 253402300800000, 253402300800001};
    }
    void textIsQDateTimesForEveryMoment()
    {
        QFETCH(QList<qint64>, moments);
        CaptureClock clock;
        for (qint64 ms : moments)
            QCOMPARE(clock.text(ms), QDateTime::fromMSecsSinceEpoch(ms).toString("yyyy-MM-dd HH:mm:ss.zzz").toLatin1());
    }
};

QTEST_GUILESS_MAIN(tst_CaptureClock)
#include "tst_captureclock.moc"
