#pragma once

#include "objectmodel/delegates.h"

namespace Vorkel {

/// The objects of the application as a tree: by parent and children, the children in the order in which
/// they were made, then the items that they show.
class QtHierarchyDelegate : public ObjectHierarchyDelegate
{
public:
    static constexpr int WrapperType = 1;

    /// What `Object::qualifiedName` gives: the hook's naming scheme.
    enum NamingScheme {
        RealNames = 0, ///< by properties
        HierarchicalNames = 1 ///< names from the top, joined by dots
    };

    using ObjectHierarchyDelegate::ObjectHierarchyDelegate;

    [[nodiscard]] int numChildren(const SharedPtr<Object> &object) const override;
    [[nodiscard]] SharedPtr<Object> child(const SharedPtr<Object> &object, int index) const override;
    [[nodiscard]] SharedPtr<Object> childByName(const SharedPtr<Object> &object,
                                                const QString &name) const override;
    [[nodiscard]] SharedPtr<Object> objectByQualifiedName(const SharedPtr<Object> &object,
                                                          const ObjectName &name) const override;
    [[nodiscard]] QString name(const SharedPtr<Object> &object) const override;
    [[nodiscard]] QString qualifiedName(const SharedPtr<Object> &object) const override;
    [[nodiscard]] ObjectList children(const SharedPtr<Object> &object) const override;
    [[nodiscard]] SharedPtr<Object> parent(const SharedPtr<Object> &object) const override;
    [[nodiscard]] int wrapperType() const override { return WrapperType; }
};

} // namespace Vorkel
