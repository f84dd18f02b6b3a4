#include "network/AMsg.h"
#include "network/StarsCmdTable.h"
#include "network/StarsKeys.h"
#include "network/StarsLineBuffer.h"

#include <QtTest>

// The message-server protocol without a socket: lines taken apart, the key
// a challenge picks, a byte stream cut into lines, the remote commands.
class TestStarsProto : public QObject
{
    Q_OBJECT
private slots:
    void parse_data();
    void parse();
    void keys_data();
    void keys();
    void lineBuffer_data();
    void lineBuffer();
    void reply_data();
    void reply();
};

void TestStarsProto::parse_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("expected"); // ok type fromFull/name/ch toFull/name/ch cmd [params] rest

    QTest::newRow("ask") << "Dev>Me Hello" << "1 2 Dev/Dev/ Me/Me/ Hello [] ";
    QTest::newRow("answer, channels") << "Dev.c>Me.x @IsBusy 0\r\n" << "1 0 Dev.c/Dev/c Me.x/Me/x IsBusy [0] 0";
    QTest::newRow("event") << "Dev>System _Saved a b" << "1 1 Dev/Dev/ System/System/ Saved [a,b] a b";
    QTest::newRow("channel after the first dot") << "a.b.c>me Hello" << "1 2 a.b.c/a/b.c me/me/ Hello [] ";
    QTest::newRow("quotes") << "D>M Help \"x  y\" \"\" z" << "1 2 D/D/ M/M/ Help [x  y,z] \"x  y\" \"\" z";
    QTest::newRow("open quote") << "D>M cmd \"a b" << "1 2 D/D/ M/M/ cmd [a b] \"a b";
    QTest::newRow("first > splits") << "a>b>c x" << "1 2 a/a/ b>c/b>c/ x [] ";
    QTest::newRow("empty sender") << ">M x" << "1 2 // M/M/ x [] ";
    QTest::newRow("nothing behind") << "from>to" << "0 3 // //  [] ";
    QTest::newRow("blanks behind") << "from>to  \t " << "0 3 // //  [] ";
    QTest::newRow("no >") << "hello there" << "0 3 // //  [] ";
    QTest::newRow("empty") << "" << "0 3 // //  [] ";
    QTest::newRow("control bytes") << QString::fromLatin1("\x01\xff>\x02 \x7f")
                                   << QString::fromLatin1("1 2 \x01\xff/\x01\xff/ \x02/\x02/ \x7f [] ");
    // A megabyte as one token, and as half a million parameters.
    QTest::newRow("1 MB token") << "D>M " + QString(1 << 20, 'x') << "1 2 D/D/ M/M/ LONG [] ";
    QTest::newRow("1 MB of parameters") << "D>M p " + QString("a ").repeated(1 << 19)
                                        << "1 2 D/D/ M/M/ p [524288] LONG";
}

void TestStarsProto::parse()
{
    QFETCH(QString, line);
    QFETCH(QString, expected);
    AMsg m = AMsg::parse(line);
    QCOMPARE(m.raw, QString(line).remove('\r').remove('\n'));
    QCOMPARE(m.param1, m.params.value(0));
    for (QString *f : {&m.cmd, &m.rest})
        if (f->size() > 1000)
            *f = "LONG";
    if (m.params.size() > 1000 && m.params.count("a") == m.params.size())
        m.params = QStringList{QString::number(m.params.size())};
    const QString got = QStringLiteral("%1 %2 %3/%4/%5 %6/%7/%8 %9 [%10] %11")
                            .arg(m.ok)
                            .arg(m.type)
                            .arg(m.fromFull, m.fromName, m.fromCh, m.toFull, m.toName, m.toCh, m.cmd,
                                 m.params.join(','), m.rest);
    QCOMPARE(got, expected);
}

void TestStarsProto::keys_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("challenge");
    QTest::addColumn<QString>("expected"); // "-" for no key

    QTest::newRow("4 keys, 10 picks index 2") << QByteArray("k0\nk1\nk2\nk3\n") << "10" << "k2";
    QTest::newRow("last line without LF") << QByteArray("k0\nk1\nk2") << "9999" << "k0"; // 9999 = 3 * 3333
    QTest::newRow("blank line is a key") << QByteArray("k0\n\nk2\n") << "4" << "";
    QTest::newRow("CRLF, blanks simplified") << QByteArray("k0\r\n  a \t b \r\n") << "1" << "a b";
    QTest::newRow("not a number is 0") << QByteArray("k0\nk1\n") << "Bad host. x" << "k0";
    QTest::newRow("blanks around the number") << QByteArray("k0\nk1\n") << " 7\r" << "k1";
    QTest::newRow("negative") << QByteArray("k0\nk1\nk2\n") << "-1" << "k2";
    QTest::newRow("beyond int") << QByteArray("k0\nk1\nk2\n") << "10000000000" << "k1"; // 3 * 3333333333 + 1
    QTest::newRow("empty file") << QByteArray() << "5" << "-";
    QTest::newRow("a lone LF is one key") << QByteArray("\n") << "5" << "";
}

void TestStarsProto::keys()
{
    QFETCH(QByteArray, file);
    QFETCH(QString, challenge);
    QFETCH(QString, expected);
    QTemporaryDir dir;
    QFile f(dir.filePath("k.key"));
    QVERIFY(f.open(QIODevice::WriteOnly) && f.write(file) == file.size());
    f.close();
    const QStringList keys = StarsKeys::read(f.fileName());
    const int i = StarsKeys::indexFor(challenge, int(keys.size()));
    QCOMPARE(i < 0 ? QString("-") : keys.at(i), expected);
}

void TestStarsProto::lineBuffer_data()
{
    QTest::addColumn<QByteArrayList>("chunks");
    QTest::addColumn<QString>("lines"); // joined by '|'
    QTest::addColumn<int>("dropped");

    // The limit is 8 bytes here.
    QTest::newRow("two in one chunk") << QByteArrayList{"a\nbb\r\n"} << "a|bb\r" << 0;
    QTest::newRow("split over chunks") << QByteArrayList{"ab", "c", "d\ne", "f\n"} << "abcd|ef" << 0;
    QTest::newRow("empty lines") << QByteArrayList{"\n\nx\n"} << "||x" << 0;
    QTest::newRow("exactly the limit") << QByteArrayList{"12345678\n"} << "12345678" << 0;
    QTest::newRow("long line") << QByteArrayList{"123456789\nok\n"} << "ok" << 1;
    QTest::newRow("long line, its end later") << QByteArrayList{"12345", "6789", "abcdefgh", "ij\nok\n"} << "ok" << 1;
    QTest::newRow("part line waits") << QByteArrayList{"x\nyz"} << "x" << 0;
}

void TestStarsProto::lineBuffer()
{
    QFETCH(QByteArrayList, chunks);
    QFETCH(QString, lines);
    QFETCH(int, dropped);
    StarsLineBuffer b(8);
    QByteArrayList got;
    for (const QByteArray &c : chunks) {
        got << b.feed(c);
        QVERIFY(b.pending() <= 8);
    }
    QCOMPARE(QString::fromLatin1(got.join('|')), lines);
    QCOMPARE(int(b.dropped()), dropped);

    // A megabyte without a line feed at the real limit holds nothing.
    StarsLineBuffer big;
    QVERIFY(big.feed(QByteArray(1 << 20, 'x')).isEmpty() && big.pending() == 0);
    QCOMPARE(big.feed("\nD>M Hello\n"), QByteArrayList{"D>M Hello"});
}

void TestStarsProto::reply_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<bool>("busy");
    QTest::addColumn<QString>("expected"); // "answer: <text>", or the kind handed on

    const QString hello("answer: Hello! I am Me. Nice to meet you!");
    QTest::newRow("Hello") << "Dev>Me Hello" << false << hello;
    QTest::newRow("IsBusy") << "Dev.c>Me.x IsBusy" << false << "answer: 0";
    QTest::newRow("IsBusy, busy") << "Dev>Me IsBusy" << true << "answer: 1";
    QTest::newRow("Help") << "Dev>Me Help" << false << "answer: Commands : Hello Help IsBusy";
    QTest::newRow("Help IsBusy") << "Dev>Me Help IsBusy x" << false << "answer: : Answer if kVerno is busy";
    QTest::newRow("Help Nope") << "Dev>Me Help Nope" << false << "answer: Er: Command [Nope] not found.";
    // The type is not looked at for a command of the table.
    QTest::newRow("event Hello") << "Dev>Me _Hello" << false << hello;
    QTest::newRow("answer Hello") << "Dev>Me @Hello x" << false << hello;
    QTest::newRow("other") << "Dev>Me Other" << false << "ask";
    QTest::newRow("lower case") << "Dev>Me hello" << false << "ask";
    QTest::newRow("other event") << "Dev>System _Saved f" << false << "event";
    QTest::newRow("other answer") << "Dev>Me @Other 1" << false << "answer of another";
}

void TestStarsProto::reply()
{
    QFETCH(QString, line);
    QFETCH(bool, busy);
    QFETCH(QString, expected);
    StarsCmdTable t = StarsCmdTable::standard();
    const AMsg m = AMsg::parse(line);
    const StarsCmdTable::Reply r = t.reply(m, "Me", busy);
    const char *kinds[] = {"answer: ", "ask", "event", "answer of another"};
    QCOMPARE(kinds[r.kind] + r.text, expected);
    QCOMPARE(StarsCmdTable::paramCountError(m, 1).isEmpty(), m.params.size() == 1);

    // Doubles are refused; events and answers are left out of the help.
    QVERIFY(!t.add(2, "Other", "") && !t.add(7, "Help", "") && t.add(7, "_Ev", "") && t.add(8, "@An", ""));
    QCOMPARE(t.idOf("Other"), int(StarsCmdTable::Unknown));
    QCOMPARE(t.helpText(), QString("Commands : Hello Help IsBusy"));
}

QTEST_GUILESS_MAIN(TestStarsProto)
#include "tst_starsproto.moc"
