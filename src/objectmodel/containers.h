#pragma once

#include "objectmodel/class.h"

#include <QStringList>

#include <map>
#include <string>

namespace Vorkel {

class Argument;

/// Lists of objects, for scripts: "length", "at", "push".
class VORKEL_EXPORT ArrayClass : public Class
{
public:
    using Items = std::vector<SharedPtr<Object>>;

    ArrayClass();

    /// The class as it is registered; null before that.
    [[nodiscard]] static const Class *registeredClass();
    /// An object that holds a copy of `items`.
    [[nodiscard]] static SharedPtr<Object> wrapObject(const Items &items);
    [[nodiscard]] static Items unwrapObject(const SharedPtr<Object> &object);
    /// The same by members alone, so that the class may speak for one elsewhere.
    [[nodiscard]] static SharedPtr<Object> createRemoteObject(const Items &items);
    [[nodiscard]] static Items unwrapRemoteObject(const SharedPtr<Object> &object);
    [[nodiscard]] static Argument arrayClassArg(const std::string &name);

    using Class::construct;
    using Class::getProperty;
    using Class::invoke;
    SharedPtr<Object> construct(int id, void **arguments) const override;
    SharedPtr<Object> invoke(int id, const SharedPtr<Object> &object, const ObjectList &arguments,
                             const Method *method) const override;
    SharedPtr<Object> getProperty(int id, void *object, const Class *type) const override;
    void deleteObjectData(void *data, const ObjectAttribute &attribute) const override;
    [[nodiscard]] Constructor *createConstructor(int index) const override;
    [[nodiscard]] Method *createMethod(int index) const override;
    [[nodiscard]] Property *createProperty(int index) const override;
};

/// Dictionaries of objects, for scripts: "length", "keys", "at", "insert".
class VORKEL_EXPORT MapClass : public Class
{
public:
    using Items = std::map<QString, SharedPtr<Object>>;

    MapClass();

    [[nodiscard]] static const Class *registeredClass();
    [[nodiscard]] static SharedPtr<Object> wrapObject(const Items &items);
    [[nodiscard]] static Items unwrapObject(const SharedPtr<Object> &object);
    [[nodiscard]] static SharedPtr<Object> createRemoteObject(const Items &items);
    [[nodiscard]] static Items unwrapRemoteObject(const SharedPtr<Object> &object);
    [[nodiscard]] static Argument mapClassArg(const std::string &name);

    using Class::construct;
    using Class::getProperty;
    using Class::invoke;
    SharedPtr<Object> construct(int id, void **arguments) const override;
    SharedPtr<Object> invoke(int id, const SharedPtr<Object> &object, const ObjectList &arguments,
                             const Method *method) const override;
    SharedPtr<Object> getProperty(int id, void *object, const Class *type) const override;
    void deleteObjectData(void *data, const ObjectAttribute &attribute) const override;
    [[nodiscard]] Constructor *createConstructor(int index) const override;
    [[nodiscard]] Method *createMethod(int index) const override;
    [[nodiscard]] Property *createProperty(int index) const override;
};

/// Between string lists and arrays of string objects.
[[nodiscard]] VORKEL_EXPORT SharedPtr<Object> wrap(const QStringList &texts);
VORKEL_EXPORT void unwrap(const SharedPtr<Object> &object, QStringList *texts);

} // namespace Vorkel
