#include "qtwrapper.h"

#include "qthierarchy.h"

namespace Vorkel {

QString QtWrapper::name() const
{
    return QStringLiteral("Qt");
}

bool QtWrapper::ownsObject(const SharedPtr<Object> &object) const
{
    return object && object->wrapperType() == QtHierarchyDelegate::WrapperType;
}

bool QtWrapper::isObjectReady(const SharedPtr<Object> &) const
{
    return true;
}

void QtWrapper::setSpying(bool) {}
void QtWrapper::recordingStopped() {}

bool QtWrapper::possibleNameMatch(const PropertyMap &mapEntry, const PropertyMap &computed) const
{
    const QString type = QStringLiteral("type");
    const auto entry = mapEntry.constFind(type);
    return entry == mapEntry.constEnd() || entry->matches(computed.value(type).value());
}

} // namespace Vorkel
