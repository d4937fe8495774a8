// Does what a busy program does, a fixed amount of it and as fast as it can: seconds of a life in which a
// thousand widgets come and go and a window is painted sixty times. Tells on its standard output the
// nanoseconds of processor time that this took, once its event loop runs.

#include <QApplication>
#include <QBackingStore>
#include <QLabel>
#include <QTimer>
#include <QVBoxLayout>

#include <cstdio>

#include <ctime>

namespace {

constexpr int Seconds = 5;
constexpr int FramesPerSecond = 60;
constexpr int WidgetsPerSecond = 1000;

long long processorTime()
{
    timespec time = {};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<long long>(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QWidget window;
    window.resize(400, 300);
    auto *layout = new QVBoxLayout(&window);
    window.show();

    QTimer frames;
    int frame = 0;
    long long start = 0;
    int made = 0;
    QObject::connect(&frames, &QTimer::timeout, [&] {
        // The first one comes when all that belongs to the start is over.
        if (frame == 0)
            start = processorTime();
        for (++frame; made < frame * WidgetsPerSecond / FramesPerSecond; ++made) {
            auto *label = new QLabel(QString::number(made));
            layout->addWidget(label);
            label->show();
            if (layout->count() > 20)
                delete layout->takeAt(0)->widget();
        }
        window.update();
        if (frame < Seconds * FramesPerSecond)
            return;
        std::printf("%lld\n", processorTime() - start);
        QApplication::quit();
    });
    // One turn of the event loop for each frame, and no waiting.
    QTimer::singleShot(100, [&] { frames.start(0); });
    return QApplication::exec();
}
