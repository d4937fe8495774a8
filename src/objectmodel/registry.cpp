#include "objectmodel/registry.h"

#include "objectmodel/classids.h"
#include "objectmodel/containers.h"
#include "objectmodel/delegates.h"
#include "objectmodel/genericpropertydelegate.h"
#include "objectmodel/globalobject.h"
#include "objectmodel/namespace.h"
#include "objectmodel/primitivecell.h"
#include "objectmodel/primitives.h"
#include "objectmodel/standardclasses.h"

#include <QRegularExpression>

namespace Vorkel {

namespace {

constexpr std::size_t TableRoom = 64;
constexpr qsizetype NameRoom = 4096;

/// Sources of objects at the top, the first toolkit first.
constexpr const char *TopLevelDelegates[] = {
    "Vorkel::ToplevelQt",  "Vorkel::ToplevelXView", "Vorkel::ToplevelTk",
    "Vorkel::ToplevelWeb", "Vorkel::ToplevelJava",  "Vorkel::ToplevelMac",
    "Vorkel::ToplevelWin", "QtGUIObject",           "Vorkel::ToplevelAndroid",
};

template <typename Entry>
Entry *entryAt(const std::vector<Entry *> &table, int id)
{
    return id >= 0 && id < static_cast<int>(table.size()) ? table[static_cast<std::size_t>(id)] : nullptr;
}

} // namespace

Registry::Registry()
{
    m_classes.reserve(TableRoom);
    m_namespaces.reserve(TableRoom);
    m_classByName.reserve(NameRoom);
    m_namespaceByName.reserve(NameRoom);
}

void Registry::createStandardClasses()
{
    m_globalNamespace = new Namespace(nullptr, QString());
    registerPrimitiveClasses();
    m_voidObject = type(VoidClassId)->wrap(nullptr, ObjectAttribute());
    m_globalClass = new GlobalClass;
    new ArrayClass;
    new MapClass;
    auto *const uiTypes = new Namespace(m_globalNamespace, QStringLiteral("UiTypes"));
    registerScreenClasses(uiTypes);
    registerDateTimeClass(uiTypes);
}

void Registry::clearTables()
{
    m_classes.clear();
    m_classByName.clear();
    m_namespaces.clear();
    m_namespaceByName.clear();
}

// The objects at the top

void Registry::setUpHierarchyDelegates() const
{
    if (m_hierarchyDelegates)
        return;
    m_hierarchyDelegates.emplace();
    for (const char *name : TopLevelDelegates) {
        const QString className = QString::fromLatin1(name);
        if (const Delegate *found = DelegateFactory::self()->delegate(className, Delegate::HierarchyType))
            m_hierarchyDelegates->push_back(static_cast<const ObjectHierarchyDelegate *>(found));
    }
}

const Registry::HierarchyDelegates &Registry::hierarchyDelegates() const
{
    setUpHierarchyDelegates();
    return *m_hierarchyDelegates;
}

void Registry::addTopLevelHierarchyDelegate(const ObjectHierarchyDelegate *delegate)
{
    if (m_hierarchyDelegates)
        m_hierarchyDelegates->push_back(delegate);
}

int Registry::numObjects() const
{
    int count = 0;
    for (const ObjectHierarchyDelegate *delegate : hierarchyDelegates())
        count += delegate->numChildren(nullptr);
    return count;
}

SharedPtr<Object> Registry::object(int index) const
{
    if (index < 0)
        return nullptr;
    for (const ObjectHierarchyDelegate *delegate : hierarchyDelegates()) {
        const int count = delegate->numChildren(nullptr);
        if (index < count)
            return delegate->child(nullptr, index);
        index -= count;
    }
    return nullptr;
}

SharedPtr<Object> Registry::object(const QString &name) const
{
    for (const ObjectHierarchyDelegate *delegate : hierarchyDelegates()) {
        if (SharedPtr<Object> found = delegate->childByName(nullptr, name))
            return found;
    }
    return nullptr;
}

ObjectList Registry::objects() const
{
    ObjectList all;
    for (const ObjectHierarchyDelegate *delegate : hierarchyDelegates()) {
        const ObjectList some = delegate->children(nullptr);
        all.insert(all.end(), some.begin(), some.end());
    }
    return all;
}

// Classes and namespaces

// clang-format off
int Registry::numClasses() const { return static_cast<int>(m_classes.size()); }
int Registry::numNamespaces() const { return static_cast<int>(m_namespaces.size()); }
const Class *Registry::type(int id) const { return entryAt(m_classes, id); }
Namespace *Registry::nameSpace(int id) const { return entryAt(m_namespaces, id); }
Namespace *Registry::nameSpace(const QString &name) const { return m_namespaceByName.value(name); }
// clang-format on

const Class *Registry::type(const QString &name) const
{
    const bool marked = name.endsWith(u'*') || name.endsWith(u'&');
    return m_classByName.value(marked ? name.chopped(1) : name);
}

int Registry::registerClass(const Class *entry)
{
    m_classByName.insert(entry->className(), entry);
    m_classes.push_back(entry);
    return numClasses() - 1;
}

int Registry::registerNamespace(Namespace *entry)
{
    m_namespaceByName.insert(entry->name(), entry);
    m_namespaces.push_back(entry);
    return numNamespaces() - 1;
}

Namespace *Registry::nameSpaceFromFullyQualifiedName(const QString &name) const
{
    if (name.isEmpty())
        return nullptr;
    Namespace *at = m_globalNamespace;
    for (const QString &part : name.split(QStringLiteral("::"))) {
        at = at->getNamespace(part);
        if (!at)
            return nullptr;
    }
    return at;
}

// Values

namespace {

SharedPtr<Object> owned(const Class *ofClass, void *data, const ObjectAttribute &attribute)
{
    SharedPtr<Object> object = ofClass->wrap(data, attribute);
    object->setOwnsData(true);
    return object;
}

} // namespace

// clang-format off
SharedPtr<Object> Registry::createPrimitive(int value) const { return owned(type(IntClassId), newPrimitive(value), {}); }
SharedPtr<Object> Registry::createPrimitive(long long value) const { return owned(type(Int64ClassId), newPrimitive(value), {}); }
SharedPtr<Object> Registry::createPrimitive(long value) const { return owned(type(LongClassId), newPrimitive(value), {}); }
SharedPtr<Object> Registry::createPrimitive(bool value) const { return owned(type(BoolClassId), newPrimitive(value), {}); }
SharedPtr<Object> Registry::createPrimitive(double value) const { return owned(type(DoubleClassId), newPrimitive(value), {}); }
SharedPtr<Object> Registry::voidObject() const { return m_voidObject; }
// clang-format on

SharedPtr<Object> Registry::createPrimitive(const char *utf8) const
{
    return owned(type(StringClassId), newPrimitiveText(QByteArray(utf8)),
                 ObjectAttribute(ObjectAttribute::Pointer, 0));
}

SharedPtr<Object> Registry::createPrimitive(const QStringList &texts) const
{
    auto **strings = reinterpret_cast<char **>(
            allocatePrimitive(static_cast<std::size_t>(texts.size()) * sizeof(char *)));
    for (qsizetype i = 0; i < texts.size(); ++i)
        strings[i] = newPrimitiveText(texts.at(i).toUtf8());
    return owned(type(StringClassId), strings,
                 ObjectAttribute(ObjectAttribute::Pointer | ObjectAttribute::Array,
                                 static_cast<FInt32>(texts.size())));
}

SharedPtr<Object> Registry::createNull(const Class *ofClass) const
{
    return ofClass ? ofClass->wrap(nullptr, ObjectAttribute(ObjectAttribute::Pointer, 0)) : nullptr;
}

// Settings per class

void Registry::addPropertyDelegate(const QString &className, const QStringList &properties)
{
    if (type(className)) {
        // Delegates live as long as the process; the factory knows this one.
        new GenericStaticPropertyDelegate(className, properties);
    }
}

void Registry::setUniqueProperty(const QString &className, const QString &property)
{
    m_uniquePropertyClasses.append(className);
    m_uniqueProperties.insert(className, property);
}

void Registry::setExtensionCode(const QString &code, const QString &language)
{
    m_extensionCode = code;
    m_extensionLanguage = language;
}

// clang-format off
void Registry::setMouseTracking(const QString &className, bool on) { m_mouseTracking.insert(className, on); }
void Registry::setRecordMouseDrag(const QString &className, bool on) { m_recordMouseDrag.insert(className, on); }
void Registry::setAllowKeyEventCompression(const QString &className, bool on) { m_keyEventCompression.insert(className, on); }
void Registry::enableEventCompression(const QString &, bool) {}
void Registry::setRecorderFilter(const QString &className, const QString &pattern) { m_recorderFilters[className].append(pattern); }
// clang-format on

int Registry::isKeyEventCompressionAllowed(const QString &className) const
{
    constexpr int Undecided = -1;
    const auto entry = m_keyEventCompression.constFind(className);
    return entry == m_keyEventCompression.constEnd() ? Undecided : int(*entry);
}

bool Registry::matchRecordFilter(const QString &className, const QString &value) const
{
    for (const QString &pattern : m_recorderFilters.value(className)) {
        if (pattern == value)
            return true;
        const QRegularExpression expression(QRegularExpression::wildcardToRegularExpression(pattern));
        if (expression.match(value).hasMatch())
            return true;
    }
    return false;
}

// Failures

void Registry::setError(const QString &text)
{
    if (text.isEmpty())
        m_unmatchedProperties.clear();
    m_lastError = text;
}

QString Registry::lastError()
{
    m_unmatchedProperties.clear();
    return std::exchange(m_lastError, QString());
}

void Registry::setUnmatchedProperties(const QString &candidate, const QStringList &properties)
{
    const auto entry = m_unmatchedProperties.constFind(candidate);
    if (entry == m_unmatchedProperties.constEnd() || entry->size() >= properties.size())
        m_unmatchedProperties.insert(candidate, properties);
}

void Registry::addUnmatchedProperty(const QString &candidate, const QString &property)
{
    QStringList &properties = m_unmatchedProperties[candidate];
    if (!properties.contains(property))
        properties.append(property);
}

QVariant Registry::call(const QString &, const QList<QVariant> &)
{
    setError(QStringLiteral("Cannot make remote calls right now. Make sure your application is running "
                            "and hooked by Vorkel."));
    return QVariant();
}

} // namespace Vorkel
