// Pictures as files.

#include "zelModelSupport/support/zgs.h"

#include <QImage>
#include <QtEndian>

#include <array>
#include <cstring>

namespace {

// Our pictures are mostly empty: the quickest compression leaves no more than the most thorough.
constexpr int CompressionLevel = 1;
constexpr int LengthBeforeCompressed = 4; // of qCompress(), which zlib does not know
constexpr uchar NoFilter = 0;

constexpr std::array<quint32, 256> makeCrcTable()
{
    std::array<quint32, 256> table{};
    for (quint32 i = 0; i < 256; ++i) {
        quint32 value = i;
        for (int bit = 0; bit < 8; ++bit)
            value = (value & 1) ? 0xedb88320U ^ (value >> 1) : value >> 1;
        table[i] = value;
    }
    return table;
}

quint32 crcOf(const char *data, qsizetype size)
{
    static constexpr std::array<quint32, 256> table = makeCrcTable();
    quint32 crc = 0xffffffffU;
    for (qsizetype i = 0; i < size; ++i)
        crc = table[(crc ^ static_cast<uchar>(data[i])) & 0xff] ^ (crc >> 8);
    return ~crc;
}

void appendNumber(QByteArray *bytes, quint32 number)
{
    const quint32 bigEndian = qToBigEndian(number);
    bytes->append(reinterpret_cast<const char *>(&bigEndian), sizeof bigEndian);
}

void appendChunk(QByteArray *bytes, const char *type, const char *data, qsizetype size)
{
    appendNumber(bytes, static_cast<quint32>(size));
    const qsizetype begin = bytes->size();
    bytes->append(type, 4);
    bytes->append(data, size);
    appendNumber(bytes, crcOf(bytes->constData() + begin, bytes->size() - begin));
}

} // namespace

QByteArray zgs::getPngFromPixMap(const QPixmap &picture)
{
    const QImage image = picture.toImage().convertToFormat(QImage::Format_RGBA8888);
    if (image.isNull())
        return {};
    const qsizetype lineSize = qsizetype(image.width()) * 4;
    QByteArray lines((lineSize + 1) * image.height(), Qt::Uninitialized);
    char *to = lines.data();
    for (int y = 0; y < image.height(); ++y) {
        *to++ = static_cast<char>(NoFilter);
        std::memcpy(to, image.constScanLine(y), static_cast<std::size_t>(lineSize));
        to += lineSize;
    }
    const QByteArray compressed = qCompress(lines, CompressionLevel);

    QByteArray header;
    appendNumber(&header, static_cast<quint32>(image.width()));
    appendNumber(&header, static_cast<quint32>(image.height()));
    header.append("\x08\x06\x00\x00\x00", 5); // 8 bits each of red, green, blue, alpha
    QByteArray bytes("\x89PNG\r\n\x1a\n", 8);
    appendChunk(&bytes, "IHDR", header.constData(), header.size());
    appendChunk(&bytes, "IDAT", compressed.constData() + LengthBeforeCompressed,
        compressed.size() - LengthBeforeCompressed);
    appendChunk(&bytes, "IEND", nullptr, 0);
    return bytes;
}
