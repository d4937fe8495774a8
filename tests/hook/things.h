#pragma once

#include "hook/autprocess.h"
#include "hook/hook.h"
#include "hook/wrapper.h"
#include "objectmodel/class.h"
#include "objectmodel/delegates.h"
#include "objectmodel/inspector.h"
#include "objectmodel/objectname.h"
#include "objectmodel/screenvalues.h"
#include "serverlib/nullmessagechannel.h"
#include "support/recorders.h"
#include "support/recordingnativeinterface.h"

#include <memory>

/// A toolkit of one thing at the top, which has a place on a screen of two native pixels to each of its own,
/// and a hook with a wrapper for it.
namespace Things {

using namespace Qt::StringLiterals;
using namespace Vorkel;
using Plugin = RecordingPlugin;

inline const Class *thingClass()
{
    static const auto *const instance = new Class("QtGUIObject", true);
    return instance;
}

inline SharedPtr<Object> newThing()
{
    static int data = 0;
    return thingClass()->wrap(&data, ObjectAttribute(ObjectAttribute::Pointer, 0));
}

class Hierarchy : public ObjectHierarchyDelegate
{
public:
    Hierarchy()
        : ObjectHierarchyDelegate(thingClass()->className())
    {
    }

    int numChildren(const SharedPtr<Object> &object) const override { return object != thing; }
    SharedPtr<Object> child(const SharedPtr<Object> &, int) const override { return thing; }
    SharedPtr<Object> childByName(const SharedPtr<Object> &, const QString &) const override { return {}; }
    SharedPtr<Object> objectByQualifiedName(const SharedPtr<Object> &, const ObjectName &name) const override
    {
        ++lookups;
        const PropertyMap demands = name.properties();
        for (auto demand = demands.begin(); demand != demands.end(); ++demand) {
            if (!properties.isEmpty() && !demand->matches(properties.value(demand.key()))) {
                Inspector::self()->setUnmatchedProperties(fullName, { demand.key() });
                return {};
            }
        }
        return thing;
    }
    QString name(const SharedPtr<Object> &) const override { return u"thing"_s; }
    QString qualifiedName(const SharedPtr<Object> &) const override
    {
        return Hook::hook->namingScheme() == 0 ? fullName : u"thing"_s;
    }
    int wrapperType() const override { return 1; }

    SharedPtr<Object> thing;
    QMap<QString, QString> properties; ///< by which it is found; by any name when there are none
    QString fullName;
    mutable int lookups = 0;
};

class Geometry : public GeometryDelegate
{
public:
    Geometry()
        : GeometryDelegate(thingClass()->className())
    {
    }

    NativeRect globalBounds(const SharedPtr<Object> &) const override { return bounds; }
    NativeRect nativeGlobalBounds(const SharedPtr<Object> &) const override
    {
        const NativePoint &at = bounds.topLeft;
        return NativeRect::at(2 * at.x, 2 * at.y, 2 * bounds.width + 1, 2 * bounds.height + 1);
    }
    NativePoint relativeToNative(const SharedPtr<Object> &, int x, int y) const override
    {
        const NativePoint &at = bounds.topLeft;
        return bounds.isValid() ? NativePoint::at(2 * (at.x + x), 2 * (at.y + y)) : NativePoint();
    }

    NativeRect bounds = NativeRect::at(10, -20, 50, 30);
};

/// Not ready as long as there is a reason; "silent" is not told.
class ThingWrapper : public Wrapper
{
public:
    QString name() const override { return u"Things"_s; }
    bool ownsObject(const SharedPtr<Object> &object) const override { return object->isA(thingClass()); }
    bool isObjectReady(const SharedPtr<Object> &) const override { return isReady(); }
    bool isObjectItemReady(const SharedPtr<Object> &, const QString &) const override { return isReady(); }
    bool isObjectItemReady(const SharedPtr<Object> &, int, int) const override { return isReady(); }
    void setSpying(bool) override {}
    void recordingStopped() override {}
    QVariant desktopImage() const override { return desktop; }
    QImage qImage(const SharedPtr<Object> &) const override { return picture; }
    bool possibleNameMatch(const PropertyMap &entry, const PropertyMap &) const override
    {
        return !entry.contains(u"never"_s);
    }
    void parseDescriptorData(const QByteArray &data) override
    {
        if (onDescriptor)
            onDescriptor(data);
    }

    QString reason;
    QVariant desktop;
    QImage picture;
    std::function<void(const QByteArray &)> onDescriptor;

private:
    bool isReady() const
    {
        if (!reason.isEmpty() && reason != u"silent"_s)
            Inspector::self()->setError(reason);
        return reason.isEmpty();
    }
};

/// All of it, for one test.
struct Session
{
    explicit Session(PlatformPlugin *platform = nullptr)
    {
        static auto *const tree = new Hierarchy;
        static auto *const places = new Geometry;
        hierarchy = tree;
        geometry = places;
        geometry->bounds = NativeRect::at(10, -20, 50, 30);
        hierarchy->thing = thing;
        hierarchy->properties.clear();
        hierarchy->fullName = u"{text='%1'}"_s;
        (void)Inspector::self()->lastError();
        hook = new Hook(new IPC(new NullMessageChannel, {}, nullptr, nullptr), Hook::NoRunner, wrapper.get(),
                        new AUTProcess, platform, 0);
    }
    ~Session()
    {
        delete Hook::hook;
        thing->invalidate();
    }

    QVariant call(const QString &name, const ArgumentList &arguments = {})
    {
        return hook->handleCall(1, name, arguments);
    }
    int id(const SharedPtr<Object> &object)
    {
        return object ? hook->objectToVariant(object).toString().section(u',', 0, 0).toInt() : 0;
    }
    SharedPtr<Object> object(const QVariant &reply)
    {
        return hook->objectById(reply.toString().section(u',', 0, 0).toInt());
    }
    static QString error() { return Inspector::self()->lastError(); }

    LogCapture log;
    SharedPtr<Object> thing = newThing();
    SharedPtr<Object> stranger = Inspector::self()->createPrimitive(7);
    std::unique_ptr<ThingWrapper> wrapper = std::make_unique<ThingWrapper>();
    Hierarchy *hierarchy;
    Geometry *geometry;
    Hook *hook;
};

} // namespace Things
