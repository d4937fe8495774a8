#pragma once

#include "options.h"
#include "progress.h"
#include "remoteobjects.h"

#include "objectmodel/objectmap.h"

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

/// A look at the objects of a running program, by the names of an object map.
struct Look
{
    explicit Look(Session *session)
        : objects(session)
    {
    }

    RemoteObjects objects;
    ObjectMap map { false };
};

/// Reads the objects below `at`, `depth` levels of them, all when it is negative.
Failure readTree(RemoteObjects &objects, const ObjectHandle &at, int depth, QList<TreeNode> *nodes);

/// Reads the program's classes and gives it the object map of `options`, if they name one.
Failure prepare(Look &look, const Options &options);

/// Starts the program of `options` and lets `work` look at its objects.
template <typename Work>
Failure lookAtProgram(const Options &options, Work work)
{
    Session session(options.session);
    const Progress progress(&session);
    if (const Failure failure = session.start(options.command); failure.isFailure())
        return failure;
    Look look(&session);
    const Failure failure = prepare(look, options);
    return failure.isFailure() ? failure : work(look);
}

} // namespace Vorkel::Runner
