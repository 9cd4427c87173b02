#include <gtest/gtest.h>
#include <hwy/targets.h>

#include <cmath>
#include <random>
#include <vector>

#include "imaging/kernels/PhotoLooks.h"
#include "imaging/kernels/RowKernels.h"

namespace lumirra {
namespace {

constexpr std::uint8_t kGuard = 0xA5;
/// Past twice the widest vector, and past the four vectors that the blur makes at once.
constexpr std::size_t kLongest = 133;

std::vector<std::uint8_t> RandomBytes(std::size_t count, unsigned seed) {
    std::mt19937 random(seed);
    std::vector<std::uint8_t> bytes(count);
    for (auto& byte : bytes) {
        byte = static_cast<std::uint8_t>(random());
    }
    return bytes;
}

ColorSteps AllSteps() {
    EffectSettings settings;
    settings.brightness = -0.1F;
    settings.contrast = 1.7F;
    settings.saturation = 1.4F;
    settings.exposure = 0.6F;
    settings.gamma = 0.7F;
    settings.hue = 50;
    settings.colorEffectOn = true;
    settings.colorEffectName = QStringLiteral("Instant");
    return ColorStepsOf(settings);
}

/// Four float planes with a margin; the kernels' slack included.
class Buffer {
  public:
    explicit Buffer(unsigned seed) {
        std::mt19937 random(seed);
        for (auto& plane : planes_) {
            plane.resize(kMargin + kLongest + kMargin + kPlaneSlack);
            for (float& value : plane) {
                value = static_cast<float>(random() % 1000) / 1000;
            }
        }
    }
    Planes planes() {
        Planes result{};
        for (std::size_t i = 0; i < 4; ++i) {
            result[i] = planes_[i].data() + kMargin;
        }
        return result;
    }
    void ExpectNear(Buffer& other, std::size_t n, float tolerance) {
        for (std::size_t i = 0; i < 4; ++i) {
            for (std::size_t x = 0; x < n; ++x) {
                ASSERT_NEAR(planes()[i][x], other.planes()[i][x], tolerance) << i << ", " << x;
            }
        }
    }

  private:
    static constexpr std::size_t kMargin = 33;
    std::array<std::vector<float>, 4> planes_;
};

/// Each vector unit of this machine against the plain loops.
class RowKernelsTest : public testing::TestWithParam<std::int64_t> {
  protected:
    void SetUp() override {
        hwy::SetSupportedTargetsForTest(GetParam());
        hwy::GetChosenTarget().Update(hwy::SupportedTargets());
    }
    void TearDown() override {
        hwy::SetSupportedTargetsForTest(0);
        hwy::GetChosenTarget().Update(hwy::SupportedTargets());
    }
    const RowKernels& plain_ = ScalarKernels();
};

/// Runs make(kernels, in, out, n) for both, from every start in a word, between guard bytes.
template <typename Make>
void CompareBytes(const RowKernels& plain, const RowKernels& vector, const Make& make) {
    const auto in = RandomBytes(4 * kLongest + 4, 1);
    for (std::size_t n = 0; n <= kLongest; n += n < 34 ? 1 : 9) {
        for (std::size_t start = 0; start < 4; ++start) {
            std::vector<std::uint8_t> expected(start + 4 * n + 64, kGuard);
            std::vector<std::uint8_t> actual = expected;
            // A copy of the exact length: the sanitizer sees a read beyond it.
            const std::vector<std::uint8_t> row(in.data() + start, in.data() + start + 4 * n);
            make(plain, row.data(), expected.data() + start, n);
            make(vector, row.data(), actual.data() + start, n);
            for (std::size_t i = 0; i < actual.size(); ++i) {
                const bool inside = i >= start && i < start + 4 * n;
                ASSERT_LE(std::abs(expected[i] - actual[i]), inside ? 1 : 0) << n << ": " << i;
                ASSERT_TRUE(inside || actual[i] == kGuard) << n << ": " << i;
            }
        }
    }
}

TEST_P(RowKernelsTest, PixelRows) {
    const ColorSteps steps = AllSteps();
    const VignetteRow vignette = {0.2F, 0.007F, 0.01F};
    const auto overlay = RandomBytes(4 * kLongest, 2);
    Buffer planes(3);
    CompareBytes(plain_, VectorKernels(),
                 [&](const RowKernels& kernels, auto in, auto out, auto n) {
                     kernels.color(steps, &vignette, in, out, n);
                 });
    CompareBytes(plain_, VectorKernels(),
                 [&](const RowKernels& kernels, auto in, auto out, auto n) {
                     kernels.blend(in, overlay.data(), 0.7F, out, n);
                 });
    CompareBytes(plain_, VectorKernels(),
                 [&](const RowKernels& kernels, auto in, auto out, auto n) {
                     kernels.store(planes.planes(), &vignette, n % 2 == 0 ? in : nullptr, out, n);
                 });
}

TEST_P(RowKernelsTest, PlaneRows) {
    const RowKernels& vector = VectorKernels();
    const ColorSteps steps = AllSteps();
    const auto bytes = RandomBytes(4 * kLongest, 4);
    for (std::size_t n = 0; n <= kLongest; n += n < 34 ? 1 : 9) {
        SCOPED_TRACE(n);
        for (const bool premultiplied : {false, true}) {
            const std::vector<std::uint8_t> row(bytes.data(), bytes.data() + 4 * n);
            Buffer expected(5);
            Buffer actual(5);
            plain_.load(steps, premultiplied, row.data(), expected.planes(), n);
            vector.load(steps, premultiplied, row.data(), actual.planes(), n);
            actual.ExpectNear(expected, n, 2e-5F);
            plain_.luminance(premultiplied, expected.planes(), n);
            vector.luminance(premultiplied, actual.planes(), n);
            actual.ExpectNear(expected, n, premultiplied ? 2e-4F : 3e-5F);
        }
    }
}

TEST_P(RowKernelsTest, BlurredAndEdgeRows) {
    const RowKernels& vector = VectorKernels();
    for (const int radius : {0, 1, 6, 30}) {
        std::vector<float> weights(static_cast<std::size_t>(2 * radius + 2 * kBlurredRows - 1));
        for (int i = 0; i <= 2 * radius; ++i) {
            weights[static_cast<std::size_t>(i + kBlurredRows - 1)] =
                static_cast<float>(i + 1) / static_cast<float>((radius + 1) * (2 * radius + 1));
        }
        const float* first = weights.data() + kBlurredRows - 1;
        std::vector<Buffer> rows;
        for (int i = 0; i < 2 * radius + kBlurredRows; ++i) {
            rows.emplace_back(static_cast<unsigned>(i));
        }
        std::vector<const float*> in;
        for (Buffer& row : rows) {
            in.push_back(row.planes()[0]);
        }
        for (std::size_t n = 0; n <= kLongest; n += n < 34 ? 1 : 9) {
            Buffer expected(6);
            Buffer actual(6);
            plain_.blurAlongRow(in[0], first, radius, expected.planes()[0], n);
            vector.blurAlongRow(in[0], first, radius, actual.planes()[0], n);
            actual.ExpectNear(expected, n, 1e-6F);
            Buffer expectedBelow(10);
            Buffer actualBelow(10);
            const auto eight = [](Buffer& upper, Buffer& lower) {
                static_assert(kBlurredRows == 8);
                const Planes u = upper.planes();
                const Planes l = lower.planes();
                return std::array{u[0], u[1], u[2], u[3], l[0], l[1], l[2], l[3]};
            };
            plain_.blurAcrossRows(in.data(), first, radius, eight(expected, expectedBelow).data(),
                                  n);
            vector.blurAcrossRows(in.data(), first, radius, eight(actual, actualBelow).data(), n);
            actual.ExpectNear(expected, n, 1e-6F);
            actualBelow.ExpectNear(expectedBelow, n, 1e-6F);
        }
    }
}

TEST_P(RowKernelsTest, LinesAreDrawnAtTheSamePixels) {
    const RowKernels& vector = VectorKernels();
    Buffer above(7);
    Buffer at(8);
    Buffer below(9);
    const RowsAround luminance = {above.planes()[3], at.planes()[3], below.planes()[3]};
    for (std::size_t n = 0; n <= kLongest; n += n < 34 ? 1 : 9) {
        Buffer expected(6);
        Buffer actual(6);
        plain_.toon(luminance, 0.98765F, 7, at.planes(), expected.planes(), n);
        vector.toon(luminance, 0.98765F, 7, at.planes(), actual.planes(), n);
        actual.ExpectNear(expected, n, 1e-6F);
        plain_.sketch(luminance, 0.98765F, 0.7F, expected.planes(), n);
        vector.sketch(luminance, 0.98765F, 0.7F, actual.planes(), n);
        actual.ExpectNear(expected, n, 1e-6F);
    }
}

INSTANTIATE_TEST_SUITE_P(EveryUnit, RowKernelsTest,
                         testing::ValuesIn(hwy::SupportedAndGeneratedTargets()),
                         [](const auto& unit) { return hwy::TargetName(unit.param); });

}  // namespace
}  // namespace lumirra
