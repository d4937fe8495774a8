#include "objectmodel/inspector.h"

#include "objectmodel/registry.h"

namespace Vorkel {

namespace {

/// Known before the standard classes are made, which ask for it.
Inspector *instance = nullptr;

} // namespace

Inspector::Inspector()
    : m_own(std::make_unique<Registry>())
    , m_target(m_own.get())
{
}

Inspector::~Inspector() = default;

Inspector *Inspector::self()
{
    // Never destroyed: the hook may outlive the static objects of the application.
    if (!instance) {
        instance = new Inspector;
        instance->m_own->createStandardClasses();
    }
    return instance;
}

void Inspector::setInspectorInterfaceImpl(InspectorInterface *implementation)
{
    m_own->clearTables();
    m_target = implementation ? implementation : m_own.get();
}

void Inspector::sendEvent(const Event *event, const SharedPtr<Object> &object,
                          const ObjectList &arguments) const
{
    if (m_target != m_own.get())
        m_target->sendEvent(event, object, arguments);
    else
        InspectorInterface::sendEvent(event, object, arguments);
}

void Inspector::setError(const QString &text)
{
    if (m_target != m_own.get())
        m_target->setError(text);
    m_own->setError(text);
}

void Inspector::addTopLevelHierarchyDelegate(const ObjectHierarchyDelegate *delegate)
{
    if (m_target == m_own.get())
        m_own->addTopLevelHierarchyDelegate(delegate);
}

// clang-format off
GlobalClass *Inspector::globalClass() const { return m_own->globalClass(); }
Namespace *Inspector::globalNamespace() const { return m_own->globalNamespace(); }
QString Inspector::uniqueProperty(const QString &className) const { return m_own->uniqueProperty(className); }
QStringList Inspector::uniquePropertyClasses() const { return m_own->uniquePropertyClasses(); }
QString Inspector::extensionCode() const { return m_own->extensionCode(); }
QString Inspector::extensionLanguage() const { return m_own->extensionLanguage(); }
bool Inspector::hasMouseTracking(const QString &className) const { return m_own->hasMouseTracking(className); }
bool Inspector::hasRecordMouseDrag(const QString &className) const { return m_own->hasRecordMouseDrag(className); }
int Inspector::isKeyEventCompressionAllowed(const QString &className) const { return m_own->isKeyEventCompressionAllowed(className); }
bool Inspector::matchRecordFilter(const QString &className, const QString &value) const { return m_own->matchRecordFilter(className, value); }
void Inspector::setUnmatchedProperties(const QString &candidate, const QStringList &properties) { m_own->setUnmatchedProperties(candidate, properties); }
void Inspector::addUnmatchedProperty(const QString &candidate, const QString &property) { m_own->addUnmatchedProperty(candidate, property); }
void Inspector::removeUnmatchedProperties(const QString &candidate) { m_own->removeUnmatchedProperties(candidate); }
// clang-format on

} // namespace Vorkel
