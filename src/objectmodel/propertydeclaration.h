#pragma once

#include "objectmodel/argument.h"
#include "objectmodel/object.h"

namespace Vorkel {

class Method;

/// A property that is added to a class from outside, read and written by methods or functions.
class VORKEL_EXPORT PropertyDeclaration
{
public:
    using ReadFunction = SharedPtr<Object> (*)(SharedPtr<Object> object);
    using WriteFunction = bool (*)(SharedPtr<Object> object, SharedPtr<Object> value);

    /// Readable with a reader, writable with a writer; either may be null.
    PropertyDeclaration(const Class *declaringClass, const Argument &type, const QString &name,
                        const Method *read, const Method *write, bool isStatic, bool stored);
    PropertyDeclaration(const Class *declaringClass, const Argument &type, const QString &name,
                        ReadFunction read, WriteFunction write, bool isStatic, bool stored);
    /// By name; type and methods are looked up when the declaration is first used.
    PropertyDeclaration(const QString &className, const QString &name, const QString &typeName,
                        const QString &readMethodName, const QString &writeMethodName, bool isStatic,
                        bool stored);

    [[nodiscard]] const QString &name() const { return m_name; }
    [[nodiscard]] const Class *declaringClass() const { return m_class; }
    [[nodiscard]] const Argument &type() const;
    /// Bits of `PropertyFlag`.
    [[nodiscard]] FUInt32 flags() const;
    [[nodiscard]] const Method *readMethod() const;
    [[nodiscard]] const Method *writeMethod() const;
    [[nodiscard]] ReadFunction readFunction() const { return m_readFunction; }
    [[nodiscard]] WriteFunction writeFunction() const { return m_writeFunction; }

private:
    void lazySetup();
    void setUpReader();
    void setUpWriter();
    [[nodiscard]] const PropertyDeclaration &ready() const;

    QString m_name;
    Argument m_type;
    const Class *m_class;
    const Method *m_readMethod = nullptr;
    const Method *m_writeMethod = nullptr;
    ReadFunction m_readFunction = nullptr;
    WriteFunction m_writeFunction = nullptr;
    FUInt32 m_flags = 0;
    QString m_typeName;
    QString m_readMethodName;
    QString m_writeMethodName;
    bool m_isSetUp = true;
};

} // namespace Vorkel
