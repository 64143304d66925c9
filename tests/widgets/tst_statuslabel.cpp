#include "LarkTest.h"
#include "StatusLabel.h"

#include <QTest>

class TstStatusLabel : public QObject
{
    Q_OBJECT

private slots:
    void lampSitsAtTheRightAndShowsTheStatus_data()
    {
        QTest::addColumn<bool>("status");
        QTest::addColumn<QColor>("colour");
        QTest::newRow("working") << true << QColor("#02a1dd");
        QTest::newRow("idle") << false << QColor("#797979");
    }

    void lampSitsAtTheRightAndShowsTheStatus()
    {
        QFETCH(bool, status);
        QFETCH(QColor, colour);
        StatusLabel label;
        QCOMPARE(label.text(), QString("操作"));
        QVERIFY(!label.isWork());
        QCOMPARE(label.sizeHint(), QSize(60, 22));
        QCOMPARE(StatusLabel::lampRect(QSize(60, 22)), QRect(40, 4, 14, 14));
        QCOMPARE(StatusLabel::lampRect(QSize(120, 22)), QRect(100, 4, 14, 14));

        label.resize(80, 22);
        label.setStatus(status);
        QCOMPARE(label.isWork(), status);
        const QImage img = label.grab().toImage();
        QCOMPARE(img.pixelColor(StatusLabel::lampRect(label.size()).center()), colour);
    }

    void setTextAndAlignmentAreStored()
    {
        StatusLabel label;
        label.setText("串口");
        label.setAlignment(Qt::AlignCenter);
        QCOMPARE(label.text(), QString("串口"));
        QCOMPARE(label.alignment(), Qt::Alignment(Qt::AlignCenter));
    }
};

LARK_TEST_MAIN(TstStatusLabel)
#include "tst_statuslabel.moc"
