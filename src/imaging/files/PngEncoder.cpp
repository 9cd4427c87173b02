#include "imaging/files/PngEncoder.h"

#include <spng.h>

#include <memory>

namespace lumirra {
namespace {

struct ContextDeleter {
    void operator()(spng_ctx* context) const { spng_ctx_free(context); }
};
using Context = std::unique_ptr<spng_ctx, ContextDeleter>;

int AppendBytes(spng_ctx* /*context*/, void* user, void* source, std::size_t length) {
    static_cast<QByteArray*>(user)->append(static_cast<const char*>(source),
                                           static_cast<qsizetype>(length));
    return SPNG_OK;
}

bool SetUp(spng_ctx* context, const QImage& rgba, QByteArray& file) {
    spng_ihdr header{};
    header.width = static_cast<std::uint32_t>(rgba.width());
    header.height = static_cast<std::uint32_t>(rgba.height());
    header.bit_depth = 8;
    header.color_type = SPNG_COLOR_TYPE_TRUECOLOR_ALPHA;
    return spng_set_png_stream(context, AppendBytes, &file) == SPNG_OK &&
           spng_set_ihdr(context, &header) == SPNG_OK &&
           spng_set_option(context, SPNG_IMG_COMPRESSION_LEVEL, 1) == SPNG_OK &&
           spng_set_option(context, SPNG_FILTER_CHOICE, SPNG_FILTER_CHOICE_UP) == SPNG_OK &&
           spng_encode_image(context, nullptr, 0, SPNG_FMT_PNG,
                             SPNG_ENCODE_PROGRESSIVE | SPNG_ENCODE_FINALIZE) == SPNG_OK;
}

}  // namespace

std::optional<QByteArray> EncodePng(const QImage& rgba) {
    QByteArray file;
    const Context context(spng_ctx_new(SPNG_CTX_ENCODER));
    if (context == nullptr || !SetUp(context.get(), rgba, file)) {
        return std::nullopt;
    }
    const std::size_t rowBytes = static_cast<std::size_t>(rgba.width()) * 4;
    int state = SPNG_OK;
    for (int y = 0; y < rgba.height() && state == SPNG_OK; ++y) {
        state = spng_encode_row(context.get(), rgba.constScanLine(y), rowBytes);
    }
    if (state != SPNG_EOI) {  // the last row ends the file
        return std::nullopt;
    }
    return file;
}

}  // namespace lumirra
