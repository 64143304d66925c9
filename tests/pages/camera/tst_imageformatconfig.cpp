#include "DataManagerWidget.h"
#include "ImageFormatConfig.h"
#include "LarkTest.h"
#include "QtMessageTip.h"

#include <QtTest>
#include <QtWidgets>

// The strip as the user drives it: typed fields, row buttons, the page bar and the
// register table window it opens.
class TstImageFormatConfig : public QObject
{
    Q_OBJECT

    ImageFormatConfig *m_cfg = nullptr;
    QSignalSpy *m_sent = nullptr;

    QLineEdit *edit(int e) const { return LarkTest::byId<QLineEdit>(m_cfg, e); }
    QString fields(int from, int to, int step = 1) const
    {
        QStringList texts;
        for (int e = from; e <= to; e += step)
            texts << edit(e)->text();
        return texts.join(',');
    }
    void click(const QString &key) { LarkTest::click(m_cfg, key); }
    void type(int e, const QString &text) { QTest::keyClicks(edit(e), text); }
    // the page shown afresh: through the last page and back from the first
    void showPage(int page)
    {
        click("btnLastPage");
        click("btnFirstPage");
        for (int p = 1; p < page; ++p)
            click("btnNextPage");
    }
    DataManagerWidget *openManager(int tab)
    {
        click("多项管理");
        for (QWidget *w : QApplication::topLevelWidgets())
            if (auto *m = qobject_cast<DataManagerWidget *>(w)) {
                if (tab == 1)
                    LarkTest::click(m, "    读管理    ");
                return m;
            }
        return nullptr;
    }
    static QString tableRow(DataManagerWidget *m, int r) { return LarkTest::modelCells(m->dataModel()).section(';', r, r); }
    // one "address|value|regId" a signal, joined by ' '
    QString sent() const
    {
        QStringList all;
        for (const QList<QVariant> &args : *m_sent)
            all << args[0].toString() + '|' + args[1].toString() + '|' + args[2].toString();
        return all.join(' ');
    }

private slots:
    void init()
    {
        m_cfg = new ImageFormatConfig;
        m_sent = new QSignalSpy(m_cfg, SIGNAL(signalReadWriteReg(QString,QString,int)));
        m_sent->setParent(m_cfg);
        m_cfg->show();
    }
    void cleanup() { delete m_cfg; }

    void aTypedFieldStaysOnItsPageAndReachesTheTableUnderItsId_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("tableRow");
        QTest::newRow("write row 0") << 0 << "9|1A|00|";
        QTest::newRow("read row 8") << 8 << "5|1A|00|";
    }
    void aTypedFieldStaysOnItsPageAndReachesTheTableUnderItsId()
    {
        QFETCH(int, row);
        if (row > 7)
            click("读");
        click("btnNextPage");
        type(2 * row, "1a");
        showPage(1);
        QVERIFY(edit(2 * row)->text().isEmpty());
        showPage(2);
        QCOMPARE(edit(2 * row)->text(), QString("1A"));
        QTEST(tableRow(openManager(row > 7), 0), "tableRow");
    }

    void rowButtonSends_data()
    {
        QTest::addColumn<int>("row"); // negative: that read row on read page 2
        QTest::addColumn<QString>("addr");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("result");
        QTest::newRow("write") << 2 << "1F2" << "80" << "1F2|80|0";
        QTest::newRow("write without value") << 1 << "12" << "" << "请填写正确的寄存器值";
        QTest::newRow("without address") << 3 << "" << "7" << "请填写正确的寄存器地址";
        QTest::newRow("read page 1") << 9 << "30" << "" << "30||2";
        QTest::newRow("read page 2") << -11 << "31" << "" << "31||8";
    }
    void rowButtonSends()
    {
        QFETCH(int, row);
        QFETCH(QString, result);
        if (row < 0) {
            click("读");
            click("btnNextPage");
            row = -row;
        }
        QFETCH(QString, addr);
        QFETCH(QString, value);
        type(2 * row, addr);
        type(2 * row + 1, value);
        click(QString("btnSendReg%1").arg(row));
        if (result.contains('|'))
            QCOMPARE(sent(), result);
        else
            QVERIFY(sent().isEmpty() && QtMessageTip::Instance()->text() == result && QtMessageTip::Instance()->mode() == 0);
    }

    // typed rows: page 4 "40".."47", page 5 "50".."57" but for row 3, left empty
    void autoSendPlaysTheWriteList_data()
    {
        QTest::addColumn<int>("startPage");
        QTest::addColumn<QString>("addresses");
        QTest::newRow("from the last page: row 0 unsent") << 5 << "51 52 54 55 56 57";
        QTest::newRow("from page 4: page 5 from row 0") << 4 << "41 42 43 44 45 46 47 50 51 52 54 55 56 57";
    }
    void autoSendPlaysTheWriteList()
    {
        for (int page = 4; page <= 5; ++page) {
            showPage(page);
            for (int r = 0; r < 8; ++r) {
                if (page == 4 || r != 3) {
                    type(2 * r, QString("%1%2").arg(page).arg(r));
                    type(2 * r + 1, "1");
                }
            }
        }
        QFETCH(int, startPage);
        showPage(startPage);
        QSignalSpy finished(m_cfg, SIGNAL(autoSendFinished()));
        m_cfg->setAutoSendDelay(2);
        m_cfg->setAutoSend(true);
        // no tick can come between: the refusal runs before the event loop does
        click("btnSendReg1");
        QVERIFY(sent().isEmpty());
        QVERIFY(finished.wait(5000));
        QTEST(sent().remove("|01|0"), "addresses"); // every value "01", every regId 0
    }

    // read addresses typed on page 2 (ids 5 to 8), then on page 1 (ids 1 to 4)
    void readAnswersFindTheirRow_data()
    {
        QTest::addColumn<int>("regId");
        QTest::addColumn<uint>("value");
        QTest::addColumn<QString>("page1");
        QTest::addColumn<QString>("page2");
        QTest::addColumn<QString>("page2Again");
        QTest::newRow("shown page") << 2 << 0x1234u << ",1234,," << "00,00,00,00" << "00,00,00,00";
        QTest::newRow("bit 31 shown once, then 0") << 6 << 0x80000000u << ",,," << "00,FFFFFFFF80000000,00,00" << "00,00,00,00";
        QTest::newRow("unknown id") << 9 << 5u << ",,," << "00,00,00,00" << "00,00,00,00";
        // the last row of a page belongs to that page, the first of the next to the next
        QTest::newRow("last of the shown page") << 4 << 0x44u << ",,,44" << "00,00,00,00" << "00,00,00,00";
        QTest::newRow("last of the next page") << 8 << 0x88u << ",,," << "00,00,00,88" << "00,00,00,88";
        QTest::newRow("first of the next page") << 5 << 0x55u << ",,," << "55,00,00,00" << "55,00,00,00";
    }
    void readAnswersFindTheirRow()
    {
        click("读");
        for (int page = 2; page >= 1; --page) {
            showPage(page);
            for (int k = 0; k < 4; ++k)
                type(16 + 2 * k, QString("A%1").arg(k));
        }
        QFETCH(int, regId);
        QFETCH(uint, value);
        m_cfg->SetRegValue(regId, value);
        QTEST(fields(17, 23, 2), "page1");
        showPage(2);
        QTEST(fields(17, 23, 2), "page2");
        showPage(2);
        QTEST(fields(17, 23, 2), "page2Again");
    }

    // write row 0 holds 10/20, read row 8 the address 30; the fields are cleared, which
    // leaves the registers, before the table is confirmed
    void confirmTakesTheTableOver_data()
    {
        QTest::addColumn<int>("tab");
        QTest::addColumn<bool>("clear");
        QTest::addColumn<QStringList>("rows");
        QTest::addColumn<QString>("fields");
        QTest::addColumn<QString>("firstRow");
        QTest::newRow("write: address 0 dropped") << 0 << false << QStringList{"1|10|20|曝光", "2|0|5|", "3|44|6|"} << "10,20,,,44,06" << "1|10|20|曝光";
        QTest::newRow("write: blank rows change nothing") << 0 << true << QStringList{} << "10,20,,,," << "1|10|20|";
        QTest::newRow("read: blank rows make id 0") << 1 << false << QStringList{} << "30,00,,,," << "0|00|00|";
        QTest::newRow("read: numbered rows overwrite ids 1..") << 1 << true << QStringList{} << "00,00,00,00,00,00" << "1|00|00|";
    }
    void confirmTakesTheTableOver()
    {
        QFETCH(int, tab);
        QFETCH(QStringList, rows);
        type(0, "10");
        type(1, "20");
        type(16, "30");
        m_cfg->SltClearInput();
        QCOMPARE(fields(0, 23), QString(23, ','));
        DataManagerWidget *manager = openManager(tab);
        QFETCH(bool, clear);
        if (clear)
            LarkTest::click(manager, "清空");
        for (int r = 0; r < rows.size(); ++r)
            for (int c = 0; c < 4; ++c)
                manager->dataModel()->setData(manager->dataModel()->index(r, c), rows[r].split('|')[c]);
        LarkTest::click(manager, "确定");
        QVERIFY(!manager->isVisible());
        QTEST(tab == 0 ? fields(0, 5) : fields(16, 21), "fields");
        QTEST(tableRow(openManager(tab), 0), "firstRow");
    }
};

LARK_TEST_MAIN(TstImageFormatConfig)
#include "tst_imageformatconfig.moc"
