#include "cli/Options.h"

#include <QCommandLineParser>
#include <QLocale>
#include <algorithm>
#include <cmath>

#include "cli/OptionTable.h"
#include "imaging/Words.h"
#include "settings/Control.h"
#include "settings/NumberText.h"
#include "sources/SourceKinds.h"

namespace lumirra {
namespace {

constexpr long long kMostThreads = 256;

Failure Usage(const QString& message) {
    return {Failure::Kind::Invalid, message, {}};
}

void AddOptions(QCommandLineParser& parser) {
    for (const OptionRow& row : OptionTable()) {
        QStringList names{QLatin1String(row.name)};
        if (row.letter != 0) {
            names << QString(QLatin1Char(row.letter));
        }
        parser.addOption(QCommandLineOption(names, {}, QLatin1String(row.value)));
    }
}

/// The value of an option that may be given once; empty when it is absent.
Outcome<QString> Single(const QCommandLineParser& parser, const char* name) {
    const QString option = QLatin1String(name);
    const QStringList values = parser.values(option);
    if (values.size() > 1) {
        return Usage(QStringLiteral("--%1 is given more than once.").arg(option));
    }
    if (!values.isEmpty() && values.front().isEmpty()) {
        return Usage(QStringLiteral("--%1 needs a value.").arg(option));
    }
    return values.value(0);
}

struct TextOption {
    const char* name;
    QString Options::*target;
};
constexpr TextOption kTextOptions[] = {
    {"output", &Options::output},          {"profile", &Options::profile},
    {"keep-frames", &Options::keepFrames}, {"write-profile", &Options::writeProfile},
    {"info", &Options::infoSource},        {"preset", &Options::preset},
    {"delays", &Options::delays}};

std::optional<Failure> TakeTexts(Options& options, const QCommandLineParser& parser) {
    for (const TextOption& option : kTextOptions) {
        auto value = Single(parser, option.name);
        if (!value) {
            return value.failure();
        }
        options.*option.target = *value;
    }
    return std::nullopt;
}

std::optional<Failure> TakeSettings(Options& options, const QCommandLineParser& parser) {
    for (const QString& text : parser.values(QStringLiteral("set"))) {
        const qsizetype equals = text.indexOf(QLatin1Char('='));
        if (equals <= 0) {
            return Usage(QStringLiteral("--set takes NAME=VALUE, not \"%1\".").arg(text));
        }
        options.settings.emplace_back(text.left(equals), text.mid(equals + 1));
    }
    return std::nullopt;
}

std::optional<Failure> TakeMarker(float& marker, const QCommandLineParser& parser,
                                  const char* name) {
    const auto text = Single(parser, name);
    if (!text) {
        return text.failure();
    }
    if (text->isEmpty()) {
        return std::nullopt;
    }
    const auto value = ParseDecimal(*text);
    if (!value || !(*value >= 0 && *value <= 1)) {
        return Usage(QStringLiteral("--%1 takes a fraction from 0 to 1, not \"%2\".")
                         .arg(QLatin1String(name), *text));
    }
    marker = *value;
    return std::nullopt;
}

std::optional<Failure> TakeMarkers(Options& options, const QCommandLineParser& parser) {
    if (auto failure = TakeMarker(options.startPosition, parser, "start")) {
        return failure;
    }
    if (auto failure = TakeMarker(options.endPosition, parser, "end")) {
        return failure;
    }
    if (options.startPosition >= options.endPosition) {
        return Usage(QStringLiteral("--start must lie before --end."));
    }
    return std::nullopt;
}

std::optional<Failure> TakeFit(Options& options, const QCommandLineParser& parser) {
    const auto text = Single(parser, "fit");
    if (!text) {
        return text.failure();
    }
    if (*text == QLatin1String("crop")) {
        options.fitMode = FrameFitMode::CropToSmallest;
    } else if (!text->isEmpty() && *text != QLatin1String("center")) {
        return Usage(QStringLiteral("--fit takes center or crop, not \"%1\".").arg(*text));
    }
    return std::nullopt;
}

/// A whole number within limits; absent when the option is.
Outcome<std::optional<int>> Whole(const QCommandLineParser& parser, const char* name,
                                  long long least, long long most) {
    const auto text = Single(parser, name);
    if (!text) {
        return text.failure();
    }
    if (text->isEmpty()) {
        return std::optional<int>();
    }
    const auto value = ParseInteger(*text);
    if (!value || *value < least || *value > most) {
        return Usage(Filled(QStringLiteral("--%1 takes a whole number from %2 to %3, not \"%4\"."),
                            QLatin1String(name), least, most, *text));
    }
    return std::optional(static_cast<int>(*value));
}

std::optional<Failure> TakeThreads(Options& options, const QCommandLineParser& parser) {
    const auto threads = Whole(parser, "threads", 1, kMostThreads);
    if (!threads) {
        return threads.failure();
    }
    options.threads = threads->value_or(options.threads);
    return std::nullopt;
}

std::optional<Failure> TakeQuality(Options& options, const QCommandLineParser& parser) {
    const ControlRow& row = RowOf(Control::SliderQuality);
    const auto quality =
        Whole(parser, "quality", std::llround(row.minimum), std::llround(row.maximum));
    if (!quality) {
        return quality.failure();
    }
    options.quality = *quality;
    return std::nullopt;
}

std::optional<Failure> TakeMaxWidth(Options& options, const QCommandLineParser& parser) {
    const ControlRow& row = RowOf(Control::FieldMaxWidth);
    const auto width =
        Whole(parser, "max-width", std::llround(row.minimum), std::llround(row.maximum));
    if (!width) {
        return width.failure();
    }
    options.maxWidth = *width;
    return std::nullopt;
}

/// A number within limits; absent when the option is.
Outcome<std::optional<double>> Number(const QCommandLineParser& parser, const char* name,
                                      double least, double most) {
    const auto text = Single(parser, name);
    if (!text) {
        return text.failure();
    }
    if (text->isEmpty()) {
        return std::optional<double>();
    }
    bool isNumber = false;
    const double value = QLocale::c().toDouble(*text, &isNumber);
    if (!isNumber || !(value >= least && value <= most)) {
        return Usage(
            QStringLiteral("--%1 takes a number from %2 to %3, not \"%4\".")
                .arg(QLatin1String(name), QString::number(least), QString::number(most), *text));
    }
    return std::optional(value);
}

/// What takes place between the frames and the GIF.
std::optional<Failure> TakeEditing(Options& options, const QCommandLineParser& parser) {
    constexpr int kMostFrames = 100'000;
    constexpr double kLongestSeconds = 655.35;
    options.reverse = parser.isSet(QStringLiteral("reverse"));
    options.bounce = parser.isSet(QStringLiteral("bounce"));
    options.findLoop = parser.isSet(QStringLiteral("find-loop"));
    const auto every = Whole(parser, "every", 1, kMostFrames);
    const auto crossFade = Whole(parser, "crossfade", 1, kMostFrames);
    const auto speed = Number(parser, "speed", 0.01, 100);
    const auto last = Number(parser, "delay-last", 0.01, kLongestSeconds);
    const auto least = Number(parser, "min-loop", 0.01, kMostFrames);
    for (const auto* whole : {&every, &crossFade}) {
        if (!*whole) {
            return whole->failure();
        }
    }
    for (const auto* number : {&speed, &last, &least}) {
        if (!*number) {
            return number->failure();
        }
    }
    options.every = *every;
    options.crossFade = *crossFade;
    options.speed = *speed;
    options.delayLast = *last;
    options.loopSeconds = (*least).value_or(options.loopSeconds);
    if (*least && !options.findLoop) {
        return Usage(QStringLiteral("--min-loop goes with --find-loop."));
    }
    if (options.bounce && (options.findLoop || options.crossFade)) {
        return Usage(
            QStringLiteral("--bounce runs back to the start, so --find-loop and "
                           "--crossfade make no sense with it."));
    }
    return std::nullopt;
}

/// Bytes of "800000", "800K", "8M", "1.5MB"; nothing when it is no size.
std::optional<long long> ParseSize(QString text) {
    text = text.toUpper();
    if (text.endsWith(QLatin1Char('B'))) {
        text.chop(1);
    }
    double unit = 1;
    for (const auto& [letter, bytes] : {std::pair{'K', 1e3}, {'M', 1e6}, {'G', 1e9}}) {
        if (text.endsWith(QLatin1Char(letter))) {
            text.chop(1);
            unit = bytes;
            break;
        }
    }
    constexpr double kMegabyte = 1e6;
    const ControlRow& row = RowOf(Control::FieldMaxSize);
    bool isNumber = false;
    const double bytes = QLocale::c().toDouble(text, &isNumber) * unit;
    // Not a number fails both.
    if (!isNumber || !(bytes >= row.minimum * kMegabyte && bytes <= row.maximum * kMegabyte)) {
        return std::nullopt;
    }
    return static_cast<long long>(bytes);
}

std::optional<Failure> TakeMaxSize(Options& options, const QCommandLineParser& parser) {
    const auto text = Single(parser, "max-size");
    if (!text) {
        return text.failure();
    }
    if (text->isEmpty()) {
        return std::nullopt;
    }
    const auto bytes = ParseSize(*text);
    if (!bytes) {
        return Usage(QStringLiteral("--max-size takes a size from 1K to 100G, such as 800K, 8M or "
                                    "1.5M, not \"%1\".")
                         .arg(*text));
    }
    options.maxBytes = *bytes;
    return std::nullopt;
}

std::optional<Failure> TakeLoop(Options& options, const QCommandLineParser& parser) {
    const auto text = Single(parser, "loop");
    if (!text) {
        return text.failure();
    }
    const double most = RowOf(Control::TextFieldLoopCount).maximum;
    const auto number = ParseInteger(*text);
    if (*text == QLatin1String("forever")) {
        options.repeatForever = true;
    } else if (*text == QLatin1String("once")) {
        options.loopCount = 0;
    } else if (number && *number >= 1 && static_cast<double>(*number) <= most) {
        options.loopCount = static_cast<int>(*number);
    } else if (!text->isEmpty()) {
        return Usage(
            QStringLiteral("--loop takes forever, once or a number from 1 to %1, not \"%2\".")
                .arg(FixedText(most, 0), *text));
    }
    return std::nullopt;
}

std::optional<Failure> TakeSources(Options& options, const QCommandLineParser& parser) {
    options.sources = parser.positionalArguments();
    if (options.sources.contains(QString())) {
        return Usage(QStringLiteral("A source has an empty name."));
    }
    int videos = 0;
    int pictures = 0;
    for (const QString& path : std::as_const(options.sources)) {
        if (const auto kind = ProbeSource(path)) {  // the others are told of when they are read
            ++(*kind == SourceKind::Video ? videos : pictures);
        }
    }
    options.isVideo = videos > 0;
    if (videos > 1) {
        return Usage(QStringLiteral("Only one video can be made into a GIF at a time."));
    }
    if (videos == 1 && options.sources.size() > 1) {
        return Usage(QStringLiteral("A video and pictures cannot be mixed."));
    }
    const bool marked =
        parser.isSet(QStringLiteral("start")) || parser.isSet(QStringLiteral("end"));
    if (marked && videos == 0 && pictures > 0) {
        return Usage(QStringLiteral("--start and --end need a video."));
    }
    return std::nullopt;
}

std::optional<Failure> CheckWork(const Options& options) {
    if (options.estimate && !options.keepFrames.isEmpty()) {
        return Usage(QStringLiteral("--estimate keeps no frames; leave --keep-frames out."));
    }
    const bool sized =
        std::any_of(options.settings.cbegin(), options.settings.cend(), [](const auto& setting) {
            const auto control = ControlByName(setting.first);
            return control == Control::TextFieldDimensionsWidth ||
                   control == Control::TextFieldDimensionsHeight;
        });
    if (sized && options.sources.isEmpty()) {
        return Usage(QStringLiteral(
            "An output size needs a source; a profile alone holds textFieldResizeTo."));
    }
    const bool edits = options.reverse || options.bounce || options.findLoop || options.every ||
                       options.crossFade || options.speed || options.delayLast ||
                       !options.delays.isEmpty();
    if (edits && options.output.isEmpty() && !options.estimate) {
        return Usage(QStringLiteral("Order and delays of the frames need a GIF: -o FILE."));
    }
    const bool makes =
        !options.output.isEmpty() || !options.keepFrames.isEmpty() || options.estimate;
    if (makes && options.sources.isEmpty()) {
        return Usage(QStringLiteral("There is no source: give a video or pictures."));
    }
    if (!makes && options.writeProfile.isEmpty()) {
        return Usage(
            options.sources.isEmpty()
                ? QStringLiteral("There is nothing to do: give a source and -o FILE.")
                : QStringLiteral("Say where the GIF goes: -o FILE, or --keep-frames DIR."));
    }
    return std::nullopt;
}

Options::Action ActionOf(const QCommandLineParser& parser) {
    using Action = Options::Action;
    const std::pair<const char*, Action> actions[] = {{"help", Action::Help},
                                                      {"version", Action::Version},
                                                      {"list-settings", Action::ListSettings},
                                                      {"list-presets", Action::ListPresets},
                                                      {"info", Action::Info}};
    for (const auto& [name, action] : actions) {
        if (parser.isSet(QLatin1String(name))) {
            return action;
        }
    }
    return Action::MakeGif;
}

}  // namespace

Outcome<Options> ParseOptions(const QStringList& arguments) {
    QCommandLineParser parser;
    AddOptions(parser);
    // The parser wants the program's name first and skips it.
    if (!parser.parse(QStringList{QStringLiteral("lumirra-cli")} + arguments)) {
        return Usage(parser.errorText());
    }
    Options options;
    options.action = ActionOf(parser);
    options.json = parser.isSet(QStringLiteral("json"));
    options.quiet = parser.isSet(QStringLiteral("quiet"));
    options.estimate = parser.isSet(QStringLiteral("estimate"));
    for (const auto take : {TakeTexts, TakeSettings, TakeMarkers, TakeFit, TakeQuality, TakeMaxSize,
                            TakeMaxWidth, TakeLoop, TakeEditing, TakeThreads}) {
        if (auto failure = take(options, parser)) {
            return *failure;
        }
    }
    if (options.json && options.action != Options::Action::Info) {
        return Usage(QStringLiteral("--json goes with --info."));
    }
    if (options.action != Options::Action::MakeGif) {
        return options;
    }
    if (auto failure = TakeSources(options, parser)) {
        return *failure;
    }
    if (auto failure = CheckWork(options)) {
        return *failure;
    }
    return options;
}

}  // namespace lumirra
