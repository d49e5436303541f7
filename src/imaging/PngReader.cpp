#include "imaging/PngReader.h"

#include <QColorSpace>
#include <QIODevice>
#include <QPointF>

#include <csetjmp>
#include <cstring>
#include <png.h>

// libpng reports errors by longjmp; no object after setjmp may need its destructor.
namespace quilmora {
namespace {

[[noreturn]] void fail(png_structp png, png_const_charp /*message*/) { png_longjmp(png, 1); }

void ignore(png_structp /*png*/, png_const_charp /*message*/) {}

void readBytes(png_structp png, png_bytep bytes, png_size_t count)
{
    auto *device = static_cast<QIODevice *>(png_get_io_ptr(png));
    const auto wanted = static_cast<qint64>(count);
    if (device->read(static_cast<char *>(static_cast<void *>(bytes)), wanted) != wanted) {
        png_error(png, "The file is cut");
    }
}

/// The color space of the samples; invalid when the file has none.
QColorSpace colorSpaceOf(png_structp png, png_infop info)
{
    if (png_get_valid(png, info, PNG_INFO_iCCP) != 0) {
        png_charp name = nullptr;
        int compression = 0;
        png_bytep profile = nullptr;
        png_uint_32 length = 0;
        png_get_iCCP(png, info, &name, &compression, &profile, &length);
        const auto *bytes = static_cast<const char *>(static_cast<const void *>(profile));
        return QColorSpace::fromIccProfile(QByteArray{bytes, static_cast<qsizetype>(length)});
    }
    if (png_get_valid(png, info, PNG_INFO_sRGB) != 0) {
        return QColorSpace::SRgb;
    }
    double gamma = 0;
    if (png_get_gAMA(png, info, &gamma) == 0 || gamma <= 0) {
        return {};
    }
    const auto exponent = static_cast<float>(1 / gamma);
    QPointF white;
    QPointF red;
    QPointF green;
    QPointF blue;
    if (png_get_cHRM(png, info, &white.rx(), &white.ry(), &red.rx(), &red.ry(), &green.rx(), &green.ry(),
                     &blue.rx(), &blue.ry()) == 0) {
        return {QColorSpace::Primaries::SRgb, exponent};
    }
    return {white, red, green, blue, QColorSpace::TransferFunction::Gamma, exponent};
}

} // namespace

PngReader::PngReader(QIODevice &device)
    : m_png{png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, &fail, &ignore)}
{
    m_info = png_create_info_struct(m_png);
    png_set_read_fn(m_png, &device, &readBytes);
#if defined(PNG_SET_OPTION_SUPPORTED) && defined(PNG_MAXIMUM_INFLATE_WINDOW)
    // Some files declare a smaller zlib window than they use.
    png_set_option(m_png, PNG_MAXIMUM_INFLATE_WINDOW, PNG_OPTION_ON);
#endif
}

PngReader::~PngReader() { png_destroy_read_struct(&m_png, &m_info, nullptr); }

bool PngReader::open()
{
    if (m_png == nullptr || m_info == nullptr || setjmp(png_jmpbuf(m_png)) != 0) {
        return false;
    }
    png_read_info(m_png, m_info);
    if (png_get_interlace_type(m_png, m_info) != PNG_INTERLACE_NONE) {
        return false;
    }
#ifdef PNG_eXIf_SUPPORTED
    if (png_get_valid(m_png, m_info, PNG_INFO_eXIf) != 0) {
        return false;
    }
#endif
    prepareRows();
    png_read_update_info(m_png, m_info);
    m_channelCount = png_get_channels(m_png, m_info);
    m_rowBytes = static_cast<qsizetype>(png_get_rowbytes(m_png, m_info));
    return true;
}

void PngReader::prepareRows()
{
    constexpr png_uint_32 opaque = 0xffff;
    m_pictureSize = {static_cast<int>(png_get_image_width(m_png, m_info)),
                     static_cast<int>(png_get_image_height(m_png, m_info))};
    m_bits = png_get_bit_depth(m_png, m_info) == 16 ? 16 : 8;
    // Expands palettes to RGB, fewer bits to eight, and a transparent color to alpha.
    png_set_expand(m_png);
#if Q_BYTE_ORDER == Q_LITTLE_ENDIAN
    png_set_swap(m_png);
#endif
    const QColorSpace colorSpace = colorSpaceOf(m_png, m_info);
    if (colorSpace.isValid() && colorSpace != QColorSpace{QColorSpace::SRgb}) {
        m_toSrgb = colorSpace.transformationToColorSpace(QColorSpace::SRgb);
        // In a format that QColorTransform supports.
        m_format = m_bits == 16 ? QImage::Format_RGBA64 : QImage::Format_RGBA8888;
        png_set_gray_to_rgb(m_png);
        png_set_add_alpha(m_png, opaque, PNG_FILLER_AFTER);
    }
}

bool PngReader::read(uchar *row)
{
    if (setjmp(png_jmpbuf(m_png)) != 0) {
        return false;
    }
    png_read_row(m_png, row, nullptr);
    if (m_toSrgb) {
        QImage pixels{row, m_pictureSize.width(), 1, m_rowBytes, m_format};
        pixels.applyColorTransform(*m_toSrgb);
        // The transformation may have changed the format.
        pixels.convertTo(m_format);
        std::memmove(row, pixels.constBits(), static_cast<std::size_t>(m_rowBytes));
    }
    return true;
}

bool PngReader::finish()
{
    if (setjmp(png_jmpbuf(m_png)) != 0) {
        return false;
    }
    png_read_end(m_png, nullptr);
    return true;
}

} // namespace quilmora
