#include "hook/platform/scriptfunctions.h"

#include "hook/platform/mousebutton.h"
#include "objectmodel/enum.h"
#include "objectmodel/inspector.h"
#include "objectmodel/primitives.h"
#include "objectmodel/screenvalues.h"

namespace Vorkel {

namespace {

/// A class that is there for its one enumeration.
class EnumClass : public Class
{
public:
    EnumClass(const char *name, const char *enumName, std::span<const NamedBit> names)
        : Class(name, true)
        , m_enumName(QLatin1String(enumName))
    {
        for (const NamedBit &bit : names)
            m_items.push_back({ bit.name, bit.value });
        m_items.push_back({ nullptr, 0 });
        setDeclared({ .enums = 1 });
    }

    [[nodiscard]] Enum *createEnum(int index) const override
    {
        return new Enum(this, m_enumName, m_items.data(), index);
    }

private:
    QString m_enumName;
    std::vector<Enum::Item> m_items;
};

/// The slot of a parameter or of a result.
Argument slot(const ScriptParameter &parameter)
{
    const QString name = QLatin1String(parameter.name);
    const auto known = [](ClassId id) { return Inspector::self()->type(id); };
    // clang-format off
    switch (parameter.type) {
    case ScriptType::Nothing:   return Argument(name, known(VoidClassId));
    case ScriptType::Text:      return Argument(name, known(StringClassId), ObjectAttribute::Pointer);
    case ScriptType::Number:    return Argument(name, known(IntClassId));
    case ScriptType::Rectangle: return Argument(name, objectModelScreenRectangleClass());
    case ScriptType::Point:     return Argument(name, screenPointClass());
    case ScriptType::Modifiers: return Argument(name, known(IntClassId), keyboardModifierEnum());
    case ScriptType::Button:    return Argument(name, known(IntClassId), mouseButtonEnum());
    }
    // clang-format on
    Q_UNREACHABLE();
}

} // namespace

void addScriptFunction(const ScriptFunction &function)
{
    Signature signature;
    for (const ScriptParameter &parameter : function.parameters) {
        if (parameter.type == ScriptType::Nothing)
            break;
        signature.append(slot(parameter));
    }
    Inspector::self()->globalClass()->injectMethod(std::make_unique<GlobalMethod>(
            function.caller, slot({ function.result, "" }), QLatin1String(function.name), signature));
}

// Classes live as long as the process.

const Enum *mouseButtonEnum()
{
    static const auto *const holder = new EnumClass("MouseButton", "ButtonValue", mouseButtonNames());
    return holder->enumerator(0);
}

const Enum *keyboardModifierEnum()
{
    static const auto *const holder = new EnumClass("KeyboardModifier", "Key", keyboardModifierNames());
    return holder->enumerator(0);
}

int scriptNumber(const ObjectList &arguments, std::size_t index)
{
    int value = 0;
    unwrap(arguments[index], &value);
    return value;
}

QString scriptText(const ObjectList &arguments, std::size_t index)
{
    QString value;
    unwrap(arguments[index], &value);
    return value;
}

SharedPtr<Object> scriptFailure(const QString &text)
{
    Inspector::self()->setError(text);
    return nullptr;
}

SharedPtr<Object> scriptResult(const VoidResult &result)
{
    return result.isOk() ? Inspector::self()->voidObject() : scriptFailure(result.error());
}

} // namespace Vorkel
