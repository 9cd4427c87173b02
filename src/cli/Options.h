#pragma once

#include <QStringList>
#include <optional>
#include <utility>
#include <vector>

#include "imaging/Outcome.h"
#include "output/FrameSizes.h"

namespace lumirra {

/// What the command line asks for. The fields stand in the order of the help; there is one of it.
// NOLINTNEXTLINE(clang-analyzer-optin.performance.Padding)
struct Options {
    enum class Action { MakeGif, Info, ListSettings, ListPresets, Version, Help };
    Action action = Action::MakeGif;
    QStringList sources;  ///< one video, or pictures; empty when only a profile is written
    bool isVideo = false;
    QString output;  ///< empty: no GIF
    QString profile;
    std::vector<std::pair<QString, QString>> settings;  ///< name and value, in order
    float startPosition = 0;
    float endPosition = 1;
    FrameFitMode fitMode = FrameFitMode::CenterOnCanvas;
    QString keepFrames;
    QString writeProfile;
    QString infoSource;
    bool json = false;
    // Absent: what the settings say.
    std::optional<int> quality;         ///< 1..100
    std::optional<long long> maxBytes;  ///< within the size limit's range
    std::optional<int> maxWidth;        ///< pixels
    std::optional<int> loopCount;       ///< 0: no loop field
    bool repeatForever = false;         ///< instead of a count
    QString preset;                     ///< name; empty: none
    QString delays;                     ///< file of seconds, one a line
    std::optional<int> every;           ///< keep every so-manieth frame
    bool findLoop = false;
    double loopSeconds = 0.5;      ///< the least length of the loop to be found
    std::optional<int> crossFade;  ///< frames
    bool reverse = false;
    bool bounce = false;              ///< forth and back
    std::optional<double> speed;      ///< times as fast
    std::optional<double> delayLast;  ///< seconds
    bool estimate = false;            ///< print the size, write no GIF
    int threads = 0;                  ///< 0: one for each core
    bool quiet = false;
};

/// Reads the arguments (without the program's name). Looks at no file. A failure is a mistake in
/// usage; its message is complete.
Outcome<Options> ParseOptions(const QStringList& arguments);

}  // namespace lumirra
