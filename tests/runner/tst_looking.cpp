#include "classrecords.h"
#include "objectmodel/class.h"
#include "objectmodel/inspector.h"
#include "support/childprocess.h"

#include <QDataStream>
#include <QIODevice>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;
using Vorkel::Runner::ClassRecords;

// The commands that look at a program's objects and change them, on the example program, and the reader of
// what a program says of its classes.

namespace {

Outcome run(const QStringList &words)
{
    ChildProcess process;
    const QString here = QCoreApplication::applicationDirPath();
    process.launch(here + u"/../bin/vorkel"_s,
                   words + QStringList { u"--"_s, here + u"/../bin/vorkel-example"_s }, {});
    return process.outcome();
}

/// The path of the object called `name` in a tree; empty when there is none.
QString pathTo(const QString &name, const QJsonArray &nodes)
{
    for (const auto &node : nodes) {
        const QString own = node[u"name"].toString();
        const QString below = pathTo(name, node[u"children"].toArray());
        if (own == name || !below.isEmpty())
            return own == name ? own : own + u'.' + below;
    }
    return QString();
}

} // namespace

class tst_looking : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        const Outcome outcome = run({ u"tree"_s, u"--json"_s });
        QCOMPARE(outcome.code, 0);
        const QJsonArray nodes = QJsonDocument::fromJson(outcome.out.toUtf8()).array();
        m_edit = pathTo(u"nameEdit"_s, nodes);
        m_window = m_edit.section(u'.', 0, 0);
        QVERIFY(m_edit.count(u'.') >= 2 && !pathTo(u"contacts"_s, nodes).isEmpty());
    }

    void obeys_data()
    {
        QTest::addColumn<QStringList>("words");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("out");
        QTest::addColumn<QString>("err");
        const auto row = [](const char *words, int code, const QString &out, const QString &err = u""_s) {
            QTest::newRow(words) << QString::fromLatin1(words).split(u' ') << code << out << err;
        };
        // clang-format off
        row("tree --depth 1",                  0, u"MainWindow : MainWindow  \\{type='MainWindow'\\}\n"_s);
        row("find {name='nameEdit'}",          0, u"\\{name='nameEdit' type='QLineEdit' window=\\{type='MainWindow'\\}\\}\n.*    maxLength +32767\n.*"_s);
        row("find --wait 0 {name='nobody'}",   1, u""_s, u"vorkel: Object '\\{name='nobody'\\}' not found\\.\n"_s);
        row("find --wait 0 :nobody",           1, u""_s, u"vorkel: Object ':nobody' not found\\. Object name not found in Object Map\\.\n"_s);
        row("find --wait 9999 {name=}",        1, u""_s, u"vorkel: Cannot find object with invalid object name: .* at column 7: .*\n"_s);
        row("find --map /nowhere x",           2, u""_s, u"vorkel: cannot read the object map '/nowhere': .*\n"_s);
        row("names",                           0, u".*:nameEdit_QLineEdit\t\\{name='nameEdit' type='QLineEdit' window=':_MainWindow'\\}\n.*"_s);
        row("names --audit",                   0, u".*known by its text.*call setObjectName\\(\"addPushButton\"\\) on it\n.* of \\d+ objects lack a lasting name\n"_s);
        row("screenshot",                      2, u""_s, u"vorkel: say by -o where to write the picture\n"_s);
        row("screenshot -o /proc/x.png",       1, u""_s, u"vorkel: the picture cannot be written to '/proc/x.png'\n"_s);
        row("classes --depth 1",               0, u".*\nQWidget : QObject\n.*    read-only   bool modal\n.*    method      bool close\\(\\)\n.*"_s);
        row("classes --depth 1 --json",        0, uR"(\[.*"name": "char".*)"_s);
        row("get WINDOW windowTitle",          0, u"Address Book\n"_s);
        row("get --json WINDOW windowTitle",   0, u"\"Address Book\"\n"_s);
        row("get WINDOW windowModality",       0, u"NonModal\n"_s);
        row("get WINDOW windowTitel",          1, u""_s, u"vorkel: MainWindow has no property 'windowTitel'; did you mean 'windowTitle'\\?\n"_s);
        row("get --wait 0 WINDOW.nobody text", 1, u""_s, u"vorkel: Object 'MainWindow.nobody' not found\\.\n    Could not find child 'nobody' under 'MainWindow'\n"_s);
        row("get WINDOW",                      2, u""_s, u"vorkel: 'get' takes NAME PROPERTY before '--'.*\n"_s);
        row("set EDIT text two",               0, u" -> two\n"_s);
        row("set EDIT text 12.50",             0, u" -> 12.5\n"_s);
        row("set --json EDIT maxLength 7",     0, u"\"7\"\n"_s);
        row("set EDIT echoMode Password",      0, u"Normal -> Password\n"_s);
        row("set EDIT echoMode Loud",          1, u""_s, u"vorkel: Property echoMode of QLineEdit takes a QLineEdit::EchoMode, not 'Loud'\n"_s);
        row("set EDIT displayText x",          1, u""_s, u"vorkel: property 'displayText' of QLineEdit is read-only\n"_s);
        row("invoke EDIT setText(\"x\")",      0, u""_s);
        row("invoke EDIT setText",             1, u""_s, u"vorkel: no overload of 'setText' of QLineEdit took the call:\n  void setText\\(char \\*.*\\)\n"_s);
        row("invoke EDIT setMaxLength(1)",     1, u""_s, u"vorkel: QLineEdit has no method 'setMaxLength'.*\n"_s);
        row("invoke EDIT setText(x)",          2, u""_s, u"vorkel: the arguments of 'setText\\(x\\)' are no JSON: .*\n"_s);
        // clang-format on
    }

    void obeys()
    {
        QFETCH(QStringList, words);
        QFETCH(const QString, out);
        QFETCH(const QString, err);
        const Outcome outcome =
                run(words.replaceInStrings(u"EDIT"_s, m_edit).replaceInStrings(u"WINDOW"_s, m_window));
        const auto matches = [](const QString &pattern, const QString &text) {
            return QRegularExpression(QRegularExpression::anchoredPattern(pattern),
                                      QRegularExpression::DotMatchesEverythingOption)
                    .match(text)
                    .hasMatch();
        };
        QVERIFY2(matches(out, outcome.out), qPrintable(outcome.out));
        QVERIFY2(matches(err, outcome.err), qPrintable(outcome.err));
        QTEST(outcome.code, "code");
    }

    // A map that the command wrote gives it the names.
    void usesObjectMap()
    {
        QTemporaryDir folder;
        const QString map = folder.filePath(u"app.map"_s);
        QCOMPARE(run({ u"names"_s, u"-o"_s, map }).code, 0);
        const QStringList get { u"get"_s, u"--map"_s, map, u":Add_QPushButton"_s, u"text"_s };
        QCOMPARE(run(get).out, u"&Add\n"_s);
        QVERIFY(run({ u"tree"_s, u"--map"_s, map }).out.contains(u" : QPushButton  :Add_QPushButton\n"_s));
        // Nothing is new, so nothing changes.
        QFile file(map);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(run({ u"names"_s, u"--map"_s, map }).out.toUtf8(), file.readAll());
    }

    void takesPicture()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"new/picture.png"_s);
        const Outcome outcome = run({ u"screenshot"_s, u"-o"_s, path });
        QVERIFY2(outcome.out.endsWith(u"pixels\n"_s), qPrintable(outcome.err));
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(file.read(8).startsWith("\x89PNG"));
    }

    // What a program says of its classes may end anywhere, and say anything.
    void readsWhateverComes()
    {
        QByteArray whole;
        QDataStream stream(&whole, QIODevice::WriteOnly);
        stream.setVersion(QDataStream::Qt_2_1);
        QList<qsizetype> ends { 0 };
        const auto *inspector = Vorkel::Inspector::self();
        for (int id = 0; id < inspector->numClasses(); ++id) {
            inspector->type(id)->writeObject(stream);
            ends << whole.size();
        }
        for (qsizetype length = 0; length <= whole.size(); ++length) {
            const auto records = ClassRecords::parse(whole.first(length));
            const qsizetype read = std::upper_bound(ends.begin(), ends.end(), length) - ends.begin() - 1;
            QCOMPARE(records.isOk(), ends.contains(length));
            if (records.isOk())
                QCOMPARE(static_cast<qsizetype>(records.value().classes().size()), read);
            else
                QVERIFY(records.error().startsWith(u"the program's class number %1 ("_s.arg(read)));
        }
        for (qsizetype place = 0; place < whole.size(); ++place) {
            QByteArray changed = whole;
            changed[place] = '\x7f';
            (void)ClassRecords::parse(changed);
        }
    }

private:
    QString m_edit;
    QString m_window;
};

QTEST_GUILESS_MAIN(tst_looking)
#include "tst_looking.moc"
