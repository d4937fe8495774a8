#include "hook/wrapper.h"

namespace Vorkel {

Wrapper::Wrapper(QObject *parent)
    : QObject(parent)
{
}

Wrapper::~Wrapper() = default;

void Wrapper::parseDescriptorData(const QByteArray &) {}
void Wrapper::notifyEventRecordingEnabled(bool) {}

} // namespace Vorkel
