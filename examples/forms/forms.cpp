#include "forms.h"

#include <cstdio>

namespace Forms {

namespace {

void print(const Elements &elements, int &line, int column)
{
    for (const auto &element : elements) {
        std::printf("%*s%s\n", column, "", qUtf8Printable(element->text));
        element->place = { line++, column };
        print(element->children, line, column + 2);
    }
}

} // namespace

std::function<void(const Element *)> elementGoes;
Elements forms;

Element::Element(const QString &elementName, const QString &elementText)
    : name(elementName)
    , text(elementText)
{
}

Element::~Element()
{
    if (elementGoes)
        elementGoes(this);
}

void Element::remove()
{
    if (parent)
        std::erase_if(parent->children, [this](const auto &child) { return child.get() == this; });
}

bool Element::setText(const QString &newText)
{
    text = newText;
    return true;
}

bool Field::setText(const QString &newText)
{
    return newText.size() <= maxLength && Element::setText(newText);
}

void print()
{
    int line = 0;
    print(forms, line, 0);
    std::fflush(stdout);
}

} // namespace Forms
