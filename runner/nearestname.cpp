#include "nearestname.h"

#include <QList>

#include <algorithm>
#include <numeric>
#include <utility>

namespace Vorkel::Runner {

namespace {

/// How many letters have to be changed, added or dropped to make one text of the other.
int distance(const QString &a, const QString &b)
{
    QList<int> row(b.size() + 1);
    std::iota(row.begin(), row.end(), 0);
    for (qsizetype i = 0; i < a.size(); ++i) {
        int diagonal = std::exchange(row[0], static_cast<int>(i) + 1);
        for (qsizetype j = 0; j < b.size(); ++j) {
            const int replaced = diagonal + (a.at(i).toLower() != b.at(j).toLower());
            diagonal = row.at(j + 1);
            row[j + 1] = std::min({ replaced, row.at(j) + 1, diagonal + 1 });
        }
    }
    return row.last();
}

} // namespace

QString suggestion(const QString &name, const QStringList &candidates)
{
    QString nearest;
    int least = static_cast<int>(name.size()) / 2 + 1;
    for (const QString &candidate : candidates) {
        if (const int each = distance(name, candidate); each < least) {
            least = each;
            nearest = candidate;
        }
    }
    return nearest.isEmpty() ? QString() : QStringLiteral("; did you mean '%1'?").arg(nearest);
}

} // namespace Vorkel::Runner
