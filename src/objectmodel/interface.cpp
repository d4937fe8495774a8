#include "objectmodel/interface.h"

namespace Vorkel {

Interface::Interface(const std::string &name)
    : Class(name.c_str(), true)
{
}

Interface::Interface(const std::string &name, Namespace *nameSpace)
    : Class(name.c_str(), nameSpace, true)
{
}

SharedPtr<Object> Interface::convertToInterface(const SharedPtr<Object> &object, const QString &name) const
{
    return object && object->isA(this) && name.toStdString() == interfaceName() ? object : nullptr;
}

} // namespace Vorkel
