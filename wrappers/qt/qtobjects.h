#pragma once

#include "objectmodel/object.h"

#include <QHash>
#include <QObject>

namespace Vorkel {

class QtClass;
class QtObject;

/// The QObjects that were handed out: one object for each as long as anyone holds it, invalidated at
/// once when its QObject goes.
class QtObjects : public QObject
{
    Q_OBJECT

public:
    /// Lives as long as the process.
    [[nodiscard]] static QtObjects *self();

    /// The object for `object`; null for null and for what lives in another thread.
    [[nodiscard]] SharedPtr<Object> wrap(QObject *object);
    /// The QObject behind `object`; null when there is none or it has gone.
    [[nodiscard]] static QObject *unwrap(const SharedPtr<Object> &object);
    /// The one class for a meta-object, made and announced when it is first asked for.
    [[nodiscard]] static const QtClass *classOf(const QMetaObject *metaObject);

private:
    friend class QtObject;

    void onDestroyed(QObject *object);
    void forget(QObject *object);

    QHash<QObject *, QtObject *> m_known; // not owned: an object leaves when it goes
};

/// A QObject of the application. The data is the QObject.
class QtObject : public Object
{
public:
    QtObject(QObject *object, const Class *objectClass, QtObjects *registry);
    ~QtObject() override;

private:
    QtObjects *m_registry;
};

} // namespace Vorkel
