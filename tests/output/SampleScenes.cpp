#include "output/SampleScenes.h"

#include <gtest/gtest.h>

#include <QDir>
#include <algorithm>
#include <cmath>
#include <cstdint>

namespace lumirra::test {

namespace {

constexpr int kWidth = 240;
constexpr int kHeight = 160;

/// The same on every machine.
std::uint32_t Hash(int x, int y, int z) {
    std::uint32_t h = static_cast<std::uint32_t>(x) * 0x8DA6B343U ^
                      static_cast<std::uint32_t>(y) * 0xD8163841U ^
                      static_cast<std::uint32_t>(z) * 0xCB1AB31FU;
    h = (h ^ h >> 15U) * 0x2C1B3C6DU;
    h = (h ^ h >> 12U) * 0x297A2D39U;
    return h ^ h >> 15U;
}

/// Near a normal distribution.
double Grain(int x, int y, int z, double deviation) {
    const std::uint32_t h = Hash(x, y, z);
    const int sum = static_cast<int>((h & 255U) + (h >> 8U & 255U) + (h >> 16U & 255U));
    return (sum - 382.5) / 128 * deviation;
}

struct Color {
    double r = 0;
    double g = 0;
    double b = 0;
};

/// `paint` is given a place in the scene, 240 x 160, and the pixel, of which there are `scale`
/// times as many.
template <typename Paint>
QImage Painted(int scale, const Paint& paint) {
    QImage image(kWidth * scale, kHeight * scale, QImage::Format_RGBA8888);
    const auto level = [](double v) {
        return static_cast<uchar>(std::clamp(std::floor(v + 0.5), 0.0, 255.0));
    };
    for (int y = 0; y < image.height(); ++y) {
        uchar* out = image.scanLine(y);
        for (int x = 0; x < image.width(); ++x, out += 4) {
            const Color color =
                paint(static_cast<double>(x) / scale, static_cast<double>(y) / scale, QPoint(x, y));
            out[0] = level(color.r);
            out[1] = level(color.g);
            out[2] = level(color.b);
            out[3] = 255;
        }
    }
    return image;
}

/// Rough ground, as seen by a camera.
Color Ground(double x, double y) {
    const double wave = 40 * std::sin(x * 0.07 + std::sin(y * 0.05)) + 30 * std::sin(y * 0.11);
    const double tuft = static_cast<double>(
        Hash(static_cast<int>(std::floor(x / 3)), static_cast<int>(std::floor(y / 2)), 5) % 50);
    return {90 + wave + tuft, 110 + wave * 0.8 + tuft, 70 + wave * 0.3 + tuft * 0.6};
}

/// 1 inside, 0 outside, soft at the edge.
double Disc(double x, double y, double radius) {
    return std::clamp(radius - std::hypot(x, y) + 0.5, 0.0, 1.0);
}

Color Mix(const Color& a, const Color& b, double part) {
    return {a.r + (b.r - a.r) * part, a.g + (b.g - a.g) * part, a.b + (b.b - a.b) * part};
}

Color WithGrain(Color color, QPoint pixel, int frame, double deviation) {
    const double grain = Grain(pixel.x(), pixel.y(), frame, deviation);
    return {color.r + grain, color.g + grain, color.b + grain};
}

QImage PanningGround(int frame, int scale) {
    return Painted(scale, [&](double x, double y, QPoint pixel) {
        return WithGrain(Ground(x + 3.4 * frame, y + 0.7 * frame), pixel, frame, 2);
    });
}

QImage GrainyFixedCamera(int frame, int scale) {
    return Painted(scale, [&](double x, double y, QPoint pixel) {
        const Color ball = {200, 60, 40 + 0.8 * y};
        const double part = Disc(x - 30.0 - 6 * frame, y - 90, 22);
        return WithGrain(Mix(Ground(x, y), ball, part), pixel, frame, 4);
    });
}

QImage DarkHall(int frame, int scale) {
    return Painted(scale, [&](double x, double y, QPoint pixel) {
        const double glow = std::exp(-(std::pow(x - 150, 2) + std::pow(y - 40, 2)) / 3000);
        const Color wall = {6.0 + y / 24.0, 7.0 + y / 30.0 + 12 * glow, 12.0 + 46 * glow};
        const Color person = {16, 14, 20};
        const double part = Disc((x - 40.0 - 2 * frame) * 2, y - 110, 34);
        return WithGrain(Mix(wall, person, part), pixel, frame, 0.7);
    });
}

QImage PlainWall(int frame, int scale) {
    return Painted(scale, [&](double x, double y, QPoint pixel) {
        const Color wall = {205.0 - x / 9.0, 186.0 - x / 11.0 - y / 20.0, 158.0 - y / 8.0};
        const double dx = x - 110 - 6 * std::sin(frame * 0.3);
        const double dy = y - 82 - 2 * std::cos(frame * 0.4);
        const double light = 30 * (dx + dy) / 60;
        const Color face = {196 - light, 148 - light, 124 - light};
        return WithGrain(Mix(wall, face, Disc(dx, dy * 0.8, 40)), pixel, frame, 0.8);
    });
}

QImage TypedText(int frame, int scale) {
    return Painted(scale, [&](double sceneX, double sceneY, QPoint) {
        const int x = static_cast<int>(sceneX);
        const int y = static_cast<int>(sceneY);
        const int column = x / 6;
        const int line = y / 10;
        const bool typed = line * (kWidth / 6) + column < 60 + 18 * frame;
        const std::uint32_t ink = Hash(x % 6 / 2, y % 10 / 2, column * 31 + line * 977);
        const bool inside = x % 6 < 5 && y % 10 < 8 && column > 1;
        const double shade = typed && inside ? 60.0 * (ink % 4) : 0;
        return Color{250 - shade, 250 - shade, 246 - shade * 0.8};
    });
}

}  // namespace

const std::vector<SampleScene>& SampleScenes() {
    static const std::vector<SampleScene> scenes = {
        {"PanningGround",
         PanningGround,
         {537155, 0.9945, 0.9997, 54.05, 0.904},
         {746618, 0.9983, 0.9999, 57.40, 0.820}},
        {"GrainyFixedCamera",
         GrainyFixedCamera,
         {478997, 0.9880, 0.9992, 51.80, 0.454},
         {811170, 0.9979, 0.9999, 56.18, 0.644}},
        {"DarkHall",
         DarkHall,
         {16898, 0.9857, 0.9993, 53.06, 0.000},
         {204650, 0.9926, 0.9996, 53.92, 0.296}},
        {"PlainWall",
         PlainWall,
         {40456, 0.9767, 0.9991, 49.72, 0.031},
         {293886, 0.9888, 0.9996, 51.96, 0.415}},
        {"TypedText",
         TypedText,
         {13735, 1.0000, 1.0000, 99.00, 0.000},
         {13735, 1.0000, 1.0000, 99.00, 0.000}},
    };
    return scenes;
}

QStringList StoreScene(const SampleScene& scene, const QString& folder, int frames, int scale) {
    QStringList paths;
    for (int i = 0; i < frames; ++i) {
        paths << QDir(folder).filePath(QStringLiteral("%1.png").arg(i));
        EXPECT_TRUE(scene.frame(i, scale).save(paths.back()));
    }
    return paths;
}

}  // namespace lumirra::test
