#include "serverlib/argumentlist.h"

#include <QBitArray>
#include <QDataStream>
#include <QMap>
#include <QtEndian>

#include <algorithm>
#include <array>

namespace Vorkel {

namespace {

/// How a value is told apart on the wire: by the numbers that stream version 6 knows.
enum WireType : quint32 {
    WireInvalid = 0,
    WireMap = 1,
    WireList = 2,
    WireString = 3,
    WireStringList = 4,
    WireBits = 30
};

struct PlainType
{
    quint32 wireType;
    QMetaType::Type type;
};

// clang-format off
constexpr PlainType PlainTypes[] = {
    { WireString, QMetaType::QString    },
    {  8,         QMetaType::QRect      },
    {  9,         QMetaType::QSize      },
    { 14,         QMetaType::QPoint     },
    { 16,         QMetaType::Int        },
    { 17,         QMetaType::UInt       },
    { 18,         QMetaType::Bool       },
    { 19,         QMetaType::Double     },
    { 26,         QMetaType::QDate      },
    { 27,         QMetaType::QTime      },
    { 28,         QMetaType::QDateTime  },
    { 29,         QMetaType::QByteArray },
    { 33,         QMetaType::LongLong   },
    { 34,         QMetaType::ULongLong  },
};
// clang-format on

/// Reads values one by one. `QDataStream` reads lists by a count that it believes and values by
/// recursion without end; both come from a peer here.
class Reader
{
public:
    explicit Reader(QDataStream &stream)
        : m_stream(stream)
    {
    }

    QVariant value(int depth);

    template <typename List, typename ReadItem>
    List list(ReadItem readItem);

private:
    QVariant map(int depth);
    QVariant bits();
    QVariant plain(quint32 wireType);
    QVariant corrupt();
    bool countOne();

    QDataStream &m_stream;
    int m_left = MaxArgumentValues;
};

QVariant Reader::corrupt()
{
    m_stream.setStatus(QDataStream::ReadCorruptData);
    return QVariant();
}

bool Reader::countOne()
{
    if (m_left-- <= 0)
        corrupt();
    return m_stream.status() == QDataStream::Ok;
}

template <typename List, typename ReadItem>
List Reader::list(ReadItem readItem)
{
    quint32 count = 0;
    m_stream >> count;
    List result;
    for (quint32 i = 0; i < count && countOne(); ++i)
        result.append(readItem());
    return m_stream.status() == QDataStream::Ok ? result : List();
}

QVariant Reader::map(int depth)
{
    quint32 count = 0;
    m_stream >> count;
    QVariantMap result;
    for (quint32 i = 0; i < count && countOne(); ++i) {
        QString key;
        m_stream >> key;
        result.insert(key, value(depth));
    }
    return result;
}

/// Qt rounds the count up to whole bytes in a signed number of the machine's width, which a count close
/// to 2^31 leaves on 32 bits. Here the bytes have to be there first, and no block has so many.
QVariant Reader::bits()
{
    constexpr quint64 Piece = 1 << 20;
    quint32 count = 0;
    m_stream >> count;
    QByteArray bytes;
    for (quint64 left = (quint64(count) + 7) / 8; left > 0 && m_stream.status() == QDataStream::Ok;) {
        const int size = static_cast<int>(std::min(left, Piece));
        const qsizetype begin = bytes.size();
        bytes.resize(begin + size);
        if (m_stream.readRawData(bytes.data() + begin, size) != size)
            m_stream.setStatus(QDataStream::ReadPastEnd);
        left -= static_cast<quint64>(size);
    }
    if (m_stream.status() != QDataStream::Ok)
        return QVariant();
    return QBitArray::fromBits(bytes.constData(), static_cast<qsizetype>(count));
}

QVariant Reader::plain(quint32 wireType)
{
    const auto *row = std::find_if(std::begin(PlainTypes), std::end(PlainTypes),
                                   [=](const PlainType &entry) { return entry.wireType == wireType; });
    if (row == std::end(PlainTypes))
        return corrupt();
    const QMetaType type(row->type);
    QVariant result(type);
    return type.load(m_stream, result.data()) ? result : corrupt();
}

QVariant Reader::value(int depth)
{
    if (depth > MaxArgumentDepth)
        return corrupt();
    quint32 wireType = WireInvalid;
    m_stream >> wireType;
    if (m_stream.status() != QDataStream::Ok)
        return QVariant();
    switch (wireType) {
    case WireInvalid: {
        QString placeholder;
        m_stream >> placeholder;
        return QVariant();
    }
    case WireMap:
        return map(depth + 1);
    case WireList:
        return list<QVariantList>([&] { return value(depth + 1); });
    case WireStringList:
        return list<QStringList>([&] {
            QString text;
            m_stream >> text;
            return text;
        });
    case WireBits:
        return bits();
    default:
        return plain(wireType);
    }
}

/// Qt turns the byte order of a string in a copy as long as the string; this takes a small buffer.
void writeString(QDataStream &stream, const QString &text)
{
    stream << quint32(WireString) << quint32(text.size() * qsizetype(sizeof(QChar)));
    std::array<char16_t, 1024> piece;
    for (qsizetype offset = 0; offset < text.size();) {
        const auto count = std::min<qsizetype>(text.size() - offset, piece.size());
        qToBigEndian<char16_t>(text.utf16() + offset, count, piece.data());
        stream.writeRawData(reinterpret_cast<const char *>(piece.data()),
                            static_cast<int>(count * qsizetype(sizeof(char16_t))));
        offset += count;
    }
}

} // namespace

void writeArguments(QDataStream &stream, const ArgumentList &arguments)
{
    stream << static_cast<quint32>(arguments.size());
    for (const QVariant &argument : arguments) {
        if (stream.status() != QDataStream::Ok)
            return;
        if (argument.typeId() == QMetaType::QString && !argument.toString().isEmpty())
            writeString(stream, argument.toString());
        else
            stream << argument;
    }
}

ArgumentList readArguments(QDataStream &stream)
{
    Reader reader(stream);
    return reader.list<ArgumentList>([&] { return reader.value(0); });
}

} // namespace Vorkel
