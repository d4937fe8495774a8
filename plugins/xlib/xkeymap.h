#pragma once

#include "eventrounds.h"
#include "hook/platform/nativeinterface.h"
#include "xdisplay.h"

#include <memory>
#include <optional>
#include <span>
#include <vector>

struct _XkbDesc;

namespace Vorkel {

/// Where the keyboard has a symbol.
struct XKey
{
    unsigned keyCode = 0;
    int group = 0;
    int level = 0;
};

/// The layout of an X server's keyboard. What it lacks is put on keys that have no meaning; they get their
/// old state back when the object goes.
class XKeyMap
{
public:
    explicit XKeyMap(XConnection *connection);
    ~XKeyMap();

    /// The layout has changed.
    void reload();
    /// The first key with one of `symbols`, in `group` if there is one there.
    [[nodiscard]] std::optional<XKey> find(std::span<const unsigned long> symbols, int group) const;
    /// The same; puts the first of them on a spare key if there is none.
    [[nodiscard]] FunctionCallResult<XKey> require(std::span<const unsigned long> symbols, int group);
    [[nodiscard]] std::optional<unsigned> codeOf(unsigned long symbol) const;
    /// The X modifiers that a key stands for; 0 for a plain key.
    [[nodiscard]] unsigned modifiersOf(unsigned keyCode) const;
    /// The level that a key has while `modifiers` are held.
    [[nodiscard]] int levelOf(const XKey &key, unsigned modifiers) const;
    [[nodiscard]] ExtraKeys extraKeys() const;
    [[nodiscard]] bool hasCode(unsigned keyCode) const;

private:
    struct Spare
    {
        unsigned keyCode;
        unsigned long lower; ///< 0 while the key is as it was
        unsigned long upper;
        int usedInRound;
        quint64 use;
    };

    void load();
    void collectSpares();
    void put(Spare &spare, unsigned long symbol);
    void write(const Spare &spare) const;
    [[nodiscard]] bool isEmpty(unsigned keyCode) const;
    [[nodiscard]] Spare *freeSpare();
    [[nodiscard]] int groupOf(unsigned keyCode, int group) const;
    [[nodiscard]] unsigned long symbolAt(unsigned keyCode, int group, int level) const;

    struct Free
    {
        void operator()(_XkbDesc *map) const;
    };

    XConnection *m_connection;
    std::unique_ptr<_XkbDesc, Free> m_map;
    std::vector<Spare> m_spares;
    EventRounds m_rounds;
    quint64 m_uses = 0;
};

} // namespace Vorkel
