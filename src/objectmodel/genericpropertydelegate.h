#pragma once

#include "objectmodel/delegates.h"
#include "objectmodel/propertydeclaration.h"

#include <QStringList>

#include <vector>

namespace Vorkel {

/// Further properties of a class, by name alone.
class GenericStaticPropertyDelegate : public StaticPropertyDelegate
{
public:
    GenericStaticPropertyDelegate(const QString &className, const QStringList &properties);

    [[nodiscard]] int numDeclarations() const override { return static_cast<int>(m_declarations.size()); }
    [[nodiscard]] const PropertyDeclaration *declaration(int index) const override;

private:
    std::vector<PropertyDeclaration> m_declarations;
};

} // namespace Vorkel
