#include "objectmodel/objectmap.h"

#include <QFile>

#include <cstdio>

namespace Vorkel {

namespace {

/// Old files hold hierarchical names whose backslashes are not escaped.
QString withEscapedBackslashes(const QString &name)
{
    QString result;
    result.reserve(name.size());
    bool isEscaped = false;
    for (const QChar c : name) {
        if (isEscaped && c != u'\\' && c != u'.' && c != u'[')
            result += u'\\';
        result += c;
        isEscaped = c == u'\\' && !isEscaped;
    }
    return result;
}

QChar unescaped(QChar c)
{
    switch (c.unicode()) {
    case u'n':
        return u'\n';
    case u'r':
        return u'\r';
    case u't':
        return u'\t';
    default:
        return c;
    }
}

} // namespace

QString ObjectMap::escapeForSerialize(const QString &text)
{
    QString result = text;
    result.replace(u'\\', QLatin1String("\\\\"));
    result.replace(u'\n', QLatin1String("\\n"));
    result.replace(u'\r', QLatin1String("\\r"));
    result.replace(u'\t', QLatin1String("\\t"));
    return result;
}

QString ObjectMap::unescapeFromSerialize(const QString &text)
{
    if (!text.contains(u'\\'))
        return text;
    QString result;
    result.reserve(text.size());
    bool isEscaped = false;
    for (const QChar c : text) {
        if (!isEscaped && c == u'\\') {
            isEscaped = true;
            continue;
        }
        if (isEscaped && c != u'\\' && unescaped(c) == c)
            result += u'\\';
        result += isEscaped ? unescaped(c) : c;
        isEscaped = false;
    }
    return result;
}

QString ObjectMap::toString() const
{
    QString text;
    for (auto it = m_names.cbegin(); it != m_names.cend(); ++it) {
        text += escapeForSerialize(it.key()) + u'\t' + escapeForSerialize(it->qualifiedName());
        text += u'\n';
    }
    return text;
}

QList<std::pair<QString, ObjectName>> ObjectMap::parseSerializedMap(const QString &text)
{
    QList<std::pair<QString, ObjectName>> pairs;
    for (const QStringView line : QStringView(text).split(u'\n', Qt::SkipEmptyParts)) {
        const qsizetype tab = line.indexOf(u'\t');
        if (tab < 0)
            continue;
        QString name = unescapeFromSerialize(line.sliced(tab + 1).toString());
        if (!isMultiPropertyName(name))
            name = withEscapedBackslashes(name);
        pairs.append({ unescapeFromSerialize(line.first(tab).toString()), ObjectName(name) });
    }
    return pairs;
}

void ObjectMap::loadFromString(const QString &text)
{
    for (const auto &[symbol, name] : parseSerializedMap(text))
        insert(symbol, name);
}

bool ObjectMap::loadFromFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return false;
    clear();
    loadFromString(QString::fromUtf8(file.readAll()));
    return true;
}

bool ObjectMap::saveToFile(const QString &path)
{
    if (!m_isModified)
        return true;
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text)) {
        std::fprintf(stderr, "ObjectMap::save() failed when opening '%s'\n", path.toLocal8Bit().constData());
        return false;
    }
    const QByteArray bytes = toString().toUtf8();
    if (file.write(bytes) != bytes.size() || !file.flush())
        return false;
    m_isModified = false;
    return true;
}

} // namespace Vorkel
