#pragma once

#include <QImage>
#include <QObject>
#include <QSize>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <stop_token>
#include <thread>

#include "views/ScreenPicture.h"

class QFile;
class QImageReader;

namespace lumirra {

class GifBlocks;

/// What can be said about a GIF file before it was played.
struct GifInfo {
    int frames = 0;
    QSize size;
    qint64 milliseconds = 0;  ///< of one pass, as played
    qint64 bytes = 0;
    bool slowed = false;              ///< some picture is to be shown shorter than viewers do
    std::optional<int> repeats = {};  ///< absent: played once; 0: for ever

    friend bool operator==(const GifInfo&, const GifInfo&) = default;
};

/// One whole picture of the animation.
struct GifPicture {
    QImage image;
    ScreenPicture screen;  ///< the same as large as fits the target of that time
    int milliseconds = 100;
};

/// The size of a picture that fills `room` as far as its shape allows; at least one pixel.
QSize FittedSize(const QSize& picture, const QSize& room);

/// Reads the pictures of a GIF ahead of time on a thread of its own, in order and as often as the
/// file wants to be repeated: once more than its repeat count, as browsers do. Holds a few pictures
/// however long the file. Used from the thread that made it; the destructor waits for the picture
/// being decoded.
class GifReader : public QObject {
    Q_OBJECT

  public:
    /// `target`: device pixels that pictures are fitted into.
    GifReader(QString path, const QSize& target);
    ~GifReader() override;

    /// Begins to read. Once, after the signals are connected.
    void Start();

    /// For the pictures that are not read yet.
    void SetTarget(const QSize& target);

    /// The next picture, if it is there already.
    std::optional<GifPicture> Take();
    /// Whether nothing will ever come any more.
    bool IsAtEnd();

  Q_SIGNALS:
    /// There is a picture more, or the end was met.
    void Ready();
    void InfoKnown(const lumirra::GifInfo& info);

  private:
    void Run(const std::stop_token& stop);
    void End();
    /// Finds out what there is to say about the file.
    void Look(const std::stop_token& stop);
    /// Reads the whole animation once; how many pictures it gave.
    int ReadPass(QFile& file, GifBlocks& blocks, const std::stop_token& stop);
    bool Put(const QImage& image, int milliseconds, const std::stop_token& stop);

    const QString path_;
    std::mutex mutex_;
    std::condition_variable_any taken_;
    std::deque<GifPicture> ahead_;
    QSize target_;
    bool ended_ = false;
    bool looked_ = false;
    /// Last: its destructor ends the work that uses the rest.
    std::jthread worker_;
};

}  // namespace lumirra
