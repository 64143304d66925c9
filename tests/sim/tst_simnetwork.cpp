#include "LarkTest.h"
#include "MyApp.h"
#include "NetworkToolWidget.h"
#include "QtSendBoxWidget.h"
#include "SimProcess.h"
#include "TcpServer.h"

#include <QtNetwork>
#include <QtTest>
#include <QtWidgets>

// The network page in each mode against larksim's text board: the board's GB18030
// lines are shown, and what the page sends comes back from its echo.
class TstSimNetwork : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        LarkTest::cleanAppDirs();
        MyApp::m_nTextCodecIndex = 1; // GB18030
    }

    void linesAndEcho_data()
    {
        QTest::addColumn<int>("mode");
        QTest::newRow("page tcp server") << 0;
        QTest::newRow("page tcp client") << 1;
        QTest::newRow("udp") << 2;
    }
    void linesAndEcho()
    {
        QFETCH(int, mode);
        NetworkToolWidget page;
        SimProcess sim;
        const QStringList args{"text", "--lines-per-s", "20", "--echo"};
        page.findChild<QComboBox *>("cbxNetType")->setCurrentIndex(mode);
        page.findChild<QComboBox *>("cbxAddress")->setCurrentText("127.0.0.1");
        page.findChild<QLineEdit *>("edtPort")->setText("0");
        auto press = [&] { QTest::mouseClick(page.findChild<QPushButton *>("btnOpen"), Qt::LeftButton); };
        if (mode == 1) {
            QVERIFY(sim.start(args + QStringList{"--tcp-server", "0"}));
            page.findChild<QLineEdit *>("edtPort")->setText(QString::number(sim.serverPort()));
            press();
        } else {
            press();
            const quint16 port = mode == 0 ? page.tcpServer()->serverPort() : page.udpSocket()->localPort();
            QVERIFY(sim.start(args + QStringList{mode == 0 ? "--tcp-client" : "--udp", QString("127.0.0.1:%1").arg(port)}));
            if (mode == 2) {
                page.findChild<QLineEdit *>("edtDestAddress")->setText("127.0.0.1");
                page.findChild<QLineEdit *>("edtDestPort")->setText(QString::number(sim.udpPort()));
            }
        }
        QTRY_VERIFY_WITH_TIMEOUT(page.recvText().contains("电压偏低 #2"), 10000);
        for (const QString &line : {"temp=25.3 状态正常 <ok> 计数 0", "电机转速 1500 rpm, 电流 0.42 A, 第1行"})
            QVERIFY2(page.recvText().contains(line), qPrintable(page.recvText()));

        QMetaObject::invokeMethod(page.sendBox(), "signalSendData", Q_ARG(QByteArray, MyApp::strToUnicode("回声 echo")));
        QTRY_VERIFY(page.recvText().contains("回声 echo"));
        press();
        QVERIFY(sim.stop());
    }
};

LARK_TEST_MAIN(TstSimNetwork)
#include "tst_simnetwork.moc"
