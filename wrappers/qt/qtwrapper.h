#pragma once

#include "qtreadiness.h"

#include "hook/wrapper.h"
#include "objectmodel/propertyvalue.h"

namespace Vorkel {

/// The wrapper for programs made with Qt 6.
class QtWrapper : public Wrapper
{
    Q_OBJECT

public:
    /// The one of this process, which lives as long as it.
    [[nodiscard]] static QtWrapper *self();

    [[nodiscard]] QString name() const override;
    [[nodiscard]] bool ownsObject(const SharedPtr<Object> &object) const override;
    void setSpying(bool) override {}
    void recordingStopped() override {}

    /// Objects of one type bear names of one type.
    [[nodiscard]] bool possibleNameMatch(const PropertyMap &mapEntry,
                                         const PropertyMap &computed) const override;

    [[nodiscard]] bool isObjectReady(const SharedPtr<Object> &object) const override;
    [[nodiscard]] bool isObjectItemReady(const SharedPtr<Object> &object, const QString &item) const override;
    [[nodiscard]] bool isObjectItemReady(const SharedPtr<Object> &object, int row, int column) const override;
    [[nodiscard]] SharedPtr<Object> getObjectItemIfReady(const SharedPtr<Object> &object,
                                                         const QString &item) const override;
    [[nodiscard]] SharedPtr<Object> getObjectItemIfReady(const SharedPtr<Object> &object, int row,
                                                         int column) const override;

    /// Without a point the pointer goes where a person would press.
    FunctionCallResult<NativePoint> pointerMove(const SharedPtr<Object> &object,
                                                const ObjectPoint &point) override;
    /// Whatever manages the windows, the pressed one becomes the active one.
    VoidResult pointerPress(const SharedPtr<Object> &object, const ObjectPoint &point,
                            MouseButton::Value button, int modifiers, bool press, int count) override;
    /// A touch where a person would press. `modifiers` are bits of `KeyboardModifier`.
    VoidResult tap(const SharedPtr<Object> &object, int modifiers);
    [[nodiscard]] QVariant desktopImage() const override;

private:
    using Wrapper::Wrapper;

    [[nodiscard]] SharedPtr<Object> readyItem(const SharedPtr<Object> &container,
                                              const SharedPtr<Object> &item,
                                              const QString &description) const;

    mutable QtReadiness m_readiness;
};

} // namespace Vorkel
