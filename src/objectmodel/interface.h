#pragma once

#include "objectmodel/class.h"

#include <string>

namespace Vorkel {

/// A view of objects that several classes share.
class VORKEL_EXPORT Interface : public Class
{
public:
    /// Registers the class at once.
    explicit Interface(const std::string &name);
    Interface(const std::string &name, Namespace *nameSpace);

    [[nodiscard]] virtual const std::string &interfaceName() const = 0;
    SharedPtr<Object> convertToInterface(const SharedPtr<Object> &object, const QString &name) const override;
};

} // namespace Vorkel
