#pragma once

#include "fkit/ftypes.h"
#include "shared/functioncallresult.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <deque>

namespace Vorkel::Runner {

/// A typed slot as the program describes it.
struct ArgumentRecord
{
    QString name;
    QString className;
    FUInt32 flags = 0;
    FInt32 arraySize = 0;
    QString enumClassName;
    QString enumName;
};

struct MethodRecord
{
    QString name;
    ArgumentRecord result;
    int id = -1;
    bool isStatic = false;
    QList<ArgumentRecord> arguments;
};

struct PropertyRecord
{
    QString name;
    ArgumentRecord type;
    int id = -1;
    FUInt32 flags = 0;

    [[nodiscard]] bool isReadable() const { return flags & 1; }
    [[nodiscard]] bool isWritable() const { return flags & 2; }
};

struct EnumRecord
{
    QString name;
    bool isMask = false;
    QList<std::pair<QString, int>> items;
};

/// A class as the program describes it, with the members that it declares itself.
struct ClassRecord
{
    int id = -1;
    QString name;
    QString superName;
    QList<EnumRecord> enums;
    QList<MethodRecord> methods;
    QList<PropertyRecord> properties;
    QList<QList<ArgumentRecord>> constructors;
    QList<MethodRecord> events;
};

/// All classes of a program, by number.
class ClassRecords
{
public:
    /// Reads what `allClasses` gave; the failure says which class could not be read.
    [[nodiscard]] static FunctionCallResult<ClassRecords> parse(const QByteArray &bytes);

    /// Adds what `registerClasses` announces behind the classes that are known. Records that would leave a
    /// gap, or cannot be read, are left out.
    void append(const QByteArray &bytes);

    /// A class stays where it is when others are appended.
    [[nodiscard]] const std::deque<ClassRecord> &classes() const { return m_classes; }
    /// Null when there is none.
    [[nodiscard]] const ClassRecord *byId(int id) const;
    [[nodiscard]] const ClassRecord *byName(const QString &name) const;
    /// Whether the class is called `name` or inherits the one that is.
    [[nodiscard]] bool inherits(const ClassRecord *of, const QString &name) const;
    /// The property `name` of the class or of one above it.
    [[nodiscard]] const PropertyRecord *property(const ClassRecord *of, const QString &name) const;
    /// The overloads of `name`, those of derived classes first.
    [[nodiscard]] QList<const MethodRecord *> methods(const ClassRecord *of, const QString &name) const;
    /// The enum that `type` names; null when it names none.
    [[nodiscard]] const EnumRecord *enumOf(const ArgumentRecord &type) const;
    /// The enum `name` of the class or namespace `scope`; null when there is none.
    [[nodiscard]] const EnumRecord *enumNamed(const QString &scope, const QString &name) const;
    /// Of all members that the class has or inherits.
    [[nodiscard]] QStringList propertyNames(const ClassRecord *of) const;
    [[nodiscard]] QStringList methodNames(const ClassRecord *of) const;

private:
    [[nodiscard]] QList<const ClassRecord *> lineage(const ClassRecord *of) const;

    std::deque<ClassRecord> m_classes;
};

// As the system prints them.

[[nodiscard]] QString toText(const ArgumentRecord &argument);
[[nodiscard]] QString toText(const QList<ArgumentRecord> &signature);
[[nodiscard]] QString toText(const MethodRecord &method);
[[nodiscard]] QString toText(const PropertyRecord &property);

/// The key of a value, for a mask its keys joined by "|"; the number where there is none.
[[nodiscard]] QString toText(const EnumRecord &record, int value);

} // namespace Vorkel::Runner
