#pragma once

#include <QImage>
#include <QStringList>
#include <vector>

namespace lumirra::test {

/// A short clip made by formulas, of one kind that encoders find hard in its own way, and what the
/// encoder made of it when these figures were recorded.
struct SampleScene {
    const char* name;
    QImage (*frame)(int number, int scale);
    struct Figures {
        double bytes;
        double ssim;
        double ssimb;
        double psnrb;
        double flick;
    } usual, best;  ///< at qualities 90 and 100
};
const std::vector<SampleScene>& SampleScenes();

constexpr int kSceneFrames = 24;

/// Stores the scene's frames, `scale` times 240 x 160 pixels, as PNG files in `folder`; their paths
/// in order.
QStringList StoreScene(const SampleScene& scene, const QString& folder, int frames = kSceneFrames,
                       int scale = 1);

}  // namespace lumirra::test
