#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <vector>

namespace lumirra::test {

/// One image of a GIF as its blocks say, and the canvas once it is drawn.
struct GifImage {
    int delay = 0;
    int disposal = 0;
    int width = 0;
    int height = 0;
    QImage canvas;  ///< Format_RGBA8888
};

struct GifContents {
    bool valid = false;  ///< every block whole, every pixel given exactly once
    int width = 0;
    int height = 0;
    int loops = -1;  ///< -1: no loop field
    std::vector<GifImage> images;
};

/// A plain reader written from the format's description, strict about every length and code.
GifContents ParseGif(const QByteArray& bytes);
GifContents ParseGifFile(const QString& path);

/// Undoes the code stream of image data that begins with the code size byte; empty when it is bad.
std::vector<std::uint8_t> UnpackCodes(const std::vector<std::uint8_t>& data);

/// The images as ffmpeg shows them, and all that it has to say.
struct ForeignFrames {
    std::vector<QImage> frames;
    QByteArray complaints;
};
ForeignFrames DecodeByFfmpeg(const QString& path, int width, int height);

/// Output of a program with its errors; "(not run)" when it could not be started.
QByteArray RunProgram(const QString& program, const QStringList& arguments);

}  // namespace lumirra::test
