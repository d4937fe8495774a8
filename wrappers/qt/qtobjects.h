#pragma once

#include "objectmodel/object.h"

#include <QHash>
#include <QObject>

namespace Vorkel {

class QtClass;

/// The QObjects that were handed out: one object for each until it goes, be it to another thread, which
/// invalidates the object at once.
class VORKEL_EXPORT QtObjects : public QObject
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
    QtObjects();
    bool eventFilter(QObject *object, QEvent *event) override;
    void onDestroyed(QObject *object);
    static void onGone(QObject *object);

    // Whoever walks through the objects comes again.
    QHash<const QObject *, SharedPtr<Object>> m_known;
};

/// A QObject of the application. The data is the QObject.
class QtObject final : public Object
{
public:
    QtObject(QObject *object, const QtClass *objectClass);

    /// This: another object would not hear of the end of the QObject.
    SharedPtr<Object> dereference() override { return self(); }
};

} // namespace Vorkel
