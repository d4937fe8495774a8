#include "hook/platform/widgethighlighter.h"

namespace Vorkel {

void WidgetHighlighter::setToolTipMode(ToolTipMode mode)
{
    if (mode == m_toolTipMode)
        return;
    m_toolTipMode = mode;
    if (isVisible())
        updateToolTip();
}

} // namespace Vorkel
