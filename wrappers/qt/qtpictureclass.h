#pragma once

#include "objectmodel/class.h"

#include <QImage>
#include <QPixmap>

namespace Vorkel {

/// The class of QImage or QPixmap. The data is one, which the object owns: whoever fetches pictures takes
/// them by the name of their class.
template <typename Picture>
class QtPictureClass : public Class
{
public:
    [[nodiscard]] static const QtPictureClass *self();
    [[nodiscard]] static SharedPtr<Object> wrapPicture(const Picture &picture);
    /// Null when `object` holds none.
    [[nodiscard]] static const Picture *unwrapPicture(const SharedPtr<Object> &object);

    [[nodiscard]] Property *createProperty(int index) const override;
    using Class::getProperty;
    SharedPtr<Object> getProperty(int id, void *object, const Class *type) const override;
    void deleteObjectData(void *data, const ObjectAttribute &attribute) const override;

private:
    QtPictureClass();
};

extern template class QtPictureClass<QImage>;
extern template class QtPictureClass<QPixmap>;

} // namespace Vorkel
