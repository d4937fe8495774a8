#include "inputwatch.h"

#include <QDeadlineTimer>

#include <utility>

namespace Vorkel::Runner {

namespace {

const QString CountFunction = QStringLiteral("_vorkel_input_count");
constexpr int ImmediateLooks = 3;
constexpr int BetweenLooksMs = 2;
constexpr int MostMs = 300;

} // namespace

Failure InputWatch::read(int *count)
{
    QVariant value;
    const Failure failure = m_program.objects().invokeGlobal(CountFunction, {}, &value);
    *count = value.toInt();
    return failure;
}

Failure InputWatch::begin()
{
    m_isKnown = m_program.objects().hasGlobal(CountFunction);
    return m_isKnown ? read(&m_before) : Failure();
}

Failure InputWatch::await(int events)
{
    QDeadlineTimer limit(MostMs);
    int latest = m_before;
    for (int looks = 0; m_isKnown && !limit.hasExpired(); ++looks) {
        if (looks >= ImmediateLooks)
            m_program.idle(BetweenLooksMs);
        int count = 0;
        const Failure failure = read(&count);
        if (failure.isFailure())
            return m_program.hasEndedWell() ? Failure() : failure;
        if (count - m_before >= events)
            return {};
        if (std::exchange(latest, count) != count)
            limit.setRemainingTime(MostMs);
    }
    return {};
}

} // namespace Vorkel::Runner
