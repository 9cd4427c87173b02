#pragma once

#include <gtest/gtest.h>

#include <QString>
#include <QTemporaryDir>
#include <vector>

#include "sources/VideoReader.h"

namespace lumirra {

/// One of the clips that tests/support/make_media.py makes.
QString Media(const QString& name);

/// Standard output of a program that has to succeed; `arguments` are split at spaces.
QByteArray Command(const QString& program, const QString& arguments, const QString& last);

/// Time stamps of all shown frames, the first at 0, by another program's full decode.
std::vector<double> FrameTimes(const QString& path);

/// The number that is drawn into the stored frame: eight blocks along the lower edge, 40 rows of
/// 180. `rotation` is how the picture was turned to be shown.
int NumberIn(const QImage& shown, int rotation = 0);

VideoReader Opened(const QString& path);

inline constexpr int kWidth = 128;
inline constexpr int kHeight = 72;

/// Clips made on the spot.
class MadeClip : public testing::Test {
  protected:
    QString Path(const QString& name) const { return folder_.filePath(name); }

    /// `count` numbered frames at 25 a second, encoded by `arguments` (after the input).
    QString Make(const QString& name, const QString& arguments, int count = 60,
                 const QString& before = {});
    QString Remux(const QString& from, const QString& name, const QString& arguments,
                  const QString& before = {});
    /// Made from another program's test source instead.
    QString Generate(const QString& name, const QString& source, const QString& arguments);

    /// Asks for every frame at its own time and half way, up and down; `first` is the first
    /// frame's number.
    void ExpectExact(const QString& path, int first, int count);
    void ExpectExact(const QString& path, int first, int count, const std::vector<double>& times);

    QTemporaryDir folder_;
};

}  // namespace lumirra
