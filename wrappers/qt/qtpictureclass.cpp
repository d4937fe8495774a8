#include "qtpictureclass.h"

#include "hook/classregistrar.h"
#include "objectmodel/argument.h"
#include "objectmodel/classids.h"
#include "objectmodel/inspector.h"
#include "objectmodel/property.h"

namespace Vorkel {

namespace {

template <typename Picture>
struct PictureProperty
{
    const char *name;
    int (*read)(const Picture &picture);
};

// clang-format off
template <typename Picture>
constexpr PictureProperty<Picture> Properties[] = {
    { "width",  [](const Picture &picture) { return picture.width(); }  },
    { "height", [](const Picture &picture) { return picture.height(); } },
    { "depth",  [](const Picture &picture) { return picture.depth(); }  },
};
// clang-format on

} // namespace

template <typename Picture>
QtPictureClass<Picture>::QtPictureClass()
    : Class(QMetaType::fromType<Picture>().name(), false)
{
    setDeclared({ .properties = static_cast<int>(std::size(Properties<Picture>)) });
    registerClass();
}

template <typename Picture>
const QtPictureClass<Picture> *QtPictureClass<Picture>::self()
{
    static const QtPictureClass *const instance = [] {
        const ClassRegistrar registrar;
        return new QtPictureClass;
    }();
    return instance;
}

template <typename Picture>
SharedPtr<Object> QtPictureClass<Picture>::wrapPicture(const Picture &picture)
{
    SharedPtr<Object> object = self()->wrap(new Picture(picture), ObjectAttribute());
    object->setOwnsData(true);
    return object;
}

template <typename Picture>
const Picture *QtPictureClass<Picture>::unwrapPicture(const SharedPtr<Object> &object)
{
    if (!object || object->objectClass() != self())
        return nullptr;
    return static_cast<const Picture *>(object->data());
}

template <typename Picture>
Property *QtPictureClass<Picture>::createProperty(int index) const
{
    return new Property(this, Argument(QString(), Inspector::self()->type(IntClassId)),
                        QString::fromLatin1(Properties<Picture>[index].name), ReadableProperty, index);
}

template <typename Picture>
SharedPtr<Object> QtPictureClass<Picture>::getProperty(int id, void *object, const Class *) const
{
    const auto *picture = static_cast<const Picture *>(object);
    if (!picture || id < 0 || id >= static_cast<int>(std::size(Properties<Picture>)))
        return nullptr;
    return Inspector::self()->createPrimitive(Properties<Picture>[id].read(*picture));
}

template <typename Picture>
void QtPictureClass<Picture>::deleteObjectData(void *data, const ObjectAttribute &) const
{
    delete static_cast<Picture *>(data);
}

template class QtPictureClass<QImage>;
template class QtPictureClass<QPixmap>;

} // namespace Vorkel
