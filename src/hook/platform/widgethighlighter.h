#pragma once

#include "fkit/export.h"
#include "shared/geometry/geometry.h"

#include <QString>

namespace Vorkel {

/// Draws a frame around something on the screen, with a text beside it.
class VORKEL_EXPORT WidgetHighlighter
{
public:
    enum ToolTipMode { ToolTipHidden = 0, ToolTipAtCursor = 1, ToolTipBelowFrame = 2 };

    WidgetHighlighter() = default;
    WidgetHighlighter(const WidgetHighlighter &) = delete;
    WidgetHighlighter &operator=(const WidgetHighlighter &) = delete;
    virtual ~WidgetHighlighter() = default;

    virtual void setGeometry(const NativeRect &area) = 0;
    virtual void setToolTip(const QString &text) = 0;
    virtual void updateToolTip() = 0;
    [[nodiscard]] virtual bool isVisible() const = 0;
    virtual void show() = 0;
    virtual void hide() = 0;

    [[nodiscard]] ToolTipMode toolTipMode() const { return m_toolTipMode; }
    void setToolTipMode(ToolTipMode mode);

private:
    ToolTipMode m_toolTipMode = ToolTipHidden;
};

/// Draws nothing.
class VORKEL_EXPORT NullWidgetHighlighter : public WidgetHighlighter
{
public:
    // clang-format off
    void setGeometry(const NativeRect &) override {}
    void setToolTip(const QString &) override {}
    void updateToolTip() override {}
    [[nodiscard]] bool isVisible() const override { return false; }
    void show() override {}
    void hide() override {}
    // clang-format on
};

/// Has another one draw, which is the caller's; null for none, and then nothing is drawn. The mode of the
/// tool tip stays each highlighter's own.
class VORKEL_EXPORT WidgetHighlighterForwarder : public WidgetHighlighter
{
public:
    explicit WidgetHighlighterForwarder(WidgetHighlighter *target) { setImplementation(target); }

    void setImplementation(WidgetHighlighter *target) { m_target = target ? target : &m_nothing; }

    // clang-format off
    void setGeometry(const NativeRect &area) override { m_target->setGeometry(area); }
    void setToolTip(const QString &text) override { m_target->setToolTip(text); }
    void updateToolTip() override { m_target->updateToolTip(); }
    [[nodiscard]] bool isVisible() const override { return m_target->isVisible(); }
    void show() override { m_target->show(); }
    void hide() override { m_target->hide(); }
    // clang-format on

private:
    NullWidgetHighlighter m_nothing;
    WidgetHighlighter *m_target;
};

} // namespace Vorkel
