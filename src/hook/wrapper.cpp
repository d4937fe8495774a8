#include "hook/wrapper.h"

#include <QCoreApplication>

namespace Vorkel {

Wrapper::Wrapper(QObject *parent)
    : QObject(parent)
{
}

Wrapper::~Wrapper() = default;

void Wrapper::exitAUT(int exitCode)
{
    QCoreApplication::exit(exitCode);
}

void Wrapper::parseDescriptorData(const QByteArray &) {}
void Wrapper::notifyEventRecordingEnabled(bool) {}

} // namespace Vorkel
