#pragma once

#include "fkit/export.h"
#include "objectmodel/object.h"
#include "objectmodel/propertyvalue.h"

#include <QHash>
#include <QObject>

#include <vector>

namespace Vorkel {

/// The contract between the toolkit-neutral core and one toolkit. A wrapper library derives from
/// it and gives an instance to the hook, which does not own it.
class VORKEL_EXPORT Wrapper : public QObject
{
    Q_OBJECT

public:
    explicit Wrapper(QObject *parent = nullptr);
    ~Wrapper() override;

    /// The name under which the runner knows this wrapper's descriptor data.
    [[nodiscard]] virtual QString name() const = 0;
    /// Whether this wrapper is responsible for the object.
    [[nodiscard]] virtual bool ownsObject(const SharedPtr<Object> &object) const = 0;

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

private:
    struct KnownName
    {
        SharedPtr<Object> object;
        QString existing; // empty: the map has none
    };

    mutable QHash<QString, std::vector<KnownName>> m_knownNames; // by computed name
};

} // namespace Vorkel
