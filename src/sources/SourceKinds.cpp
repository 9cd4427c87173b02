#include "sources/SourceKinds.h"

#include <array>
#include <string_view>

#include "sources/StillReader.h"
#include "sources/VideoEngine.h"
#include "sources/stills/PictureFile.h"

namespace lumirra {
namespace {

struct FilterRow {
    bool pictures;
    const char* name;
    std::string_view extensions;
};

/// What the panels offer. What can be opened is decided by content, so nothing depends on a list.
constexpr std::array kFilters{
    FilterRow{false, "Videos", "mov m4v mp4 3gp 3g2"},
    FilterRow{false, "All videos",
              "mov m4v mp4 3gp 3g2 webm mkv avi ogv ogg mpg mpeg m2v vob ts m2ts mts flv f4v wmv "
              "asf mxf rm nut dv y4m h264 hevc ivf"},
    FilterRow{true, "Pictures", "jpg jpeg jpe jp2 jpx png tiff tif gif bmp"},
    FilterRow{true, "All pictures",
              "jpg jpeg jpe jp2 jpx j2k j2c jpf png apng tiff tif gif bmp dib webp ico"},
};

/// "mp4" as "*.[mM][pP]4".
QString AnyCase(const QString& extension) {
    QString pattern = QStringLiteral("*.");
    for (const QChar letter : extension) {
        if (letter.isLetter()) {
            pattern += QLatin1Char('[') + letter + letter.toUpper() + QLatin1Char(']');
        } else {
            pattern += letter;
        }
    }
    return pattern;
}

QString FilterText(const FilterRow& row) {
    QStringList patterns;
    const QStringList extensions =
        QString::fromLatin1(row.extensions.data(), static_cast<qsizetype>(row.extensions.size()))
            .split(QLatin1Char(' '));
    for (const QString& extension : extensions) {
        patterns.append(AnyCase(extension));
    }
    return QStringLiteral("%1 (%2)").arg(QLatin1String(row.name), patterns.join(QLatin1Char(' ')));
}

Failure NotTaken(const QString& path, const QString& why) {
    return {Failure::Kind::Unsupported, QLatin1Char('"') + path + QLatin1String("\" ") + why, path};
}

}  // namespace

Outcome<SourceKind> ProbeSource(const QString& path) {
    const auto picture = OpenPictureFile(path);
    if (picture) {
        return HoldsManyPictures(*picture) ? SourceKind::ManyPictures : SourceKind::Still;
    }
    if (picture.failure().kind != Failure::Kind::Unsupported) {
        return picture.failure();  // no file, or one that cannot be opened
    }
    const auto engine = LoadedVideoEngine();
    if (!engine) {
        return engine.failure();
    }
    const auto problem = (*engine)->VideoProblem(path);
    if (!problem) {
        return SourceKind::Video;
    }
    return (*engine)->HoldsPicture(path)
               ? NotTaken(path, QStringLiteral("is a picture of a kind that cannot be read."))
               : *problem;
}

bool IsPictureFile(const QString& path) {
    return static_cast<bool>(OpenPictureFile(path));
}

Outcome<SourceChoice> ChooseSource(const QStringList& paths) {
    SourceChoice choice;
    for (const QString& path : paths) {
        const bool first = &path == &paths.front();
        const auto kind = ProbeSource(path);
        if (!kind && first) {
            return kind.failure();
        }
        if (!kind) {
            choice.leftOut.push_back(kind.failure());
        } else if (first && *kind == SourceKind::Video) {
            choice.videoPath = path;
        } else if (!choice.videoPath.isEmpty()) {
            choice.leftOut.push_back(
                NotTaken(path, QStringLiteral("is left out: a video is opened alone.")));
        } else if (*kind == SourceKind::Video) {
            choice.leftOut.push_back(NotTaken(
                path, QStringLiteral("is left out: a video is not opened beside pictures.")));
        } else {
            choice.picturePaths.append(path);
        }
    }
    return choice;
}

QStringList NameFilters(SourceKind kind) {
    QStringList filters;
    for (const FilterRow& row : kFilters) {
        if (row.pictures == (kind != SourceKind::Video)) {
            filters.append(FilterText(row));
        }
    }
    filters.append(QStringLiteral("All files (*)"));
    return filters;
}

}  // namespace lumirra
