#include "xclipboard.h"

#include "xselectionreader.h"

#include <QScopeGuard>

#include "xlibheaders.h"

namespace Vorkel {

using TextResult = FunctionCallResult<QString>;

XClipboard::XClipboard(std::shared_ptr<XConnection> connection, std::shared_ptr<XClipboardThread> owner)
    : m_connection(std::move(connection))
    , m_owner(std::move(owner))
{
}

TextResult XClipboard::text()
{
    const auto isReading = m_isReading;
    if (*isReading)
        return TextResult::failure(QStringLiteral("The clipboard is being read already"));
    const Window owner = XGetSelectionOwner(m_connection->display(), m_connection->atom("CLIPBOARD"));
    if (m_connection->isBroken())
        return TextResult::failure(m_connection->lost().error());
    if (owner == X::None)
        return QString();
    if (const std::optional<QString> own = m_owner->textOf(owner))
        return *own;

    *isReading = true;
    const auto done = qScopeGuard([isReading] { *isReading = false; });
    XSelectionReader reader(m_connection);
    for (const char *target : { "UTF8_STRING", "STRING" }) {
        switch (reader.read(target)) {
        case XSelectionReader::Read:
            return *target == 'U' ? QString::fromUtf8(reader.data()) : QString::fromLatin1(reader.data());
        case XSelectionReader::Refused:
            break;
        case XSelectionReader::TooLate:
            return TextResult::failure(
                    QStringLiteral("The program that owns the clipboard does not hand it over in time"));
        }
    }
    return QString();
}

} // namespace Vorkel
