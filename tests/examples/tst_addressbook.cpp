#include "runningprogram.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace Vorkel::Runner;

// A program with Qt's widgets that knows nothing of tests.

namespace {

const QString form = u"MainWindow.QWidget.ContactForm."_s;

} // namespace

class tst_addressbook : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void addsContact();
    void hasOneObjectForEachWidget();

private:
    std::unique_ptr<RunningProgram> m_book;
};

void tst_addressbook::initTestCase()
{
    m_book = std::make_unique<RunningProgram>();
    QVERIFY(m_book->start(u"vorkel-example"_s));
}

void tst_addressbook::addsContact()
{
    const ObjectHandle name = m_book->find(form + u"nameEdit"_s);
    const ObjectHandle age = m_book->find(form + u"ageSpin"_s);
    QCOMPARE(m_book->objects().setProperty(name, u"text"_s, u"Linus"_s).text, QString());
    QCOMPARE(m_book->objects().setProperty(age, u"value"_s, 54).text, QString());
    QCOMPARE(m_book->refusal(m_book->find(form + u"QPushButton"_s), u"click"_s), QString());
    // The form has submitted that and starts anew.
    QString shown;
    QCOMPARE(m_book->objects().getProperty(name, u"text"_s, &shown).text, QString());
    QCOMPARE(shown, QString());
    QCOMPARE(m_book->objects().getProperty(age, u"value"_s, &shown).text, QString());
    QCOMPARE(shown, u"0"_s);
}

/// What stands for a widget without hearing of its end would be used after that.
void tst_addressbook::hasOneObjectForEachWidget()
{
    const ObjectHandle name = m_book->find(form + u"nameEdit"_s);
    const QString text = u"%1,%2"_s.arg(name.id).arg(name.classId);
    QCOMPARE(m_book->find(form + u"nameEdit"_s).id, name.id);
    QCOMPARE(m_book->call(u"objectReference"_s, { name.id }), text);
    QCOMPARE(m_book->call(u"objectDereference"_s, { name.id }), text);
}

QTEST_GUILESS_MAIN(tst_addressbook)
#include "tst_addressbook.moc"
