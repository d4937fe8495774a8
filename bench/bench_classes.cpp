// What classes cost that are described by rows: to register them, beside entering their names in a table;
// and to write the records of a large wrapper, beside writing the same fields to a stream.

#include "heap.h"
#include "measure.h"

#include "hook/autprocess.h"
#include "hook/hook.h"
#include "objectmodel/class.h"
#include "objectmodel/classids.h"
#include "objectmodel/enum.h"
#include "objectmodel/event.h"
#include "objectmodel/inspector.h"
#include "objectmodel/method.h"
#include "objectmodel/property.h"
#include "objectmodel/wrappercreator.h"

#include <QCoreApplication>
#include <QDataStream>
#include <QHash>
#include <QIODevice>

#include <cstdlib>
#include <iostream>
#include <variant>

namespace {

using namespace Bench;
using namespace Vorkel;

// A generated wrapper: 20 members a class, 12 of them methods.

constexpr int MethodsPerClass = 12;
constexpr int PropertiesPerClass = 6;

constexpr char Texts[] = "setMinimumSize\0sizeHint\0QSize\0width\0height";
enum : FInt32 { SetText = 0, HintText = 15, SizeText = 24, WidthText = 30, HeightText = 36 };

using Row = ArgumentDescriptor;
constexpr Row Arguments[] = {
    { Row::NoName, Row::ByClassId, VoidClassId, 0, 0, Row::NoEnum },
    { Row::NoName, Row::ByName, SizeText, 0, 0, Row::NoEnum },
    { WidthText, Row::ByClassId, IntClassId, 0, 0, Row::NoEnum },
    { HeightText, Row::ByClassId, IntClassId, 0, 0, Row::NoEnum },
};
constexpr int Parameters[] = { 2, 3 };
constexpr MethodDescriptor Setter = { 0, SetText, 2, 0, false };
constexpr MethodDescriptor Getter = { 1, HintText, 0, 0, false };
constexpr MethodDescriptor Methods[MethodsPerClass] = { Setter, Getter, Setter, Getter, Setter, Getter,
                                                        Setter, Getter, Setter, Getter, Setter, Getter };
constexpr Enum::Item Items[] = { { "Minimum", 1 }, { "Fixed", 2 }, { "Expanding", 4 }, { nullptr, 0 } };

class GeneratedClass : public Class
{
public:
    GeneratedClass(const char *name, const Class *above)
        : Class(name, true)
        , m_above(above)
    {
        setDeclared(
                { .methods = MethodsPerClass, .properties = PropertiesPerClass, .events = 1, .enums = 1 });
    }

    void initSuperClass() override { setSuperClass(m_above); }
    [[nodiscard]] Method *createMethod(int index) const override
    {
        return WrapperCreator(this, Texts, nullptr, Methods, Parameters, Arguments).createMethod(index);
    }
    [[nodiscard]] Property *createProperty(int index) const override
    {
        return new Property(this, Argument(Inspector::self()->type(IntClassId)),
                            QStringLiteral("minimumWidth"), ReadableProperty | WritableProperty, index);
    }
    [[nodiscard]] Event *createEvent(int index) const override
    {
        return new Event(this, QStringLiteral("resized"), {}, false, index);
    }
    [[nodiscard]] Enum *createEnum(int index) const override
    {
        return new Enum(this, QStringLiteral("Policy"), Items, index);
    }

private:
    const Class *m_above;
};

/// The names of `count` classes, which no two calls share.
std::vector<QByteArray> classNames(int count)
{
    static int used = 0;
    std::vector<QByteArray> names;
    for (int i = 0; i < count; ++i)
        names.push_back("QGeneratedWidget" + QByteArray::number(used++));
    return names;
}

// Registering.

void measureRegistering()
{
    constexpr int Count = 10'000;
    constexpr int Rounds = 7;
    constexpr double TimeLimit = 2;
    constexpr double SizeLimit = 1024;
    std::vector<GeneratedClass *> classes; // they live as long as the process
    classes.reserve(Count * (Rounds + 2));
    std::vector<double> bytes;
    QHash<QString, const char *> table;
    std::vector<QByteArray> names;
    const auto add = [&] {
        for (const QByteArray &name : names)
            classes.push_back(new GeneratedClass(name.constData(), nullptr));
    };
    const auto floor = [&] {
        names = classNames(Count);
        return seconds([&] {
                   for (const QByteArray &name : names)
                       table.insert(QString::fromLatin1(name), name.constData());
               })
                / Count * 1e6;
    };
    const auto ours = [&] {
        names = classNames(Count);
        double time = 0;
        bytes.push_back(static_cast<double>(heapGrowth([&] { time = seconds(add); })) / Count);
        return time / Count * 1e6;
    };
    const std::vector<Samples> samples = alternate(Rounds, { floor, ours });
    Table result({ "10,000 classes by rows, each", "us", "ratio" });
    result.add({ "enter a name in a table", number(samples[0].median(), 2), "1.00" });
    result.add({ "register a class", number(samples[1].median(), 2),
                 number(samples[1].ratioTo(samples[0]), 2) });
    result.print();
    printTarget("us for a class", samples[1].median(), TimeLimit, 2);
    printTarget("bytes for a class, most of all rounds", *std::max_element(bytes.begin(), bytes.end()),
                SizeLimit, 0);
}

// Announcing.

using Field = std::variant<qint32, QString>;

/// The fields of the records of classes, one behind the other.
class FieldReader
{
public:
    explicit FieldReader(const QByteArray &bytes)
        : m_stream(bytes)
    {
        m_stream.setVersion(QDataStream::Qt_2_1);
        while (!m_stream.atEnd())
            readClass();
    }

    [[nodiscard]] const std::vector<Field> &fields() const { return m_fields; }
    [[nodiscard]] int classes() const { return m_classes; }
    [[nodiscard]] int members() const { return m_members; }

private:
    qint32 number()
    {
        qint32 value = 0;
        m_stream >> value;
        m_fields.emplace_back(value);
        return value;
    }

    void text()
    {
        QString value;
        m_stream >> value;
        m_fields.emplace_back(value);
    }

    void read(const char *form)
    {
        for (; *form; ++form)
            *form == 't' ? text() : static_cast<void>(number());
    }

    void repeat(int count, void (FieldReader::*record)())
    {
        for (int i = 0; i < count; ++i)
            (this->*record)();
    }

    void readMembers(int count, void (FieldReader::*record)())
    {
        m_members += std::max(count, 0);
        repeat(count, record);
    }

    void readArgument() { read("ttnnntt"); }
    void readSignature() { repeat(number(), &FieldReader::readArgument); }
    void readItem() { read("tn"); }
    void readInterface() { read("tt"); }

    void readEnum()
    {
        read("tnt");
        const int count = number();
        number();
        repeat(count, &FieldReader::readItem);
    }

    void readMethod()
    {
        read("tt");
        readArgument();
        read("nn");
        readSignature();
        text();
    }

    void readProperty()
    {
        text();
        readArgument();
        read("tnnn");
    }

    void readConstructor()
    {
        read("tn");
        readSignature();
    }

    void readEvent()
    {
        read("ttnn");
        readSignature();
    }

    void readClass()
    {
        ++m_classes;
        read("ntnntn");
        const int constructors = number();
        const int methods = number();
        const int properties = number();
        const int events = number();
        const int enums = number();
        readMembers(enums, &FieldReader::readEnum);
        readMembers(methods, &FieldReader::readMethod);
        readMembers(properties, &FieldReader::readProperty);
        readMembers(constructors, &FieldReader::readConstructor);
        readMembers(events, &FieldReader::readEvent);
        repeat(number(), &FieldReader::readInterface);
    }

    QDataStream m_stream;
    std::vector<Field> m_fields;
    int m_classes = 0;
    int m_members = 0;
};

QByteArray written(const std::vector<Field> &fields)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_2_1);
    for (const Field &field : fields)
        std::visit([&](const auto &value) { stream << value; }, field);
    return bytes;
}

/// With `onceOnly`, for a profiler, the records are written the first time and no more.
void measureAnnouncing(bool onceOnly)
{
    constexpr int Count = 1'000;
    constexpr int Rounds = 50;
    constexpr double Limit = 2;
    // The line that says there is no runner is no news.
    std::clog.setstate(std::ios::failbit);
    ::unsetenv("VORKEL_RUNNERID");
    Hook *hook = Hook::connectAndCreateHook(nullptr, new AUTProcess, nullptr, 0);

    std::vector<const Class *> classes; // as deep as a toolkit's: every class has four below it
    for (const QByteArray &name : classNames(Count))
        classes.push_back(new GeneratedClass(name.constData(),
                                             classes.empty() ? nullptr : classes[(classes.size() - 1) / 4]));
    QByteArray bytes;
    const double first = seconds([&] { bytes = hook->allClasses(); });
    if (onceOnly)
        return;
    const FieldReader reader(bytes);
    if (written(reader.fields()) != bytes) {
        std::fputs("these are not the same fields\n", stderr);
        std::exit(1);
    }
    const auto size = static_cast<double>(bytes.size());
    const auto time = [&](const auto &write) {
        return [&] {
            return seconds([&] {
                if (write().size() != bytes.size())
                    std::exit(1);
            });
        };
    };
    const auto floor = [&] { return written(reader.fields()); };
    const auto ours = [&] { return hook->allClasses(); };
    const std::vector<Samples> samples = alternate(Rounds, { time(floor), time(ours) });
    std::printf("%d classes, %d members, %.1f MiB:\n", reader.classes(), reader.members(), size / (1 << 20));
    Table result({ "records of all classes", "MB/s", "ratio" });
    const auto rate = [&](double value) { return number(size / value / 1e6, 0); };
    result.add({ "write the fields", rate(samples[0].median()), "1.00" });
    result.add({ "allClasses", rate(samples[1].median()), number(samples[1].ratioTo(samples[0]), 2) });
    result.add({ "allClasses, the first time", rate(first), number(first / samples[0].median(), 2) });
    result.print();
    printTarget("time of allClasses over that of its fields", samples[1].ratioTo(samples[0]), Limit, 2);
}

} // namespace

int main(int argc, char *argv[])
{
    pinTo(cores().back());
    const QCoreApplication application(argc, argv);
    measureAnnouncing(argc > 1);
    if (argc > 1)
        return 0;
    std::puts("");
    measureRegistering();
    return 0;
}
