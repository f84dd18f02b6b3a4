#include "app/ConfigTable.h"

#include <QTemporaryDir>
#include <QtTest>

// Config files are written from compact texts into a temporary directory;
// "%D" in a text stands for that directory.
class TestConfigTable : public QObject
{
    Q_OBJECT
private slots:
    void init();

    void parseArgs_data();
    void parseArgs();
    void parseArgsLooksUpConfigFile();

    void lookup_data();
    void lookup();
    void includeReadsInPlace();
    void missingIncludeGoesOn();
    void selfIncludeStops();
    void missingFileLeavesNoName();
    void laterDefinitionKeepsFirstComment();
    void usedMarks();
    void allRestsOfOrder();
    void appendToFile_data();
    void appendToFile();

private:
    QString write(const QString &name, QString text);
    std::unique_ptr<QTemporaryDir> dir;
};

void TestConfigTable::init()
{
    dir = std::make_unique<QTemporaryDir>();
    QVERIFY(dir->isValid());
}

QString TestConfigTable::write(const QString &name, QString text)
{
    const QString path = dir->filePath(name);
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Text))
        return QString();
    f.write(text.replace("%D", dir->path()).toUtf8());
    return path;
}

void TestConfigTable::parseArgs_data()
{
    QTest::addColumn<QStringList>("argv");
    QTest::addColumn<QStringList>("keys");
    QTest::addColumn<QStringList>("values");
    QTest::addColumn<QStringList>("rests");

    QTest::newRow("program only") << QStringList{ "prog" } << QStringList() << QStringList() << QStringList();
    QTest::newRow("option with value") << QStringList{ "prog", "-c", "a.cfg" }
                                       << QStringList{ "-c" } << QStringList{ "a.cfg" } << QStringList{ "a.cfg" };
    // every argument up to the next option belongs to it; the value is the first
    QTest::newRow("gathered rest") << QStringList{ "prog", "-d", "x", "y z", "-e" }
                                   << QStringList{ "-d", "-e" } << QStringList{ "x", "" }
                                   << QStringList{ "x y z", "" };
    // an option followed directly by another gets an empty value
    QTest::newRow("option then option") << QStringList{ "prog", "-b", "-x" }
                                        << QStringList{ "-b", "-x" } << QStringList{ "", "" }
                                        << QStringList{ "", "" };
    // arguments before the first option belong to none and only stay in args
    QTest::newRow("stray arguments") << QStringList{ "prog", "stray", "-j" }
                                     << QStringList{ "-j" } << QStringList{ "" } << QStringList{ "" };
    // a negative number begins with "-", so it is an option of its own
    QTest::newRow("negative number") << QStringList{ "prog", "-showA2B", "-1" }
                                     << QStringList{ "-showA2B", "-1" } << QStringList{ "", "" }
                                     << QStringList{ "", "" };
    // option names keep their case: two rows in the first view
    QTest::newRow("case kept") << QStringList{ "prog", "-c", "a", "-C", "b" }
                               << QStringList{ "-c", "-C" } << QStringList{ "a", "b" } << QStringList{ "a", "b" };
}

void TestConfigTable::parseArgs()
{
    QFETCH(QStringList, argv);
    QFETCH(QStringList, keys);
    QFETCH(QStringList, values);
    QFETCH(QStringList, rests);

    ConfigTable t;
    t.parseArgs(argv, false, QString(), {});
    QCOMPARE(t.args, argv);
    QCOMPARE(t.keys, keys);
    QCOMPARE(t.values, values);
    QCOMPARE(t.rests, rests);
    QCOMPARE(t.allKeys.size(), keys.size());
    QVERIFY(t.lines.isEmpty());
}

void TestConfigTable::parseArgsLooksUpConfigFile()
{
    const QString a = write("a.cfg", "FROM a\n");
    const QString b = write("b.cfg", "FROM b\n");
    ConfigTable t;
    // -config is looked up after -c and so wins; readNow loads the result
    const QString got = t.parseArgs(QStringList{ "prog", "-config", b, "-c", a }, true, "default.cfg",
                                    { "-c", "-config" });
    QCOMPARE(got, b);
    QCOMPARE(t.valueExact("FROM"), QString("b"));

    ConfigTable none;
    QCOMPARE(none.parseArgs(QStringList{ "prog" }, false, "default.cfg", { "-c", "-config" }),
             QString("default.cfg"));
    QVERIFY(none.lines.isEmpty());
}

void TestConfigTable::lookup_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");   // by value(key, "FB")
    QTest::addColumn<QString>("exact");   // by valueExact(key, "FB")
    QTest::addColumn<QString>("rest");    // rest of the last row of the key, "-" if none

    QTest::newRow("plain") << "DataRoot /data/x\n" << "DataRoot" << "/data/x" << "/data/x" << "/data/x";
    QTest::newRow("rest holds the value") << "batch :for i 1 10\n" << "batch" << ":for" << ":for" << ":for i 1 10";
    QTest::newRow("comment dropped") << "K v w # note\n" << "K" << "v" << "v" << "v w";
    QTest::newRow("hash in quotes") << "K \"a # b\"\n" << "K" << "a # b" << "a # b" << "\"a # b\"";
    // the apostrophe opens the quote state, so the # stays in the line
    QTest::newRow("lone apostrophe") << "K it's # x\n" << "K" << "it's" << "it's" << "it's # x";
    QTest::newRow("not ended by quote") << "K \"abc\n" << "K" << "abc" << "abc" << "\"abc";
    QTest::newRow("ended by quote") << "K abc\"\n" << "K" << "abc\"" << "abc\"" << "abc\"";
    QTest::newRow("key without value") << "Lonely\n" << "Lonely" << "" << "" << "";
    QTest::newRow("blank and comment lines") << "\n   \n# K 1\n\tK 2\n" << "K" << "2" << "2" << "2";
    QTest::newRow("later wins") << "K 1\nK 2\n" << "K" << "2" << "2" << "2";
    // value() ignores case, valueExact() reads each spelling's own row
    QTest::newRow("case, lower asked") << "Key 1\nKEY 2\n" << "key" << "2" << "FB" << "-";
    QTest::newRow("case, first spelling") << "Key 1\nKEY 2\n" << "Key" << "2" << "1" << "1";
    QTest::newRow("case, second spelling") << "Key 1\nKEY 2\n" << "KEY" << "2" << "2" << "2";
    QTest::newRow("absent") << "A 1\n" << "B" << "FB" << "FB" << "-";
    QTest::newRow("crlf lines") << "K v\r\nL w\r\n" << "K" << "v" << "v" << "v";
}

void TestConfigTable::lookup()
{
    QFETCH(QString, text);
    QFETCH(QString, key);
    QFETCH(QString, value);
    QFETCH(QString, exact);
    QFETCH(QString, rest);

    if (text.contains("K \"abc\n"))
        QTest::ignoreMessage(QtDebugMsg, "In a line [\"abc] item is started from quote but not ended by quote");
    if (text.contains("abc\"\n"))
        QTest::ignoreMessage(QtDebugMsg, "In a line [abc\"] item is started from not quote but ended by quote");

    ConfigTable t;
    QVERIFY(t.load(write("t.cfg", text)));
    QCOMPARE(t.value(key, "FB"), value);
    QCOMPARE(t.valueExact(key, "FB"), exact);
    const qsizetype i = t.keys.indexOf(key);
    QCOMPARE(i < 0 ? QString("-") : t.rests.at(i), rest);
}

void TestConfigTable::includeReadsInPlace()
{
    const QString inner = write("inner.cfg", "B 2\nbatch two\n");
    write("outer.cfg", "A 1\nbatch one\ninclude %D/inner.cfg\nbatch three\nC 3\n");
    ConfigTable t;
    QVERIFY(t.load(dir->filePath("outer.cfg")));
    QCOMPARE(t.allKeys, (QStringList{ "A", "batch", "B", "batch", "batch", "C" }));
    QCOMPARE(t.allRestsOf("BATCH"), (QStringList{ "one", "two", "three" }));
    // the INCLUDE line itself is among the lines read, and is no row
    QCOMPARE(t.lines.size(), 7);
    QVERIFY(!t.keys.contains("include"));
    // the name is the included file's once an INCLUDE was read
    QCOMPARE(t.fileName, inner);
}

void TestConfigTable::missingIncludeGoesOn()
{
    const QString missing = dir->filePath("missing.cfg");
    write("outer.cfg", "A 1\nINCLUDE %D/missing.cfg\nC 3\n");
    ConfigTable t;
    QTest::ignoreMessage(QtDebugMsg, qPrintable("Can't open config file : " + missing));
    QVERIFY(t.load(dir->filePath("outer.cfg")));
    QCOMPARE(t.keys, (QStringList{ "A", "C" }));
    QVERIFY(t.fileName.isEmpty());
}

void TestConfigTable::selfIncludeStops()
{
    write("self.cfg", "A 1\nINCLUDE %D/self.cfg\nB 2\n");
    ConfigTable t;
    QTest::ignoreMessage(QtDebugMsg, QRegularExpression("^INCLUDE of .*self.cfg.* refused"));
    QVERIFY(t.load(dir->filePath("self.cfg")));
    // the outer file and 16 nested reads each define A and B once
    QCOMPARE(t.allKeys.size(), 2 * (1 + ConfigTable::MaxIncludeDepth));
    QCOMPARE(t.allKeys.first(), QString("A"));
    QCOMPARE(t.allKeys.last(), QString("B"));
}

void TestConfigTable::missingFileLeavesNoName()
{
    ConfigTable t;
    t.defaultFile = "x.cfg";
    const QString missing = dir->filePath("none.cfg");
    QTest::ignoreMessage(QtDebugMsg, qPrintable("Can't open config file : " + missing));
    QVERIFY(!t.load(missing));
    QVERIFY(t.fileName.isEmpty());
    QVERIFY(t.defaultFile.isEmpty());
    QVERIFY(t.keys.isEmpty());
}

void TestConfigTable::laterDefinitionKeepsFirstComment()
{
    ConfigTable t;
    t.add("Key", "1", "1 a", "first");
    t.add("KEY", "2", "2 b", "second");
    t.add("Key", "3", "3 c", "third");
    QCOMPARE(t.keys, (QStringList{ "Key", "KEY" }));
    QCOMPARE(t.values, (QStringList{ "3", "2" }));
    QCOMPARE(t.comments, (QStringList{ "first", "second" }));
    QCOMPARE(t.upKeys, QStringList{ "KEY" });
    QCOMPARE(t.upRests, QStringList{ "3 c" });
    QCOMPARE(t.upComments, QStringList{ "first" });
    QCOMPARE(t.allComments, (QStringList{ "first", "second", "third" }));
}

void TestConfigTable::usedMarks()
{
    ConfigTable t;
    t.add("A", "1", "1", "");
    t.add("B", "2", "2", "");
    t.add("a", "3", "3", "");
    t.valueExact("B");
    QCOMPARE(t.allUsed, (QList<bool>{ false, false, false }));
    t.value("x");
    QCOMPARE(t.allUsed, (QList<bool>{ false, false, false }));
    t.value("A");
    QCOMPARE(t.allUsed, (QList<bool>{ true, false, true }));
    t.allRestsOf("B");
    QCOMPARE(t.allUsed, (QList<bool>{ true, true, true }));
}

void TestConfigTable::allRestsOfOrder()
{
    ConfigTable t;
    QVERIFY(t.load(write("b.cfg", "batch :for i 1 3\nBatch echo $i$\nOther x\nBATCH :next\n")));
    QCOMPARE(t.allRestsOf("BATCH"), (QStringList{ ":for i 1 3", "echo $i$", ":next" }));
    // the key is compared as given: a lower-case key finds nothing
    QCOMPARE(t.allRestsOf("batch"), QStringList());
}

void TestConfigTable::appendToFile_data()
{
    QTest::addColumn<bool>("loaded");
    QTest::addColumn<QString>("expected");
    QTest::newRow("file loaded") << true << "A 1\nK\tv v w\t # note\n";
    QTest::newRow("nothing loaded") << false << "A 1\n";
}

void TestConfigTable::appendToFile()
{
    QFETCH(bool, loaded);
    QFETCH(QString, expected);
    const QString path = write("app.cfg", "A 1\n");
    ConfigTable t;
    if (loaded)
        QVERIFY(t.load(path));
    QCOMPARE(t.appendToFile("K", "v", "v w", "note"), loaded);
    QCOMPARE(t.valueExact("K"), QString("v"));
    QFile f(path);
    QVERIFY(f.open(QIODevice::ReadOnly));
    QCOMPARE(QString::fromUtf8(f.readAll()), expected);
}

QTEST_GUILESS_MAIN(TestConfigTable)
#include "tst_configtable.moc"
