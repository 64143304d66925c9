#include "HexDocument.h"
#include "LarkTestCore.h"

#include <Okteta/PieceTableByteArrayModel>
#include <QRandomGenerator>
#include <QtTest>

// The document's reading of the current bytes, which saving and finding go through,
// against the model's own (slow) copy, after random edits of every kind and undo, on a
// real file read into memory or mapped.
class TstHexDocument : public QObject
{
    Q_OBJECT
    QTemporaryDir m_dir;

private slots:
    void readingFollowsEveryKindOfEdit_data()
    {
        QTest::addColumn<qint64>("mapAbove");
        QTest::addColumn<int>("kinds"); // of edits: 3 overwrite only, 6 also move bytes
        QTest::newRow("overwritten in memory") << (qint64(256) << 20) << 3;
        QTest::newRow("overwritten, mapped") << qint64(0) << 3;
        QTest::newRow("every kind, in memory") << (qint64(256) << 20) << 6;
    }
    void readingFollowsEveryKindOfEdit()
    {
        QFETCH(qint64, mapAbove);
        QFETCH(int, kinds);
        HexDocument::m_nMapThreshold = mapAbove;
        QFile f(m_dir.filePath("a.bin"));
        QVERIFY(f.open(QIODevice::WriteOnly) && f.write(QByteArray(5000, 'a')) == 5000);
        f.close();
        HexDocument doc;
        QVERIFY(doc.load(f.fileName()));
        QCOMPARE(doc.isMapped(), mapAbove == 0);
        Okteta::PieceTableByteArrayModel *model = doc.model(0);
        QRandomGenerator random(7);
        const QByteArray data("0123456789");
        for (int step = 0; step < 300; ++step) {
            const int size = model->size(), at = random.bounded(size - 20);
            const auto *bytes = reinterpret_cast<const Okteta::Byte *>(data.constData());
            switch (random.bounded(kinds)) {
            case 0: model->setByte(at, Okteta::Byte('A' + step % 26)); break;
            case 1: model->replace(Okteta::AddressRange::fromWidth(at, 1 + at % 9), bytes, 1 + at % 9); break;
            case 2: model->revertToVersionByIndex(qMax(model->versionIndex() - 1, 0)); break;
            case 3: model->insert(at, bytes, 1 + at % 9); break;
            case 4: model->replace(Okteta::AddressRange::fromWidth(at, 5), bytes, 3); break;
            case 5: model->swap(at, Okteta::AddressRange::fromWidth(at + 7, 1 + at % 11)); break;
            }
            QByteArray expected(model->size(), Qt::Uninitialized), actual(model->size(), '?');
            model->copyTo(reinterpret_cast<Okteta::Byte *>(expected.data()), 0, expected.size());
            const int from = random.bounded(expected.size());
            QVERIFY(doc.read(from, actual.data() + from, actual.size() - from) && doc.read(0, actual.data(), from));
            QCOMPARE(actual, expected);
        }
        QCOMPARE(doc.size(), qint64(model->size()));
        QVERIFY(doc.isModified());
    }
};

LARK_TEST_GUILESS_MAIN(TstHexDocument)
#include "tst_hexdocument.moc"
