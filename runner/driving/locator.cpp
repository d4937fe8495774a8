#include "locator.h"

#include "objectmodel/objectname.h"

namespace Vorkel::Runner {

namespace {

const QString ContainerKey = QStringLiteral("container");
const QString OccurrenceKey = QStringLiteral("occurrence");

template <typename... Ts>
struct Overloaded : Ts...
{
    using Ts::operator()...;
};

template <typename... Ts>
Overloaded(Ts...) -> Overloaded<Ts...>;

} // namespace

QString nameBelow(const QString &container, const QString &name)
{
    ObjectName inner(name);
    if (!inner.isMultiProperty())
        return isMultiPropertyName(name) ? name : container + u'.' + name;
    // What already stands in something stands in all that holds that, too.
    const PropertyValue own = inner.property(ContainerKey);
    const QString holder = own.value().isEmpty() ? container : nameBelow(container, own.value());
    inner.setProperty(
            ContainerKey,
            PropertyValue(holder, PropertyValue::Exact,
                          isMultiPropertyName(holder) ? PropertyValue::NestedName : PropertyValue::Text));
    return inner.qualifiedName();
}

Locator::Locator(std::shared_ptr<DrivenProgram> program, const QString &name)
    : m_program(std::move(program))
    , m_parts { Name { name } }
{
}

Locator::Locator(std::shared_ptr<DrivenProgram> program, const ObjectHandle &object)
    : m_program(std::move(program))
    , m_parts { object }
{
}

const Locator::Name *Locator::onlyName() const
{
    return m_parts.size() == 1 ? std::get_if<Name>(&m_parts.first()) : nullptr;
}

Locator Locator::with(const Part &part) const
{
    Locator longer = *this;
    longer.m_parts.append(part);
    return longer;
}

Locator Locator::below(const QString &name) const
{
    const auto *last = std::get_if<Name>(&m_parts.last());
    if (!last)
        return with(Name { name });
    Locator joined = *this;
    joined.m_parts.last() = Name { nameBelow(last->text, name) };
    return joined;
}

Locator Locator::item(const QString &text) const
{
    return with(ItemText { text });
}

Locator Locator::item(int row, int column) const
{
    return with(Cell { row, column });
}

QString Locator::text() const
{
    QStringList texts;
    for (const Part &part : m_parts) {
        texts.append(std::visit(
                Overloaded {
                        [](const Name &name) { return name.text; },
                        [](const ItemText &item) { return QStringLiteral("item '%1'").arg(item.text); },
                        [](const Cell &cell) {
                            return QStringLiteral("item (%1, %2)").arg(cell.row).arg(cell.column);
                        },
                        [](const ObjectHandle &object) { return QStringLiteral("object %1").arg(object.id); },
                },
                part));
    }
    return texts.join(QLatin1String(" > "));
}

Failure Locator::follow(const Part &part, ObjectHandle *at) const
{
    RemoteObjects &objects = m_program->objects();
    if (const auto *object = std::get_if<ObjectHandle>(&part)) {
        *at = *object;
        return {};
    }
    if (const auto *item = std::get_if<ItemText>(&part))
        return objects.readyItem(*at, item->text, at);
    if (const auto *cell = std::get_if<Cell>(&part))
        return objects.readyItem(*at, cell->row, cell->column, at);
    const QString &name = std::get<Name>(part).text;
    if (at->id == 0)
        return objects.find(name, 0, at);
    QString container;
    const Failure failure = objects.realName(*at, &container);
    return failure.isFailure() ? failure : objects.find(nameBelow(container, name), 0, at);
}

Failure Locator::look(ObjectHandle *found) const
{
    *found = {};
    for (const Part &part : m_parts) {
        if (const Failure failure = follow(part, found); failure.isFailure())
            return failure;
    }
    return {};
}

Failure Locator::look(QVariant *nameOrId) const
{
    if (const Name *const name = onlyName()) {
        *nameOrId = name->text;
        return {};
    }
    ObjectHandle found;
    const Failure failure = look(&found);
    *nameOrId = found.id;
    return failure;
}

Failure Locator::findName(QString *name) const
{
    ObjectHandle object;
    const Failure failure = look(&object);
    return failure.isFailure() ? failure : m_program->objects().realName(object, name);
}

Failure Locator::await(ObjectHandle *found) const
{
    return m_program->retry([&] { return look(found); });
}

Failure Locator::awaitReady(ObjectHandle *found) const
{
    const Name *const name = onlyName();
    return m_program->retry([&] {
        if (name)
            return m_program->objects().findReady(name->text, found);
        const Failure failure = look(found);
        return failure.isFailure() ? failure : m_program->objects().checkReady(*found);
    });
}

Failure Locator::count(int most, int *found) const
{
    *found = 0;
    const auto *last = std::get_if<Name>(&m_parts.last());
    ObjectName name(last ? last->text : QString());
    const bool countable = name.isMultiProperty() && !name.properties().contains(OccurrenceKey);
    for (int number = 1; number <= (countable ? most : 1); ++number) {
        Locator each = *this;
        if (countable) {
            name.setProperty(
                    OccurrenceKey,
                    PropertyValue(QString::number(number), PropertyValue::Exact, PropertyValue::Text));
            each.m_parts.last() = Name { name.qualifiedName() };
        }
        ObjectHandle object;
        const Failure failure = each.look(&object);
        if (failure.code == ExitCode::CallFailed)
            return {};
        if (failure.isFailure())
            return failure;
        *found = number;
    }
    return {};
}

} // namespace Vorkel::Runner
