// Pictures as files.
//
// A writer of our own: the toolkit's takes twice as long for a reaction's picture as all the rest
// of its making, since it tries every filter, and compresses byte by byte what is mostly empty.
// Here whole pixels are compared with those to the left and above, and written by the fixed code.

#include "zelModelSupport/support/zgs.h"

#include <QImage>
#include <QtEndian>

#include <algorithm>
#include <array>

namespace {

constexpr quint32 AdlerBase = 65521;
constexpr int PixelBytes = 4;
constexpr int MaxMatchPixels = 64; // a match has at most 258 bytes
constexpr int MaxDistance = 32768; // in bytes, of a match
constexpr int LongRun = 8; // pixels; beyond, no other match is looked for

/// What a byte makes of a check sum when 0 to 3 more bytes follow it.
using CrcTables = std::array<std::array<quint32, 256>, 4>;

constexpr CrcTables makeCrcTables()
{
    CrcTables tables{};
    for (quint32 i = 0; i < 256; ++i) {
        quint32 value = i;
        for (int bit = 0; bit < 8; ++bit)
            value = (value & 1) ? 0xedb88320U ^ (value >> 1) : value >> 1;
        tables[0][i] = value;
    }
    for (std::size_t more = 1; more < tables.size(); ++more) {
        for (quint32 i = 0; i < 256; ++i) {
            const quint32 before = tables[more - 1][i];
            tables[more][i] = tables[0][before & 0xff] ^ (before >> 8);
        }
    }
    return tables;
}

quint32 crcOf(const char *data, qsizetype size)
{
    static constexpr CrcTables tables = makeCrcTables();
    quint32 crc = 0xffffffffU;
    const char *const end = data + size;
    for (; end - data >= 4; data += 4) {
        crc ^= qFromLittleEndian<quint32>(data);
        crc = tables[3][crc & 0xff] ^ tables[2][(crc >> 8) & 0xff] ^ tables[1][(crc >> 16) & 0xff]
            ^ tables[0][crc >> 24];
    }
    for (; data < end; ++data)
        crc = tables[0][(crc ^ static_cast<uchar>(*data)) & 0xff] ^ (crc >> 8);
    return ~crc;
}

/// A word of the compressed stream: its lowest bit comes first.
struct Code
{
    quint32 bits = 0;
    int length = 0;
};

constexpr Code reversed(quint32 bits, int length)
{
    quint32 turned = 0;
    for (int i = 0; i < length; ++i)
        turned |= ((bits >> i) & 1U) << (length - 1 - i);
    return {turned, length};
}

/// The fixed code of a byte, of the end (256) or of a class of match lengths (from 257 on).
constexpr Code fixedCode(quint32 symbol)
{
    if (symbol < 144)
        return reversed(0x30 + symbol, 8);
    if (symbol < 256)
        return reversed(0x190 + symbol - 144, 9);
    if (symbol < 280)
        return reversed(symbol - 256, 7);
    return reversed(0xc0 + symbol - 280, 8);
}

/// Numbers fall into classes of growing width: four of each width for lengths, two for distances.
/// The class stands first, then which number of the class it is.
struct NumberClass
{
    quint32 index = 0;
    Code rest;
};

constexpr NumberClass classOf(quint32 number, quint32 classesOfWidth)
{
    quint32 first = 0;
    for (quint32 index = 0;; ++index) {
        const quint32 width = index < 2 * classesOfWidth ? 0 : index / classesOfWidth - 1;
        if (number < first + (1U << width))
            return {index, {number - first, static_cast<int>(width)}};
        first += 1U << width;
    }
}

constexpr Code joined(const Code &first, const Code &second)
{
    return {first.bits | second.bits << first.length, first.length + second.length};
}

constexpr Code lengthCode(int pixels)
{
    const NumberClass of = classOf(static_cast<quint32>(pixels * PixelBytes - 3), 4);
    return joined(fixedCode(257 + of.index), of.rest);
}

constexpr Code distanceCode(int bytes)
{
    const NumberClass of = classOf(static_cast<quint32>(bytes - 1), 2);
    return joined(reversed(of.index, 5), of.rest);
}

constexpr std::array<Code, 256> makeByteCodes()
{
    std::array<Code, 256> codes{};
    for (quint32 i = 0; i < codes.size(); ++i)
        codes[i] = fixedCode(i);
    return codes;
}

constexpr std::array<Code, MaxMatchPixels + 1> makeLengthCodes()
{
    std::array<Code, MaxMatchPixels + 1> codes{};
    for (int i = 1; i <= MaxMatchPixels; ++i)
        codes[static_cast<std::size_t>(i)] = lengthCode(i);
    return codes;
}

/// Compresses lines of pixels, each behind a byte that says that it is not filtered.
class Compressor
{
public:
    /// Of an image with premultiplied pixels.
    explicit Compressor(const QImage &image)
        : m_width(image.width()), m_above(distanceOfAbove(image.width()))
    {
        reserve(m_width);
        append({0x0178, 16}); // what it is: compressed, in a hurry
        append({0b011, 3}); // one block, by the fixed code
        const QRgb *above = nullptr;
        for (int y = 0; y < image.height(); ++y) {
            const auto *const line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
            reserve(m_width);
            append(fixedCode(0));
            m_high = (m_high + m_low) % AdlerBase; // a byte of 0
            for (int x = 0; x < m_width;)
                x += addPixels(line, above, x);
            above = m_above.length > 0 ? line : nullptr;
        }
        append(fixedCode(256));
        append({0, -m_bitCount & 7}); // to the next whole byte
        append({qToBigEndian(m_high << 16 | m_low), 32});
        for (; m_bitCount > 0; m_bitCount -= 8, m_bits >>= 8)
            m_bytes[m_size++] = static_cast<char>(m_bits & 0xff);
        m_bytes.truncate(m_size);
    }

    const QByteArray &bytes() const { return m_bytes; }

private:
    static constexpr int MaxPixelLength = 5; // bytes
    static constexpr int MaxRest = 32; // bytes, of what stands around the lines

    /// Of the pixel above; without length when that is too far away.
    static Code distanceOfAbove(int width)
    {
        const int distance = width * PixelBytes + 1;
        return distance <= MaxDistance ? distanceCode(distance) : Code();
    }

    void reserve(int pixels)
    {
        const qsizetype needed = m_size + qsizetype(pixels) * MaxPixelLength + MaxRest;
        if (m_bytes.size() < needed)
            m_bytes.resize(2 * needed);
    }

    /// Adds the pixels from x on that can be said at once; answers how many.
    int addPixels(const QRgb *line, const QRgb *above, int x)
    {
        static constexpr Code left = distanceCode(PixelBytes);
        const int likeLeft = x > 0 ? countEqual(line, x, line[x - 1]) : 0;
        if (likeLeft >= LongRun) {
            addMatch(likeLeft, left);
            addToSum(qUnpremultiply(line[x]), likeLeft);
            return likeLeft;
        }
        int likeAbove = 0;
        while (above && x + likeAbove < m_width && line[x + likeAbove] == above[x + likeAbove])
            ++likeAbove;
        if (likeLeft == 0 && likeAbove == 0) {
            addPixel(qUnpremultiply(line[x]));
            return 1;
        }
        const int count = std::max(likeLeft, likeAbove);
        addMatch(count, likeLeft >= likeAbove ? left : m_above);
        for (int i = x; i < x + count;) {
            const int equal = std::min(countEqual(line, i, line[i]), x + count - i);
            addToSum(qUnpremultiply(line[i]), equal);
            i += equal;
        }
        return count;
    }

    /// How many pixels from x on are this one.
    int countEqual(const QRgb *line, int x, QRgb pixel) const
    {
        int end = x;
        while (end < m_width && line[end] == pixel)
            ++end;
        return end - x;
    }

    void addPixel(QRgb pixel)
    {
        static constexpr std::array<Code, 256> codes = makeByteCodes();
        for (const int byte : {qRed(pixel), qGreen(pixel), qBlue(pixel), qAlpha(pixel)})
            append(codes[static_cast<std::size_t>(byte)]);
        addToSum(pixel, 1);
    }

    void addMatch(int pixels, const Code &distance)
    {
        static constexpr std::array<Code, MaxMatchPixels + 1> codes = makeLengthCodes();
        for (int rest = pixels; rest > 0; rest -= MaxMatchPixels) {
            append(codes[static_cast<std::size_t>(std::min(rest, MaxMatchPixels))]);
            append(distance);
        }
    }

    void append(const Code &code)
    {
        m_bits |= quint64(code.bits) << m_bitCount;
        m_bitCount += code.length;
        if (m_bitCount < 32)
            return;
        qToLittleEndian(static_cast<quint32>(m_bits), m_bytes.data() + m_size);
        m_size += static_cast<qsizetype>(sizeof(quint32));
        m_bits >>= 32;
        m_bitCount -= 32;
    }

    /// The stream's check sum after a number of equal pixels, as if byte by byte.
    void addToSum(QRgb pixel, int count)
    {
        const auto red = static_cast<quint64>(qRed(pixel));
        const auto green = static_cast<quint64>(qGreen(pixel));
        const auto blue = static_cast<quint64>(qBlue(pixel));
        const auto alpha = static_cast<quint64>(qAlpha(pixel));
        const auto n = static_cast<quint64>(count);
        const quint64 once = red + green + blue + alpha;
        const quint64 weighted = 4 * red + 3 * green + 2 * blue + alpha;
        m_high = static_cast<quint32>(
            (m_high + n * (PixelBytes * quint64(m_low) + weighted) + 2 * once * n * (n - 1))
            % AdlerBase);
        m_low = static_cast<quint32>((m_low + once * n) % AdlerBase);
    }

    int m_width;
    Code m_above;
    QByteArray m_bytes; // longer than what has been written
    qsizetype m_size = 0;
    quint64 m_bits = 0;
    int m_bitCount = 0;
    quint32 m_low = 1;
    quint32 m_high = 0;
};

void appendNumber(QByteArray *bytes, quint32 number)
{
    const quint32 bigEndian = qToBigEndian(number);
    bytes->append(reinterpret_cast<const char *>(&bigEndian), sizeof bigEndian);
}

void appendChunk(QByteArray *bytes, const char *type, const QByteArray &data)
{
    appendNumber(bytes, static_cast<quint32>(data.size()));
    const qsizetype begin = bytes->size();
    bytes->append(type, 4);
    bytes->append(data);
    appendNumber(bytes, crcOf(bytes->constData() + begin, bytes->size() - begin));
}

} // namespace

QByteArray zgs::getPngFromPixMap(const QPixmap &picture)
{
    const QImage image = picture.toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return {};
    QByteArray header;
    appendNumber(&header, static_cast<quint32>(image.width()));
    appendNumber(&header, static_cast<quint32>(image.height()));
    header.append("\x08\x06\x00\x00\x00", 5); // 8 bits each of red, green, blue, alpha
    QByteArray bytes("\x89PNG\r\n\x1a\n", 8);
    appendChunk(&bytes, "IHDR", header);
    appendChunk(&bytes, "IDAT", Compressor(image).bytes());
    appendChunk(&bytes, "IEND", {});
    return bytes;
}
