// A click on a named button and a text typed into a line edit, as a script does it, until the program's own
// slot has run; beside the bare input by XTest, on the same window and with the same waits done by hand.

#include "bareinput.h"
#include "drivenwindow.h"
#include "measure.h"

#include "driving/keyboard.h"
#include "driving/pointer.h"

#include <QCoreApplication>

#include <thread>

namespace {

using namespace Bench;
using namespace Vorkel::Runner;

constexpr int TextRounds = 15;
constexpr int RepeatedRounds = 40;
constexpr int ClicksPerSlice = 10;
constexpr double Limit = 1.5;
/// A button has to be seen in one place for so long.
constexpr std::chrono::milliseconds Moment(16);

/// Clicks and types by XTest, and does by hand what the library does besides.
class ByHand
{
public:
    explicit ByHand(DrivenWindow *window)
        : m_window(window)
        , m_input(window->display().toLatin1().constData())
    {
    }

    void click(int button)
    {
        const DrivenPage::Place &now = m_window->page().buttons[button];
        while (m_button != button || m_place != now) {
            m_button = button;
            m_place = now;
            std::this_thread::sleep_for(Moment);
        }
        m_input.click(m_place.x + m_place.width / 2, m_place.y + m_place.height / 2);
        m_window->awaitEvent();
    }

    void type(const std::string &text)
    {
        m_input.type(text);
        m_window->awaitEvent();
    }

private:
    DrivenWindow *m_window;
    BareInput m_input;
    int m_button = -1;
    DrivenPage::Place m_place = {};
};

/// The same by the library.
class Driven
{
public:
    explicit Driven(DrivenWindow *window)
        : m_window(window)
        , m_line(window->program(), QStringLiteral("{name='line' type='QLineEdit'}"))
    {
    }

    void click(int button)
    {
        const QString name = QStringLiteral("{name='button%1' type='QPushButton'}").arg(button);
        require(Vorkel::Runner::click(Locator(m_window->program(), name)));
        m_window->awaitEvent();
    }

    void type(const std::string &text)
    {
        require(typeText(m_line, QString::fromStdString(text)));
        m_window->awaitEvent();
    }

    /// So that no contender has to.
    void giveLineFocus() { require(Vorkel::Runner::click(m_line)); }

private:
    DrivenWindow *m_window;
    Locator m_line;
};

/// Milliseconds for a click on a button that nobody has clicked on, with every second button.
template <typename Contender>
std::function<double()> firstClicks(Contender *contender, int button)
{
    return [contender, button]() mutable {
        const double time = seconds([&] { contender->click(button); });
        button += 2;
        return time * 1e3;
    };
}

/// Milliseconds for a click on the button that was clicked on just before.
template <typename Contender>
std::function<double()> repeatedClicks(Contender *contender, int button)
{
    return [contender, button] {
        contender->click(button);
        return seconds([&] {
                   for (int i = 0; i < ClicksPerSlice; ++i)
                       contender->click(button);
               })
                / ClicksPerSlice * 1e3;
    };
}

/// Milliseconds for a text of full length.
template <typename Contender>
std::function<double()> texts(Contender *contender)
{
    return [contender] {
        std::string text;
        while (text.size() < DrivenPage::TextLength)
            text += "plain words ";
        text.resize(DrivenPage::TextLength);
        return seconds([&] { contender->type(text); }) * 1e3;
    };
}

void addRows(Table *table, const char *what, const std::vector<Samples> &samples, double unitMs)
{
    const std::string name = what;
    const char *const who[] = { ", by hand", "" };
    for (std::size_t i = 0; i < samples.size(); ++i)
        table->add({ name + who[i], number(samples[i].median() / unitMs, 3),
                     number(samples[i].ratioTo(samples[0]), 2) });
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    DrivenWindow window;
    ByHand byHand(&window);
    Driven driven(&window);

    // The round that does not count takes a button, too.
    const auto first =
            alternate(DrivenPage::ButtonCount / 2 - 1, { firstClicks(&byHand, 0), firstClicks(&driven, 1) });
    const auto repeated =
            alternate(RepeatedRounds, { repeatedClicks(&byHand, 10), repeatedClicks(&driven, 11) });
    driven.giveLineFocus();
    const auto typed = alternate(TextRounds, { texts(&byHand), texts(&driven) });

    Table clicks({ "a click until the slot has run", "ms", "x by hand" });
    addRows(&clicks, "the first on a button", first, 1);
    addRows(&clicks, "the next on the same", repeated, 1);
    clicks.print();
    std::printf("\n");
    Table typing({ "1,000 characters until the line edit has them, each", "us", "x by hand" });
    addRows(&typing, "typed", typed, 1e-3 * DrivenPage::TextLength);
    typing.print();
    printTarget("the first click over the same by hand", first[1].ratioTo(first[0]), Limit, 2);
    printTarget("the next clicks over the same by hand", repeated[1].ratioTo(repeated[0]), Limit, 2);
    return 0;
}
