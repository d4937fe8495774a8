#pragma once

#include "fkit/export.h"

#include <QObject>

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

public slots:
    /// The runner's descriptor data for this wrapper: text in `data`, ended by a zero byte that
    /// counts. May be called before the hook's entry has returned. Default: nothing.
    virtual void parseDescriptorData(const QByteArray &data);
    /// Recording of user input was switched. Default: nothing.
    virtual void notifyEventRecordingEnabled(bool on);
};

} // namespace Vorkel
