#include "project/recovery/SavedSession.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <algorithm>
#include <map>
#include <vector>

#include "imaging/PixelLimits.h"
#include "imaging/files/FileName.h"
#include "project/FrameStore.h"
#include "project/sequence/FrameSequence.h"
#include "settings/ControlJson.h"

namespace lumirra {
namespace {

using namespace Qt::StringLiterals;

constexpr auto kMark = QLatin1String("lumirraSession");
constexpr int kVersion = 1;
constexpr qint64 kLargestIndex = 64 << 20;

/// A path is bytes, which JSON cannot hold.
QString PathText(const QString& path) {
    return QString::fromLatin1(FileBytes(path).toPercentEncoding("/ "));
}

QString PathFrom(const QJsonValue& text) {
    return FileText(QByteArray::fromPercentEncoding(text.toString().toLatin1()));
}

QJsonArray JsonOf(const QStringList& paths) {
    QJsonArray array;
    for (const QString& path : paths) {
        array.append(PathText(path));
    }
    return array;
}

QJsonObject JsonOf(const Source& source) {
    return {
        {"video"_L1, PathText(source.videoPath)},  {"pictures"_L1, JsonOf(source.listImagePaths)},
        {"picture"_L1, source.currentImageNumber}, {"position"_L1, source.position},
        {"start"_L1, source.startPosition},        {"end"_L1, source.endPosition}};
}

float Fraction(const QJsonValue& value, double otherwise) {
    return static_cast<float>(std::clamp(value.toDouble(otherwise), 0.0, 1.0));
}

Source SourceFrom(const QJsonObject& object) {
    Source source;
    source.videoPath = PathFrom(object["video"_L1]);
    const QJsonArray pictures = object["pictures"_L1].toArray();
    for (const auto& picture : pictures) {
        source.listImagePaths.append(PathFrom(picture));
    }
    const int number = object["picture"_L1].toInt();
    if (number >= 0 && number < source.listImagePaths.size()) {
        source.currentImageNumber = number;
        source.currentImagePath = source.HasVideo() ? QString() : source.listImagePaths[number];
    }
    source.position = Fraction(object["position"_L1], 0);
    source.startPosition = Fraction(object["start"_L1], 0);
    source.endPosition = std::max(Fraction(object["end"_L1], 1), source.startPosition);
    return source;
}

/// Many frames share the settings they were rendered with.
class SharedSettings {
  public:
    int IndexOf(const std::shared_ptr<const ControlValues>& settings) {
        if (!settings) {
            return -1;
        }
        const auto [found, isNew] = indices_.try_emplace(settings.get(), json_.size());
        if (isNew) {
            json_.append(JsonOf(*settings));
        }
        return static_cast<int>(found->second);
    }
    const QJsonArray& Json() const { return json_; }

  private:
    std::map<const ControlValues*, qsizetype> indices_;
    QJsonArray json_;
};

QJsonObject JsonOf(const Frame& frame, SharedSettings& settings) {
    QJsonObject object{{"file"_L1, frame.Path().section(QLatin1Char('/'), -1)},
                       {"bytes"_L1, frame.file->PictureBytes()},
                       {"width"_L1, frame.size.width()},
                       {"height"_L1, frame.size.height()}};
    if (frame.delay) {
        object.insert("delay"_L1, *frame.delay);
    }
    if (frame.origin) {
        object.insert("source"_L1, PathText(frame.origin->path));
        object.insert("settings"_L1, settings.IndexOf(frame.origin->settings));
        if (frame.origin->video) {
            object.insert("position"_L1, frame.origin->position);
        }
    }
    return object;
}

using SettingsList = std::vector<std::shared_ptr<const ControlValues>>;

std::shared_ptr<const FrameOrigin> OriginFrom(const QJsonObject& object,
                                              const SettingsList& settings) {
    if (!object.contains("source"_L1)) {
        return nullptr;
    }
    FrameOrigin origin;
    origin.path = PathFrom(object["source"_L1]);
    origin.video = object.contains("position"_L1);
    origin.position = static_cast<double>(Fraction(object["position"_L1], 0));
    const int index = object["settings"_L1].toInt(-1);
    if (index >= 0 && index < static_cast<int>(settings.size())) {
        origin.settings = settings[static_cast<std::size_t>(index)];
    }
    return std::make_shared<const FrameOrigin>(std::move(origin));
}

std::optional<SavedFrame> FrameFrom(const QJsonObject& object, const SettingsList& settings) {
    SavedFrame frame;
    frame.name = object["file"_L1].toString();
    frame.bytes = object["bytes"_L1].toInteger();
    frame.size = {object["width"_L1].toInt(), object["height"_L1].toInt()};
    const bool plainName = frame.name.endsWith(QLatin1String(".png")) &&
                           !frame.name.contains(QLatin1Char('/')) && !frame.name.contains(QChar(0));
    if (!plainName || frame.bytes <= 0 || !IsFrameSize(frame.size.width(), frame.size.height())) {
        return std::nullopt;
    }
    if (object.contains("delay"_L1)) {
        frame.delay = std::clamp(object["delay"_L1].toInt(), 1, kLongestHundredths);
    }
    frame.origin = OriginFrom(object, settings);
    return frame;
}

Settings SettingsFrom(const QJsonObject& session) {
    Settings settings;
    settings.values = ValuesFromJson(session["settings"_L1].toObject());
    settings.textFieldsValues = StoreTextFieldsValues(settings.values);
    settings.unknown = session["unknown"_L1].toObject();
    settings.lastDimensions = DimensionsIn(settings.values);
    return settings;
}

bool IsWhole(const QString& folder, const SavedFrame& frame) {
    const FileFacts facts = FactsOf(QDir(folder).filePath(frame.name));
    return facts.isFile && facts.bytes == frame.bytes;
}

}  // namespace

QString SessionFileName() {
    return QStringLiteral("session.json");
}

QByteArray SessionText(const Document& document, bool ended, const QDateTime& now) {
    SharedSettings shared;
    QJsonArray frames;
    for (const Frame& frame : document.frames.Frames()) {
        frames.append(JsonOf(frame, shared));
    }
    const QJsonObject session{{kMark, kVersion},
                              {"written"_L1, now.toSecsSinceEpoch()},
                              {"ended"_L1, ended},
                              {"modified"_L1, document.IsModified()},
                              {"profile"_L1, PathText(document.identity.currentProfilePath)},
                              {"title"_L1, document.identity.title},
                              {"source"_L1, JsonOf(document.source)},
                              {"settings"_L1, JsonOf(document.settings.values)},
                              {"unknown"_L1, document.settings.unknown},
                              {"frameSettings"_L1, shared.Json()},
                              {"frames"_L1, frames}};
    return QJsonDocument(session).toJson(QJsonDocument::Compact) + '\n';
}

std::optional<SavedSession> SessionFromText(const QByteArray& text) {
    const QJsonObject object = QJsonDocument::fromJson(text).object();
    if (object[kMark].toInt() != kVersion) {
        return std::nullopt;
    }
    SavedSession session;
    session.written = QDateTime::fromSecsSinceEpoch(object["written"_L1].toInteger());
    session.ended = object["ended"_L1].toBool();
    session.modified = object["modified"_L1].toBool();
    session.document.settings = SettingsFrom(object);
    session.document.source = SourceFrom(object["source"_L1].toObject());
    session.document.identity.currentProfilePath = PathFrom(object["profile"_L1]);
    session.document.identity.title = object["title"_L1].toString();
    SettingsList settings;
    const QJsonArray frameSettings = object["frameSettings"_L1].toArray();
    for (const auto& one : frameSettings) {
        settings.push_back(std::make_shared<const ControlValues>(ValuesFromJson(one.toObject())));
    }
    const QJsonArray frames = object["frames"_L1].toArray();
    for (const auto& one : frames) {
        if (auto frame = FrameFrom(one.toObject(), settings)) {
            session.frames.append(*std::move(frame));
        }
    }
    return session;
}

std::optional<SavedSession> ReadSession(const QString& folder) {
    QFile file;
    if (OpenForReading(file, QDir(folder).filePath(SessionFileName())) != 0 ||
        file.size() > kLargestIndex) {
        return std::nullopt;
    }
    std::optional<SavedSession> session = SessionFromText(file.readAll());
    if (session) {
        session->frames.removeIf([&](const SavedFrame& frame) { return !IsWhole(folder, frame); });
    }
    return session;
}

}  // namespace lumirra
