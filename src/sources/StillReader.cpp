#include "sources/StillReader.h"

#include <QColorSpace>
#include <QImageReader>
#include <QLoggingCategory>
#include <QThread>
#include <QTransform>
#include <algorithm>
#include <array>
#include <cmath>
#include <new>
#include <utility>

#include "imaging/CropScale.h"
#include "imaging/PictureFormat.h"
#include "imaging/PixelLimits.h"
#include "imaging/Words.h"
#include "sources/VideoEngine.h"
#include "sources/stills/BmpFile.h"
#include "sources/stills/PictureFile.h"
#include "sources/stills/PngFile.h"
#include "sources/stills/TiffRemarks.h"

namespace lumirra {
namespace {

QLoggingCategory::CategoryFilter previousFilter = nullptr;

/// Mutes the toolkit's picture readers, whose remarks name no file: what is wrong with a picture is
/// told by the reader's result.
void MutePictureReaders(QLoggingCategory* category) {
    if (previousFilter != nullptr) {
        previousFilter(category);
    }
    const QLatin1String name(category->categoryName());
    if (name.startsWith(QLatin1String("qt.gui.imageio")) ||
        name.startsWith(QLatin1String("qt.imageformats"))) {
        category->setEnabled(QtWarningMsg, false);
        category->setEnabled(QtCriticalMsg, false);
    }
}

/// The two process-wide settings of the toolkit that reading needs, made once.
void PrepareToolkit() {
    static const bool prepared = [] {
        AllowLargestSources();
        previousFilter = QLoggingCategory::installFilter(MutePictureReaders);
        return true;
    }();
    static_cast<void>(prepared);
}

SourceImage Problem(Failure::Kind kind, const QString& path, const QString& text) {
    return {{}, Failure{kind, text.arg(path), path}};
}

SourceImage UnreadablePicture(const QString& path) {
    return Problem(
        Failure::Kind::Unreadable, path,
        QStringLiteral("\"%1\" is damaged or of an unusual kind: no picture in it can be read."));
}

/// Why a picture of that size is not read, or nothing. `fileBytes` is the size of its file.
std::optional<Failure> SizeProblem(const QString& path, ImageSize size, qint64 fileBytes) {
    // Blank pictures compress well, but a large one made of next to nothing is a trap.
    constexpr double kSuspectPixels = 50e6;
    constexpr double kMaxPixelsPerByte = 16384;
    const double pixels = size.width * size.height;
    const QString claim =
        Filled(QStringLiteral("\"%1\" claims to hold %2 x %3 pixels"), path,
               QString::number(size.width, 'f', 0), QString::number(size.height, 'f', 0));
    if (pixels > static_cast<double>(kMaxSourcePixels)) {
        return Failure{Failure::Kind::TooLarge,
                       claim + QStringLiteral("; at most %1 million can be read.")
                                   .arg(kMaxSourcePixels / 1'000'000),
                       path};
    }
    if (pixels > kSuspectPixels && pixels > kMaxPixelsPerByte * static_cast<double>(fileBytes)) {
        return Failure{Failure::Kind::TooLarge,
                       claim + QStringLiteral(" in only %1 bytes.").arg(fileBytes), path};
    }
    return std::nullopt;
}

/// Colours to sRGB, as exactly as the picture's depth allows, then 8 bits with straight alpha.
QImage Normalized(QImage image) {
    const int threads = QThread::idealThreadCount();
    const QColorSpace sRgb(QColorSpace::SRgb);
    const QColorSpace space = image.colorSpace();
    if (space.isValid() && space != sRgb) {
        const bool deep = image.depth() > 32 || image.format() == QImage::Format_Grayscale16;
        image = Converted(std::move(image), deep ? QImage::Format_RGBA64 : QImage::Format_RGBA8888,
                          threads);
        TransformColors(image, space.transformationToColorSpace(sRgb), threads);
        image.setColorSpace(sRgb);
    }
    image = Converted(std::move(image), QImage::Format_RGBA8888, threads);
    image.setDevicePixelRatio(1);
    return image;
}

QImage Upright(QImage image, QImageIOHandler::Transformations turn) {
    const bool mirror = turn.testFlag(QImageIOHandler::TransformationMirror);
    const bool flip = turn.testFlag(QImageIOHandler::TransformationFlip);
    if (mirror || flip) {
        image = Made(std::move(image).mirrored(mirror, flip));
    }
    if (turn.testFlag(QImageIOHandler::TransformationRotate90)) {
        image = Made(image.transformed(QTransform().rotate(90)));
    }
    return image;
}

/// Share of the picture above the rows, at its end, that a JPEG decoder filled in mid grey for want
/// of data. Stored orientation.
double ShareAboveGrey(const QImage& image) {
    const auto isFilled = [&](int y) {
        for (int x = 0; x < image.width(); ++x) {
            if ((image.pixel(x, y) & 0xFFFFFFU) != 0x808080U) {
                return false;
            }
        }
        return true;
    };
    int rows = image.height();
    while (rows > 0 && isFilled(rows - 1)) {
        --rows;
    }
    return static_cast<double>(rows) / image.height();
}

Failure CutShort(const QString& path, double share) {
    const int percent = std::clamp(static_cast<int>(std::floor(share * 100)), 0, 100);
    const QString text =
        percent == 100
            ? QStringLiteral("\"%1\" is cut short; some of its detail is missing.").arg(path)
            : Filled(QStringLiteral("\"%1\" is cut short: only %2 % of the picture could be read."),
                     path, std::max(percent, 1));
    return {Failure::Kind::Unreadable, text, path};
}

/// Pages of a file whose pictures may differ in size. It comes before any other question about a
/// TIFF file: only after it does the toolkit's reader find the further pages.
int CountPages(QImageReader& reader, StillFormat format) {
    if (format == StillFormat::Tiff && reader.canRead()) {  // by now its library is loaded
        MuteTiffLibrary();
    }
    const bool hasPages = format == StillFormat::Tiff || format == StillFormat::Icon;
    return hasPages ? reader.imageCount() : 1;
}

SourceImage Jpeg2000Picture(const QString& path, QIODevice& device) {
    const auto size = Jpeg2000Size(device);
    if (!size) {
        return UnreadablePicture(path);
    }
    if (const auto problem = SizeProblem(path, *size, device.size())) {
        return {{}, problem};
    }
    const auto engine = LoadedVideoEngine();
    if (!engine) {
        return {{}, engine.failure()};
    }
    SourceImage picture{(*engine)->ReadJpeg2000(device), std::nullopt};
    return picture.image.isNull() ? UnreadablePicture(path) : picture;
}

/// A format that is not left to the toolkit: reading gives what there is of a damaged picture.
struct OwnReader {
    StillFormat format;
    ImageSize (*size)(QIODevice&);
    PartlyRead (*read)(QIODevice&);
};
constexpr std::array kOwnReaders{OwnReader{StillFormat::Png, PngSize, ReadPng},
                                 OwnReader{StillFormat::Bmp, BmpSize, ReadBmp}};

const OwnReader* OwnReaderOf(StillFormat format) {
    const auto* found =
        std::find_if(kOwnReaders.begin(), kOwnReaders.end(),
                     [&](const OwnReader& reader) { return reader.format == format; });
    return found == kOwnReaders.end() ? nullptr : found;
}

SourceImage OwnPicture(const QString& path, QIODevice& device, const OwnReader& reader) {
    const ImageSize size = reader.size(device);
    if (size.width < 1 || size.height < 1) {
        return UnreadablePicture(path);
    }
    if (const auto problem = SizeProblem(path, size, device.size())) {
        return {{}, problem};
    }
    PartlyRead part = reader.read(device);
    if (part.image.isNull()) {
        return UnreadablePicture(path);
    }
    SourceImage picture{Normalized(std::move(part.image)), std::nullopt};
    if (part.share < 1) {
        picture.problem = CutShort(path, part.share);
    }
    return picture;
}

/// What the toolkit's TIFF reader refuses, if it is of the kind that the engine reads.
QImage DeepTiffPicture(QIODevice& device) {
    const auto engine = LoadedVideoEngine();
    return engine ? (*engine)->ReadDeepTiff(device) : QImage();
}

/// The largest sides of all pictures in the file; no size when there is none.
ImageSize LargestSides(QImageReader& reader, int pages) {
    ImageSize largest;
    constexpr int kMaxPages = 10'000;
    for (int page = 0; page < std::min(pages, kMaxPages); ++page) {
        if (page > 0 && !reader.jumpToNextImage()) {
            break;
        }
        QSize size = reader.size();
        if (reader.transformation().testFlag(QImageIOHandler::TransformationRotate90)) {
            size.transpose();
        }
        largest.width = std::max(largest.width, static_cast<double>(size.width()));
        largest.height = std::max(largest.height, static_cast<double>(size.height()));
    }
    return largest;
}

SourceImage ToolkitPicture(const QString& path, const PictureFile& file) {
    const bool cutShort = file.format == StillFormat::Jpeg && IsJpegCutShort(*file.device);
    QImageReader reader(file.device.get(), ToolkitFormat(file.format));
    reader.setAutoTransform(false);
    const int pages = CountPages(reader, file.format);
    const QSize size = reader.size();
    if (size.isEmpty()) {
        return UnreadablePicture(path);
    }
    const ImageSize claimed{static_cast<double>(size.width()), static_cast<double>(size.height())};
    if (const auto problem = SizeProblem(path, claimed, file.device->size())) {
        return {{}, problem};
    }
    const auto turn = reader.transformation();
    SourceImage picture{reader.read(), std::nullopt};
    if (picture.image.isNull() && file.format == StillFormat::Tiff) {
        picture.image = DeepTiffPicture(*file.device);
    }
    if (picture.image.isNull()) {
        // The reader does not tell damage from want of memory: one as large says which it was.
        Made(QImage(size, QImage::Format_RGBA64));
        return UnreadablePicture(path);
    }
    if (cutShort) {
        picture.problem = CutShort(path, ShareAboveGrey(picture.image));
    }
    picture.image = Normalized(Upright(std::move(picture.image), turn));
    if (pages > 1) {
        // The picture stands for the whole file, so it has the size that the file is said to have.
        const ImageSize whole = LargestSides(reader, pages);
        QImage stretched;
        if (!SizeProblem(path, whole, file.device->size())) {
            stretched = ImageTools::DrawScaled(picture.image, whole.width, whole.height);
        }
        if (!stretched.isNull()) {
            picture.image = std::move(stretched);
        }
    }
    return picture;
}

SourceImage ReadPicture(const QString& path, const PictureFile& file) {
    if (file.format == StillFormat::Jpeg2000) {
        return Jpeg2000Picture(path, *file.device);
    }
    const OwnReader* own = OwnReaderOf(file.format);
    return own != nullptr ? OwnPicture(path, *file.device, *own) : ToolkitPicture(path, file);
}

}  // namespace

SourceImage ReadStill(const QString& path) {
    PrepareToolkit();
    try {
        const auto file = OpenPictureFile(path);
        if (!file) {
            return {{}, file.failure()};
        }
        return ReadPicture(path, *file);
    } catch (const std::bad_alloc&) {
        return Problem(Failure::Kind::TooLarge, path,
                       QStringLiteral("There is not enough memory to read \"%1\"."));
    }
}

bool HoldsManyPictures(const PictureFile& file) {
    PrepareToolkit();
    if (file.format == StillFormat::Png) {
        return IsAnimatedPng(*file.device);
    }
    const bool mayMove = file.format == StillFormat::Gif || file.format == StillFormat::Webp;
    if (!mayMove && file.format != StillFormat::Tiff) {
        return false;
    }
    QImageReader reader(file.device.get(), ToolkitFormat(file.format));
    const int pages = CountPages(reader, file.format);
    return (mayMove ? reader.imageCount() : pages) > 1;
}

std::optional<ImageSize> ImageTools::PixelSize(const QString& path) {
    PrepareToolkit();
    const auto file = OpenPictureFile(path);
    if (!file) {
        return std::nullopt;
    }
    if (file->format == StillFormat::Jpeg2000) {
        return Jpeg2000Size(*file->device);
    }
    if (const OwnReader* own = OwnReaderOf(file->format)) {
        const ImageSize size = own->size(*file->device);
        return size.width < 1 || size.height < 1 ? std::nullopt : std::optional(size);
    }
    QImageReader reader(file->device.get(), ToolkitFormat(file->format));
    const int pages = CountPages(reader, file->format);
    const ImageSize largest = LargestSides(reader, pages);
    if (largest.width < 1 || largest.height < 1) {
        return std::nullopt;
    }
    return largest;
}

}  // namespace lumirra
