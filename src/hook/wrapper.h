#pragma once

#include "fkit/export.h"
#include "hook/platform/mousebutton.h"
#include "objectmodel/object.h"
#include "objectmodel/propertyvalue.h"
#include "shared/functioncallresult.h"
#include "shared/geometry/geometry.h"

#include <QHash>
#include <QImage>
#include <QObject>
#include <QVariant>

#include <list>
#include <vector>

namespace Vorkel {

class Property;
class Wrapper;

/// One object as whoever looks around in the application sees it.
struct SpyObject
{
    /// `wrapper` is the one that owns the object; null for none.
    SpyObject(const SharedPtr<Object> &object, Wrapper *wrapper);

    QString name;
    QString className;
    bool valid = true;
    bool supportsHighlight = false;
};

/// The contract between the toolkit-neutral core and one toolkit. A wrapper library derives from
/// it and gives an instance to the hook, which does not own it.
class VORKEL_EXPORT Wrapper : public QObject
{
    Q_OBJECT

public:
    using ObjectPoint = Point<ObjectCoordinates>;

    /// A property to be read, and what was read.
    struct ObjectPropertyValue
    {
        SharedPtr<Object> object;
        const Property *property = nullptr;
        SharedPtr<Object> value;
    };
    using ObjectPropertyValues = std::list<ObjectPropertyValue>;

    explicit Wrapper(QObject *parent = nullptr);
    ~Wrapper() override;

    /// The name under which the runner knows this wrapper's descriptor data.
    [[nodiscard]] virtual QString name() const = 0;
    /// Whether this wrapper is responsible for the object.
    [[nodiscard]] virtual bool ownsObject(const SharedPtr<Object> &object) const = 0;

    /// Ends the application. Default: through its event loop.
    virtual void exitAUT(int exitCode);
    /// The application is looked around in, or no longer.
    virtual void setSpying(bool on) = 0;
    /// No more user input is recorded.
    virtual void recordingStopped() = 0;

    // Readiness (wrapper_readiness.cpp): asked again and again until the object is ready; nothing here
    // waits

    /// Whether a person could use the object now. Leaves the reason as last error when not.
    [[nodiscard]] virtual bool isObjectReady(const SharedPtr<Object> &object) const = 0;
    /// Why the object is not ready; empty when it is. Default: by `isObjectReady`.
    [[nodiscard]] virtual QString checkObjectReady(const SharedPtr<Object> &object) const;
    /// Whether there is such an item of the object, by its text or by row and column, and a person could
    /// use it. Leaves the reason as last error when not. Default: yes.
    [[nodiscard]] virtual bool isObjectItemReady(const SharedPtr<Object> &object, const QString &item) const;
    [[nodiscard]] virtual bool isObjectItemReady(const SharedPtr<Object> &object, int row, int column) const;
    /// The item, null when it is not ready. Default: a text that shows that a wrapper has not replaced
    /// this operation.
    [[nodiscard]] virtual SharedPtr<Object> getObjectItemIfReady(const SharedPtr<Object> &object,
                                                                 const QString &item) const;
    [[nodiscard]] virtual SharedPtr<Object> getObjectItemIfReady(const SharedPtr<Object> &object, int row,
                                                                 int column) const;
    /// The item, or why it is not ready. Default: by `getObjectItemIfReady`.
    virtual FunctionCallResult<SharedPtr<Object>> getReadyObjectItem(const SharedPtr<Object> &object,
                                                                     const QString &item) const;
    virtual FunctionCallResult<SharedPtr<Object>> getReadyObjectItem(const SharedPtr<Object> &object, int row,
                                                                     int column) const;

    // Looking around (wrapper_readiness.cpp)

    /// Reads each property of the list.
    virtual void propertyValues(ObjectPropertyValues::iterator first,
                                ObjectPropertyValues::iterator last) const;
    /// Appends what stands below the object.
    virtual bool spyObjectChildren(const SharedPtr<Object> &object, std::list<SpyObject> *list);
    /// Default: what has an extent on the screen.
    [[nodiscard]] virtual bool supportsHighlight(const SharedPtr<Object> &object);
    /// Marks the object on the screen; null ends that. Gives a failure text.
    virtual QString highlightObject(const SharedPtr<Object> &object);

    // Input (wrapper_input.cpp): by the geometry delegate of the object's class and the hook's native
    // interface. `modifiers` are bits of `KeyboardModifier`; a point that is not given is the centre.

    /// The point on the screen that the pointer went to.
    virtual FunctionCallResult<NativePoint> pointerMove(const SharedPtr<Object> &object,
                                                        const ObjectPoint &point);
    /// Moves, then presses or lets go; modifiers go down before and come up after.
    virtual VoidResult pointerPress(const SharedPtr<Object> &object, const ObjectPoint &point,
                                    MouseButton::Value button, int modifiers, bool press, int count);
    virtual VoidResult pointerClick(const SharedPtr<Object> &object, const ObjectPoint &point,
                                    MouseButton::Value button, int modifiers, int count);
    virtual VoidResult doubleClick(const SharedPtr<Object> &object, const ObjectPoint &point,
                                   MouseButton::Value button, int modifiers);

    // Pictures (wrapper_images.cpp)

    /// The picture in an object of the toolkit's own. Default: none.
    [[nodiscard]] virtual QImage qImage(const SharedPtr<Object> &object) const;
    /// The whole desktop in the form in which pictures travel; invalid when there is none.
    [[nodiscard]] virtual QVariant desktopImage() const;
    /// The object's picture after `delayMs` milliseconds, in which the application goes on. Null when the
    /// hook or this wrapper goes meanwhile. `argument` is the toolkit's own.
    virtual QImage grabObjectScreenshot(const SharedPtr<Object> &object, int argument, int delayMs);

    // Names (wrapper_names.cpp)

    /// Default: asks the registry.
    [[nodiscard]] virtual SharedPtr<Object> findObject(const QString &name) const;
    /// The real name by which the object map knows `object`, whose name was computed as `name`: one that
    /// says the same or finds the same object. Empty when the map has none.
    [[nodiscard]] virtual QString getExistingRealName(const SharedPtr<Object> &object,
                                                      const QString &name) const;
    /// Whether an entry of the object map may stand for an object whose computed name has these
    /// properties: a cheap test before the entry is looked up. Default: always.
    [[nodiscard]] virtual bool possibleNameMatch(const PropertyMap &mapEntry,
                                                 const PropertyMap &computed) const;
    /// Forgets what `getExistingRealName` gave, and lets go of the objects.
    void clearCachedObjectNames();

public slots:
    /// The runner's descriptor data for this wrapper: text in `data`, ended by a zero byte that
    /// counts. May be called before the hook's entry has returned. Default: nothing.
    virtual void parseDescriptorData(const QByteArray &data);
    /// Recording of user input was switched. Default: nothing.
    virtual void notifyEventRecordingEnabled(bool on);

protected:
    /// The object's picture by the script function "grabWidget", which a wrapper provides.
    [[nodiscard]] QImage grabWidget(const SharedPtr<Object> &object, int argument) const;

private:
    struct KnownName
    {
        SharedPtr<Object> object;
        QString existing; // empty: the map has none
    };

    mutable QHash<QString, std::vector<KnownName>> m_knownNames; // by computed name
};

} // namespace Vorkel
