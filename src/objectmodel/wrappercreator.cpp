#include "objectmodel/wrappercreator.h"

#include "objectmodel/class.h"
#include "objectmodel/constructor.h"
#include "objectmodel/inspector.h"
#include "objectmodel/method.h"

namespace Vorkel {

WrapperCreator::WrapperCreator(const Class *describedClass, const char *strings,
                               const ConstructorDescriptor *constructors, const MethodDescriptor *methods,
                               const int *argumentIndexes, const ArgumentDescriptor *arguments)
    : m_class(describedClass)
    , m_strings(strings)
    , m_constructors(constructors)
    , m_methods(methods)
    , m_argumentIndexes(argumentIndexes)
    , m_arguments(arguments)
{
}

Constructor *WrapperCreator::createConstructor(int index) const
{
    (void)m_class->super();
    const ConstructorDescriptor &row = m_constructors[index];
    return new Constructor(m_class, signatureFromData(row.firstArgument, row.argumentCount), index);
}

Method *WrapperCreator::createMethod(int index) const
{
    const MethodDescriptor &row = m_methods[index - m_class->superClassOffset(Class::MethodOffset)];
    return new Method(m_class, argumentFromDescriptor(m_arguments[row.returnArgument]),
                      QString::fromUtf8(m_strings + row.name),
                      signatureFromData(row.firstArgument, row.argumentCount), row.isStatic, index);
}

Signature WrapperCreator::signatureFromData(int first, int count) const
{
    Signature signature;
    for (int i = first; i < first + count; ++i)
        signature.append(argumentFromDescriptor(m_arguments[m_argumentIndexes[i]]));
    return signature;
}

Argument WrapperCreator::argumentFromDescriptor(const ArgumentDescriptor &row) const
{
    Inspector *inspector = Inspector::self();
    const Class *type = nullptr;
    const Enum *enumerator = nullptr;
    if (row.typeKind == ArgumentDescriptor::ByClassId) {
        type = inspector->type(row.typeRef);
    } else {
        QString name = QString::fromUtf8(m_strings + row.typeRef);
        if (row.typeKind == ArgumentDescriptor::ByRealName && !name.isEmpty())
            name = m_class->realType(name);
        type = inspector->type(name);
        const qsizetype scope = name.indexOf(QLatin1String("::"));
        if (!type && scope >= 0 && row.enumerator == ArgumentDescriptor::EnumByType) {
            type = inspector->type(name.first(scope));
            enumerator = type ? type->enumerator(name.sliced(scope + 2)) : nullptr;
        }
    }
    if (row.enumerator >= 0)
        enumerator = inspector->enumerator(QString::fromUtf8(m_strings + row.enumerator));
    const QString name = row.name >= 0 ? QString::fromUtf8(m_strings + row.name) : QString();
    return Argument(name, type, enumerator, static_cast<FUInt32>(row.flags), row.arraySize);
}

} // namespace Vorkel
