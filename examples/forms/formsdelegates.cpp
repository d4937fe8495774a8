#include "formsdelegates.h"

#include "formsobjects.h"

#include "objectmodel/delegates.h"
#include "objectmodel/inspector.h"

#include <QStringList>

#include <algorithm>

using namespace Vorkel;
using Forms::Element;
using FormsObjects::unwrap;
using FormsObjects::wrap;

namespace {

/// The tree of elements. Where an operation is given no object, it is about the top; an object that is null
/// has nothing.
class Hierarchy : public ObjectHierarchyDelegate
{
public:
    Hierarchy()
        : ObjectHierarchyDelegate(QStringLiteral("Element"))
    {
    }

    [[nodiscard]] int numChildren(const SharedPtr<Object> &object) const override
    {
        return static_cast<int>(childrenOf(object).size());
    }

    [[nodiscard]] SharedPtr<Object> child(const SharedPtr<Object> &object, int index) const override
    {
        const Forms::Elements &children = childrenOf(object);
        const auto at = static_cast<std::size_t>(index);
        return at < children.size() ? wrap(children[at].get()) : nullptr;
    }

    [[nodiscard]] SharedPtr<Object> childByName(const SharedPtr<Object> &object,
                                                const QString &name) const override
    {
        const Forms::Elements &children = childrenOf(object);
        const auto found = std::ranges::find(children, name, [](const auto &child) { return child->name; });
        return found != children.end() ? wrap(found->get()) : nullptr;
    }

    [[nodiscard]] SharedPtr<Object> parent(const SharedPtr<Object> &object) const override
    {
        const Element *element = unwrap(object);
        return element ? wrap(element->parent) : nullptr;
    }

    [[nodiscard]] QString name(const SharedPtr<Object> &object) const override
    {
        const Element *element = unwrap(object);
        return element ? element->name : QString();
    }

    [[nodiscard]] QString qualifiedName(const SharedPtr<Object> &object) const override
    {
        QStringList names;
        for (const Element *at = unwrap(object); at; at = at->parent)
            names.prepend(at->name);
        return names.join(u'.');
    }

    /// A number that no other toolkit's objects have.
    [[nodiscard]] int wrapperType() const override { return 100; }

private:
    [[nodiscard]] static const Forms::Elements &childrenOf(const SharedPtr<Object> &object)
    {
        static const Forms::Elements none;
        if (!object)
            return Forms::forms;
        const Element *element = unwrap(object);
        return element ? element->children : none;
    }
};

/// The terminal is the screen, and a character its pixel.
class Geometry : public GeometryDelegate
{
public:
    Geometry()
        : GeometryDelegate(QStringLiteral("Element"))
    {
    }

    [[nodiscard]] NativeRect globalBounds(const SharedPtr<Object> &object) const override
    {
        const Element *element = unwrap(object);
        if (!element || !element->isShown())
            return NativeRect();
        return NativeRect::at(element->place.column, element->place.line,
                              static_cast<int>(element->text.size()), 1);
    }
};

/// An element is worth its text.
class Conversion : public ConversionDelegate
{
public:
    Conversion()
        : ConversionDelegate(QStringLiteral("Element"))
    {
    }

    [[nodiscard]] int capabilities() const override { return CanString; }

    [[nodiscard]] QString toString(const SharedPtr<Object> &object) const override
    {
        const Element *element = unwrap(object);
        return element ? element->text : QString();
    }

    void fromString(const SharedPtr<Object> &object, const QString &value) const override
    {
        if (Element *element = unwrap(object))
            element->setText(value);
    }
};

} // namespace

void FormsDelegates::registerAll()
{
    // Delegates register themselves and live as long as the process.
    new Conversion;
    new Geometry;
    const auto *hierarchy = new Hierarchy;
    // The first lookup makes the list that ours is added to.
    (void)Inspector::self()->numObjects();
    Inspector::self()->addTopLevelHierarchyDelegate(hierarchy);
}
