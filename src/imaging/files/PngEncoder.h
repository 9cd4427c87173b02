#pragma once

#include <QByteArray>
#include <QImage>
#include <optional>

namespace lumirra {

/// The whole PNG file of an RGBA8888 picture: 8-bit RGBA, the 'up' filter and `PixelDeflate`.
/// Absent when memory runs out or the picture is beyond what a PNG can hold.
std::optional<QByteArray> EncodePng(const QImage& rgba);

}  // namespace lumirra
