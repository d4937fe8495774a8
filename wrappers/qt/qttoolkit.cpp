#include "qttoolkit.h"

#include "qtobjects.h"
#include "qtwindowtarget.h"

#include <QCoreApplication>
#include <QScreen>

#include <algorithm>

namespace Vorkel::QtToolkits {

namespace {

std::vector<const QtToolkit *> &toolkits()
{
    static auto *const known = new std::vector<const QtToolkit *>;
    return *known;
}

/// The first answer that is none of the empty ones.
template <typename Ask>
auto firstOf(Ask ask) -> decltype(ask(static_cast<const QtToolkit *>(nullptr)))
{
    for (const QtToolkit *toolkit : toolkits()) {
        if (auto answer = ask(toolkit))
            return answer;
    }
    return {};
}

bool any(bool (QtToolkit::*question)(const QObject *) const, const QObject *object)
{
    return std::any_of(toolkits().begin(), toolkits().end(),
                       [=](const QtToolkit *toolkit) { return (toolkit->*question)(object); });
}

} // namespace

void add(const QtToolkit *toolkit)
{
    toolkits().insert(toolkits().begin(), toolkit);
}

QObjectList topLevels()
{
    for (const QtToolkit *toolkit : toolkits()) {
        QObjectList found = toolkit->topLevels();
        if (!found.isEmpty())
            return found;
    }
    return QCoreApplication::instance() ? QObjectList { QCoreApplication::instance() } : QObjectList();
}

QObjectList childrenOf(const QObject *object)
{
    QObjectList children = object->children();
    for (const QtToolkit *toolkit : toolkits()) {
        if (const QObjectList more = toolkit->associates(object); !more.isEmpty())
            children += more;
    }
    return children;
}

// clang-format off
bool isWindow(const QObject *object) { return any(&QtToolkit::isWindow, object); }
bool isVisible(const QObject *object) { return any(&QtToolkit::isVisible, object); }
// clang-format on

QObject *labelled(const QObject *object)
{
    return firstOf([=](const QtToolkit *toolkit) { return toolkit->labelled(object); });
}

const QtToolkit *ofItemClass(const QString &className)
{
    const auto found = std::find_if(toolkits().begin(), toolkits().end(), [&](const QtToolkit *toolkit) {
        return toolkit->isItemClass(className);
    });
    return found == toolkits().end() ? nullptr : *found;
}

ObjectList visibleItems(const SharedPtr<Object> &container)
{
    for (const QtToolkit *toolkit : toolkits()) {
        if (ObjectList items = toolkit->visibleItems(container); !items.empty())
            return items;
    }
    return {};
}

SharedPtr<Object> itemByText(const SharedPtr<Object> &container, const QString &text)
{
    return firstOf([&](const QtToolkit *toolkit) { return toolkit->itemByText(container, text); });
}

SharedPtr<Object> itemByPlace(const SharedPtr<Object> &container, int row, int column)
{
    return firstOf([&](const QtToolkit *toolkit) { return toolkit->itemByPlace(container, row, column); });
}

std::unique_ptr<QtTarget> target(const SharedPtr<Object> &object)
{
    if (auto found = firstOf([&](const QtToolkit *toolkit) { return toolkit->target(object); }))
        return found;
    auto *window = qobject_cast<QWindow *>(QtObjects::unwrap(object));
    return window ? std::make_unique<QtWindowTarget>(window) : nullptr;
}

QImage picture(QWindow *window)
{
    for (const QtToolkit *toolkit : toolkits()) {
        if (QImage image = toolkit->picture(window); !image.isNull())
            return image;
    }
    return window->screen() ? window->screen()->grabWindow(window->winId()).toImage() : QImage();
}

} // namespace Vorkel::QtToolkits
