#include "MyApp.h"
#include "SimProcess.h"
#include "pages/network/NetworkPageRig.h"

// The network page over UDP against larksim's text board: the board's GB18030 lines
// are shown, and what the page sends to the board's port comes back from its echo.
// The TCP links of larksim are the camera test's, the page's TCP modes its own test's.
class TstSimNetwork : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        LarkTest::cleanAppDirs();
        MyApp::m_nTextCodecIndex = 1; // GB18030
    }

    void udpLinesAndEcho()
    {
        NetworkPageRig rig;
        NetworkToolWidget &page = rig.page;
        SimProcess sim;
        QVERIFY(sim.start({"text", "--lines-per-s", "20", "--echo", "--udp", QString("127.0.0.1:%1").arg(rig.startUdp())}));
        rig.child<QLineEdit>("edtDestAddress")->setText("127.0.0.1");
        rig.child<QLineEdit>("edtDestPort")->setText(QString::number(sim.udpPort()));
        QTRY_VERIFY_WITH_TIMEOUT(page.recvText().contains("电压偏低 #2"), 10000);
        for (const QString &line : {"temp=25.3 状态正常 <ok> 计数 0", "电机转速 1500 rpm, 电流 0.42 A, 第1行"})
            QVERIFY2(page.recvText().contains(line), qPrintable(page.recvText()));
        rig.send(MyApp::strToUnicode("回声 echo"));
        QTRY_VERIFY(page.recvText().contains("回声 echo"));
        rig.press();
        QVERIFY(sim.stop());
    }
};

LARK_TEST_MAIN(TstSimNetwork)
#include "tst_simnetwork.moc"
