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
    void cmdTables_data();
    void cmdTables();
    void padded_data();
    void padded();
};

// tokens: the command word and its arguments joined with '|'; none for an invalid line
void TestCmdLine::parse_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("tokens");
    QTest::newRow("empty") << "" << "" << "";
    QTest::newRow("comment only") << " \t # :echo x" << "" << "";
    // Behind a command word '#' is no comment: it and the words after it are arguments.
    QTest::newRow("hash behind word") << "load_I1_files a b # note" << "load_I1_files a b " << "load_I1_files|a|b|#|note";
    QTest::newRow("hash glued") << "cmd a#b" << "cmd a" << "cmd|a#b";
    QTest::newRow("simplified") << "  set_band_w \t 12   " << "set_band_w 12" << "set_band_w|12";
    QTest::newRow("quoted keeps blanks") << "save_image \"my  file.tif\" x" << "save_image \"my file.tif\" x"
                                         << "save_image|my  file.tif|x";
    // The scanner resumes directly behind the closing quote.
    QTest::newRow("glued after quote") << "cmd \"a b\"c" << "cmd \"a b\"c" << "cmd|a b|c";
    QTest::newRow("inner quote ordinary") << "cmd ab\"cd x" << "cmd ab\"cd x" << "cmd|ab\"cd|x";
    QTest::newRow("unclosed quote") << "cmd \"rest of  line" << "cmd \"rest of line" << "cmd|rest of  line";
    QTest::newRow("ends with quote") << "cmd abc\"" << "cmd abc\"" << "cmd|abc\"";
    QTest::newRow("empty quotes dropped") << "cmd \"\" x" << "cmd \"\" x" << "cmd|x";
    QTest::newRow("meta upper") << ":FOR i $i$ 1 3" << ":FOR i $i$ 1 3" << ":FOR|i|$i$|1|3";
    QTest::newRow("quoted hash word") << "\"#w\" x" << "\"" << "#w|x";
}

void TestCmdLine::parse()
{
    QFETCH(QString, text);
    QFETCH(QString, tokens);
    const CmdLine c = CmdLine::parse(text);
    QCOMPARE(c.raw, text);
    QTEST(c.line, "line");
    QCOMPARE(c.valid, !tokens.isEmpty());
    QCOMPARE(c.isMeta, tokens.startsWith(':'));
    QCOMPARE(c.valid ? QStringList(c.cmd) + c.args : QStringList(), tokens.split('|', Qt::SkipEmptyParts));
}

// lines joined with '|'; gathering starts at line start and ends on line last
void TestCmdLine::gather_data()
{
    QTest::addColumn<QString>("lines");
    QTest::addColumn<int>("start");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("last");
    QTest::newRow("blanks behind backslash") << "a\\ \t |b" << 0 << "ab" << 1;
    QTest::newRow("word behind backslash") << "a\\b|c" << 0 << "a\\b" << 0;
    QTest::newRow("three lines") << "x|a\\|b \\|c|d" << 1 << "ab c" << 3;
    QTest::newRow("last line keeps backslash") << "a\\|b\\" << 0 << "ab\\" << 1;
    QTest::newRow("blank line no continuation") << "   |b" << 0 << "   " << 0;
    QTest::newRow("lone backslash") << "\\|b" << 0 << "b" << 1;
    QTest::newRow("out of range") << "a" << 3 << "" << 3;
}

void TestCmdLine::gather()
{
    QFETCH(QString, lines);
    QFETCH(int, start);
    int index = start;
    QTEST(CmdLine::gather(lines.split('|'), &index), "text");
    QTEST(index, "last");
}

// Every word goes through both tables: text is the command as the table spells it.
void TestCmdLine::cmdTables_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<int>("id");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("meta");
    const QString no = "not ex cmd";
    QTest::newRow("first") << "clear_I1_files" << 0 << "clear_I1_files" << 7;
    QTest::newRow("any case") << "ANALYZER_SHOW_WINDOW" << 79 << "analyzer_show_window" << 7;
    QTest::newRow("capitals in table") << "use_i0" << 8 << "Use_I0" << 7;
    QTest::newRow("end of first group") << "suggesting_post_start_ev" << 47 << "Suggesting_Post_Start_eV" << 7;
    QTest::newRow("dark area group") << "set_i0_dark_area" << 48 << "set_i0_dark_area" << 7;
    QTest::newRow("misspelt view") << "xafs_view_enerugy_correction" << 78 << "xafs_view_enerugy_correction" << 7;
    QTest::newRow("misspelt analyzer") << "analzyer_dEdge_comp_w_file" << 106 << "analzyer_dEdge_comp_w_file" << 7;
    QTest::newRow("correct spelling unknown") << "analyzer_dEdge_comp_w_file" << 162 << no << 7;
    QTest::newRow("sumUp") << "analyzer_select_main_mode_sumup" << 88 << "analyzer_select_main_mode_sumUp" << 7;
    QTest::newRow("save cfg last") << "saveDataCfg_text_as_vals" << 160 << "saveDataCfg_text_as_vals" << 7;
    QTest::newRow("last command") << "quit" << 161 << "quit" << 7;
    QTest::newRow("after the sentinel") << "LOAD_I1_H5" << 163 << "load_I1_h5" << 7;
    QTest::newRow("last word") << "load_i0_h5" << 164 << "load_I0_h5" << 7;
    QTest::newRow("unknown") << "frobnicate" << 162 << no << 7;
    QTest::newRow("empty") << "" << 162 << no << 7;
    QTest::newRow("for") << ":for" << 162 << no << 0;
    QTest::newRow("Next") << ":Next" << 162 << no << 1;
    QTest::newRow("echo") << ":ECHO" << 162 << no << 2;
    QTest::newRow("rem_start") << ":rem_start" << 162 << no << 3;
    QTest::newRow("rem_end") << ":Rem_End" << 162 << no << 4;
    QTest::newRow("END") << ":END" << 162 << no << 5;
    QTest::newRow("let") << ":let" << 162 << no << 6;
    QTest::newRow("meta without colon") << "for" << 162 << no << 7;
    QTest::newRow("meta prefix only") << ":fo" << 162 << no << 7;
}

void TestCmdLine::cmdTables()
{
    QFETCH(QString, word);
    QFETCH(int, id);
    QCOMPARE(int(exCmdId(word)), id);
    QTEST(exCmdText(id), "text");
    QTEST(int(metaCmdId(word)), "meta");
    QCOMPARE(exCmdText(165), QStringLiteral("UnKnow ExCMD id"));
    QCOMPARE(exCmdText(-1), QStringLiteral("UnKnow ExCMD id"));
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
