#include "app/LineItems.h"

#include <QtTest>

class TestLineItems : public QObject
{
    Q_OBJECT
private slots:
    void stripComment_data();
    void stripComment();
    void splitFirstItem_data();
    void splitFirstItem();
    void splitLogsMalformedQuotes_data();
    void splitLogsMalformedQuotes();
};

void TestLineItems::stripComment_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("comment");
    QTest::newRow("no comment") << "KEY value" << "KEY value" << "";
    QTest::newRow("plain comment") << "KEY v # note" << "KEY v " << " note";
    QTest::newRow("hash in double quotes") << "KEY \"a # b\"" << "KEY \"a # b\"" << "";
    QTest::newRow("hash in single quotes") << "KEY 'a # b' # c" << "KEY 'a # b' " << " c";
    // a lone apostrophe opens the shared quote state for the rest of the line
    QTest::newRow("lone apostrophe") << "KEY it's # not a comment" << "KEY it's # not a comment" << "";
    // the two quote kinds share one flag: ' opens, " closes
    QTest::newRow("mixed quotes share a flag") << "a 'b\" # c" << "a 'b\" " << " c";
    QTest::newRow("only comment") << "# all" << "" << " all";
    QTest::newRow("first hash wins") << "a#b#c" << "a" << "b#c";
}

void TestLineItems::stripComment()
{
    QFETCH(QString, line);
    QFETCH(QString, text);
    QFETCH(QString, comment);
    QString got;
    QCOMPARE(::stripComment(line, &got), text);
    QCOMPARE(got, comment);
    QCOMPARE(::isBlankLine(line), text.simplified().isEmpty());
}

void TestLineItems::splitFirstItem_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("item");
    QTest::addColumn<QString>("rest");
    QTest::newRow("empty") << "" << "" << "";
    QTest::newRow("blanks only") << " \t " << "" << "";
    QTest::newRow("single word") << "abc" << "abc" << "";
    QTest::newRow("leading blanks") << "  abc def" << "abc" << " def";
    QTest::newRow("rest keeps separator") << "batch :for i 1 10" << "batch" << " :for i 1 10";
    QTest::newRow("quoted with blanks") << "\"a b\" c" << "a b" << " c";
    QTest::newRow("quoted glued to next") << "\"a b\"c d" << "a b" << "c d";
    QTest::newRow("unterminated quote") << "\"abc def" << "abc def" << "";
    QTest::newRow("ended by quote at end") << "abc\"" << "abc\"" << "";
    QTest::newRow("ended by quote mid") << "abc\" d" << "abc\"" << " d";
    QTest::newRow("quote inside word") << "a\"b c" << "a\"b" << " c";
    QTest::newRow("empty quotes") << "\"\" x" << "" << " x";
    QTest::newRow("tab separates") << "a\tb" << "a" << "\tb";
}

void TestLineItems::splitFirstItem()
{
    QFETCH(QString, line);
    QFETCH(QString, item);
    QFETCH(QString, rest);
    QString got = "garbage";
    QCOMPARE(::splitFirstItem(line, &got), rest);
    QCOMPARE(got, item);
}

void TestLineItems::splitLogsMalformedQuotes_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("message");
    QTest::newRow("open only") << " \"abc"
                               << "In a line [ \"abc] item is started from quote but not ended by quote";
    QTest::newRow("close at end") << "abc\""
                                  << "In a line [abc\"] item is started from not quote but ended by quote";
    QTest::newRow("close mid") << "ab\" c"
                               << "In a line [ab\" c] item is started from not quote but ended by quote";
}

void TestLineItems::splitLogsMalformedQuotes()
{
    QFETCH(QString, line);
    QFETCH(QString, message);
    QString item;
    QTest::ignoreMessage(QtDebugMsg, message.toUtf8().constData());
    ::splitFirstItem(line, &item);
}

QTEST_GUILESS_MAIN(TestLineItems)
#include "tst_lineitems.moc"
