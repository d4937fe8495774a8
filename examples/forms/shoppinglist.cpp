// A program made with the toolkit: whatever is written into its field and added gets on the list.

#include "forms.h"
#include "formswrapper.h"

#include <QCoreApplication>

using namespace Forms;

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    startForTests();

    auto &form = *forms.emplace_back(
            std::make_unique<Element>(QStringLiteral("shopping"), QStringLiteral("Shopping list")));
    auto &item = form.add(std::make_unique<Field>(QStringLiteral("item"), QString()));
    auto &add = form.add(std::make_unique<Button>(QStringLiteral("add"), QStringLiteral("Add")));
    auto &list = form.add(std::make_unique<Element>(QStringLiteral("list"), QStringLiteral("To buy:")));
    add.pressed = [&] {
        list.add(std::make_unique<Element>(item.text.toLower(), item.text));
        item.setText(QString());
        print();
    };
    for (const char *text : { "Bread", "Milk" }) {
        item.setText(QString::fromLatin1(text));
        add.pressed();
    }
    return QCoreApplication::exec();
}
