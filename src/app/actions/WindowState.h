#pragma once

#include "app/actions/Command.h"
#include "settings/Control.h"

namespace lumirra {

class Project;
class Session;

/// All that decides what can be used just now.
struct WindowFacts {
    bool video = false;      ///< a video is open
    bool pictures = false;   ///< pictures are open and no video
    int listedPictures = 0;  ///< of the list, whatever is open
    int frames = 0;
    int selectedFrames = 0;
    int copiedFrames = 0;
    bool playing = false;
    bool cancellable = false;  ///< a job runs that can be ended early
    bool locked = false;       ///< a long job runs
    bool gif = false;          ///< one is shown
    bool gifEnds = false;      ///< and is not repeated for ever
    bool offersWidth = false;
    bool limitsSize = false;
    bool limitsWidth = false;
    bool repeatsForever = false;
    bool canUndo = false;
    bool canRedo = false;
    bool canReopen = false;
};
WindowFacts FactsOf(const Project& project, const Session& session);

struct WidgetState {
    bool enabled = true;
    bool visible = true;  ///< what is hidden is never enabled
    friend bool operator==(const WidgetState&, const WidgetState&) = default;
};

// Pure: the one place that decides what is enabled and shown. A command that answers by an alert
// when it can do nothing stays enabled, and so do menu commands that need no picture and no frames.

WidgetState StateOf(Command command, const WindowFacts& facts);
bool IsEnabled(Control control, const WindowFacts& facts);

}  // namespace lumirra
