// bench_window start | position CLIP | effect PICTURE | strip CLIP
// "start" ends once the window has been painted and answers; the others hold a knob with a made-up
// mouse for some seconds and say how many pictures a second appeared, and how long after the
// release the exact one stood there. "strip" fills the list with 2000 frames and tells how long the
// window is held up by one more, by a selection, by scrolling through them all and by the commands
// that change all of them. All but "start" need a platform with a display or "offscreen".
#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QLineEdit>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTimer>
#include <cmath>
#include <cstdio>
#include <functional>

#include "app/ViewController.h"
#include "app/dialogs/QtDialogs.h"
#include "app/window/FontsAhead.h"
#include "views/Theme.h"
#include "views/controls/SliderCellVideo.h"
#include "views/controls/ValueSlider.h"
#include "views/panel/VideoImageView.h"
#include "views/strip/ScrollViewFrames.h"

namespace {

using namespace lumirra;

constexpr qint64 kDragMs = 5000;
constexpr int kMoveMs = 8;  // of a mouse that reports 125 times a second

/// Counts the pictures painted that are other than the one before, and notes when the last one was.
class Watch : public QObject {
  public:
    Watch(VideoImageView& view, const QElapsedTimer& clock) : view_(view), clock_(clock) {
        view.installEventFilter(this);
    }
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            const QImage whole = view_.Image();
            const QImage now = whole.isNull() ? whole : whole.scaled(64, 64);  // by sampling
            if (now != last_) {
                ++painted;
                lastPaint = clock_.elapsed();
                last_ = now;
            }
        }
        return false;
    }
    int painted = 0;
    qint64 lastPaint = 0;

  private:
    VideoImageView& view_;
    const QElapsedTimer& clock_;
    QImage last_;
};

void Work(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

void Mouse(QWidget& widget, QEvent::Type type, double x) {
    const QPointF at(x, widget.height() / 2.0);
    const auto held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    const auto button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, at, widget.mapToGlobal(at), button, held, Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

/// `sweeps` times along `width`: a slider of few steps gives no more pictures than it has steps.
int Drag(ViewController& window, QWidget& knob, double width, int sweeps) {
    QElapsedTimer clock;
    clock.start();
    auto& view = *window.findChild<VideoImageView*>(QStringLiteral("imageViewVideo"));
    Watch watch(view, clock);
    Work(1500);  // the first picture, and a window at rest
    watch.painted = 0;
    Mouse(knob, QEvent::MouseButtonPress, width * 0.02);
    const qint64 start = clock.elapsed();
    while (clock.elapsed() - start < kDragMs) {
        const double done =
            std::fmod(sweeps * double(clock.elapsed() - start) / double(kDragMs), 1.0);
        Mouse(knob, QEvent::MouseMove, width * (0.02 + 0.9 * done));
        Work(kMoveMs);
    }
    const double seconds = double(clock.elapsed() - start) / 1000;
    const int painted = watch.painted;
    Mouse(knob, QEvent::MouseButtonRelease, width * 0.92);
    const qint64 released = clock.elapsed();
    qint64 busy = released;
    while (clock.elapsed() - busy < 500) {
        Work(10);
        busy = window.State().updating ? clock.elapsed() : busy;
    }
    std::printf("%.1f pictures a second; final after %lld ms\n", painted / seconds,
                static_cast<long long>(watch.lastPaint - released));
    return 0;
}

/// An application that knows the longest time one event took: as long the window did not answer.
class TimedApplication : public QApplication {
  public:
    using QApplication::QApplication;
    bool notify(QObject* receiver, QEvent* event) override {
        if (std::exchange(inside_, true)) {
            return QApplication::notify(receiver, event);
        }
        QElapsedTimer clock;
        clock.start();
        const bool taken = QApplication::notify(receiver, event);
        longest_ = std::max(longest_, clock.nsecsElapsed());
        inside_ = false;
        return taken;
    }
    double TakeLongestMs() { return double(std::exchange(longest_, 0)) / 1e6; }

  private:
    qint64 longest_ = 0;
    bool inside_ = false;
};

void WorkUntil(const std::function<bool()>& holds) {
    while (!holds()) {
        Work(20);
    }
}

/// A command of the Edit menu, until its last event is done.
void TimeCommand(TimedApplication& application, ViewController& window, const char* action) {
    application.TakeLongestMs();
    QElapsedTimer clock;
    clock.start();
    window.findChild<QAction*>(QLatin1String(action))->trigger();
    const double held = double(clock.nsecsElapsed()) / 1e6;
    Work(300);  // the strip is painted, and what follows the list has its turn
    std::printf("%-24s %6.1f ms; longest stretch afterwards %.1f ms\n", action, held,
                application.TakeLongestMs());
}

int FillStrip(TimedApplication& application, ViewController& window) {
    constexpr int kFrames = 2000;
    const auto button = [&](const char* name) {
        return window.findChild<QAbstractButton*>(QLatin1String(name));
    };
    const auto frames = [&] { return window.CurrentProject().State().frames.Count(); };
    WorkUntil([&] { return !window.State().updating; });
    button("radioFixedNumberOfFrames")->click();
    auto* number = window.findChild<QLineEdit*>(QStringLiteral("textFieldFixedNumberOfFrames"));
    number->setText(QString::number(kFrames));
    Q_EMIT number->editingFinished();
    button("buttonAddFramesAutomatically")->click();
    WorkUntil([&] { return window.RunningJob() == BackgroundJob::Kind::None; });
    std::printf("the run to %d frames: longest stretch %.1f ms\n", frames(),
                application.TakeLongestMs());
    Work(1000);
    double longest = 0;
    for (int i = 1; i <= 20; ++i) {
        application.TakeLongestMs();
        button("buttonAddFrame")->click();
        WorkUntil([&] { return frames() == kFrames + i; });
        Work(100);
        longest = std::max(longest, application.TakeLongestMs());
    }
    std::printf("one frame more: longest stretch %.1f ms\n", longest);
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < 20; ++i) {
        window.RebuildFrameStrip();
        window.RefreshFrameSelection();
    }
    std::printf("of these the list: %.2f ms\n", double(clock.nsecsElapsed()) / 1e6 / 20);
    auto& strip = *window.findChild<ScrollViewFrames*>(QStringLiteral("scrollViewFrames"));
    application.TakeLongestMs();
    window.UpdateSelectionScrollViewFrames(1000);
    for (int at = 0; at < strip.Geometry().FurthestOffset(); at += 600) {
        strip.ScrollTo(at);
        Work(5);
    }
    std::printf("scrolling: longest stretch %.1f ms\n", application.TakeLongestMs());
    for (const char* action :
         {"actionSelectAllFrames", "actionReverseFrames", "actionUndo", "actionDuplicateFrames",
          "actionUndo", "actionForthAndBack", "actionUndo", "actionCutFrames", "actionPasteFrames",
          "actionUndo", "actionUndo"}) {
        TimeCommand(application, window, action);
    }
    return 0;
}

/// Ends the program once the window has been painted and its first events are done.
class EndWhenShown : public QObject {
  public:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            QTimer::singleShot(0, qApp, &QCoreApplication::quit);
        }
        return false;
    }
};

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_MEDIA_BACKEND", "ffmpeg");
    std::jthread fonts = ReadFontsAhead();
    TimedApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("lumirra-bench"));
    const QStringList arguments = QCoreApplication::arguments();
    const QString what = arguments.value(1);
    const QTemporaryDir folder;
    QtDialogs dialogs;
    Theme theme(application);
    fonts.join();
    ViewController window(theme, dialogs, folder.path());
    window.resize(1280, 820);
    window.show();
    window.OpenFiles(arguments.mid(2));
    if (what == QLatin1String("start")) {
        EndWhenShown end;
        window.installEventFilter(&end);
        return QApplication::exec();
    }
    if (what == QLatin1String("strip")) {
        return FillStrip(application, window);
    }
    if (what == QLatin1String("position")) {
        auto& slider = *window.findChild<SliderCellVideo*>(QStringLiteral("sliderVideoPosition"));
        return Drag(window, slider, slider.width(), 1);
    }
    auto& slider = *window.findChild<ValueSlider*>(QStringLiteral("sliderBrightness"));
    slider.resize(300, slider.height());  // its page has not been shown
    return Drag(window, slider, 200, 10);
}
