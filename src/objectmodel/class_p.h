#pragma once

#include "objectmodel/class.h"
#include "objectmodel/constructor.h"
#include "objectmodel/enum.h"
#include "objectmodel/event.h"
#include "objectmodel/method.h"
#include "objectmodel/property.h"

#include <array>
#include <vector>

namespace Vorkel {

/// The members of one kind, made when somebody first asks for one.
template <typename Member>
struct MemberTable
{
    std::vector<std::unique_ptr<Member>> items;
    bool built = false;

    [[nodiscard]] const Member *at(int index) const
    {
        return index >= 0 && index < static_cast<int>(items.size())
                ? items[static_cast<std::size_t>(index)].get()
                : nullptr;
    }
};

/// All that only classes with members that were looked at need.
struct MemberTables
{
    MemberTable<Constructor> constructors;
    MemberTable<Method> methods;
    MemberTable<Property> properties;
    MemberTable<Event> events;
    MemberTable<Enum> enums;
    QMap<QString, const Interface *> interfaces;
};

/// What a lookup found, good until the delegates change.
struct KnownDelegate
{
    int generation = -1;
    const Delegate *delegate = nullptr;
};

class StaticPropertyDelegate;

/// How many members of a kind lie above, good until a class changes.
struct KnownOffset
{
    int generation = -1;
    int offset = 0;
};

class ClassPrivate
{
public:
    [[nodiscard]] MemberTables &members()
    {
        if (!tables)
            tables = std::make_unique<MemberTables>();
        return *tables;
    }

    QString name;
    Namespace *nameSpace = nullptr;
    const Class *superClass = nullptr;
    bool superClassKnown = false;
    int id = Class::NotRegistered;
    FUInt32 flags = 0;
    MemberCounts declared { Class::NotDeclared, Class::NotDeclared, Class::NotDeclared, Class::NotDeclared,
                            Class::NotDeclared };
    int dynamicProperties = -1; // not yet counted
    const StaticPropertyDelegate *propertyDelegate = nullptr; // where they come from
    std::array<KnownOffset, Class::NumOffsetTypes> offsets;
    std::unique_ptr<MemberTables> tables;
    std::unique_ptr<std::array<KnownDelegate, Delegate::NumTypes>> delegates;
};

} // namespace Vorkel
