#pragma once

#include "remoteobjects.h"

namespace Vorkel::Runner {

/// An object of the program with what is below it.
struct TreeNode
{
    ObjectHandle object;
    QString name; ///< among its siblings
    QString className;
    QString realName;
    QList<TreeNode> children;
};

/// Reads the objects below `at`, `depth` levels of them, all when it is negative.
Failure readTree(RemoteObjects &objects, const ObjectHandle &at, int depth, QList<TreeNode> *nodes);

/// A line for each object with name, class and what `nameOf` makes of its real name; children are indented
/// below their parent.
[[nodiscard]] QString toText(const QList<TreeNode> &nodes,
                             const std::function<QString(const QString &)> &nameOf = {});

} // namespace Vorkel::Runner
