#include "objectmodel/nametree_p.h"

#include "objectmodel/namereader_p.h"

namespace Vorkel {

NameTree::NameTree(const QString &name)
{
    if (read(name))
        return;
    m_nodes.clear();
    m_nodes.emplace_back();
    m_isTooDeep = false;
}

bool NameTree::read(const QString &name)
{
    NameReader reader(name);
    std::vector<std::size_t> open { 0 };
    m_nodes.emplace_back();
    for (;;) {
        const NameReader::Event event = reader.next();
        if (event == NameReader::Event::Failure)
            return false;
        if (event == NameReader::Event::End)
            return true;
        if (event == NameReader::Event::NestedEnd) {
            open.pop_back();
            continue;
        }
        const bool isNested = event == NameReader::Event::Nested;
        Node &node = m_nodes[open.back()];
        const QString key = reader.key();
        node.properties.insert_or_assign(
                key,
                PropertyValue(isNested ? QString() : reader.value(), reader.modifier(), PropertyValue::Text));
        if (!isNested) {
            node.nested.erase(key);
            continue;
        }
        node.nested.insert_or_assign(key, m_nodes.size());
        open.push_back(m_nodes.size());
        m_nodes.emplace_back();
        m_isTooDeep = m_isTooDeep || reader.depth() > MaxDepth + 1;
    }
}

std::optional<ObjectName> NameTree::rewritten(PropertyValue::Type type, const Replacement &replacement)
{
    struct Position
    {
        Node *node;
        std::map<QString, std::size_t>::const_iterator next;
    };
    const auto startOf = [](Node &node) { return Position { &node, node.nested.cbegin() }; };
    if (m_isTooDeep)
        return std::nullopt;
    qsizetype replaced = 0;
    std::vector<Position> open { startOf(m_nodes.front()) };
    for (;;) {
        const auto [node, next] = open.back();
        if (next != node->nested.cend()) {
            open.push_back(startOf(m_nodes[next->second]));
            continue;
        }
        ObjectName name { PropertyMap(std::move(node->properties)) };
        // Bare symbols make a text that is no name.
        if (type == PropertyValue::NestedName && !node->nested.empty())
            name = ObjectName(name.qualifiedName());
        open.pop_back();
        if (open.empty())
            return name;
        Position &outer = open.back();
        PropertyValue &value = outer.node->properties[outer.next->first];
        value = PropertyValue(replacement(name), value.modifier(), type);
        ++outer.next;
        replaced += value.value().size();
        if (replaced > MaxReplaced)
            return std::nullopt;
    }
}

} // namespace Vorkel
