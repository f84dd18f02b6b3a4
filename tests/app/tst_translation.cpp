// Every string a user can see has a finished Japanese translation. The
// strings are found here on their own, not by lupdate: the <string>s of the
// forms and the tr()/translate() calls of the sources, so that strings added
// later and not yet translated make this fail.
#include "app/Body.h"
#include "app/QtTranslation.h"

#include <QAbstractButton>
#include <QDir>
#include <QDirIterator>
#include <QGroupBox>
#include <QLabel>
#include <QRegularExpression>
#include <QTranslator>
#include <QXmlStreamReader>
#include <QtTest>

namespace {

struct Text {
    QString context, source;
};

// Enough for the literals of tr(): quotes are the one escape they use.
QString unescape(QString s)
{
    return s.replace(QLatin1String("\\\""), QLatin1String("\""));
}

// The context of a form's strings is its top-level class.
QVector<Text> formTexts(const QString &path)
{
    QFile f(path);
    QVector<Text> out;
    if (!f.open(QIODevice::ReadOnly))
        return out;
    QXmlStreamReader x(&f);
    QString context;
    while (!x.atEnd()) {
        if (x.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (x.name() == QLatin1String("class") && context.isEmpty()) {
            context = x.readElementText();
        } else if (x.name() == QLatin1String("string")) {
            const bool notr = x.attributes().value(QLatin1String("notr")) == QLatin1String("true");
            const QString s = x.readElementText();
            if (!notr && !s.isEmpty())
                out.append({context, s});
        }
    }
    return out;
}

// tr() takes the class of the function it stands in: the last definition
// "Class::member(" that starts a line before it.
QVector<Text> codeTexts(const QString &path)
{
    QFile f(path);
    QVector<Text> out;
    if (!f.open(QIODevice::ReadOnly))
        return out;
    const QString code = QString::fromUtf8(f.readAll());
    static const QString lit = QStringLiteral("\"((?:[^\"\\\\]|\\\\.)*)\"");
    static const QRegularExpression definition(QStringLiteral("^(?:[\\w:<>,*&]+[ \\t]+)*[*&]?(\\w+)::~?\\w+\\("),
                                               QRegularExpression::MultilineOption);
    static const QRegularExpression plainTr(QStringLiteral("(?<!::)\\b(?:tr|QT_TR_NOOP)\\(\\s*") + lit);
    static const QRegularExpression classTr(QStringLiteral("\\b(\\w+)::tr\\(\\s*") + lit);
    static const QRegularExpression withContext(
        QStringLiteral("\\b(?:translate|QT_TRANSLATE_NOOP)\\(\\s*\"(\\w+)\"\\s*,\\s*") + lit);
    for (auto it = plainTr.globalMatch(code); it.hasNext();) {
        const auto m = it.next();
        QString cls;
        for (auto d = definition.globalMatch(code.left(m.capturedStart())); d.hasNext();)
            cls = d.next().captured(1);
        out.append({cls, unescape(m.captured(1))});
    }
    for (const QRegularExpression *re : {&classTr, &withContext}) {
        for (auto it = re->globalMatch(code); it.hasNext();) {
            const auto m = it.next();
            out.append({m.captured(1), unescape(m.captured(2))});
        }
    }
    return out;
}

} // namespace

class TestTranslation : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void everyStringTranslated_data();
    void everyStringTranslated();
    void windowsShowNoEnglishPhrase();

private:
    QTranslator japanese;
};

void TestTranslation::initTestCase()
{
    QVERIFY2(japanese.load(QStringLiteral(":Tessarelle_ja_JP")), "the resource :Tessarelle_ja_JP is missing");
}

void TestTranslation::everyStringTranslated_data()
{
    QTest::addColumn<QStringList>("files");
    const QDir root(QStringLiteral(TESSARELLE_SOURCE_DIR));
    const QFileInfoList uis = QDir(root.filePath(QStringLiteral("forms"))).entryInfoList({QStringLiteral("*.ui")});
    QVERIFY(!uis.isEmpty());
    for (const QFileInfo &ui : uis)
        QTest::newRow(qPrintable(ui.fileName())) << QStringList{ui.filePath()};
    // the sources by folder
    const QFileInfoList dirs = QDir(root.filePath(QStringLiteral("src"))).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QFileInfo &d : dirs) {
        QStringList files;
        for (QDirIterator it(d.filePath(), {QStringLiteral("*.cpp"), QStringLiteral("*.h")}, QDir::Files,
                             QDirIterator::Subdirectories);
             it.hasNext();)
            files << it.next();
        QTest::newRow(qPrintable(QStringLiteral("src/") + d.fileName())) << files;
    }
}

void TestTranslation::everyStringTranslated()
{
    QFETCH(QStringList, files);
    QStringList missing;
    int found = 0;
    for (const QString &path : files) {
        const QVector<Text> texts = path.endsWith(QLatin1String(".ui")) ? formTexts(path) : codeTexts(path);
        found += texts.size();
        for (const Text &t : texts) {
            if (japanese.translate(qPrintable(t.context), qPrintable(t.source)).isEmpty())
                missing << QStringLiteral("%1 [%2] \"%3\"").arg(QFileInfo(path).fileName(), t.context, t.source);
        }
    }
    if (found == 0 && files.first().endsWith(QLatin1String(".ui")))
        QFAIL("a form without strings: the form reader found nothing");
    QVERIFY2(missing.isEmpty(), qPrintable(QStringLiteral("untranslated:\n") + missing.join(QLatin1Char('\n'))));
}

// Strings that never went through tr() stay English in the Japanese
// interface: no window of the program shows two English words in a row.
void TestTranslation::windowsShowNoEnglishPhrase()
{
    QVERIFY2(installQtJapanese(this), "Qt's own Japanese translation is missing (qt6-translations-l10n)");
    QCoreApplication::installTranslator(&japanese);
    Body b;
    static const QRegularExpression phrase(QStringLiteral("\\b[A-Za-z]{3,}\\s+[A-Za-z][A-Za-z0-9]+"));
    QStringList english;
    const auto check = [&](const QWidget *w, const QString &text) {
        if (phrase.match(text).hasMatch())
            english << QStringLiteral("%1 %2: \"%3\"").arg(w->metaObject()->className(), w->objectName(), text);
    };
    QList<QWidget *> all = b.findChildren<QWidget *>();
    all << &b;
    for (const QWidget *w : std::as_const(all)) {
        if (w->isWindow())
            check(w, w->windowTitle());
        check(w, w->toolTip());
        if (auto *l = qobject_cast<const QLabel *>(w))
            check(w, l->text());
        else if (auto *bt = qobject_cast<const QAbstractButton *>(w))
            check(w, bt->text());
        else if (auto *g = qobject_cast<const QGroupBox *>(w))
            check(w, g->title());
    }
    QCoreApplication::removeTranslator(&japanese);
    QVERIFY2(english.isEmpty(), qPrintable(english.join(QLatin1Char('\n'))));
}

QTEST_MAIN(TestTranslation)
#include "tst_translation.moc"
