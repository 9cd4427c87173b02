#pragma once

#include <QStringList>
#include <utility>
#include <vector>

#include "imaging/Outcome.h"
#include "output/GifSizes.h"

namespace lumirra {

/// What the command line asks for.
struct Options {
    enum class Action { MakeGif, Info, ListSettings, Version, Help };
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
    int quality = 90;                             ///< 1..100
    long long maxBytes = 0;                       ///< 0: any size
    enum class Loop { Setting, Forever, Count };  ///< what rules the loop field
    Loop loop = Loop::Setting;
    int loopCount = 0;      ///< of `Loop::Count`; 0: no loop field
    bool estimate = false;  ///< print the size, write no GIF
    int threads = 0;        ///< 0: one for each core
    bool quiet = false;
};

/// Reads the arguments (without the program's name). Looks at no file. A failure is a mistake in
/// usage; its message is complete.
Outcome<Options> ParseOptions(const QStringList& arguments);

/// What --help prints.
QString HelpText();

}  // namespace lumirra
