// A window that fills the screen, with buttons and a line edit, that tells the benchmark at once when a
// button's slot has run or the text is complete. With the argument `picture` it shows a picture that deflates
// badly instead.

#include "drivenpage.h"

#include <QApplication>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>

#include <cstdlib>
#include <random>
#include <vector>

#include <sys/eventfd.h>
#include <sys/mman.h>

namespace {

int descriptorIn(const char *variable)
{
    const char *value = std::getenv(variable);
    return value ? std::atoi(value) : -1;
}

DrivenPage::Place placeOf(const QWidget *widget)
{
    const QPoint at = widget->mapToGlobal(QPoint());
    return { at.x(), at.y(), widget->width(), widget->height() };
}

void tell()
{
    static const int events = descriptorIn(EventsVariable);
    ::eventfd_write(events, 1);
}

class Window : public QWidget
{
public:
    explicit Window(DrivenPage *page)
        : m_page(page)
        , m_line(new QLineEdit)
    {
        constexpr int Columns = 8;
        auto *layout = new QGridLayout(this);
        for (int i = 0; i < DrivenPage::ButtonCount; ++i) {
            auto *button = new QPushButton(QStringLiteral("Button %1").arg(i));
            button->setObjectName(QStringLiteral("button%1").arg(i));
            connect(button, &QPushButton::clicked, this, tell);
            layout->addWidget(button, i / Columns, i % Columns);
            m_buttons.push_back(button);
        }
        m_line->setObjectName(QStringLiteral("line"));
        layout->addWidget(m_line, DrivenPage::ButtonCount / Columns, 0, 1, Columns);
        connect(m_line, &QLineEdit::textChanged, this, [this](const QString &text) {
            if (text.size() < DrivenPage::TextLength)
                return;
            m_line->clear();
            tell();
        });
    }

protected:
    void paintEvent(QPaintEvent *event) override
    {
        QWidget::paintEvent(event);
        for (std::size_t i = 0; i < m_buttons.size(); ++i)
            m_page->buttons[i] = placeOf(m_buttons[i]);
        m_page->line = placeOf(m_line);
        m_page->isShown = true;
    }

private:
    DrivenPage *m_page;
    QLineEdit *m_line;
    std::vector<QPushButton *> m_buttons;
};

/// As a photograph is: no pixel quite like the next.
QPixmap picture(const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    std::minstd_rand random;
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int grain = static_cast<int>(random() % 16);
            line[x] = qRgb(x / 8 % 240 + grain, y / 5 % 240 + grain, (x + y) / 13 % 240 + grain);
        }
    }
    return QPixmap::fromImage(image);
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    void *memory = ::mmap(nullptr, sizeof(DrivenPage), PROT_READ | PROT_WRITE, MAP_SHARED,
                          descriptorIn(PageVariable), 0);
    if (memory == MAP_FAILED)
        return 1;
    Window window(static_cast<DrivenPage *>(memory));
    if (argc > 1) {
        auto *label = new QLabel(&window);
        label->setPixmap(picture(screen.size()));
        label->resize(screen.size());
    }
    window.setGeometry(screen);
    window.show();
    return QApplication::exec();
}
