#pragma once

#include <QString>

#include <functional>
#include <memory>
#include <vector>

/// A toolkit for forms on a terminal, as small as a toolkit can be. It knows nothing of tests.
namespace Forms {

struct Element;
using Elements = std::vector<std::unique_ptr<Element>>;

/// Where an element was printed last, counted from 0.
struct Place
{
    int line = -1;
    int column = -1;
};

/// A line of a form, and what belongs to it, indented below. Owns that.
struct Element
{
    Element(const QString &elementName, const QString &elementText);
    Element(const Element &) = delete;
    Element &operator=(const Element &) = delete;
    virtual ~Element();

    template <typename Kind>
    Kind &add(std::unique_ptr<Kind> child)
    {
        child->parent = this;
        return static_cast<Kind &>(*children.emplace_back(std::move(child)));
    }
    /// Takes the element out of its form and deletes it; a form stays.
    void remove();
    /// False when the element does not take that text.
    virtual bool setText(const QString &newText);
    [[nodiscard]] bool isShown() const { return place.line >= 0; }

    const QString name;
    QString text;
    Place place;
    Element *parent = nullptr;
    Elements children;
};

/// Text that its user writes.
struct Field : Element
{
    using Element::Element;
    bool setText(const QString &newText) override;

    int maxLength = 20;
};

struct Button : Element
{
    using Element::Element;

    bool enabled = true;
    std::function<void()> pressed;
};

/// What is on the terminal.
extern Elements forms;
void print();

/// Called with every element that goes, when it is hardly more than an address.
extern std::function<void(const Element *)> elementGoes;

} // namespace Forms
