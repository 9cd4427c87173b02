#include "cli/OptionTable.h"

#include <QStringList>

namespace lumirra {
namespace {

using V = OptionValue;

constexpr OptionRow kRows[] = {
    {'o', "output", "FILE", V::Gif, "",
     "the GIF (replaced only when complete); may be left out with --keep-frames"},
    {'p', "profile", "FILE", V::Profile, "",
     "settings from a profile; --set comes after it, --quality, --max-size and --loop after that"},
    {'s', "set", "NAME=VALUE", V::Setting, "",
     "one setting, after the profile; may be given several times: sliderBrightness=0.2, "
     "checkCartoon=1, comboTextPosition=Center, textFieldText=\"Hello\", "
     "colorWellTextColor=#ffcc00 ... textFieldDimensionsWidth or ...Height sets the output size: "
     "the other one follows, unless both are given"},
    {0, "start", "P", V::Other, "", "where the part of the video to use begins, a fraction (0)"},
    {0, "end", "P", V::Other, "", "where it ends (1)"},
    {0, "fit", "MODE", V::Words, "center crop",
     "how frames of different sizes are brought together: center or crop (center)"},
    {0, "quality", "N", V::Other, "",
     "how good the picture is, 1 to 100: fewer bytes below, fewer errors above (90); sets "
     "sliderQuality"},
    {0, "max-size", "SIZE", V::Other, "",
     "at most so many bytes: 800K, 8M, 1.5M (1M is 1,000,000 bytes). The quality is lowered as far "
     "as needed, never frames or picture size; the frames are encoded two or three times; sets "
     "checkMaxSize and fieldMaxSize"},
    {0, "max-width", "N", V::Other, "",
     "at most so many pixels wide: wider frames are scaled down on their way into the GIF; sets "
     "checkMaxWidth and fieldMaxWidth"},
    {0, "loop", "TIMES", V::Words, "forever once",
     "forever, once, or a number up to 10000 for the file's loop field; sets checkRepeatForever "
     "and "
     "textFieldLoopCount. Most viewers play a file without the field (once) one time only"},
    {0, "preset", "NAME", V::Other, "",
     "what a place takes: sets the size limit, makes the picture smaller where it is too large, "
     "and "
     "says which frames are too many; see --list-presets"},
    {0, "list-presets", "", V::None, "",
     "print the presets: name, place, limits, date; more can stand in lumirra/presets.json among "
     "the user's configuration files"},
    {0, "delays", "FILE", V::File, "", "the delay of each frame, in seconds, one a line"},
    {0, "every", "N", V::Other, "", "keep every N-th frame only, with its delay"},
    {0, "find-loop", "", V::None, "",
     "keep the part whose end leads back to its start best; of parts that match about as well the "
     "shortest"},
    {0, "min-loop", "SECONDS", V::Other, "", "the least time for which that part plays (0.5)"},
    {0, "crossfade", "N", V::Other, "",
     "fade the last N frames into the first N, which are left out at the start"},
    {0, "reverse", "", V::None, "", "run backwards"},
    {0, "bounce", "", V::None, "", "run forth and back; neither end is shown twice in a row"},
    {0, "speed", "FACTOR", V::Other, "", "divide all delays: 2 is twice as fast"},
    {0, "delay-last", "SECONDS", V::Other, "",
     "how long the last frame is shown. The options from --delays on work one after the other, in "
     "this order, on the frames that were taken; --keep-frames keeps those"},
    {0, "estimate", "", V::None, "",
     "print about how large the GIF would be, in a quarter of the time that encoding takes or "
     "less; nothing is written"},
    {0, "keep-frames", "DIR", V::Folder, "",
     "also leave the frames in DIR as frame00001.png, frame00002.png ..."},
    {0, "write-profile", "FILE", V::Profile, "", "write the settings in force as a profile"},
    {0, "list-settings", "", V::None, "",
     "print all settings: name, kind, range, initial value, what it does"},
    {0, "info", "SOURCE", V::File, "", "print size, duration, frame rate, rotation and colour"},
    {0, "json", "", V::None, "", "what --info prints as JSON, for scripts"},
    {0, "threads", "N", V::Other, "", "how many cores to use (all); the result is the same"},
    {'q', "quiet", "", V::None, "", "print nothing but warnings and errors"},
    {0, "version", "", V::None, "", "print the versions of the program and of its libraries"},
    {'h', "help", "", V::None, "", "print this"},
};

constexpr qsizetype kIndent = 24;
constexpr qsizetype kWidth = 90;

/// `text` from column `kIndent` on, the first line after `start`.
QString Wrapped(const QString& start, const QString& text) {
    QString lines;
    QString line = start.leftJustified(kIndent - 1);
    const QStringList words = text.split(QLatin1Char(' '));
    for (const QString& word : words) {
        if (line.size() + 1 + word.size() > kWidth) {
            lines += line + QLatin1Char('\n');
            line = QString(kIndent - 1, QLatin1Char(' '));
        }
        line += QLatin1Char(' ') + word;
    }
    return lines + line + QLatin1Char('\n');
}

}  // namespace

std::span<const OptionRow> OptionTable() {
    return kRows;
}

QString HelpText() {
    QString text = QStringLiteral(
        "Makes an animated GIF of a video or of pictures.\n\n"
        "usage: lumirra-cli [options] SOURCE... -o OUT.gif\n\n");
    text += Wrapped(QStringLiteral("  SOURCE"),
                    QStringLiteral("one video, or one or more pictures in order"));
    for (const OptionRow& row : OptionTable()) {
        QString start = QStringLiteral("  ");
        if (row.letter != 0) {
            start += QStringLiteral("-%1, ").arg(QLatin1Char(row.letter));
        }
        start += QStringLiteral("--%1 %2").arg(QLatin1String(row.name), QLatin1String(row.value));
        text += Wrapped(start.trimmed().prepend(QLatin1String("  ")), QLatin1String(row.help));
    }
    return text + QStringLiteral(
                      "\nExit status: 0 done, 1 failed (the reason is on standard error; an "
                      "old OUT.gif is as it\nwas), 2 wrong usage.\n");
}

}  // namespace lumirra
