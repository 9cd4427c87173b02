#include "cli/Options.h"

#include <QCommandLineParser>
#include <QLocale>
#include <algorithm>

#include "settings/NumberText.h"
#include "sources/StillReader.h"

namespace lumirra {
namespace {

constexpr long long kMostThreads = 256;

Failure Usage(const QString& message) {
    return {Failure::Kind::Invalid, message, {}};
}

void AddOptions(QCommandLineParser& parser) {
    const auto add = [&](const QStringList& names, const char* valueName = nullptr) {
        parser.addOption(valueName == nullptr
                             ? QCommandLineOption(names)
                             : QCommandLineOption(names, {}, QLatin1String(valueName)));
    };
    add({QStringLiteral("o"), QStringLiteral("output")}, "FILE");
    add({QStringLiteral("p"), QStringLiteral("profile")}, "FILE");
    add({QStringLiteral("s"), QStringLiteral("set")}, "NAME=VALUE");
    add({QStringLiteral("start")}, "P");
    add({QStringLiteral("end")}, "P");
    add({QStringLiteral("fit")}, "MODE");
    add({QStringLiteral("quality")}, "N");
    add({QStringLiteral("max-size")}, "SIZE");
    add({QStringLiteral("loop")}, "TIMES");
    add({QStringLiteral("estimate")});
    add({QStringLiteral("keep-frames")}, "DIR");
    add({QStringLiteral("write-profile")}, "FILE");
    add({QStringLiteral("list-settings")});
    add({QStringLiteral("info")}, "SOURCE");
    add({QStringLiteral("json")});
    add({QStringLiteral("threads")}, "N");
    add({QStringLiteral("q"), QStringLiteral("quiet")});
    add({QStringLiteral("version")});
    add({QStringLiteral("h"), QStringLiteral("help")});
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
constexpr TextOption kTextOptions[] = {{"output", &Options::output},
                                       {"profile", &Options::profile},
                                       {"keep-frames", &Options::keepFrames},
                                       {"write-profile", &Options::writeProfile},
                                       {"info", &Options::infoSource}};

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

/// A whole number within limits; `number` stays as it is when the option is absent.
std::optional<Failure> TakeWhole(int& number, const QCommandLineParser& parser, const char* name,
                                 long long least, long long most) {
    const auto text = Single(parser, name);
    if (!text) {
        return text.failure();
    }
    if (text->isEmpty()) {
        return std::nullopt;
    }
    const auto value = ParseInteger(*text);
    if (!value || *value < least || *value > most) {
        return Usage(QStringLiteral("--%1 takes a whole number from %2 to %3, not \"%4\".")
                         .arg(QLatin1String(name))
                         .arg(least)
                         .arg(most)
                         .arg(*text));
    }
    number = static_cast<int>(*value);
    return std::nullopt;
}

std::optional<Failure> TakeThreads(Options& options, const QCommandLineParser& parser) {
    return TakeWhole(options.threads, parser, "threads", 1, kMostThreads);
}

std::optional<Failure> TakeQuality(Options& options, const QCommandLineParser& parser) {
    return TakeWhole(options.quality, parser, "quality", 1, 100);
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
    constexpr double kMost = 1e15;
    bool isNumber = false;
    const double bytes = QLocale::c().toDouble(text, &isNumber) * unit;
    // Not a number fails both.
    if (!isNumber || !(bytes >= 1 && bytes <= kMost)) {
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
        return Usage(QStringLiteral("--max-size takes a size such as 800K, 8M or 1.5M, not \"%1\".")
                         .arg(*text));
    }
    options.maxBytes = *bytes;
    return std::nullopt;
}

std::optional<Failure> TakeLoop(Options& options, const QCommandLineParser& parser) {
    constexpr long long kMostLoops = 65535;
    const auto text = Single(parser, "loop");
    if (!text) {
        return text.failure();
    }
    const auto number = ParseInteger(*text);
    if (*text == QLatin1String("forever")) {
        options.loop = Options::Loop::Forever;
    } else if (*text == QLatin1String("once")) {
        options.loop = Options::Loop::Count;
    } else if (number && *number >= 1 && *number <= kMostLoops) {
        options.loop = Options::Loop::Count;
        options.loopCount = static_cast<int>(*number);
    } else if (!text->isEmpty()) {
        return Usage(
            QStringLiteral("--loop takes forever, once or a number from 1 to %1, not \"%2\".")
                .arg(kMostLoops)
                .arg(*text));
    }
    return std::nullopt;
}

std::optional<Failure> TakeSources(Options& options, const QCommandLineParser& parser) {
    options.sources = parser.positionalArguments();
    if (options.sources.contains(QString())) {
        return Usage(QStringLiteral("A source has an empty name."));
    }
    const auto videos = std::count_if(options.sources.cbegin(), options.sources.cend(),
                                      [](const QString& path) { return !IsPicture(path); });
    options.isVideo = videos > 0;
    if (videos > 1) {
        return Usage(QStringLiteral("Only one video can be made into a GIF at a time."));
    }
    if (videos == 1 && options.sources.size() > 1) {
        return Usage(QStringLiteral("A video and pictures cannot be mixed."));
    }
    const bool marked =
        parser.isSet(QStringLiteral("start")) || parser.isSet(QStringLiteral("end"));
    if (marked && videos == 0) {
        return Usage(QStringLiteral("--start and --end need a video."));
    }
    return std::nullopt;
}

std::optional<Failure> CheckWork(const Options& options) {
    if (options.estimate && !options.keepFrames.isEmpty()) {
        return Usage(QStringLiteral("--estimate keeps no frames; leave --keep-frames out."));
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
                            TakeLoop, TakeThreads}) {
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

QString HelpText() {
    return QStringLiteral(R"(Makes an animated GIF of a video or of pictures.

usage: lumirra-cli [options] SOURCE... -o OUT.gif

  SOURCE                one video, or one or more pictures in order
  -o, --output FILE     the GIF (replaced only when complete); may be left out with
                        --keep-frames
  -p, --profile FILE    settings from a profile
  -s, --set NAME=VALUE  one setting, after the profile; may be given several times:
                        sliderBrightness=0.2, checkCartoon=1, comboTextPosition=Center,
                        textFieldText="Hello", colorWellTextColor=#ffcc00 ...
                        textFieldDimensionsWidth or ...Height sets the output size: the
                        other one follows, unless both are given
  --start P, --end P    the part of the video to use, as fractions (0 and 1)
  --fit center|crop     how frames of different sizes are brought together (center)
  --quality N           1 to 100: fewer bytes below, fewer errors above (90)
  --max-size SIZE       at most so many bytes: 800K, 8M, 1.5M (1M is 1,000,000 bytes). The
                        quality is lowered as far as needed, never frames or picture size;
                        the frames are encoded two or three times
  --loop TIMES          forever, once, or a number for the file's loop field; without it the
                        setting textFieldLoopCount rules. Most viewers play a file without
                        the field (once) one time only
  --estimate            print about how large the GIF would be, in a quarter of the time that
                        encoding takes or less; nothing is written
  --keep-frames DIR     also leave the frames in DIR as frame00001.png, frame00002.png ...
  --write-profile FILE  write the settings in force as a profile
  --list-settings       print all settings: name, kind, range, initial value, what it does
  --info SOURCE         print size, duration, frame rate, rotation and colour
  --json                --info for scripts
  --threads N           how many cores to use (all); the result is the same
  -q, --quiet           print nothing but warnings and errors
  --version             print the version
  -h, --help            print this

Exit status: 0 done, 1 failed (the reason is on standard error; an old OUT.gif is as it was),
2 wrong usage.
)");
}

}  // namespace lumirra
