#include "sources/video/Jpeg2000.h"

#include "imaging/PictureFormat.h"
#include "imaging/PixelLimits.h"
#include "sources/video/Ffmpeg.h"

namespace lumirra {
namespace {

FfmpegPtr<AVFrame> Decode(QIODevice& device) {
    constexpr qint64 kMaxFileBytes = 1LL << 30;
    SilenceLibraries();
    const AVCodec* codec = avcodec_find_decoder(AV_CODEC_ID_JPEG2000);
    const FfmpegPtr<AVCodecContext> context(avcodec_alloc_context3(codec));
    const FfmpegPtr<AVPacket> packet(av_packet_alloc());
    FfmpegPtr<AVFrame> frame(av_frame_alloc());
    if (codec == nullptr || device.size() > kMaxFileBytes || !device.seek(0)) {
        return nullptr;
    }
    if (!context || !packet || !frame ||
        av_new_packet(packet.get(), static_cast<int>(device.size())) < 0) {
        throw std::bad_alloc();
    }
    context->thread_count = 1;
    context->max_pixels = kMaxSourcePixels;
    if (device.read(reinterpret_cast<char*>(packet->data), packet->size) != packet->size ||
        !Succeeded(avcodec_open2(context.get(), codec, nullptr)) ||
        !Succeeded(avcodec_send_packet(context.get(), packet.get())) ||
        !Succeeded(avcodec_receive_frame(context.get(), frame.get()))) {
        return nullptr;
    }
    return frame;
}

}  // namespace

QImage ReadJpeg2000(QIODevice& device) {
    const FfmpegPtr<AVFrame> frame = Decode(device);
    if (!frame || frame->width < 1 || frame->height < 1) {
        return {};
    }
    const auto format = static_cast<AVPixelFormat>(frame->format);
    const FfmpegPtr<SwsContext> scaler(sws_getContext(
        frame->width, frame->height, format, frame->width, frame->height, AV_PIX_FMT_RGBA,
        SWS_POINT | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT, nullptr, nullptr, nullptr));
    QImage image = NewPicture({frame->width, frame->height}, QImage::Format_RGBA8888);
    if (!scaler) {
        return {};
    }
    // Luminance and chrominance in a JPEG 2000 file span the full range.
    const int* matrix = sws_getCoefficients(SWS_CS_ITU601);
    sws_setColorspaceDetails(scaler.get(), matrix, 1, matrix, 1, 0, 1 << 16, 1 << 16);
    uchar* planes[4] = {image.bits(), nullptr, nullptr, nullptr};
    const int strides[4] = {static_cast<int>(image.bytesPerLine()), 0, 0, 0};
    if (sws_scale(scaler.get(), frame->data, frame->linesize, 0, frame->height, planes, strides) !=
        frame->height) {
        return {};
    }
    return image;
}

}  // namespace lumirra
