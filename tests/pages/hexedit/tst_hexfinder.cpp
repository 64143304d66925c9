#include "HexFinder.h"
#include "LarkTestCore.h"

#include <QTextCodec>
#include <QtTest>

// Finding in 64 bytes: "LARK" at 14 (across the 16-byte line) and at 50, "中文" in UTF-8
// at 30 and in GB18030 at 40, "END" closing the content. Every search runs with chunks
// of 5 bytes, so matches cross chunk borders too, and with chunks of 1 MiB.
class TstHexFinder : public QObject
{
    Q_OBJECT
    QByteArray m_content;

private slots:
    void initTestCase()
    {
        m_content = QByteArray(64, '\x11');
        m_content.replace(14, 4, "LARK").replace(50, 4, "LARK").replace(61, 3, "END");
        m_content.replace(30, 6, QString("中文").toUtf8());
        m_content.replace(40, 4, QTextCodec::codecForName("GB18030")->fromUnicode("中文"));
    }

    void find_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("mode");
        QTest::addColumn<qint64>("from");
        QTest::addColumn<bool>("backwards");
        QTest::addColumn<bool>("wrap");
        QTest::addColumn<qint64>("at");
        QTest::newRow("hex across the line boundary") << "4C 41 52 4B" << 0 << qint64(0) << false << false << qint64(14);
        QTest::newRow("past the last wraps") << "0x4C41524B" << 0 << qint64(51) << false << true << qint64(14);
        QTest::newRow("past the last without wrap") << "4C41524B" << 0 << qint64(51) << false << false << qint64(-1);
        QTest::newRow("backwards finds the one before") << "LARK" << 1 << qint64(50) << true << false << qint64(14);
        QTest::newRow("backwards before the first wraps") << "LARK" << 1 << qint64(14) << true << true << qint64(50);
        QTest::newRow("utf-8 text") << "中文" << 1 << qint64(0) << false << false << qint64(30);
        QTest::newRow("gb18030 text") << "中文" << 2 << qint64(0) << false << false << qint64(40);
        QTest::newRow("at the very end") << "END" << 1 << qint64(60) << false << false << qint64(61);
        QTest::newRow("not there, wrapping") << "DE AD" << 0 << qint64(20) << false << true << qint64(-1);
    }
    void find()
    {
        QFETCH(QString, text);
        QFETCH(int, mode);
        QFETCH(qint64, from);
        QFETCH(bool, backwards);
        QFETCH(bool, wrap);
        QString error;
        const QByteArray pattern = HexFinder::pattern(text, HexFinder::Mode(mode), &error);
        QVERIFY2(error.isEmpty(), qPrintable(error));
        const auto reader = [&](qint64 offset, char *buffer, qint64 length) {
            return offset >= 0 && offset + length <= m_content.size()
                   && memcpy(buffer, m_content.constData() + offset, size_t(length));
        };
        for (qint64 chunk : {qint64(5), qint64(1) << 20}) {
            HexFinder::m_nChunkSize = chunk;
            QTEST(HexFinder::find(pattern, m_content.size(), reader, from, backwards, wrap), "at");
        }
    }

    void hexThatIsNoPatternSaysSo()
    {
        for (const QString &text : {"4C 415", "4G", "+1", " "}) {
            QString error;
            QVERIFY(HexFinder::pattern(text, HexFinder::Hex, &error).isEmpty() && !error.isEmpty());
        }
    }
};

LARK_TEST_GUILESS_MAIN(TstHexFinder)
#include "tst_hexfinder.moc"
