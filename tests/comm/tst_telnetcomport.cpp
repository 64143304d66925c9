#include "TelnetComPort.h"

#include <QtTest>

Q_DECLARE_METATYPE(QList<TelnetComPort::Reply>)

using T = TelnetComPort;

static QByteArray b(std::initializer_list<int> v)
{
    QByteArray out;
    for (int c : v)
        out.append(char(c));
    return out;
}

class tst_TelnetComPort : public QObject
{
    Q_OBJECT
private slots:
    void serverStreamGivesTheSameResultWhereverItIsSplit_data()
    {
        QTest::addColumn<QByteArray>("stream");
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<QByteArray>("outgoing");
        QTest::addColumn<QList<T::Reply>>("replies");
        const QList<T::Reply> none;
        QTest::newRow("plain data") << QByteArray("hello") << QByteArray("hello") << QByteArray() << none;
        QTest::newRow("doubled IAC is one 0xFF of data")
            << b({'a', 255, 255, 'b', 255, 255}) << b({'a', 255, 'b', 255}) << QByteArray() << none;
        QTest::newRow("baud reply among data")
            << (QByteArray("x") + b({255, 250, 44, 101, 0, 1, 194, 0, 255, 240}) + "y") << QByteArray("xy")
            << QByteArray() << QList<T::Reply>{{1, b({0, 1, 194, 0})}};
        QTest::newRow("0xFF inside a reply value is unescaped")
            << b({255, 250, 44, 101, 0, 0, 255, 255, 255, 240}) << QByteArray() << QByteArray()
            << QList<T::Reply>{{1, b({0, 0, 255})}};
        QTest::newRow("server echo is refused, binary and SGA accepted silently")
            << b({255, 251, 1, 255, 251, 0, 255, 251, 3, 255, 253, 44}) << QByteArray() << b({255, 254, 1})
            << none;
        QTest::newRow("unknown option asked of us is refused; the same request twice is answered each time")
            << b({255, 253, 24, 'k', 255, 253, 24}) << QByteArray("k") << b({255, 252, 24, 255, 252, 24}) << none;
        QTest::newRow("NOP and GA vanish")
            << b({'a', 255, 241, 'b', 255, 249}) << QByteArray("ab") << QByteArray() << none;
        QTest::newRow("codes that are no reply to a command are ignored")
            << b({255, 250, 44, 0, 1, 255, 240, 255, 250, 44, 255, 255, 255, 240, 255, 250, 44, 113, 255, 240})
            << QByteArray() << QByteArray() << none;
        QTest::newRow("subnegotiation of another option is ignored")
            << b({255, 250, 24, 1, 255, 240, 'z'}) << QByteArray("z") << QByteArray() << none;
        QTest::newRow("two replies in a row")
            << b({255, 250, 44, 102, 8, 255, 240, 255, 250, 44, 105, 11, 255, 240}) << QByteArray() << QByteArray()
            << QList<T::Reply>{{2, b({8})}, {5, b({11})}};
    }

    void serverStreamGivesTheSameResultWhereverItIsSplit()
    {
        QFETCH(QByteArray, stream);
        // every split in two, and one byte at a time
        for (int cut = 0; cut <= stream.size() + 1; ++cut) {
            T t;
            QByteArray got;
            if (cut <= stream.size()) {
                got = t.feed(stream.left(cut));
                got += t.feed(stream.mid(cut));
            } else {
                for (char c : stream)
                    got += t.feed(QByteArray(1, c));
            }
            QTEST(got, "data");
            QTEST(t.takeOutgoing(), "outgoing");
            QTEST(t.takeReplies(), "replies");
        }
    }

    void iacIsDoubledInWhatWeSendAndAnOversizedReplyIsDropped()
    {
        QCOMPARE(T::escape(b({1, 255, 2, 255})), b({1, 255, 255, 2, 255, 255}));
        // 115200 = 00 01 C2 00; 255 in a value is doubled
        QCOMPARE(T::setBaudRate(115200), b({255, 250, 44, 1, 0, 1, 194, 0, 255, 240}));
        QCOMPARE(T::setBaudRate(0xFF), b({255, 250, 44, 1, 0, 0, 0, 255, 255, 255, 240}));
        // what we send comes back out of a parser as the same value
        T t;
        t.feed(T::setBaudRate(0x01FF02FF).replace(3, 1, b({101})));
        QCOMPARE(t.takeReplies(), (QList<T::Reply>{{1, b({1, 255, 2, 255})}}));
        // an oversized reply is dropped, and the data after it kept
        const QByteArray sub = b({255, 250, 44, 101}) + QByteArray(100000, 'q') + b({255, 240});
        QCOMPARE(t.feed(sub + "ok"), QByteArray("ok"));
        QVERIFY(t.takeReplies().isEmpty());
    }
};

QTEST_GUILESS_MAIN(tst_TelnetComPort)
#include "tst_telnetcomport.moc"
