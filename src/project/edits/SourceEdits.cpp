#include "project/edits/SourceEdits.h"

#include <QCoreApplication>
#include <algorithm>

namespace lumirra {
namespace {

QString Label(const char* text) {
    return QCoreApplication::translate("lumirra::Edit", text);
}

/// Another source: what the old one told is forgotten.
Edit Opened(QString label, const Document& document, Source source) {
    Edit edit{.label = std::move(label), .after = document, .picture = !source.IsEmpty()};
    edit.after.source = std::move(source);
    // The old picture is shown until the new one is there.
    edit.after.facts = {.size = edit.picture ? document.facts.size : ImageSize{}};
    return edit;
}

}  // namespace

Edit edits::OpenVideo(const Document& document, const QString& path) {
    Source source;
    source.videoPath = path;
    return Opened(Label("Open Video"), document, std::move(source));
}

Edit edits::OpenPictures(const Document& document, const QStringList& paths) {
    Source source = document.source;
    const bool anew = !source.HasPictures();
    if (anew) {
        source = {};
    }
    for (const QString& path : paths) {
        if (!path.isEmpty() && !source.listImagePaths.contains(path)) {
            source.listImagePaths.append(path);
        }
    }
    if (source.listImagePaths.isEmpty()) {
        return {.label = Label("Open Pictures"), .after = document};
    }
    const qsizetype first = anew ? 0 : source.listImagePaths.size() - paths.size();
    source.currentImageNumber = static_cast<int>(std::max<qsizetype>(first, 0));
    source.currentImagePath = source.listImagePaths.at(source.currentImageNumber);
    return Opened(Label("Open Pictures"), document, std::move(source));
}

Edit edits::CloseSource(const Document& document) {
    return Opened(document.source.HasVideo() ? Label("Close Video") : Label("Close Pictures"),
                  document, {});
}

Edit edits::SetMarker(const Document& document, Marker marker, float position) {
    const bool start = marker == Marker::Start;
    Edit edit{.label = start ? Label("Start Marker") : Label("End Marker"), .after = document};
    (start ? edit.after.source.startPosition : edit.after.source.endPosition) = position;
    return edit;
}

Edit edits::SetMarkers(const Document& document, float start, float end) {
    Edit edit{.label = QCoreApplication::translate("lumirra::Edit", "Find Loop"),
              .after = document};
    edit.after.source.startPosition = start;
    edit.after.source.endPosition = end;
    return edit;
}

bool MayMark(const Source& source, edits::Marker marker, float position) {
    return marker == edits::Marker::Start ? position < source.endPosition
                                          : position > source.startPosition;
}

Document AtPosition(Document document, float position) {
    document.source.position = std::clamp(position, 0.0F, 1.0F);
    return document;
}

Document AtPicture(Document document, int number) {
    Source& source = document.source;
    if (number >= 0 && number < source.listImagePaths.size()) {
        source.currentImageNumber = number;
        source.currentImagePath = source.listImagePaths.at(number);
    }
    return document;
}

}  // namespace lumirra
