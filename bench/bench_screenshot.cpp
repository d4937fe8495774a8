// A picture of a desktop of 1920 x 1080 pixels, from the question to an image in the runner, stage by stage;
// beside grabbing the same desktop and deflating it, which are two of the stages.

#include "drivenwindow.h"
#include "measure.h"

#include "driving/screenshots.h"
#include "hook/platform/imagetransport.h"
#include "xdisplay.h"
#include "xscreenshot.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QImage>

namespace {

using namespace Bench;
using namespace Vorkel;

constexpr int Rounds = 25;
constexpr double Limit = 1.5;
/// As the hook does it.
constexpr int Level = 1;

/// The stages of a screenshot, one after the other, on the same desktop in this process.
class Stages
{
public:
    Stages(const DrivenWindow &window, XConnection *connection)
        : m_objects(window.program()->objects())
        , m_connection(connection)
    {
    }

    double grab()
    {
        return ms([this] { m_image = takeScreenshot(m_connection, {}).image; });
    }
    double encode()
    {
        // What is freed is mapped anew, as in a program that takes a picture now and then.
        m_bmp = QByteArray();
        return ms([this] {
            m_bmp.reserve(m_image.sizeInBytes());
            QBuffer buffer(&m_bmp);
            buffer.open(QIODevice::WriteOnly);
            m_image.save(&buffer, "BMP");
        });
    }
    double deflate()
    {
        return ms([this] { m_deflated = qCompress(m_bmp, Level); });
    }
    double inflate()
    {
        return ms([this] { m_bmp = qUncompress(m_deflated); });
    }
    double decode()
    {
        return ms([this] { m_decoded.loadFromData(m_bmp, "BMP"); });
    }
    /// The call for it, until the reply has come.
    double call()
    {
        return ms([this] { require(m_objects.call(QStringLiteral("desktopScreenshot"), {}, &m_reply)); });
    }
    double read()
    {
        return ms([this] { m_decoded = screenshotFromVariant(m_reply).image; });
    }

    [[nodiscard]] bool isWhole() const
    {
        return !m_image.isNull() && m_image.convertToFormat(m_decoded.format()) == m_decoded;
    }
    [[nodiscard]] double deflatedKiB() const { return static_cast<double>(m_deflated.size()) / 1024; }

private:
    static double ms(const std::function<void()> &work) { return seconds(work) * 1e3; }

    Runner::RemoteObjects &m_objects;
    XConnection *m_connection;
    QImage m_image;
    QByteArray m_bmp;
    QByteArray m_deflated;
    QImage m_decoded;
    QVariant m_reply;
};

struct Row
{
    const char *label;
    double (Stages::*work)();
};

// clang-format off
constexpr Row Rows[] = {
    { "grab",                    &Stages::grab          },
    { "to BMP",                  &Stages::encode        },
    { "deflate",                 &Stages::deflate       },
    { "inflate",                 &Stages::inflate       },
    { "decode",                  &Stages::decode        },
    { "call, until the reply",   &Stages::call          },
    { "read the reply",          &Stages::read          },
};
// clang-format on

enum { Grab, Encode, Deflate, Inflate, Decode, Call, Read };

/// What is left of the first when the others are taken from it, round by round.
Samples combined(const std::vector<Samples> &samples, const std::vector<std::pair<int, int>> &parts)
{
    Samples result { std::vector<double>(Rounds) };
    for (const auto &[index, sign] : parts) {
        for (std::size_t i = 0; i < Rounds; ++i)
            result.values[i] += sign * samples[static_cast<std::size_t>(index)].values[i];
    }
    return result;
}

void measure(const char *what, const QStringList &arguments)
{
    const DrivenWindow window(arguments);
    const auto connection = XConnection::open(window.display().toLatin1().constData());
    if (!connection.isOk()) {
        std::fprintf(stderr, "%s\n", qPrintable(connection.error()));
        std::exit(1);
    }
    Stages stages(window, connection.value().get());
    std::vector<std::function<double()>> slices;
    for (const Row &row : Rows)
        slices.emplace_back([&stages, &row] { return (stages.*row.work)(); });
    const std::vector<Samples> samples = alternate(Rounds, slices);
    if (!stages.isWhole()) {
        std::fprintf(stderr, "the picture that came is not the one that was grabbed\n");
        std::exit(1);
    }

    const Samples floor = combined(samples, { { Grab, 1 }, { Deflate, 1 } });
    const Samples whole = combined(samples, { { Call, 1 }, { Read, 1 } });
    const Samples send = combined(samples, { { Call, 1 }, { Grab, -1 }, { Encode, -1 }, { Deflate, -1 } });
    Table table({ what, "ms", "x floor" });
    const auto add = [&](const char *label, const Samples &row) {
        table.add({ label, number(row.median(), 2), number(row.ratioTo(floor), 2) });
    };
    add("grab and deflate alone", floor);
    for (const int stage : { Grab, Encode, Deflate })
        add(Rows[stage].label, samples[static_cast<std::size_t>(stage)]);
    add("send: the rest of the call", send);
    for (const int stage : { Inflate, Decode })
        add(Rows[stage].label, samples[static_cast<std::size_t>(stage)]);
    add("the whole", whole);
    table.print();
    std::printf("%.0f KiB when deflated\n", stages.deflatedKiB());
    printTarget("the whole over grab and deflate", whole.ratioTo(floor), Limit, 2);
    std::printf("\n");
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    measure("a window with buttons", {});
    measure("a picture", { QStringLiteral("picture") });
    return 0;
}
