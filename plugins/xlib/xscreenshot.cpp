#include "xscreenshot.h"

#include "xdisplay.h"
#include "ximage.h"

#include <QRect>

#include <cstring>
#include <memory>
#include <sys/ipc.h>
#include <sys/mman.h>
#include <sys/shm.h>

#include "xlibheaders.h"

namespace Vorkel {

namespace {

struct ImageCloser
{
    void operator()(XImage *image) const { XDestroyImage(image); }
};
using ImagePointer = std::unique_ptr<XImage, ImageCloser>;

/// Memory that the server writes to. It goes with the last who uses it, whatever happens to the process.
class SharedMemory
{
public:
    SharedMemory(XConnection *connection, size_t size)
        : m_connection(connection)
    {
        m_info.shmid = ::shmget(IPC_PRIVATE, size, IPC_CREAT | 0600);
        if (m_info.shmid < 0)
            return;
        void *const address = ::shmat(m_info.shmid, nullptr, 0);
        if (address != reinterpret_cast<void *>(-1)) {
            m_info.shmaddr = static_cast<char *>(address);
            m_info.readOnly = X::False;
            // A server on another machine, or in another container, cannot.
            m_isAttached = XShmAttach(connection->display(), &m_info) && connection->succeeded();
        }
        ::shmctl(m_info.shmid, IPC_RMID, nullptr);
    }

    SharedMemory(const SharedMemory &) = delete;
    SharedMemory &operator=(const SharedMemory &) = delete;

    ~SharedMemory()
    {
        if (m_isAttached)
            XShmDetach(m_connection->display(), &m_info);
        if (m_info.shmaddr)
            ::shmdt(m_info.shmaddr);
    }

    [[nodiscard]] bool isAttached() const { return m_isAttached; }
    [[nodiscard]] XShmSegmentInfo *info() { return &m_info; }
    /// The caller's, by shmdt.
    [[nodiscard]] char *release() { return std::exchange(m_info.shmaddr, nullptr); }

private:
    XConnection *m_connection;
    XShmSegmentInfo m_info {};
    bool m_isAttached = false;
};

/// Maps all pages of the memory that somebody else has written to at once, which takes a third of the time
/// that it takes one by one; what cannot be done so is left to come one by one.
void mapAtOnce([[maybe_unused]] char *memory, [[maybe_unused]] size_t size)
{
#ifdef MADV_POPULATE_READ
    (void)::madvise(memory, size, MADV_POPULATE_READ);
#endif
}

QImage grabShared(XConnection *connection, const QRect &area)
{
    Display *const display = connection->display();
    const int screen = DefaultScreen(display);
    if (!XShmQueryExtension(display))
        return {};
    XShmSegmentInfo unused {};
    const ImagePointer image(XShmCreateImage(display, DefaultVisual(display, screen),
                                             static_cast<unsigned>(DefaultDepth(display, screen)), ZPixmap,
                                             nullptr, &unused, static_cast<unsigned>(area.width()),
                                             static_cast<unsigned>(area.height())));
    if (!image)
        return {};
    const size_t size = static_cast<size_t>(image->bytes_per_line) * static_cast<size_t>(image->height);
    SharedMemory memory(connection, size);
    if (!memory.isAttached())
        return {};
    image->obdata = reinterpret_cast<char *>(memory.info());
    image->data = memory.info()->shmaddr;
    const bool isTaken = XShmGetImage(display, connection->root(), image.get(), area.x(), area.y(), AllPlanes)
            && connection->succeeded();
    if (!isTaken)
        return {};
    mapAtOnce(image->data, size);
    if (!isRgb32(*image))
        return toRgb32(display, *image);
    char *const pixels = memory.release();
    return QImage(
            reinterpret_cast<uchar *>(pixels), image->width, image->height, image->bytes_per_line,
            QImage::Format_RGB32, [](void *address) { ::shmdt(address); }, pixels);
}

QImage grabPlain(XConnection *connection, const QRect &area)
{
    const ImagePointer image(XGetImage(connection->display(), connection->root(), area.x(), area.y(),
                                       static_cast<unsigned>(area.width()),
                                       static_cast<unsigned>(area.height()), AllPlanes, ZPixmap));
    return image && connection->succeeded() ? toRgb32(connection->display(), *image) : QImage();
}

QRect rootArea(XConnection *connection)
{
    XWindowAttributes attributes {};
    XGetWindowAttributes(connection->display(), connection->root(), &attributes);
    return { 0, 0, attributes.width, attributes.height };
}

/// `picture` of `visible` in a frame of `wanted`.
QImage framed(const QImage &picture, const QRect &visible, const QRect &wanted)
{
    QImage result(wanted.size(), QImage::Format_RGB32);
    if (result.isNull())
        return result;
    result.fill(Qt::black);
    const int left = visible.x() - wanted.x();
    for (int y = 0; y < picture.height(); ++y) {
        uchar *const line = result.scanLine(visible.y() - wanted.y() + y) + qsizetype(left) * 4;
        std::memcpy(line, picture.constScanLine(y), static_cast<size_t>(picture.width()) * 4);
    }
    return result;
}

} // namespace

ScreenshotResult takeScreenshot(XConnection *connection, const NativeRect &area)
{
    constexpr int Largest = 32767;
    const QRect all = rootArea(connection);
    const QRect wanted =
            area.isValid() ? QRect(area.topLeft.x, area.topLeft.y, area.width, area.height) : all;
    if (connection->isBroken())
        return ScreenshotResult::failure(connection->lost().error());
    if (wanted.isEmpty() || wanted.width() > Largest || wanted.height() > Largest)
        return ScreenshotResult::failure(QStringLiteral("There is no picture of %1 by %2 pixels")
                                                 .arg(wanted.width())
                                                 .arg(wanted.height()));

    const QRect visible = wanted & all;
    QImage picture;
    if (!visible.isEmpty()) {
        picture = grabShared(connection, visible);
        if (picture.isNull())
            picture = grabPlain(connection, visible);
        if (picture.isNull())
            return ScreenshotResult::failure(QStringLiteral("The X server gives no picture of its screen"));
    }
    ScreenshotResult result;
    result.image = visible == wanted ? picture : framed(picture, visible, wanted);
    if (area.isValid())
        result.transform = QTransform::fromTranslate(-wanted.x(), -wanted.y());
    return result;
}

} // namespace Vorkel
