#include "views/gif/GifReader.h"

#include <QFile>
#include <QImageReader>
#include <algorithm>
#include <system_error>

#include "imaging/files/FileName.h"
#include "views/gif/GifBlocks.h"

namespace lumirra {
namespace {

/// What the pictures read ahead may take, however large each is.
constexpr qint64 kAheadBytes = 48LL << 20;
constexpr qint64 kLeastAhead = 2;
constexpr qint64 kMostAhead = 8;

std::size_t RoomFor(const QImage& image) {
    const qint64 each = std::max<qint64>(image.sizeInBytes(), 1);
    return static_cast<std::size_t>(std::clamp(kAheadBytes / each, kLeastAhead, kMostAhead));
}

}  // namespace

QSize FittedSize(const QSize& picture, const QSize& room) {
    return picture.scaled(room, Qt::KeepAspectRatio).expandedTo({1, 1});
}

GifReader::GifReader(QString path, const QSize& target) : path_(std::move(path)), target_(target) {}

GifReader::~GifReader() {
    worker_.request_stop();
}

void GifReader::Start() {
    try {
        worker_ = std::jthread([this](const std::stop_token& stop) { Run(stop); });
    } catch (const std::system_error&) {
        End();  // there is no thread to be had, so nothing comes
    }
}

void GifReader::SetTarget(const QSize& target) {
    const std::scoped_lock lock(mutex_);
    target_ = target;
}

std::optional<GifPicture> GifReader::Take() {
    const std::scoped_lock lock(mutex_);
    if (ahead_.empty()) {
        return std::nullopt;
    }
    GifPicture picture = std::move(ahead_.front());
    ahead_.pop_front();
    taken_.notify_one();
    return picture;
}

bool GifReader::IsAtEnd() {
    const std::scoped_lock lock(mutex_);
    return ended_ && ahead_.empty();
}

void GifReader::Run(const std::stop_token& stop) {
    QFile file;
    QFile blocksFile;
    if (OpenForReading(file, path_) == 0 && OpenForReading(blocksFile, path_) == 0) {
        GifBlocks blocks(blocksFile);
        for (int pass = 0; !stop.stop_requested(); ++pass) {
            const int pictures = ReadPass(file, blocks, stop);
            const int repeats = blocks.Repeats().value_or(-1);
            // One picture is no animation: it would only be shown again and again.
            if (pictures <= 1 || (repeats != 0 && pass >= std::max(repeats, 0))) {
                break;
            }
            blocks.Rewind();
        }
    }
    End();
}

void GifReader::End() {
    {
        const std::scoped_lock lock(mutex_);
        ended_ = true;
    }
    Q_EMIT Ready();
}

void GifReader::Look(const std::stop_token& stop) {
    looked_ = true;
    QFile file;
    if (OpenForReading(file, path_) != 0) {
        return;
    }
    GifBlocks blocks(file);
    GifInfo info{.size = blocks.Size(), .bytes = file.size()};
    for (auto delay = blocks.NextDelay(); delay && !stop.stop_requested();
         delay = blocks.NextDelay()) {
        ++info.frames;
        info.milliseconds += PlayedMilliseconds(*delay);
        info.slowed = info.slowed || PlayedMilliseconds(*delay) != *delay * 10;
    }
    info.repeats = blocks.Repeats();
    if (info.frames > 0 && !stop.stop_requested()) {
        Q_EMIT InfoKnown(info);
    }
}

int GifReader::ReadPass(QFile& file, GifBlocks& blocks, const std::stop_token& stop) {
    file.seek(0);
    QImageReader reader(&file, "gif");
    reader.setDecideFormatFromContent(false);
    int pictures = 0;
    for (QImage image; !stop.stop_requested() && reader.canRead() && reader.read(&image);) {
        if (!Put(image, PlayedMilliseconds(blocks.NextDelay().value_or(0)), stop)) {
            break;
        }
        ++pictures;
        if (!looked_) {
            Look(stop);  // after the first picture: what is shown comes first
        }
    }
    return pictures;
}

bool GifReader::Put(const QImage& image, int milliseconds, const std::stop_token& stop) {
    QSize target;
    {
        std::unique_lock lock(mutex_);
        if (!taken_.wait(lock, stop, [&] { return ahead_.size() < RoomFor(image); })) {
            return false;
        }
        target = target_;
    }
    const QRect fitted({}, FittedSize(image.size(), target));
    GifPicture picture{image, ScaleForScreen(image, fitted, fitted, true), milliseconds};
    {
        const std::scoped_lock lock(mutex_);
        ahead_.push_back(std::move(picture));
    }
    Q_EMIT Ready();
    return true;
}

}  // namespace lumirra
