#include "tools/common/png_file.h"

#include "text/replace_file.h"

#include <png.h>

#include <stdexcept>
#include <vector>

namespace tarvo {

std::string png_bytes(const Picture& picture)
{
    if (picture.is_empty()) throw std::runtime_error("a picture without pixels has no PNG file");
    constexpr std::size_t kBytesPerPixel = 3;
    std::vector<png_byte> samples;
    samples.reserve(kBytesPerPixel * static_cast<std::size_t>(picture.width()) *
                    static_cast<std::size_t>(picture.height()));
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const Colour colour = picture.row(y)[x];
            samples.push_back(static_cast<png_byte>(colour >> 16 & 0xFF));
            samples.push_back(static_cast<png_byte>(colour >> 8 & 0xFF));
            samples.push_back(static_cast<png_byte>(colour & 0xFF));
        }
    }

    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(picture.width());
    image.height = static_cast<png_uint_32>(picture.height());
    image.format = PNG_FORMAT_RGB;
    std::string bytes(PNG_IMAGE_PNG_SIZE_MAX(image), '\0'); // enough for every content of this size
    png_alloc_size_t length = bytes.size();
    if (png_image_write_to_memory(&image, bytes.data(), &length, 0, samples.data(), 0, nullptr) == 0) {
        throw std::runtime_error(std::string("the picture could not be encoded: ") + image.message);
    }
    bytes.resize(length);
    return bytes;
}

void write_png_file(const std::string& file_name, const Picture& picture)
{
    replace_file(file_name, png_bytes(picture));
}

} // namespace tarvo
