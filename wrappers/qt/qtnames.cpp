#include "qtnames.h"

#include "qtnameindex.h"
#include "qtstillness.h"

#include <memory>

namespace Vorkel {

QString QtNames::realName(QObject *object)
{
    static auto *const index = new std::unique_ptr<QtNameIndex>;
    static quint64 indexEpoch = 0;
    const quint64 epoch = QtStillness::self()->epoch();
    if (!*index || epoch != indexEpoch) {
        *index = std::make_unique<QtNameIndex>();
        indexEpoch = epoch;
    }
    return (*index)->realName(object);
}

} // namespace Vorkel
