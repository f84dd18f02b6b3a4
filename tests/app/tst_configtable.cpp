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
    void load_data();
    void load();
    void viewsAndUsedMarks();
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

// The first view as "key=value=rest" rows joined with ';'.
static QString rows(const ConfigTable &t)
{
    QStringList out;
    for (qsizetype i = 0; i < t.keys.size(); ++i)
        out << t.keys[i] + '=' + t.values.value(i) + '=' + t.rests.value(i);
    return out.join(';');
}

// argv is joined with '|'
void TestConfigTable::parseArgs_data()
{
    QTest::addColumn<QString>("argv");
    QTest::addColumn<QString>("rows");
    QTest::newRow("program only") << "prog" << "";
    QTest::newRow("option with value") << "prog|-c|a.cfg" << "-c=a.cfg=a.cfg";
    // every argument up to the next option belongs to it; the value is the first
    QTest::newRow("gathered rest") << "prog|-d|x|y z|-e" << "-d=x=x y z;-e==";
    // an option followed directly by another gets an empty value
    QTest::newRow("option then option") << "prog|-b|-x" << "-b==;-x==";
    // arguments before the first option belong to none and only stay in args
    QTest::newRow("stray arguments") << "prog|stray|-j" << "-j==";
    // a negative number begins with "-", so it is an option of its own
    QTest::newRow("negative number") << "prog|-showA2B|-1" << "-showA2B==;-1==";
    // option names keep their case: two rows in the first view
    QTest::newRow("case kept") << "prog|-c|a|-C|b" << "-c=a=a;-C=b=b";
}

void TestConfigTable::parseArgs()
{
    QFETCH(QString, argv);
    ConfigTable t;
    t.parseArgs(argv.split('|'), false, QString(), {});
    QCOMPARE(t.args, argv.split('|'));
    QTEST(rows(t), "rows");
    QCOMPARE(t.allKeys.size(), t.keys.size());
    QVERIFY(t.lines.isEmpty());
}

void TestConfigTable::parseArgsLooksUpConfigFile()
{
    const QString a = write("a.cfg", "FROM a\n");
    const QString b = write("b.cfg", "FROM b\n");
    ConfigTable t;
    // -config is looked up after -c and so wins; readNow loads the result
    QCOMPARE(t.parseArgs({ "prog", "-config", b, "-c", a }, true, "default.cfg", { "-c", "-config" }), b);
    QCOMPARE(t.valueExact("FROM"), QString("b"));
    ConfigTable none;
    QCOMPARE(none.parseArgs({ "prog" }, false, "default.cfg", { "-c", "-config" }), QString("default.cfg"));
    QVERIFY(none.lines.isEmpty());
}

void TestConfigTable::lookup_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value"); // by value(key, "FB")
    QTest::addColumn<QString>("exact"); // by valueExact(key, "FB")
    QTest::addColumn<QString>("rest");  // rest of the last row of the key, "-" if none
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
    QTest::newRow("absent") << "A 1\n" << "B" << "FB" << "FB" << "-";
    QTest::newRow("crlf lines") << "K v\r\nL w\r\n" << "K" << "v" << "v" << "v";
}

void TestConfigTable::lookup()
{
    QFETCH(QString, text);
    QFETCH(QString, key);
    if (text.contains("K \"abc\n"))
        QTest::ignoreMessage(QtDebugMsg, "In a line [\"abc] item is started from quote but not ended by quote");
    if (text.contains("abc\"\n"))
        QTest::ignoreMessage(QtDebugMsg, "In a line [abc\"] item is started from not quote but ended by quote");

    ConfigTable t;
    QVERIFY(t.load(write("t.cfg", text)));
    QTEST(t.value(key, "FB"), "value");
    QTEST(t.valueExact(key, "FB"), "exact");
    QTEST(t.keys.contains(key) ? t.rests.at(t.keys.indexOf(key)) : QString("-"), "rest");
}

// outer.cfg is loaded ("missing": not written), inner.cfg written when given.
// defs: every definition as "key:rest"; batch: the rests of BATCH joined with
// '|'; name: the file name kept afterwards.
void TestConfigTable::load_data()
{
    QTest::addColumn<QString>("outer");
    QTest::addColumn<QString>("inner");
    QTest::addColumn<QString>("defs");
    QTest::addColumn<QString>("batch");
    QTest::addColumn<int>("lines");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("message");
    // the INCLUDE line itself is among the lines read, and is no row; the name
    // is the included file's once an INCLUDE was read
    QTest::newRow("include in place") << "A 1\nbatch one\ninclude %D/inner.cfg\nbatch three\nC 3\n"
                                      << "B 2\nbatch two\n" << "A:1 batch:one B:2 batch:two batch:three C:3"
                                      << "one|two|three" << 7 << "inner.cfg" << "";
    QTest::newRow("missing include goes on") << "A 1\nINCLUDE %D/missing.cfg\nC 3\n" << "" << "A:1 C:3" << ""
                                             << 3 << "" << "Can't open config file : %D/missing.cfg";
    // the outer file and 16 nested reads each define A and B once
    QTest::newRow("self include stops") << "A 1\nINCLUDE %D/outer.cfg\nB 2\n" << ""
                                        << QString(QString("A:1 ").repeated(17) + QString("B:2 ").repeated(17)).trimmed()
                                        << "" << 3 * 17 << "outer.cfg" << "INCLUDE of .*outer.cfg.* refused";
    // three self-includes a file: the count of files read ends it, not the depth
    const QString fanOut("INCLUDE %D/outer.cfg\nINCLUDE %D/outer.cfg\nINCLUDE %D/outer.cfg\nA 1\n");
    QTest::newRow("include fan-out stops") << fanOut << "" << QString("A:1 ").repeated(1 + 256).trimmed() << ""
                                           << 4 * (1 + 256) << "outer.cfg" << "more than 256 included files";
    QTest::newRow("missing file") << "missing" << "" << "" << "" << 0 << ""
                                  << "Can't open config file : %D/outer.cfg";
    // the key is compared in upper case, the rests kept in file order
    QTest::newRow("batch rests") << "batch :for i 1 3\nBatch echo $i$\nOther x\nBATCH :next\n" << ""
                                 << "batch::for i 1 3 Batch:echo $i$ Other:x BATCH::next"
                                 << ":for i 1 3|echo $i$|:next" << 4 << "outer.cfg" << "";
}

void TestConfigTable::load()
{
    QFETCH(QString, outer);
    QFETCH(QString, inner);
    QFETCH(QString, message);
    if (outer != "missing")
        write("outer.cfg", outer);
    if (!inner.isEmpty())
        write("inner.cfg", inner);
    if (!message.isEmpty())
        QTest::ignoreMessage(QtDebugMsg, QRegularExpression(message.replace("%D", dir->path())));
    ConfigTable t;
    t.defaultFile = "x.cfg";
    QCOMPARE(t.load(dir->filePath("outer.cfg")), outer != "missing");
    // any file that fails to open clears the default file
    QCOMPARE(t.defaultFile.isEmpty(), message.startsWith("Can't"));
    QStringList defs;
    for (qsizetype i = 0; i < t.allKeys.size(); ++i)
        defs << t.allKeys[i] + ':' + t.allRests.value(i);
    QTEST(defs.join(' '), "defs");
    QVERIFY(!t.keys.contains("include", Qt::CaseInsensitive));
    QTEST(int(t.lines.size()), "lines");
    QTEST(t.allRestsOf("BATCH").join('|'), "batch");
    QCOMPARE(t.allRestsOf("batch"), QStringList());
    QTEST(QFileInfo(t.fileName).fileName(), "name");
}

// A later definition overwrites value and rest but keeps the first comment;
// only the case-insensitive look-ups mark definitions used.
void TestConfigTable::viewsAndUsedMarks()
{
    ConfigTable t;
    t.add("Key", "1", "1 a", "first");
    t.add("KEY", "2", "2 b", "second");
    t.add("Key", "3", "3 c", "third");
    t.add("B", "4", "4", "");
    QCOMPARE(rows(t), QString("Key=3=3 c;KEY=2=2 b;B=4=4"));
    QCOMPARE(t.comments, (QStringList{ "first", "second", "" }));
    QCOMPARE(t.upKeys, (QStringList{ "KEY", "B" }));
    QCOMPARE(t.upRests, (QStringList{ "3 c", "4" }));
    QCOMPARE(t.upComments, (QStringList{ "first", "" }));
    QCOMPARE(t.allComments, (QStringList{ "first", "second", "third", "" }));
    const auto used = [&t] {
        QString marks;
        for (bool u : t.allUsed)
            marks += u ? '1' : '0';
        return marks;
    };
    t.valueExact("B");
    t.value("x");
    QCOMPARE(used(), QString("0000"));
    t.value("kEy");
    QCOMPARE(used(), QString("1110"));
    t.allRestsOf("B");
    QCOMPARE(used(), QString("1111"));
}

// Without a loaded file the row is only added; with one it is also appended.
void TestConfigTable::appendToFile()
{
    const QString path = write("app.cfg", "A 1\n");
    for (const bool loaded : { false, true }) {
        ConfigTable t;
        QVERIFY(!loaded || t.load(path));
        QCOMPARE(t.appendToFile("K", "v", "v w", "note"), loaded);
        QCOMPARE(t.valueExact("K"), QString("v"));
    }
    QFile f(path);
    QVERIFY(f.open(QIODevice::ReadOnly));
    QCOMPARE(QString::fromUtf8(f.readAll()), QString("A 1\nK\tv v w\t # note\n"));
}

QTEST_GUILESS_MAIN(TestConfigTable)
#include "tst_configtable.moc"
