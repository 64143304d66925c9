#include "LarkTest.h"
#include "StatusLabel.h"

#include <QTest>

class TstStatusLabel : public QObject
{
    Q_OBJECT

private slots:
    void lampFollowsTheStatus()
    {
        StatusLabel label;
        label.resize(80, 22);
        const QPoint lamp = StatusLabel::lampRect(label.size()).center();
        const QColor idle = label.grab().toImage().pixelColor(lamp);
        label.setStatus(true);
        QVERIFY(label.grab().toImage().pixelColor(lamp) != idle);
        label.setStatus(false);
        QCOMPARE(label.grab().toImage().pixelColor(lamp), idle);
    }
};

LARK_TEST_MAIN(TstStatusLabel)
#include "tst_statuslabel.moc"
