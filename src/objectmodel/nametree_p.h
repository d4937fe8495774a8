#pragma once

#include "objectmodel/objectname.h"

#include <functional>
#include <map>
#include <optional>
#include <vector>

namespace Vorkel {

/// A name in braces with the names nested in it, to write it anew from the inside out.
class NameTree
{
public:
    /// The texts that replace nested names have at most so many characters together. Each quoting of a
    /// quoted text doubles its backslashes, so a short name may make a long text.
    static constexpr qsizetype MaxReplaced = 16 * 1024 * 1024;
    /// Names nest at most so deep in the outermost.
    static constexpr qsizetype MaxDepth = 1000;

    /// A bad name makes a tree without properties.
    explicit NameTree(const QString &name);

    /// What to write for a nested name, the names nested in which have been replaced already.
    using Replacement = std::function<QString(const ObjectName &name)>;
    /// The name with its nested names replaced by values of the type, in the order of their keys, inner
    /// ones first. Nothing if a limit is passed, in which case some may have been replaced already. To be
    /// called once.
    [[nodiscard]] std::optional<ObjectName> rewritten(PropertyValue::Type type,
                                                      const Replacement &replacement);

private:
    struct Node
    {
        std::map<QString, PropertyValue> properties;
        /// The keys of nested names, which have no value among the properties, and where they are.
        std::map<QString, std::size_t> nested;
    };

    bool read(const QString &name);

    std::vector<Node> m_nodes;
    bool m_isTooDeep = false;
};

} // namespace Vorkel
