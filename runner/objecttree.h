#pragma once

#include "options.h"
#include "progress.h"
#include "remoteobjects.h"

namespace Vorkel::Runner {

/// An object of the program with what is below it.
struct TreeNode
{
    QString name;
    QString className;
    QList<TreeNode> children;
};

/// Reads the objects below `at`, `depth` levels of them, all when it is negative.
Failure readTree(RemoteObjects &objects, const ObjectHandle &at, int depth, QList<TreeNode> *nodes);

/// Starts the program of `options`, reads its classes and lets `work` look at its objects.
template <typename Work>
Failure lookAtProgram(const Options &options, Work work)
{
    Session session(options.session);
    const Progress progress(&session);
    if (const Failure failure = session.start(options.command); failure.isFailure())
        return failure;
    RemoteObjects objects(&session);
    if (const Failure failure = objects.readClasses(); failure.isFailure())
        return failure;
    return work(objects);
}

} // namespace Vorkel::Runner
