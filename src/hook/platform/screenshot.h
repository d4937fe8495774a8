#pragma once

#include "fkit/export.h"
#include "shared/geometry/geometry.h"
#include "shared/responselistener.h"

#include <QImage>
#include <QTransform>
#include <QVariant>

namespace Vorkel {

/// A picture of the screen or of a part of it.
struct VORKEL_EXPORT Screenshot
{
    QImage image;
    QTransform transform; ///< from pixels of the image to global screen coordinates
    double density = 1.0; ///< of the display's pixels

    /// Cuts `area` out, keeping the transform true; an invalid area leaves it as it is.
    [[nodiscard]] Screenshot cropped(const QRect &area) const;
    /// Turned by one of four ways: 0 not at all, 1 and 2 by a quarter, 3 by half.
    [[nodiscard]] Screenshot rotated(int way) const;
};

/// A picture, or why there is none.
struct ScreenshotResult : Screenshot
{
    QString error; ///< empty on success

    [[nodiscard]] bool isOk() const { return error.isEmpty(); }
    [[nodiscard]] static ScreenshotResult failure(const QString &text)
    {
        ScreenshotResult result;
        result.error = text;
        return result;
    }
};

/// Whatever can take pictures of the desktop.
class VORKEL_EXPORT ScreenshotSource
{
public:
    ScreenshotSource() = default;
    ScreenshotSource(const ScreenshotSource &) = delete;
    ScreenshotSource &operator=(const ScreenshotSource &) = delete;

    /// Answers `listener` once, perhaps before it returns. A negative width or height stands for the whole
    /// desktop; what `argument` means is the platform's own.
    virtual void desktopScreenshot(ResponseListener<Screenshot> *listener, const NativeRect &area,
                                   int argument) = 0;

protected:
    ~ScreenshotSource() = default;
};

} // namespace Vorkel
