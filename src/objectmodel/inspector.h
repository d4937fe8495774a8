#pragma once

#include "objectmodel/classids.h"
#include "objectmodel/inspectorinterface.h"

#include <memory>

namespace Vorkel {

class GlobalClass;
class ObjectHierarchyDelegate;
class Registry;

/// The registry of the process. Passes every operation on to the registry of its own, or to another
/// that was put in its place.
class VORKEL_EXPORT Inspector : public InspectorInterface
{
public:
    /// The one instance, made on first use; it lives as long as the process.
    [[nodiscard]] static Inspector *self();

    ~Inspector() override;

    /// From here on `implementation`, which stays the caller's, does the work; null gives it back.
    /// What was registered so far is forgotten.
    void setInspectorInterfaceImpl(InspectorInterface *implementation);

    // clang-format off
    [[nodiscard]] int numObjects() const override { return m_target->numObjects(); }
    [[nodiscard]] SharedPtr<Object> object(int index) const override { return m_target->object(index); }
    [[nodiscard]] SharedPtr<Object> object(const QString &name) const override { return m_target->object(name); }
    [[nodiscard]] ObjectList objects() const override { return m_target->objects(); }
    [[nodiscard]] int numClasses() const override { return m_target->numClasses(); }
    [[nodiscard]] const Class *type(int id) const override { return m_target->type(id); }
    [[nodiscard]] const Class *type(const QString &name) const override { return m_target->type(name); }
    int registerClass(const Class *entry) override { return m_target->registerClass(entry); }
    [[nodiscard]] int numNamespaces() const override { return m_target->numNamespaces(); }
    [[nodiscard]] Namespace *nameSpace(int id) const override { return m_target->nameSpace(id); }
    [[nodiscard]] Namespace *nameSpace(const QString &name) const override { return m_target->nameSpace(name); }
    [[nodiscard]] Namespace *nameSpaceFromFullyQualifiedName(const QString &name) const override { return m_target->nameSpaceFromFullyQualifiedName(name); }
    int registerNamespace(Namespace *entry) override { return m_target->registerNamespace(entry); }
    [[nodiscard]] SharedPtr<Object> createPrimitive(int value) const override { return m_target->createPrimitive(value); }
    [[nodiscard]] SharedPtr<Object> createPrimitive(long long value) const override { return m_target->createPrimitive(value); }
    [[nodiscard]] SharedPtr<Object> createPrimitive(long value) const override { return m_target->createPrimitive(value); }
    [[nodiscard]] SharedPtr<Object> createPrimitive(bool value) const override { return m_target->createPrimitive(value); }
    [[nodiscard]] SharedPtr<Object> createPrimitive(double value) const override { return m_target->createPrimitive(value); }
    [[nodiscard]] SharedPtr<Object> createPrimitive(const char *utf8) const override { return m_target->createPrimitive(utf8); }
    [[nodiscard]] SharedPtr<Object> createPrimitive(const QStringList &texts) const override { return m_target->createPrimitive(texts); }
    [[nodiscard]] SharedPtr<Object> createNull(const Class *ofClass) const override { return m_target->createNull(ofClass); }
    [[nodiscard]] SharedPtr<Object> voidObject() const override { return m_target->voidObject(); }
    void sendEvent(const Event *event, const SharedPtr<Object> &object, const ObjectList &arguments) const override;
    void addPropertyDelegate(const QString &className, const QStringList &properties) override { m_target->addPropertyDelegate(className, properties); }
    void setUniqueProperty(const QString &className, const QString &property) override { m_target->setUniqueProperty(className, property); }
    void setExtensionCode(const QString &code, const QString &language) override { m_target->setExtensionCode(code, language); }
    void setMouseTracking(const QString &className, bool on) override { m_target->setMouseTracking(className, on); }
    void setRecordMouseDrag(const QString &className, bool on) override { m_target->setRecordMouseDrag(className, on); }
    void setAllowKeyEventCompression(const QString &className, bool on) override { m_target->setAllowKeyEventCompression(className, on); }
    void enableEventCompression(const QString &className, bool on) override { m_target->enableEventCompression(className, on); }
    void setRecorderFilter(const QString &className, const QString &pattern) override { m_target->setRecorderFilter(className, pattern); }
    /// Told to both, should another registry do the work.
    void setError(const QString &text) override;
    QString lastError() override { return m_target->lastError(); }
    [[nodiscard]] QMap<QString, QStringList> unmatchedProperties() const override { return m_target->unmatchedProperties(); }
    QVariant call(const QString &name, const QList<QVariant> &arguments) override { return m_target->call(name, arguments); }
    // clang-format on

    // Of this process, whoever does the work

    [[nodiscard]] GlobalClass *globalClass() const;
    [[nodiscard]] Namespace *globalNamespace() const;
    /// Counts only after the first lookup; before, register a delegate for one of the top-level names.
    void addTopLevelHierarchyDelegate(const ObjectHierarchyDelegate *delegate);
    [[nodiscard]] QString uniqueProperty(const QString &className) const;
    [[nodiscard]] QStringList uniquePropertyClasses() const;
    [[nodiscard]] QString extensionCode() const;
    [[nodiscard]] QString extensionLanguage() const;
    [[nodiscard]] bool hasMouseTracking(const QString &className) const;
    [[nodiscard]] bool hasRecordMouseDrag(const QString &className) const;
    /// -1 when nobody decided, else 0 or 1.
    [[nodiscard]] int isKeyEventCompressionAllowed(const QString &className) const;
    [[nodiscard]] bool matchRecordFilter(const QString &className, const QString &value) const;
    /// Of several tries the one that left the fewest properties unmatched stays.
    void setUnmatchedProperties(const QString &candidate, const QStringList &properties);
    void addUnmatchedProperty(const QString &candidate, const QString &property);
    void removeUnmatchedProperties(const QString &candidate);

private:
    Inspector();

    std::unique_ptr<Registry> m_own;
    InspectorInterface *m_target;
};

} // namespace Vorkel
