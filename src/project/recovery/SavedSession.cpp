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
    return {{"video", PathText(source.videoPath)},
            {"pictures", JsonOf(source.listImagePaths)},
            {"picture", source.currentImageNumber},
            {"position", source.position},
            {"start", source.startPosition},
            {"end", source.endPosition}};
}

float Fraction(const QJsonValue& value, double otherwise) {
    return static_cast<float>(std::clamp(value.toDouble(otherwise), 0.0, 1.0));
}

Source SourceFrom(const QJsonObject& object) {
    Source source;
    source.videoPath = PathFrom(object["video"]);
    const QJsonArray pictures = object["pictures"].toArray();
    for (const auto& picture : pictures) {
        source.listImagePaths.append(PathFrom(picture));
    }
    const int number = object["picture"].toInt();
    if (number >= 0 && number < source.listImagePaths.size()) {
        source.currentImageNumber = number;
        source.currentImagePath = source.HasVideo() ? QString() : source.listImagePaths[number];
    }
    source.position = Fraction(object["position"], 0);
    source.startPosition = Fraction(object["start"], 0);
    source.endPosition = std::max(Fraction(object["end"], 1), source.startPosition);
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
    QJsonObject object{{"file", frame.Path().section(QLatin1Char('/'), -1)},
                       {"bytes", frame.file->PictureBytes()},
                       {"width", frame.size.width()},
                       {"height", frame.size.height()}};
    if (frame.delay) {
        object.insert("delay", *frame.delay);
    }
    if (frame.origin) {
        object.insert("source", PathText(frame.origin->path));
        object.insert("settings", settings.IndexOf(frame.origin->settings));
        if (frame.origin->video) {
            object.insert("position", frame.origin->position);
        }
    }
    return object;
}

using SettingsList = std::vector<std::shared_ptr<const ControlValues>>;

std::shared_ptr<const FrameOrigin> OriginFrom(const QJsonObject& object,
                                              const SettingsList& settings) {
    if (!object.contains("source")) {
        return nullptr;
    }
    FrameOrigin origin;
    origin.path = PathFrom(object["source"]);
    origin.video = object.contains("position");
    origin.position = static_cast<double>(Fraction(object["position"], 0));
    const int index = object["settings"].toInt(-1);
    if (index >= 0 && index < static_cast<int>(settings.size())) {
        origin.settings = settings[static_cast<std::size_t>(index)];
    }
    return std::make_shared<const FrameOrigin>(std::move(origin));
}

std::optional<SavedFrame> FrameFrom(const QJsonObject& object, const SettingsList& settings) {
    SavedFrame frame;
    frame.name = object["file"].toString();
    frame.bytes = object["bytes"].toInteger();
    frame.size = {object["width"].toInt(), object["height"].toInt()};
    const bool plainName = frame.name.endsWith(QLatin1String(".png")) &&
                           !frame.name.contains(QLatin1Char('/')) &&
                           !frame.name.contains(QChar(0));
    if (!plainName || frame.bytes <= 0 || !IsFrameSize(frame.size.width(), frame.size.height())) {
        return std::nullopt;
    }
    if (object.contains("delay")) {
        frame.delay = std::clamp(object["delay"].toInt(), 1, kLongestHundredths);
    }
    frame.origin = OriginFrom(object, settings);
    return frame;
}

Settings SettingsFrom(const QJsonObject& session) {
    Settings settings;
    settings.values = ValuesFromJson(session["settings"].toObject());
    settings.textFieldsValues = StoreTextFieldsValues(settings.values);
    settings.unknown = session["unknown"].toObject();
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
                              {"written", now.toSecsSinceEpoch()},
                              {"ended", ended},
                              {"modified", document.IsModified()},
                              {"profile", PathText(document.identity.currentProfilePath)},
                              {"title", document.identity.title},
                              {"source", JsonOf(document.source)},
                              {"settings", JsonOf(document.settings.values)},
                              {"unknown", document.settings.unknown},
                              {"frameSettings", shared.Json()},
                              {"frames", frames}};
    return QJsonDocument(session).toJson(QJsonDocument::Compact) + '\n';
}

std::optional<SavedSession> SessionFromText(const QByteArray& text) {
    const QJsonObject object = QJsonDocument::fromJson(text).object();
    if (object[kMark].toInt() != kVersion) {
        return std::nullopt;
    }
    SavedSession session;
    session.written = QDateTime::fromSecsSinceEpoch(object["written"].toInteger());
    session.ended = object["ended"].toBool();
    session.modified = object["modified"].toBool();
    session.document.settings = SettingsFrom(object);
    session.document.source = SourceFrom(object["source"].toObject());
    session.document.identity.currentProfilePath = PathFrom(object["profile"]);
    session.document.identity.title = object["title"].toString();
    SettingsList settings;
    const QJsonArray frameSettings = object["frameSettings"].toArray();
    for (const auto& one : frameSettings) {
        settings.push_back(std::make_shared<const ControlValues>(ValuesFromJson(one.toObject())));
    }
    const QJsonArray frames = object["frames"].toArray();
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
