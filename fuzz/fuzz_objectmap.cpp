#include "objectmodel/objectmap.h"
#include "support/harness.h"
#include "support/input.h"

using namespace Vorkel;

namespace {

/// More would only make the walk longer.
constexpr int SearchedNames = 8;

/// The text that is written loads to the same map.
void checkText(const ObjectMap &map)
{
    const QString written = map.toString();
    ObjectMap loaded(false);
    loaded.loadFromString(written);
    FUZZ_CHECK(loaded.symbolicNames().size() == map.symbolicNames().size());
    for (auto it = map.symbolicNames().cbegin(); it != map.symbolicNames().cend(); ++it)
        FUZZ_CHECK(loaded.symbolicNames().value(it.key()).qualifiedName() == it->qualifiedName());
    FUZZ_CHECK(loaded.toString() == written);
}

/// A symbol that was found is that of the first equal name.
void checkSearch(const ObjectMap &map, const QMap<ObjectName, QString> &symbols, const QString &fixed,
                 const QString &found)
{
    if (fixed.startsWith(u':'))
        return;
    const ObjectName name(fixed);
    const ObjectName old(map.convertToOldName(fixed));
    for (auto it = symbols.cbegin(); it != symbols.cend(); ++it) {
        if (it.key() == name || it.key() == old) {
            FUZZ_CHECK(found == *it);
            return;
        }
    }
    FUZZ_CHECK(found == fixed);
}

} // namespace

/// The input is the text of a map. Its names are looked for in it, and added where they are not there.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Harness::start();
    const QString text = QString::fromUtf8(Input(data, size).rest());
    QMap<ObjectName, QString> symbols;
    QStringList names;
    for (const auto &[symbol, name] : ObjectMap::parseSerializedMap(text)) {
        symbols.insert(name, symbol);
        names.append(name.qualifiedName());
    }
    ObjectMap map(false);
    map.loadFromString(text);
    checkText(map);
    // The last ones are used first.
    for (qsizetype i = names.size(); i > qMax(qsizetype(0), names.size() - SearchedNames); --i) {
        const QString &name = names[i - 1];
        checkSearch(map, symbols, map.fixedName(name, false), map.symbolicName(name, false));
        (void)map.printableName(name);
    }
    for (qsizetype i = 0; i < qMin(names.size(), qsizetype(SearchedNames)); ++i)
        (void)map.symbolicName(names[i], true);
    checkText(map);
    return 0;
}
