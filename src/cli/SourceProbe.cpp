#include "cli/SourceProbe.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <utility>

#include "imaging/PixelLimits.h"
#include "imaging/Words.h"
#include "settings/NumberText.h"
#include "sources/SourceKinds.h"
#include "sources/StillReader.h"
#include "sources/VideoReader.h"
#include "sources/VideoTools.h"

namespace lumirra {
namespace {

Failure ProblemOf(const SourceImage& source, const QString& path) {
    const Failure unknown{Failure::Kind::Unreadable,
                          QStringLiteral("\"%1\" cannot be read.").arg(path), path};
    return source.problem.value_or(unknown);
}

Outcome<SourceFacts> ProbeVideo(const QString& path) {
    auto opened = VideoReader::Open(path);
    if (!opened) {
        return opened.failure();
    }
    VideoReader reader = *std::move(opened);
    const VideoInfo& info = reader.Info();
    if (!info.decodable) {
        return ProblemOf(reader.At(0), path);  // every position is white, and says why
    }
    return SourceFacts{
        {static_cast<double>(info.shownWidth), static_cast<double>(info.shownHeight)},
        info.durationSeconds};
}

QString Size(int width, int height) {
    return Filled(QStringLiteral("%1x%2"), width, height);
}

QString Yes(bool value) {
    return value ? QStringLiteral("yes") : QStringLiteral("no");
}

QString AsText(const std::vector<std::pair<QString, QString>>& lines) {
    QString text;
    for (const auto& [name, value] : lines) {
        text += (name + QLatin1Char(':')).leftJustified(14) + value + QLatin1Char('\n');
    }
    return text;
}

QString AsJson(const QJsonObject& object) {
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Indented));
}

QString VideoAsText(const QString& path, const VideoInfo& info) {
    const QString color =
        QStringLiteral("%1 matrix, %2 transfer, %3 primaries, %4 range%5")
            .arg(info.colorMatrix, info.colorTransfer, info.colorPrimaries,
                 info.fullRange ? QStringLiteral("full") : QStringLiteral("limited"),
                 info.colorTagged ? QString() : QStringLiteral(" (assumed: not tagged)"));
    return AsText({{QStringLiteral("File"), path},
                   {QStringLiteral("Kind"), QStringLiteral("video, ") + info.codec},
                   {QStringLiteral("Size"), Size(info.shownWidth, info.shownHeight)},
                   {QStringLiteral("Stored size"), Size(info.storedWidth, info.storedHeight)},
                   {QStringLiteral("Rotation"),
                    QStringLiteral("%1 degrees clockwise").arg(90 * info.display.quarterTurns)},
                   {QStringLiteral("Duration"),
                    VideoTools::TimeLabel(info.durationSeconds) +
                        QStringLiteral(" (%1 s)").arg(FixedText(info.durationSeconds, 3))},
                   {QStringLiteral("Frame rate"),
                    info.framesPerSecond > 0
                        ? FixedText(info.framesPerSecond, 3) + QStringLiteral(" frames per second")
                        : QStringLiteral("unknown")},
                   {QStringLiteral("Pixel format"), info.pixelFormat},
                   {QStringLiteral("Colour"), color},
                   {QStringLiteral("Sound"), Yes(info.hasSound)}});
}

QString VideoAsJson(const QString& path, const VideoInfo& info) {
    return AsJson({{QStringLiteral("file"), path},
                   {QStringLiteral("kind"), QStringLiteral("video")},
                   {QStringLiteral("codec"), info.codec},
                   {QStringLiteral("width"), info.shownWidth},
                   {QStringLiteral("height"), info.shownHeight},
                   {QStringLiteral("storedWidth"), info.storedWidth},
                   {QStringLiteral("storedHeight"), info.storedHeight},
                   {QStringLiteral("rotationDegrees"), 90 * info.display.quarterTurns},
                   {QStringLiteral("durationSeconds"), info.durationSeconds},
                   {QStringLiteral("framesPerSecond"), info.framesPerSecond},
                   {QStringLiteral("pixelFormat"), info.pixelFormat},
                   {QStringLiteral("colorMatrix"), info.colorMatrix},
                   {QStringLiteral("colorTransfer"), info.colorTransfer},
                   {QStringLiteral("colorPrimaries"), info.colorPrimaries},
                   {QStringLiteral("fullRange"), info.fullRange},
                   {QStringLiteral("colorTagged"), info.colorTagged},
                   {QStringLiteral("sound"), info.hasSound}});
}

Outcome<QString> DescribeVideo(const QString& path, bool json) {
    auto reader = VideoReader::Open(path);
    if (!reader) {
        return reader.failure();
    }
    return json ? VideoAsJson(path, reader->Info()) : VideoAsText(path, reader->Info());
}

Outcome<QString> DescribePicture(const QString& path, bool json) {
    const SourceImage source = ReadStill(path);
    if (source.image.isNull()) {
        return ProblemOf(source, path);
    }
    const QString problem = source.problem ? source.problem->message : QString();
    const ImageSize stored = ImageTools::PixelSize(path).value_or(ImageSize{
        static_cast<double>(source.image.width()), static_cast<double>(source.image.height())});
    const int storedWidth = static_cast<int>(stored.width);
    const int storedHeight = static_cast<int>(stored.height);
    if (json) {
        return AsJson({{QStringLiteral("file"), path},
                       {QStringLiteral("kind"), QStringLiteral("picture")},
                       {QStringLiteral("width"), source.image.width()},
                       {QStringLiteral("height"), source.image.height()},
                       {QStringLiteral("storedWidth"), storedWidth},
                       {QStringLiteral("storedHeight"), storedHeight},
                       {QStringLiteral("problem"), problem}});
    }
    return AsText(
        {{QStringLiteral("File"), path},
         {QStringLiteral("Kind"), QStringLiteral("picture")},
         {QStringLiteral("Size"), Size(source.image.width(), source.image.height())},
         {QStringLiteral("Stored size"), Size(storedWidth, storedHeight)},
         {QStringLiteral("Problem"), problem.isEmpty() ? QStringLiteral("none") : problem}});
}

}  // namespace

Outcome<SourceFacts> Probe(const QStringList& sources, bool isVideo) {
    if (isVideo) {
        return ProbeVideo(sources.front());
    }
    std::optional<Failure> first;
    for (const QString& path : sources) {
        // So large a picture is not read before it is known that something can be made of it.
        const auto size = ImageTools::PixelSize(path);
        if (size && !IsFrameSize(size->width, size->height) &&
            size->width * size->height <= static_cast<double>(kMaxSourcePixels)) {
            return SourceFacts{*size, 0};
        }
        const SourceImage source = VideoTools::ReadImageAtPosition(path, 0);
        if (!source.image.isNull()) {
            return SourceFacts{{static_cast<double>(source.image.width()),
                                static_cast<double>(source.image.height())},
                               0};
        }
        first = first ? *first : ProblemOf(source, path);
    }
    return *first;
}

Outcome<QString> DescribeSource(const QString& path, bool json) {
    const auto kind = ProbeSource(path);
    if (!kind) {
        return kind.failure();
    }
    return *kind == SourceKind::Video ? DescribeVideo(path, json) : DescribePicture(path, json);
}

}  // namespace lumirra
