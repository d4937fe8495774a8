// What finding and naming the objects of a large program costs, from within it: beside reading the same
// properties of the same widgets directly.

#include "measure.h"

#include "objectmodel/inspector.h"
#include "qtnames.h"
#include "qtsetup.h"
#include "qtstillness.h"

#include <QApplication>
#include <QMetaProperty>
#include <QPushButton>
#include <QWidget>

#include <memory>

namespace {

using namespace Bench;
using namespace Vorkel;

constexpr int Rounds = 15;
constexpr int Widgets = 10'000;
constexpr int Sizes[] = { 1'000, 10'000, 100'000 };
constexpr int CachedLookups = 100'000;
constexpr double CandidateLimit = 2;
constexpr double CachedLimitMicroseconds = 1;
constexpr double NameLimitMicroseconds = 20;
constexpr double GrowthLimit = 5; // caches end somewhere; what is not linear would be a hundred
constexpr int PerBox = 100;

const QString Shared = QStringLiteral("shared");
qsizetype sink = 0;

/// A window with so many buttons, a hundred in each of its boxes.
std::unique_ptr<QWidget> makeWindow(int buttons)
{
    auto window = std::make_unique<QWidget>();
    window->setObjectName(QStringLiteral("window"));
    QWidget *box = nullptr;
    for (int i = 0; i < buttons; ++i) {
        if (i % PerBox == 0)
            box = new QWidget(window.get());
        auto *button = new QPushButton(QStringLiteral("Button %1").arg(i), box);
        button->setAccessibleName(Shared);
    }
    return window;
}

/// Looks at each candidate as the name of `measureFinding` demands it; gives how many there are.
int readDirectly(const QObject *object, const QMetaProperty &first, const QMetaProperty &second,
                 const QString &text)
{
    int candidates = 0;
    for (const QObject *child : object->children()) {
        candidates += readDirectly(child, first, second, text);
        if (!qobject_cast<const QPushButton *>(child))
            continue;
        ++candidates;
        if (first.read(child).toString() == Shared && second.read(child).toString() == text)
            ++sink;
    }
    return candidates;
}

void measureFinding()
{
    const auto window = makeWindow(Widgets);
    const QString last = QStringLiteral("Button %1").arg(Widgets - 1);
    const QString name = QStringLiteral("{accessibleName='%1' text='%2'}").arg(Shared, last);
    const QMetaObject &metaObject = QPushButton::staticMetaObject;
    const QMetaProperty first = metaObject.property(metaObject.indexOfProperty("accessibleName"));
    const QMetaProperty second = metaObject.property(metaObject.indexOfProperty("text"));
    const auto microseconds = [](int times, const std::function<void()> &work) {
        return seconds([&] {
                   for (int i = 0; i < times; ++i)
                       work();
               })
                * 1e6 / times;
    };
    const auto find = [&](const QString &sought) {
        if (!Inspector::self()->findObject(sought))
            std::fprintf(stderr, "%s\n", qPrintable(Inspector::self()->lastError()));
    };
    const std::vector<Samples> samples = alternate(
            Rounds,
            { [&] {
                 return microseconds(1, [&] { sink += readDirectly(window.get(), first, second, last); });
             },
              [&] {
                  find(QStringLiteral("window")); // what was found last is kept
                  return microseconds(1, [&] { find(name); });
              },
              [&] {
                  find(name);
                  return microseconds(CachedLookups, [&] { find(name); });
              } });
    Table table({ "Find one of 10,000 widgets by two properties", "us", "ns per candidate", "ratio" });
    const char *const titles[] = { "(a) read the two properties of each", "findObject",
                                   "findObject, the same again" };
    for (std::size_t i = 0; i < samples.size(); ++i)
        table.add({ titles[i], number(samples[i].median(), 2),
                    number(samples[i].median() * 1000 / Widgets, 1),
                    number(samples[i].ratioTo(samples[0]), 3) });
    table.print();
    printTarget("findObject / direct", samples[1].ratioTo(samples[0]), CandidateLimit, 2);
    printTarget("found again (us)", samples[2].median(), CachedLimitMicroseconds, 2);
}

/// Microseconds for the name of each button, made one after the other.
double nameAll(QWidget *window)
{
    const QList<QPushButton *> buttons = window->findChildren<QPushButton *>();
    QtStillness::self()->disturb();
    const double time = seconds([&] {
        for (QPushButton *button : buttons)
            sink += QtNames::realName(button).size();
    });
    return time * 1e6 / static_cast<double>(buttons.size());
}

void measureNaming()
{
    Table table({ "Make the real name of every button", "distinct (us)", "all alike (us)" });
    double base = 0;
    double at10000 = 0;
    double growth = 0;
    for (const int size : Sizes) {
        const auto window = makeWindow(size);
        const Samples distinct = alternate(3, { [&] { return nameAll(window.get()); } }).front();
        for (QPushButton *button : window->findChildren<QPushButton *>())
            button->setText(QStringLiteral("Alike"));
        const Samples alike = alternate(3, { [&] { return nameAll(window.get()); } }).front();
        table.add({ std::to_string(size), number(distinct.median(), 2), number(alike.median(), 2) });
        const double worst = std::max(distinct.median(), alike.median());
        base = base == 0 ? worst : base;
        growth = worst / base;
        at10000 = size == Widgets ? worst : at10000;
    }
    table.print();
    printTarget("a name among 10,000 (us)", at10000, NameLimitMicroseconds, 2);
    printTarget("among 100,000 / among 1,000", growth, GrowthLimit, 2);
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    pinTo(cores().back());
    setUpQtObjectModel();
    measureFinding();
    measureNaming();
    return sink == -1;
}
