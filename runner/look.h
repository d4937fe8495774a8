#pragma once

#include "options.h"
#include "progress.h"
#include "remoteobjects.h"

#include "objectmodel/objectmap.h"

namespace Vorkel::Runner {

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

/// Reads an object map; nothing when `path` is empty.
Failure readObjectMap(const QString &path, QString *text);

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
