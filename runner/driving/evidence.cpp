#include "evidence.h"

#include "objecttree.h"
#include "screenshots.h"

#include <QDir>
#include <QFile>

namespace Vorkel::Runner {

namespace {

bool write(const QString &path, const QString &text)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(text.toUtf8()) >= 0;
}

} // namespace

Failure readTreeText(DrivenProgram &program, QString *text)
{
    return program.step(QStringLiteral("tree of %1").arg(program.name()), [&] {
        QList<TreeNode> nodes;
        const Failure failure = readTree(program.objects(), {}, -1, &nodes);
        *text = toText(nodes);
        return failure;
    });
}

QStringList keepEvidence(const QString &folder, const QString &message,
                         const QList<std::shared_ptr<DrivenProgram>> &programs)
{
    QStringList written;
    const QDir place(folder);
    if (!QDir().mkpath(folder))
        return written;
    const auto add = [&](const QString &name, bool ok) {
        if (ok)
            written.append(place.filePath(name));
    };
    add(QStringLiteral("message.txt"), write(place.filePath(QStringLiteral("message.txt")), message + u'\n'));
    int number = 0;
    for (const auto &program : programs) {
        ++number;
        if (!program->isRunning() || program->isHanging())
            continue;
        const QString prefix = programs.size() == 1 ? QString() : QStringLiteral("%1-").arg(number);
        QImage image;
        const QString picture = prefix + QStringLiteral("screenshot.png");
        if (!takeScreenshot(*program, &image).isFailure())
            add(picture, !saveImage(image, place.filePath(picture)).isFailure());
        QString tree;
        const QString objects = prefix + QStringLiteral("objects.txt");
        if (!readTreeText(*program, &tree).isFailure())
            add(objects, write(place.filePath(objects), tree));
    }
    return written;
}

} // namespace Vorkel::Runner
