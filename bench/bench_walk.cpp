// What it costs to walk through the objects of a program from within, to name them and to read five
// properties of each: through the object model and its wrapper for Qt, beside the same written on QObject
// and QMetaProperty.

#include "blockingrunner.h"
#include "measure.h"
#include "processes.h"
#include "walkitem.h"

#include "objectmodel/class.h"
#include "objectmodel/inspector.h"
#include "objectmodel/object.h"
#include "objectmodel/property.h"

#include <QCoreApplication>
#include <QHash>
#include <QMetaProperty>

#include <cstdlib>
#include <limits>

#include <dlfcn.h>

namespace {

using namespace Bench;
using namespace Vorkel;

constexpr int Sizes[] = { 1'000, 10'000, 100'000 };
constexpr int ItemsPerSample = 100'000;
constexpr double Limit = 3;
constexpr double GrowthLimit = 2;
constexpr double TooSlow = 10; // seconds for one walk

/// What a walk has seen, so that nobody can leave it out.
struct Sight
{
    qsizetype objects = 0;
    qsizetype letters = 0;
    qsizetype values = 0;
};

void look(const SharedPtr<Object> &object, Sight &sight)
{
    ++sight.objects;
    sight.letters += object->className().size() + object->name().size();
    const Class *objectClass = object->objectClass();
    const int end = objectClass->numProperties();
    for (int i = end - WalkItem::NumProperties; i < end; ++i)
        sight.values += bool(objectClass->property(i)->get(object));
    for (const SharedPtr<Object> &child : object->children())
        look(child, sight);
}

/// As the wrapper names objects: by class, numbered among unnamed siblings of the same class.
void look(const QObject *object, const QString &name, Sight &sight)
{
    const QMetaObject *metaObject = object->metaObject();
    ++sight.objects;
    sight.letters += QString::fromLatin1(metaObject->className()).size() + name.size();
    const int end = metaObject->propertyCount();
    for (int i = end - WalkItem::NumProperties; i < end; ++i)
        sight.values += metaObject->property(i).read(object).isValid();
    QHash<const QMetaObject *, int> unnamed;
    for (const QObject *child : object->children()) {
        QString childName = child->objectName();
        if (childName.isEmpty()) {
            childName = QString::fromLatin1(child->metaObject()->className());
            const int number = ++unnamed[child->metaObject()];
            if (number > 1)
                childName += QString::number(number);
        }
        look(child, childName, sight);
    }
}

/// How a number of items hangs together.
struct Shape
{
    const char *name;
    bool isFlat;
    bool isNamed;
};

constexpr Shape Shapes[] = {
    { "ten below each, unnamed", false, false },
    { "all below one, named", true, true },
    { "all below one, unnamed", true, false },
};

std::unique_ptr<WalkItem> grow(const Shape &shape, int size)
{
    auto root = std::make_unique<WalkItem>(nullptr);
    root->setObjectName(QStringLiteral("root"));
    std::vector<WalkItem *> items { root.get() };
    while (static_cast<int>(items.size()) < size) {
        auto *item = new WalkItem(shape.isFlat ? root.get() : items[(items.size() - 1) / 10]);
        if (shape.isNamed)
            item->setObjectName(QStringLiteral("item%1").arg(items.size()));
        items.push_back(item);
    }
    root->setParent(QCoreApplication::instance());
    return root;
}

struct Result
{
    Samples direct;
    Samples ours;
};

/// The object that the wrapper shows for an item below the application object.
SharedPtr<Object> find(const WalkItem &item)
{
    const SharedPtr<Object> object = Inspector::self()->objects().front()->childByName(item.objectName());
    if (!object)
        fail("the wrapper does not show the items");
    return object;
}

/// Nanoseconds for each object; `expected` is what our walk should take by what is known, in seconds.
Result measure(const Shape &shape, int size, double expected)
{
    const auto root = grow(shape, size);
    const SharedPtr<Object> object = find(*root);
    const int repeats = std::max(1, ItemsPerSample / size);
    const auto sample = [&](const auto &walk) {
        Sight sight;
        const double time = seconds([&] {
            for (int i = 0; i < repeats; ++i)
                walk(sight);
        });
        if (sight.objects != qsizetype(size) * repeats
            || sight.values != sight.objects * WalkItem::NumProperties)
            fail("the walk lost its way");
        return time / size / repeats * 1e9;
    };
    const auto direct = [&] {
        return sample([&](Sight &sight) { look(root.get(), QStringLiteral("root"), sight); });
    };
    const auto ours = [&] { return sample([&](Sight &sight) { look(object, sight); }); };
    const int rounds = expected > 1 ? 1 : 15;
    const std::vector<Samples> samples = alternate(rounds, { direct, ours });
    return { samples[0], samples[1] };
}

void race()
{
    Table table({ "ns an object", "objects", "direct", "ours", "ratio" });
    double worst = 0;
    double growth = 0;
    for (const Shape &shape : Shapes) {
        double perObject = 0;
        double smallest = 0;
        for (const int size : Sizes) {
            // What grows with the square is measured while that can be awaited.
            const double expected = perObject * 10 * size / 1e9;
            if (expected > TooSlow) {
                table.add({ shape.name, std::to_string(size), "-", "too slow", "-" });
                growth = std::numeric_limits<double>::infinity();
                continue;
            }
            const Result result = measure(shape, size, expected);
            const double ratio = result.ours.ratioTo(result.direct);
            perObject = result.ours.median();
            if (size == Sizes[0])
                smallest = ratio;
            if (size == Sizes[1])
                worst = std::max(worst, ratio);
            growth = std::max(growth, ratio / smallest);
            table.add({ shape.name, std::to_string(size), number(result.direct.median(), 0),
                        number(perObject, 0), number(ratio, 2) });
        }
    }
    table.print();
    printTarget("10,000 objects, ours over direct, worst shape", worst, Limit, 2);
    printTarget("growth of that ratio from 1,000 objects on, worst shape", growth, GrowthLimit, 2);
}

/// A runner that lets this process go on and then waits for its end.
void serve(const Listener &listener)
{
    int argc = 0;
    const QCoreApplication application(argc, nullptr);
    BlockingRunner runner(listener);
    while (runner.ipc().waitForSingleMessage(-1).isOk()) {
    }
}

} // namespace

int main(int argc, char *argv[])
{
    pinTo(cores().back());
    const Listener listener;
    const Child runner = Child::running([&] { serve(listener); });
    for (const auto &[name, value] : BlockingRunner::environment(listener)) {
        if (name != "LD_PRELOAD")
            ::setenv(name.c_str(), value.c_str(), 1);
    }
    // As the preloaded library does it.
    if (!::dlopen(BENCH_WRAPPER, RTLD_NOW))
        fail(::dlerror());
    const QCoreApplication application(argc, argv);
    QCoreApplication::processEvents();

    if (argc > 2) {
        // For a profiler: our walk through one shape only.
        const auto root = grow(Shapes[std::atoi(argv[1])], std::atoi(argv[2]));
        Sight sight;
        look(find(*root), sight);
    } else {
        race();
    }
    // The hook goes with the connection, not in the middle of the end of the process.
    std::fflush(stdout);
    std::_Exit(0);
}
