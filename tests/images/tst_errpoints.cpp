#include "LogCapture.h"

#include "images/ErrPoints.h"

#include <QtTest>

Q_DECLARE_METATYPE(QVector<QPoint>)

// Reading bad-pixel mask files.
class TestErrPoints : public QObject
{
    Q_OBJECT
private slots:
    void load_data();
    void load();
    void missingFile();

private:
    QTemporaryDir m_dir;
};

void TestErrPoints::load_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("keep");
    QTest::addColumn<bool>("inUse");
    QTest::addColumn<QVector<QPoint>>("points");
    QTest::addColumn<QSize>("size");
    // Every row starts from a mask holding (7,7), not in use, of size 1 x 1.
    QTest::newRow("list, not kept") << QByteArray("1 2\n3 4\n") << false << false
                                    << QVector<QPoint>{{1, 2}, {3, 4}} << QSize(1, 1);
    QTest::newRow("list, kept") << QByteArray("1 2\n3 4\n") << true << true
                                << QVector<QPoint>{{7, 7}, {1, 2}, {3, 4}} << QSize(1, 1);
    // the size line empties the list and clears the flag even when kept
    QTest::newRow("size line") << QByteArray("# Size 640 480\n5 6\n") << true << false << QVector<QPoint>{{5, 6}}
                               << QSize(640, 480);
    QTest::newRow("points before size dropped") << QByteArray("1 1\n# Size 10 20\n2 2\n") << false << false
                                                << QVector<QPoint>{{2, 2}} << QSize(10, 20);
    QTest::newRow("size missing a number") << QByteArray("# Size 12\n") << true << false << QVector<QPoint>{}
                                           << QSize(12, 0);
    // "#Size" does not begin with "# Size": a comment like any other
    QTest::newRow("#Size is a comment") << QByteArray("#Size 3 3\n1 1\n") << true << true
                                        << QVector<QPoint>{{7, 7}, {1, 1}} << QSize(1, 1);
    QTest::newRow("comments, blanks, one item, extra items")
        << QByteArray("# note\n\n  8 \t 9  # c\n5\n1 2 3\n   \n") << false << false
        << QVector<QPoint>{{8, 9}, {1, 2}} << QSize(1, 1);
    QTest::newRow("numbers that do not parse are 0") << QByteArray("x 4\n5 y\n-3 -4\n") << false << false
                                                     << QVector<QPoint>{{0, 4}, {5, 0}, {-3, -4}} << QSize(1, 1);
    QTest::newRow("empty file, kept") << QByteArray() << true << true << QVector<QPoint>{{7, 7}} << QSize(1, 1);
}

void TestErrPoints::load()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, keep);
    QFETCH(bool, inUse);
    QFETCH(QVector<QPoint>, points);
    QFETCH(QSize, size);
    QVERIFY(m_dir.isValid());
    QFile f(m_dir.filePath("mask.txt"));
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(content);
    f.close();

    ErrPoints mask;
    mask.points = {{7, 7}};
    mask.width = 1;
    mask.height = 1;
    // a path with "sub/.." in it: the stored name is the canonical one
    QVERIFY(QDir(m_dir.path()).mkpath("sub"));
    QVERIFY(mask.load(m_dir.filePath("sub/../mask.txt"), keep));
    QCOMPARE(mask.fileName, QFileInfo(f).canonicalFilePath());
    QVERIFY(!mask.fileName.contains(".."));
    QCOMPARE(mask.inUse, inUse);
    QCOMPARE(mask.points, points);
    QCOMPARE(QSize(mask.width, mask.height), size);
    for (const QPoint &p : points)
        QVERIFY(mask.contains(p.x(), p.y()));
    QVERIFY(!mask.contains(2, 1)); // no row holds (2,1), several hold (1,2)
}

void TestErrPoints::missingFile()
{
    ErrPoints mask;
    mask.inUse = true;
    mask.fileName = "old.txt";
    mask.points = {{1, 1}};
    const QString path = m_dir.filePath("none.txt");
    LogCapture log;
    QVERIFY(!mask.load(path, true));
    QCOMPARE(LogCapture::lines(), QStringList{"Can't Open " + path});
    QVERIFY(!mask.inUse);
    QVERIFY(mask.fileName.isEmpty());
    QVERIFY(mask.points.isEmpty());
}

QTEST_GUILESS_MAIN(TestErrPoints)
#include "tst_errpoints.moc"
