#include "apps/zelmodel/ZelModelPng.h"

#include <QImage>

#include <png.h>

#include <csetjmp>

namespace {

constexpr int BitDepth = 8;
constexpr int FastCompression = 1;

void append(png_structp png, png_bytep data, png_size_t size)
{
    auto *const bytes = static_cast<QByteArray *>(png_get_io_ptr(png));
    bytes->append(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
}

// The library jumps back here on an error: nothing in this function may need a destructor.
bool write(png_structp png, png_infop info, const QImage &image)
{
    if (setjmp(png_jmpbuf(png)))
        return false;
    png_set_IHDR(png, info, static_cast<png_uint_32>(image.width()),
        static_cast<png_uint_32>(image.height()), BitDepth, PNG_COLOR_TYPE_RGB_ALPHA,
        PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_filter(png, PNG_FILTER_TYPE_BASE, PNG_FILTER_NONE);
    png_set_compression_level(png, FastCompression);
    png_write_info(png, info);
    for (int y = 0; y < image.height(); ++y)
        png_write_row(png, image.constScanLine(y));
    png_write_end(png, info);
    return true;
}

} // namespace

QByteArray ZelModelPng::bytesOf(const QImage &image)
{
    const QImage pixels = image.convertToFormat(QImage::Format_RGBA8888);
    if (pixels.isNull())
        return {};
    QByteArray bytes;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    if (!info) {
        png_destroy_write_struct(&png, nullptr);
        return {};
    }
    png_set_write_fn(png, &bytes, append, nullptr);
    const bool good = write(png, info, pixels);
    png_destroy_write_struct(&png, &info);
    return good ? bytes : QByteArray();
}
