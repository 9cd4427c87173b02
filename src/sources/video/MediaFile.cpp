#include "sources/video/MediaFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFileInfo>
#include <cerrno>
#include <cstdio>
#include <string>
#include <vector>

#include "imaging/PixelLimits.h"
#include "imaging/files/FileName.h"

namespace lumirra {

namespace {

constexpr int kIoBufferBytes = 1 << 16;

// Containers that hold their own material. The names of one entry need not all be listed.
constexpr char kContainers[] =
    "mov,matroska,webm,avi,mpegts,mpeg,mpegvideo,flv,live_flv,ogg,asf,asf_o,mxf,mxf_opatom,gif,"
    "apng,"
    "h264,hevc,m4v,h263,vc1,av1,obu,ivf,nut,rm,yuv4mpegpipe,dv,gxf,mjpeg,wtv,dirac,cavsvideo,nsv,"
    "dhav,flic,smk,bink,vmd,roq,thp,xmv,4xm,ea,film_cpk,mlv,swf,"
    "mp3,aac,flac,wav,aiff,ac3,eac3,amr,au,caf,w64,ape,tta,wv,"
    "jpeg_pipe,jpegls_pipe,j2k_pipe,png_pipe,bmp_pipe,tiff_pipe,webp_pipe,gif_pipe,dpx_pipe,"
    "exr_pipe,psd_pipe,pam_pipe,pbm_pipe,pgm_pipe,ppm_pipe,qdraw_pipe,sgi_pipe,sunrast_pipe,"
    "xpm_pipe,xwd_pipe,pcx_pipe,dds_pipe";

int RefuseOtherFile(AVFormatContext*, AVIOContext**, const char*, int, AVDictionary**) {
    return AVERROR(EPERM);
}

Failure OpenFailure(const QString& path, int error) {
    if (error == ENOENT || error == ENOTDIR) {
        return FileFailure(Failure::Kind::NotFound, path, QStringLiteral("does not exist."));
    }
    return FileFailure(Failure::Kind::Unreadable, path,
                       error == EACCES ? QStringLiteral("may not be read by this user.")
                                       : QStringLiteral("cannot be opened."));
}

}  // namespace

Failure FileFailure(Failure::Kind kind, const QString& path, const QString& tail) {
    const QString name = QFileInfo(path).fileName();
    return {kind, (name.isEmpty() ? path : name) + QLatin1Char(' ') + tail, path};
}

Failure NoMemoryFor(const QString& path) {
    return FileFailure(Failure::Kind::TooLarge, path,
                       QStringLiteral("cannot be read: there is not enough memory."));
}

struct MediaFile::FileBytes {
    int descriptor = -1;

    FileBytes() = default;
    FileBytes(const FileBytes&) = delete;
    FileBytes& operator=(const FileBytes&) = delete;
    ~FileBytes() {
        if (descriptor >= 0) {
            ::close(descriptor);
        }
    }

    static int Read(void* opaque, std::uint8_t* buffer, int size) {
        const auto* self = static_cast<FileBytes*>(opaque);
        ssize_t got = -1;
        do {
            got = ::read(self->descriptor, buffer, static_cast<std::size_t>(size));
        } while (got < 0 && errno == EINTR);
        if (got == 0) {
            return AVERROR_EOF;
        }
        return got < 0 ? AVERROR(errno) : static_cast<int>(got);
    }

    static std::int64_t Seek(void* opaque, std::int64_t offset, int whence) {
        const auto* self = static_cast<FileBytes*>(opaque);
        if (whence == AVSEEK_SIZE) {
            struct stat status = {};
            return ::fstat(self->descriptor, &status) == 0 ? status.st_size : AVERROR(errno);
        }
        const off_t at = ::lseek(self->descriptor, offset, whence & ~AVSEEK_FORCE);
        return at < 0 ? AVERROR(errno) : at;
    }

    std::optional<Failure> Open(const QString& path) {
        // Without O_NONBLOCK, opening a pipe waits until somebody writes to it.
        descriptor = ::open(lumirra::FileBytes(path).constData(),
                            O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
        struct stat status = {};
        if (descriptor < 0 || ::fstat(descriptor, &status) != 0) {
            return OpenFailure(path, errno);
        }
        if (!S_ISREG(status.st_mode)) {
            return FileFailure(Failure::Kind::Unreadable, path,
                               S_ISDIR(status.st_mode)
                                   ? QStringLiteral("is a folder, not a video.")
                                   : QStringLiteral("is not an ordinary file."));
        }
        if (status.st_size == 0) {
            return FileFailure(Failure::Kind::Unreadable, path, QStringLiteral("is empty."));
        }
        return std::nullopt;
    }
};

MediaFile::MediaFile() = default;
MediaFile::MediaFile(MediaFile&&) noexcept = default;
MediaFile::~MediaFile() = default;

MediaFile& MediaFile::operator=(MediaFile&& other) noexcept {
    path_ = std::move(other.path_);
    format_ = std::move(other.format_);  // in this order: each reads from the next
    io_ = std::move(other.io_);
    bytes_ = std::move(other.bytes_);
    return *this;
}

Outcome<MediaFile> MediaFile::Open(const QString& path) {
    SilenceLibraries();
    MediaFile file;
    file.path_ = path;
    file.bytes_ = std::make_unique<FileBytes>();
    if (auto failure = file.bytes_->Open(path)) {
        return *std::move(failure);
    }
    auto* buffer = static_cast<unsigned char*>(av_malloc(kIoBufferBytes));
    file.io_.reset(avio_alloc_context(buffer, kIoBufferBytes, 0, file.bytes_.get(),
                                      &FileBytes::Read, nullptr, &FileBytes::Seek));
    AVFormatContext* context = avformat_alloc_context();
    if (!buffer || !file.io_ || !context) {
        avformat_free_context(context);
        throw std::bad_alloc();
    }
    context->pb = file.io_.get();
    context->flags |= AVFMT_FLAG_CUSTOM_IO;
    context->io_open = &RefuseOtherFile;
    AVDictionary* options = nullptr;
    av_dict_set(&options, "format_whitelist", kContainers, 0);
    av_dict_set(&options, "protocol_whitelist", "none", 0);
    // No name is given, so only the content decides. A failure frees the context.
    const int error = avformat_open_input(&context, nullptr, nullptr, &options);
    av_dict_free(&options);
    if (!Succeeded(error)) {
        return FileFailure(
            Failure::Kind::Unreadable, path,
            QStringLiteral("is not a video or a picture that can be opened, or it is damaged."));
    }
    file.format_.reset(context);
    return file;
}

bool MediaFile::IsPicture() const {
    return QLatin1String(format_->iformat->name).endsWith(QLatin1String("_pipe"));
}

bool MediaFile::FindStreams() {
    const std::string limit = std::to_string(kMaxSourcePixels);
    std::vector<AVDictionary*> options(format_->nb_streams, nullptr);
    for (AVDictionary*& option : options) {
        av_dict_set(&option, "max_pixels", limit.c_str(), 0);
    }
    const int error = avformat_find_stream_info(format_.get(), options.data());
    for (AVDictionary*& option : options) {
        av_dict_free(&option);
    }
    return Succeeded(error);
}

}  // namespace lumirra
