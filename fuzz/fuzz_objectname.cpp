#include "objectmodel/objectmap.h"
#include "support/harness.h"
#include "support/input.h"

using namespace Vorkel;

namespace {

bool isSameThroughout(const PropertyMap &left, const PropertyMap &right)
{
    const auto isSameType = [](const PropertyValue &a, const PropertyValue &b) {
        return a.type() == b.type();
    };
    return left == right && std::equal(left.cbegin(), left.cend(), right.cbegin(), isSameType);
}

void checkCanonicalText(const QString &text, const PropertyMap &properties)
{
    const QString canonical = qualifiedNameFromProperties(properties);
    QString error;
    const PropertyMap again = parseNameByProperties(canonical, &error);
    FUZZ_CHECK(error.isEmpty());
    FUZZ_CHECK(isSameThroughout(again, properties));
    FUZZ_CHECK(qualifiedNameFromProperties(again) == canonical);
    FUZZ_CHECK(isSameThroughout(parseNameByProperties(text, nullptr), properties));
    FUZZ_CHECK(qualifiedNamesEqual(text.trimmed(), canonical));
    FUZZ_CHECK(ObjectName(text.trimmed()) == ObjectName(properties));
}

/// Every nested name becomes a symbol, all else stays.
void checkFixedName(const QString &text, const PropertyMap &properties)
{
    ObjectMap map(false);
    const QString fixed = map.fixedName(text, true);
    const PropertyMap fixedProperties = ObjectName(fixed).properties();
    if (fixed == text)
        return;
    FUZZ_CHECK(fixedProperties.keys() == properties.keys());
    for (auto it = properties.cbegin(); it != properties.cend(); ++it) {
        const PropertyValue value = fixedProperties.value(it.key());
        FUZZ_CHECK(value.type() == PropertyValue::Text);
        FUZZ_CHECK(value.modifier() == it->modifier());
        FUZZ_CHECK(it->type() == PropertyValue::Text ? value == *it
                                                     : map.symbolicNames().contains(value.value()));
    }
    (void)map.symbolicName(text, false);
    (void)map.printableName(text);
    (void)map.convertToOldName(text);
}

/// What is no set has no way to be invalid.
void checkWildcards(const PropertyMap &properties)
{
    for (const PropertyValue &property : properties) {
        const QString &value = property.value();
        const QString pattern = PropertyValue::wildcardToPattern(value);
        if (!value.contains(u'[') && value.isValidUtf16())
            FUZZ_CHECK(QRegularExpression(pattern).isValid());
    }
}

} // namespace

/// The first byte says how the others make a text, and what is tried with it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Harness::start();
    Input input(data, size);
    const int mode = input.byte();
    const QByteArray bytes = input.rest();
    const QString text = mode & 1
            ? QString::fromUtf16(reinterpret_cast<const char16_t *>(bytes.constData()), bytes.size() / 2)
            : QString::fromUtf8(bytes);
    QString error;
    const PropertyMap properties = parseNameByProperties(text, &error);
    const ObjectName name(text);
    FUZZ_CHECK(error.isEmpty() || properties.isEmpty());
    if (isMultiPropertyName(text)) {
        FUZZ_CHECK(name.errorMessage() == error);
        FUZZ_CHECK(isSameThroughout(name.properties(), properties));
    }
    if (!error.isEmpty()) {
        // Past an older message another one may be given, or a nested name end early.
        error = QStringLiteral("older");
        (void)parseNameByProperties(text, &error);
        (void)parseNameByProperties(text, nullptr);
        return 0;
    }
    checkCanonicalText(text, properties);
    if (mode & 2)
        checkFixedName(text, properties);
    if (mode & 4)
        checkWildcards(properties);
    return 0;
}
