#include "batch/CmdLine.h"
#include "batch/ExCmdId.h"
#include "batch/ForLoop.h"
#include "batch/MetaCmd.h"

#include <QtTest>

// Parsing of batch lines, joining of continued lines, the command tables and
// the padding of loop values.
class TestCmdLine : public QObject
{
    Q_OBJECT
private slots:
    void parse_data();
    void parse();
    void gather_data();
    void gather();
    void exCmdTable_data();
    void exCmdTable();
    void metaTable_data();
    void metaTable();
    void padded_data();
    void padded();
};

void TestCmdLine::parse_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<QString>("line");
    QTest::addColumn<bool>("isMeta");
    QTest::addColumn<QString>("cmd");
    QTest::addColumn<QStringList>("args");

    QTest::newRow("empty") << "" << false << "" << false << "" << QStringList();
    QTest::newRow("blanks") << " \t  " << false << "" << false << "" << QStringList();
    QTest::newRow("comment only") << "  # :echo x" << false << "" << false << "" << QStringList();
    // Behind a command word '#' is no comment: it and the words after it are arguments.
    QTest::newRow("hash behind word") << "load_I1_files a b # note" << true << "load_I1_files a b "
                                      << false << "load_I1_files" << QStringList{"a", "b", "#", "note"};
    QTest::newRow("hash glued") << "cmd a#b" << true << "cmd a" << false << "cmd" << QStringList{"a#b"};
    QTest::newRow("simplified") << "  set_band_w \t 12   " << true << "set_band_w 12" << false << "set_band_w"
                                << QStringList{"12"};
    QTest::newRow("quoted keeps blanks") << "save_image \"my  file.tif\" x" << true
                                         << "save_image \"my file.tif\" x" << false << "save_image"
                                         << QStringList{"my  file.tif", "x"};
    // The scanner resumes directly behind the closing quote.
    QTest::newRow("glued after quote") << "cmd \"a b\"c" << true << "cmd \"a b\"c" << false << "cmd"
                                       << QStringList{"a b", "c"};
    QTest::newRow("inner quote ordinary") << "cmd ab\"cd x" << true << "cmd ab\"cd x" << false << "cmd"
                                          << QStringList{"ab\"cd", "x"};
    QTest::newRow("unclosed quote") << "cmd \"rest of  line" << true << "cmd \"rest of line" << false << "cmd"
                                    << QStringList{"rest of  line"};
    QTest::newRow("ends with quote") << "cmd abc\"" << true << "cmd abc\"" << false << "cmd"
                                     << QStringList{"abc\""};
    QTest::newRow("empty quotes dropped") << "cmd \"\" x" << true << "cmd \"\" x" << false << "cmd"
                                          << QStringList{"x"};
    QTest::newRow("meta upper") << ":FOR i $i$ 1 3" << true << ":FOR i $i$ 1 3" << true << ":FOR"
                                << QStringList{"i", "$i$", "1", "3"};
    QTest::newRow("quoted hash word") << "\"#w\" x" << true << "\"" << false << "#w" << QStringList{"x"};
}

void TestCmdLine::parse()
{
    QFETCH(QString, text);
    const CmdLine c = CmdLine::parse(text);
    QCOMPARE(c.raw, text);
    QTEST(c.valid, "valid");
    QTEST(c.line, "line");
    QTEST(c.isMeta, "isMeta");
    QTEST(c.cmd, "cmd");
    QTEST(c.args, "args");
}

void TestCmdLine::gather_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<int>("start");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("last");

    QTest::newRow("plain") << QStringList{"a", "b"} << 0 << "a" << 0;
    QTest::newRow("blank before backslash kept") << QStringList{"a \\", "b"} << 0 << "a b" << 1;
    QTest::newRow("blanks behind backslash") << QStringList{"a\\ \t ", "b"} << 0 << "ab" << 1;
    QTest::newRow("word behind backslash") << QStringList{"a\\b", "c"} << 0 << "a\\b" << 0;
    QTest::newRow("three lines") << QStringList{"x", "a\\", "b \\", "c", "d"} << 1 << "ab c" << 3;
    QTest::newRow("last line keeps backslash") << QStringList{"a\\", "b\\"} << 0 << "ab\\" << 1;
    QTest::newRow("only line") << QStringList{"a \\"} << 0 << "a \\" << 0;
    QTest::newRow("blank line no continuation") << QStringList{"   ", "b"} << 0 << "   " << 0;
    QTest::newRow("lone backslash") << QStringList{"\\", "b"} << 0 << "b" << 1;
    QTest::newRow("out of range") << QStringList{"a"} << 3 << "" << 3;
}

void TestCmdLine::gather()
{
    QFETCH(QStringList, lines);
    QFETCH(int, start);
    int index = start;
    QTEST(CmdLine::gather(lines, &index), "text");
    QTEST(index, "last");
}

void TestCmdLine::exCmdTable_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<int>("id");
    QTest::addColumn<QString>("text");

    // text: the word as the table spells it
    QTest::newRow("first") << "clear_I1_files" << 0 << "clear_I1_files";
    QTest::newRow("any case") << "ANALYZER_SHOW_WINDOW" << 79 << "analyzer_show_window";
    QTest::newRow("capitals in table") << "use_i0" << 8 << "Use_I0";
    QTest::newRow("end of first group") << "suggesting_post_start_ev" << 47 << "Suggesting_Post_Start_eV";
    QTest::newRow("dark area group") << "set_i0_dark_area" << 48 << "set_i0_dark_area";
    QTest::newRow("misspelt view") << "xafs_view_enerugy_correction" << 78 << "xafs_view_enerugy_correction";
    QTest::newRow("misspelt analyzer") << "analzyer_dEdge_comp_w_file" << 106 << "analzyer_dEdge_comp_w_file";
    QTest::newRow("correct spelling unknown") << "analyzer_dEdge_comp_w_file" << 162 << "not ex cmd";
    QTest::newRow("sumUp") << "analyzer_select_main_mode_sumup" << 88 << "analyzer_select_main_mode_sumUp";
    QTest::newRow("exec LCF") << "analyzer_exec_LCF" << 116 << "analyzer_exec_LCF";
    QTest::newRow("calib group") << "calib_show_window" << 138 << "calib_show_window";
    QTest::newRow("save cfg last") << "saveDataCfg_text_as_vals" << 160 << "saveDataCfg_text_as_vals";
    QTest::newRow("last command") << "quit" << 161 << "quit";
    QTest::newRow("unknown") << "frobnicate" << 162 << "not ex cmd";
    QTest::newRow("meta word") << ":for" << 162 << "not ex cmd";
    QTest::newRow("empty") << "" << 162 << "not ex cmd";
}

void TestCmdLine::exCmdTable()
{
    QFETCH(QString, word);
    QFETCH(int, id);
    QCOMPARE(int(exCmdId(word)), id);
    QTEST(exCmdText(id), "text");
    QCOMPARE(exCmdText(162), QStringLiteral("not ex cmd"));
    QCOMPARE(exCmdText(163), QStringLiteral("UnKnow ExCMD id"));
    QCOMPARE(exCmdText(-1), QStringLiteral("UnKnow ExCMD id"));
}

void TestCmdLine::metaTable_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<int>("id");
    QTest::newRow("for") << ":for" << 0;
    QTest::newRow("Next") << ":Next" << 1;
    QTest::newRow("echo") << ":ECHO" << 2;
    QTest::newRow("rem_start") << ":rem_start" << 3;
    QTest::newRow("rem_end") << ":Rem_End" << 4;
    QTest::newRow("END") << ":END" << 5;
    QTest::newRow("let") << ":let" << 6;
    QTest::newRow("no colon") << "for" << 7;
    QTest::newRow("prefix only") << ":fo" << 7;
}

void TestCmdLine::metaTable()
{
    QFETCH(QString, word);
    QTEST(int(metaCmdId(word)), "id");
}

void TestCmdLine::padded_data()
{
    QTest::addColumn<QString>("start");
    QTest::addColumn<qint64>("value");
    QTest::addColumn<QString>("expected");
    QTest::newRow("no zero") << "1" << qint64(12) << "12";
    QTest::newRow("single zero char") << "0" << qint64(5) << "5";
    QTest::newRow("001 -> 002") << "001" << qint64(2) << "002";
    QTest::newRow("001 -> 100") << "001" << qint64(100) << "100";
    // Longer than start: the whole of start stands in front, "08" + "100".
    QTest::newRow("08 -> 08100") << "08" << qint64(100) << "08100";
    QTest::newRow("0x keeps own chars") << "0ab" << qint64(7) << "0a7";
}

void TestCmdLine::padded()
{
    QFETCH(QString, start);
    QFETCH(qint64, value);
    QTEST(ForLoop::padded(start, value), "expected");
}

QTEST_APPLESS_MAIN(TestCmdLine)
#include "tst_cmdline.moc"
