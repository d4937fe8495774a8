#pragma once

#include <QByteArray>
#include <QIODevice>

#include <zlib.h>

namespace Vorkel {

/// Deflates what is written to it, bit by bit, so that nobody ever holds all of it.
class DeflatingDevice : public QIODevice
{
public:
    /// `level` is zlib's, -1 to 9.
    explicit DeflatingDevice(int level);
    ~DeflatingDevice() override;

    [[nodiscard]] bool isSequential() const override { return true; }
    /// Ends it. What has come of it, in the form that `qUncompress` reads; empty when that failed.
    [[nodiscard]] QByteArray finish();

protected:
    qint64 readData(char *data, qint64 maxLength) override;
    qint64 writeData(const char *data, qint64 length) override;

private:
    [[nodiscard]] bool run(int flush);

    z_stream m_zlib = {};
    QByteArray m_deflated;
    qsizetype m_length; // of what has been deflated, with the number in front
    bool m_isGood;
};

/// The other way round: what was deflated, to be read once from the start.
class InflatingDevice : public QIODevice
{
public:
    /// `bytes` in the form that `qCompress` makes.
    explicit InflatingDevice(const QByteArray &bytes);
    ~InflatingDevice() override;

    [[nodiscard]] bool isSequential() const override { return true; }
    /// Whether all has been read, and was whole.
    [[nodiscard]] bool isAtGoodEnd();

protected:
    qint64 readData(char *data, qint64 maxLength) override;
    qint64 writeData(const char *data, qint64 length) override;

private:
    QByteArray m_bytes;
    z_stream m_zlib = {};
    int m_code; // zlib's last
};

} // namespace Vorkel
