#pragma once

#include "drivenprogram.h"

#include <variant>

namespace Vorkel::Runner {

/// How to find an object of a program: looked up each time it is used, so it means whatever is there then.
class Locator
{
public:
    /// The object that `name` names: real, hierarchical, mixed or symbolic.
    Locator(std::shared_ptr<DrivenProgram> program, const QString &name);
    /// An object that is known already, such as the value of a property.
    Locator(std::shared_ptr<DrivenProgram> program, const ObjectHandle &object);

    /// The object called `name` below this one.
    [[nodiscard]] Locator below(const QString &name) const;
    /// The item of this list, table, tree, combo box, menu or tab bar that shows `text`.
    [[nodiscard]] Locator item(const QString &text) const;
    [[nodiscard]] Locator item(int row, int column) const;

    /// How it is written, for a person.
    [[nodiscard]] QString text() const;
    [[nodiscard]] DrivenProgram &program() const { return *m_program; }
    [[nodiscard]] const std::shared_ptr<DrivenProgram> &sharedProgram() const { return m_program; }

    /// Looks once; the failure is the program's whole reason.
    Failure look(ObjectHandle *found) const;
    /// The same for whoever does not need the object itself: a name is given as it is, to be looked up by
    /// the program, else the object's id.
    Failure look(QVariant *nameOrId) const;
    /// A name that finds this object; fails as `look` does.
    Failure findName(QString *name) const;
    /// Within a step: waits until the object is there, or until a person could use it, too.
    Failure await(ObjectHandle *found) const;
    Failure awaitReady(ObjectHandle *found) const;
    /// How many objects there are of this name, at most `most`.
    Failure count(int most, int *found) const;

private:
    struct Cell
    {
        int row;
        int column;
    };
    struct ItemText
    {
        QString text;
    };
    struct Name
    {
        QString text;
    };
    using Part = std::variant<Name, ItemText, Cell, ObjectHandle>;

    [[nodiscard]] Locator with(const Part &part) const;
    /// The name that says it all; null when there is more to it.
    [[nodiscard]] const Name *onlyName() const;
    Failure follow(const Part &part, ObjectHandle *at) const;

    std::shared_ptr<DrivenProgram> m_program;
    QList<Part> m_parts; ///< from the outermost inwards
};

/// The name of what `name` means below the object called `container`.
[[nodiscard]] QString nameBelow(const QString &container, const QString &name);

} // namespace Vorkel::Runner
