#include "objectmodel/namespace.h"

#include "objectmodel/class.h"
#include "objectmodel/inspector.h"

#include <QStringList>

namespace Vorkel {

Namespace::Namespace(Namespace *parent, const QString &name)
    : m_parent(parent)
    , m_name(name)
{
    if (parent)
        parent->registerNamespace(this);
    m_id = Inspector::self()->registerNamespace(this);
}

QString Namespace::fullyQualifiedName() const
{
    return m_parent && m_parent->m_parent ? m_parent->fullyQualifiedName() + QLatin1String("::") + m_name
                                          : m_name;
}

void Namespace::registerClass(const Class *entry)
{
    m_classes.insert(entry->className(), entry);
}

void Namespace::registerNamespace(Namespace *child)
{
    m_namespaceByName.insert(child->name(), child);
    m_namespaces.push_back(child);
}

bool Namespace::containsIdentifier(const QString &name) const
{
    return m_classes.contains(name) || m_namespaceByName.contains(name);
}

namespace {

QStringList &qobjectTypes()
{
    static auto *const names = new QStringList;
    return *names;
}

} // namespace

bool isQObjectType(const QString &className)
{
    return qobjectTypes().contains(className);
}

} // namespace Vorkel

void vorkel_register_qobject_type(const char *name)
{
    QStringList &names = Vorkel::qobjectTypes();
    if (const QString text = QString::fromUtf8(name); !names.contains(text))
        names.append(text);
}
