#pragma once

#include "objectmodel/object.h"
#include "objectmodel/signature.h"

namespace Vorkel {

class Class;

/// A function of a class.
class VORKEL_EXPORT Method : public Serializable
{
public:
    /// `id` is the number that the class's `invoke` gets, hierarchy-wide. A return argument without a
    /// class prints no type.
    Method(const Class *methodClass, const Argument &returnArgument, const QString &name,
           const Signature &signature, bool isStatic, int id);

    [[nodiscard]] const Class *methodClass() const { return m_class; }
    [[nodiscard]] const Argument &returnArgument() const { return m_returnArgument; }
    [[nodiscard]] const QString &name() const { return m_name; }
    [[nodiscard]] const Signature &signature() const { return m_signature; }
    [[nodiscard]] bool isStatic() const { return m_isStatic; }
    [[nodiscard]] int id() const { return m_id; }
    void setId(int id) { m_id = id; }
    /// Why the method should not be used any more; empty when it should.
    [[nodiscard]] const QString &deprecationMessage() const { return m_deprecationMessage; }
    void deprecate(const QString &message) { m_deprecationMessage = message; }

    /// Calls the method. Null, with the last error set, when object or number of arguments are wrong.
    SharedPtr<Object> invoke(const SharedPtr<Object> &object, const ObjectList &arguments) const;
    [[nodiscard]] QString toString() const;

    void writeObject(QDataStream &stream) const override;
    void readObject(QDataStream &stream) override;

private:
    const Class *m_class;
    Argument m_returnArgument;
    QString m_name;
    Signature m_signature;
    bool m_isStatic;
    int m_id;
    QString m_deprecationMessage;
};

/// The overloads of one name. The first that fits wins.
class VORKEL_EXPORT MethodList : public FList<const Method *>
{
public:
    using FList<const Method *>::FList;

    /// Calls the first overload to which the arguments can be converted. `*ok` tells whether there
    /// was one; with no overload at all it is left alone.
    SharedPtr<Object> invoke(const SharedPtr<Object> &object, const ObjectList &arguments, bool *ok) const;
    /// Calls the first overload whose classes the arguments have. False when there is none.
    bool invoke(const SharedPtr<Object> &object, const ObjectList &arguments,
                SharedPtr<Object> *result) const;
    /// The overload that the call above would take.
    [[nodiscard]] const Method *methodForArguments(const ObjectList &arguments) const;
};

/// False, with the last error set, when the number of arguments is wrong.
VORKEL_EXPORT bool verifyMethodArgumentCount(const QString &className, const Method *method,
                                             const ObjectList &arguments);
/// False, with the last error set, when `method` cannot be called on `object`.
VORKEL_EXPORT bool verifyMethodInvocation(const SharedPtr<Object> &object, const Method *method);

/// `arguments` as the classes of `signature` want them; false when one cannot be converted.
VORKEL_EXPORT bool convertArguments(const Signature &signature, const ObjectList &arguments,
                                    ObjectList *converted);

} // namespace Vorkel
