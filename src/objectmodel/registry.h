#pragma once

#include "objectmodel/inspectorinterface.h"

#include <QHash>

#include <optional>

namespace Vorkel {

class GlobalClass;
class ObjectHierarchyDelegate;

/// Does the work of the `Inspector`: the tables of this process.
class Registry : public InspectorInterface
{
public:
    Registry();

    /// Makes the classes and namespaces that every process has. They find the registry through
    /// `Inspector::self()`, which must be able to answer by then.
    void createStandardClasses();
    /// Forgets all classes and namespaces, without destroying them.
    void clearTables();

    [[nodiscard]] int numObjects() const override;
    [[nodiscard]] SharedPtr<Object> object(int index) const override;
    [[nodiscard]] SharedPtr<Object> object(const QString &name) const override;
    [[nodiscard]] ObjectList objects() const override;
    [[nodiscard]] int numClasses() const override;
    [[nodiscard]] const Class *type(int id) const override;
    [[nodiscard]] const Class *type(const QString &name) const override;
    int registerClass(const Class *entry) override;
    [[nodiscard]] int numNamespaces() const override;
    [[nodiscard]] Namespace *nameSpace(int id) const override;
    [[nodiscard]] Namespace *nameSpace(const QString &name) const override;
    [[nodiscard]] Namespace *nameSpaceFromFullyQualifiedName(const QString &name) const override;
    int registerNamespace(Namespace *entry) override;
    [[nodiscard]] SharedPtr<Object> createPrimitive(int value) const override;
    [[nodiscard]] SharedPtr<Object> createPrimitive(long long value) const override;
    [[nodiscard]] SharedPtr<Object> createPrimitive(long value) const override;
    [[nodiscard]] SharedPtr<Object> createPrimitive(bool value) const override;
    [[nodiscard]] SharedPtr<Object> createPrimitive(double value) const override;
    [[nodiscard]] SharedPtr<Object> createPrimitive(const char *utf8) const override;
    [[nodiscard]] SharedPtr<Object> createPrimitive(const QStringList &texts) const override;
    [[nodiscard]] SharedPtr<Object> createNull(const Class *ofClass) const override;
    [[nodiscard]] SharedPtr<Object> voidObject() const override;
    void addPropertyDelegate(const QString &className, const QStringList &properties) override;
    void setUniqueProperty(const QString &className, const QString &property) override;
    void setExtensionCode(const QString &code, const QString &language) override;
    void setMouseTracking(const QString &className, bool on) override;
    void setRecordMouseDrag(const QString &className, bool on) override;
    void setAllowKeyEventCompression(const QString &className, bool on) override;
    void enableEventCompression(const QString &className, bool on) override;
    void setRecorderFilter(const QString &className, const QString &pattern) override;
    void setError(const QString &text) override;
    QString lastError() override;
    [[nodiscard]] QMap<QString, QStringList> unmatchedProperties() const override
    {
        return m_unmatchedProperties;
    }
    QVariant call(const QString &name, const QList<QVariant> &arguments) override;

    // For wrappers, through the `Inspector`

    [[nodiscard]] GlobalClass *globalClass() const { return m_globalClass; }
    [[nodiscard]] Namespace *globalNamespace() const { return m_globalNamespace; }
    void setUpHierarchyDelegates() const;
    void addTopLevelHierarchyDelegate(const ObjectHierarchyDelegate *delegate);
    [[nodiscard]] QString uniqueProperty(const QString &className) const
    {
        return m_uniqueProperties.value(className);
    }
    [[nodiscard]] const QStringList &uniquePropertyClasses() const { return m_uniquePropertyClasses; }
    [[nodiscard]] const QString &extensionCode() const { return m_extensionCode; }
    [[nodiscard]] const QString &extensionLanguage() const { return m_extensionLanguage; }
    [[nodiscard]] bool hasMouseTracking(const QString &className) const
    {
        return m_mouseTracking.value(className, false);
    }
    [[nodiscard]] bool hasRecordMouseDrag(const QString &className) const
    {
        return m_recordMouseDrag.value(className, true);
    }
    [[nodiscard]] int isKeyEventCompressionAllowed(const QString &className) const;
    [[nodiscard]] bool matchRecordFilter(const QString &className, const QString &value) const;
    void setUnmatchedProperties(const QString &candidate, const QStringList &properties);
    void addUnmatchedProperty(const QString &candidate, const QString &property);
    void removeUnmatchedProperties(const QString &candidate) { m_unmatchedProperties.remove(candidate); }

private:
    using HierarchyDelegates = std::vector<const ObjectHierarchyDelegate *>;

    [[nodiscard]] const HierarchyDelegates &hierarchyDelegates() const;

    std::vector<const Class *> m_classes;
    QHash<QString, const Class *> m_classByName;
    std::vector<Namespace *> m_namespaces;
    QHash<QString, Namespace *> m_namespaceByName;
    GlobalClass *m_globalClass = nullptr;
    Namespace *m_globalNamespace = nullptr;
    SharedPtr<Object> m_voidObject;
    mutable std::optional<HierarchyDelegates> m_hierarchyDelegates; // absent until first needed

    QMap<QString, QString> m_uniqueProperties;
    QStringList m_uniquePropertyClasses;
    QMap<QString, bool> m_mouseTracking;
    QMap<QString, bool> m_recordMouseDrag;
    QMap<QString, bool> m_keyEventCompression;
    QMap<QString, QStringList> m_recorderFilters;
    QString m_extensionCode;
    QString m_extensionLanguage;
    QString m_lastError;
    QMap<QString, QStringList> m_unmatchedProperties;
};

} // namespace Vorkel
