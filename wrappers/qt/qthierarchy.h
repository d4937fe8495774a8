#pragma once

#include "objectmodel/delegates.h"

#include <QObjectList>

namespace Vorkel {

/// What a library of Qt adds to the wrapper, where the program uses that library.
class QtToolkit
{
public:
    virtual ~QtToolkit() = default;

    /// The objects to begin with, such as windows.
    [[nodiscard]] virtual QObjectList topLevels() const = 0;
};

/// The QObjects of the application as a tree: by parent and children, the children in the order in
/// which they were made.
class QtHierarchyDelegate : public ObjectHierarchyDelegate
{
public:
    static constexpr int WrapperType = 1;

    explicit QtHierarchyDelegate(const QString &className);

    /// `toolkit` lives as long as the process. The last one added is asked first.
    static void addToolkit(const QtToolkit *toolkit);

    [[nodiscard]] int numChildren(const SharedPtr<Object> &object) const override;
    [[nodiscard]] SharedPtr<Object> child(const SharedPtr<Object> &object, int index) const override;
    [[nodiscard]] SharedPtr<Object> childByName(const SharedPtr<Object> &object,
                                                const QString &name) const override;
    [[nodiscard]] QString name(const SharedPtr<Object> &object) const override;
    [[nodiscard]] QString qualifiedName(const SharedPtr<Object> &object) const override;
    [[nodiscard]] ObjectList children(const SharedPtr<Object> &object) const override;
    [[nodiscard]] SharedPtr<Object> parent(const SharedPtr<Object> &object) const override;
    [[nodiscard]] int wrapperType() const override { return WrapperType; }
};

} // namespace Vorkel
