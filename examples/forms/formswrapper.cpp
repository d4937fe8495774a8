#include "formswrapper.h"

#include "formsclasses.h"
#include "formsdelegates.h"
#include "formsobjects.h"

#include "hook/autprocess.h"
#include "hook/hook.h"
#include "hook/wrapper.h"
#include "objectmodel/inspector.h"

#include <algorithm>

using namespace Vorkel;
using Forms::Element;

namespace {

class FormsWrapper : public Wrapper
{
public:
    [[nodiscard]] QString name() const override { return QStringLiteral("Forms"); }
    [[nodiscard]] bool ownsObject(const SharedPtr<Object> &object) const override
    {
        return FormsObjects::unwrap(object) != nullptr;
    }

    [[nodiscard]] bool isObjectReady(const SharedPtr<Object> &object) const override
    {
        const Element *element = FormsObjects::unwrap(object);
        if (!element)
            return fail(QStringLiteral("it is gone"));
        if (!element->isShown())
            return fail(QStringLiteral("it was not printed yet"));
        const auto *button = dynamic_cast<const Forms::Button *>(element);
        return !button || button->enabled || fail(QStringLiteral("it is not enabled"));
    }

    /// The items of an element are what belongs to it.
    [[nodiscard]] SharedPtr<Object> getObjectItemIfReady(const SharedPtr<Object> &object,
                                                         const QString &item) const override
    {
        const Element *element = FormsObjects::unwrap(object);
        if (!element)
            return readyItem(nullptr, item);
        const auto found =
                std::ranges::find(element->children, item, [](const auto &each) { return each->text; });
        return readyItem(found != element->children.end() ? found->get() : nullptr, item);
    }

    [[nodiscard]] SharedPtr<Object> getObjectItemIfReady(const SharedPtr<Object> &object, int row,
                                                         int column) const override
    {
        const Element *element = FormsObjects::unwrap(object);
        const auto at = static_cast<std::size_t>(row);
        const bool isThere = element && column == 0 && at < element->children.size();
        return readyItem(isThere ? element->children[at].get() : nullptr,
                         QStringLiteral("%1/%2").arg(row).arg(column));
    }

    /// An element as the terminal shows it, a pixel for each character.
    [[nodiscard]] QImage qImage(const SharedPtr<Object> &object) const override
    {
        const Element *element = FormsObjects::unwrap(object);
        if (!element || element->text.isEmpty())
            return QImage();
        QImage image(static_cast<int>(element->text.size()), 1, QImage::Format_RGB32);
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, 0, element->text[x].isSpace() ? qRgb(255, 255, 255) : qRgb(0, 0, 0));
        return image;
    }

    // Nothing is drawn into the forms while somebody looks at them, and nothing of their user is recorded.
    void setSpying(bool) override {}
    void recordingStopped() override {}

private:
    static bool fail(const QString &reason)
    {
        Inspector::self()->setError(reason);
        return false;
    }

    [[nodiscard]] SharedPtr<Object> readyItem(Element *item, const QString &wanted) const
    {
        SharedPtr<Object> object = FormsObjects::wrap(item);
        if (object)
            return isObjectReady(object) ? object : nullptr;
        fail(QStringLiteral("it has no '%1'").arg(wanted));
        return nullptr;
    }
};

void completeHookUp()
{
    // The connection may have ended by now.
    if (Hook::hook)
        Hook::hook->completeHookUp();
}

} // namespace

void startForTests()
{
    if (qEnvironmentVariableIsEmpty("VORKEL_RUNNERID"))
        return;
    FormsClasses::registerAll();
    FormsDelegates::registerAll();
    // Lives as long as the process, which the hook may not.
    static auto *const wrapper = new FormsWrapper;
    // Returns when the runner is ready.
    Hook::connectAndCreateHook(wrapper, new AUTProcess, nullptr, 0);
    // The first thing that the event loop does.
    QMetaObject::invokeMethod(wrapper, completeHookUp, Qt::QueuedConnection);
}
