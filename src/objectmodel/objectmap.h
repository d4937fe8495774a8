#pragma once

#include "objectmodel/objectname.h"

#include <QHash>
#include <QList>

#include <memory>
#include <optional>
#include <utility>

namespace Vorkel {

class NameIndex;

/// The table between symbolic names, `:Dialog.Cancel_QPushButton`, and real ones.
///
/// A real name that stands under several symbols belongs to the last of them.
class VORKEL_EXPORT ObjectMap
{
public:
    /// The new map becomes the current one. The argument has no meaning any more.
    explicit ObjectMap(bool);
    ~ObjectMap();
    Q_DISABLE_COPY_MOVE(ObjectMap)

    /// The current map; null if there is none.
    [[nodiscard]] static ObjectMap *self();

    // Contents

    [[nodiscard]] const QMap<QString, ObjectName> &symbolicNames() const { return m_names; }
    void setSymbolicNames(const QMap<QString, ObjectName> &names);
    void add(const ObjectName &name, const QString &symbol);
    void clear();
    /// Whether there is something to save. What was loaded or cleared does not count.
    [[nodiscard]] bool isModified() const { return m_isModified; }

    // Text form: a line for each symbol, which stands before a TAB and its name

    [[nodiscard]] QString toString() const;
    /// Adds what `text` says. Lines without a TAB are passed over.
    void loadFromString(const QString &text);
    /// The pairs of symbol and name in the order of their lines, neither of them checked.
    [[nodiscard]] static QList<std::pair<QString, ObjectName>> parseSerializedMap(const QString &text);
    /// Replaces the contents; false, with the contents as they were, if the file cannot be read.
    bool loadFromFile(const QString &path);
    /// Writes the file if there is something to save; false if that fails. Only a file that cannot be
    /// opened is reported, on the standard error stream.
    bool saveToFile(const QString &path);
    [[nodiscard]] static QString escapeForSerialize(const QString &text);
    [[nodiscard]] static QString unescapeFromSerialize(const QString &text);

    // From names to names

    [[nodiscard]] static bool isMultiPropertyName(const QString &name);
    /// The name under a symbol. What is no symbol is a name itself; an unknown symbol becomes a
    /// hierarchical name.
    [[nodiscard]] ObjectName objectName(const QString &name) const;
    /// The same by the current map; without one all symbols are unknown.
    [[nodiscard]] static ObjectName resolve(const QString &name);
    [[nodiscard]] QString realName(const QString &name) const;
    /// The symbol of a real name. For a name without one a symbol is made and added if `add` says so, else
    /// the result is the fixed name.
    QString symbolicName(const QString &name, bool add);
    /// The name in canonical text with its nested names replaced by quoted symbols, or by quoted names if
    /// they have none and `add` does not say to make them. A name in which names nest more than a thousand
    /// deep, or that would take more than 16 Mi characters to write, is given back as it is.
    QString fixedName(const QString &name, bool add);
    /// The shortest text for `name`, for messages: a symbol, or the name with symbols for nested names.
    [[nodiscard]] QString printableName(const QString &name) const;
    /// A symbol for `name` that the map does not have.
    [[nodiscard]] QString multiPropNameToSymbolic(const QString &name) const;
    /// The same without ":" and number: window, container and text joined by ".", then "_" and the type.
    /// References to other objects are followed through the current map, for a thousand steps at most.
    [[nodiscard]] static QString symbolFromMultiPropName(const QString &name);
    /// `name` as it is found in old maps, where properties of the window, the container and the buddy stand
    /// in place of references to them.
    [[nodiscard]] QString convertToOldName(const QString &name) const;

private:
    void insert(const QString &symbol, const ObjectName &name);
    [[nodiscard]] ObjectName withSymbols(const QString &name, bool add);
    [[nodiscard]] std::optional<QString> findSymbol(const ObjectName &name) const;
    QString symbolFor(const ObjectName &name, bool add);
    [[nodiscard]] QString symbolOrText(const ObjectName &name) const;
    [[nodiscard]] PropertyMap oldProperties(const PropertyMap &properties) const;
    /// The same as convertToOldName(), with the fewest detours by the text.
    [[nodiscard]] ObjectName oldName(const ObjectName &name) const;

    QMap<QString, ObjectName> m_names;
    std::unique_ptr<NameIndex> m_symbols;
    bool m_isModified = false;
    /// Where to go on looking for a free number behind a symbol.
    mutable QHash<QString, int> m_nextNumbers;
};

} // namespace Vorkel
