#pragma once

#include "shared/serializable.h"

#include <QString>

#include <vector>

namespace Vorkel {

class Class;

/// Named values of a class.
class VORKEL_EXPORT Enum : public Serializable
{
public:
    struct Item
    {
        const char *key;
        int value;
    };

    explicit Enum(const Class *enumClass);
    /// `items` ends with a null key and outlives the enum.
    Enum(const Class *enumClass, const QString &name, const Item *items, int id);
    /// Shares the items of `other`.
    Enum(const Class *enumClass, const Enum *other);
    ~Enum() override;

    [[nodiscard]] const Class *enumClass() const { return m_class; }
    [[nodiscard]] const QString &name() const { return m_name; }
    [[nodiscard]] int id() const { return m_id; }
    [[nodiscard]] int count() const { return m_count; }
    /// Empty when out of range.
    [[nodiscard]] QString key(int index) const;
    /// -1 when out of range.
    [[nodiscard]] int value(int index) const;
    /// The value called `key`; -1, with `*ok` false, when there is none.
    [[nodiscard]] int value(const QString &key, bool *ok) const;
    /// The first key of `value`; empty, with `*ok` false, when there is none.
    [[nodiscard]] QString valueToKey(int value, bool *ok) const;
    /// Whether the values are bits to be combined.
    [[nodiscard]] bool isMask() const { return m_isMask; }
    void setIsMask(bool on) { m_isMask = on; }
    /// Whether no two values share a bit.
    [[nodiscard]] bool detectIsMask() const;

    void writeObject(QDataStream &stream) const override;
    void readObject(QDataStream &stream) override;

private:
    const Class *m_class;
    QString m_name;
    const Item *m_items = nullptr;
    int m_count = 0;
    int m_id = -1;
    bool m_isMask = false;
    std::vector<QByteArray> m_ownKeys; // of an enum that was read from a stream
    std::vector<Item> m_ownItems;
};

} // namespace Vorkel
