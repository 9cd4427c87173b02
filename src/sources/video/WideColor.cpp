#include "sources/video/WideColor.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "imaging/PictureFormat.h"

namespace lumirra {

namespace {

using Matrix3 = std::array<std::array<float, 3>, 3>;

// Linear light to BT.709 primaries, D65; worked out from the chromaticities of ITU-R BT.2020,
// SMPTE EG 432-1 and ITU-R BT.709.
constexpr Matrix3 kFromBt2020 = {{{1.6604910F, -0.5876411F, -0.0728499F},
                                  {-0.1245505F, 1.1328999F, -0.0083494F},
                                  {-0.0181508F, -0.1005789F, 1.1187297F}}};
constexpr Matrix3 kFromP3 = {{{1.2249402F, -0.2249402F, 0.0F},
                              {-0.0420570F, 1.0420570F, 0.0F},
                              {-0.0196376F, -0.0786360F, 1.0982736F}}};
constexpr Matrix3 kAsIs = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};

constexpr int kLevels = 65536;
constexpr double kReferenceWhite = 203;  // cd/m2, ITU-R BT.2408
constexpr double kPeak = 1000;           // cd/m2, the display that HLG is viewed on here
constexpr float kPeakOverWhite = static_cast<float>(kPeak / kReferenceWhite);
constexpr float kKnee = 0.85F;
constexpr double kStandardGamma = 2.4;  // of the reference display, ITU-R BT.1886

// SMPTE ST 2084: code value to multiples of reference white.
double FromPq(double value) {
    constexpr double kM1 = 2610.0 / 16384;
    constexpr double kM2 = 2523.0 / 4096 * 128;
    constexpr double kC1 = 3424.0 / 4096;
    constexpr double kC2 = 2413.0 / 4096 * 32;
    constexpr double kC3 = 2392.0 / 4096 * 32;
    const double root = std::pow(value, 1 / kM2);
    const double linear = std::max(root - kC1, 0.0) / (kC2 - kC3 * root);
    return std::pow(linear, 1 / kM1) * 10000 / kReferenceWhite;
}

// ITU-R BT.2100 hybrid log-gamma: code value to scene light, 0..1.
double FromHlg(double value) {
    constexpr double kA = 0.17883277;
    constexpr double kB = 0.28466892;
    constexpr double kC = 0.55991073;
    return value <= 0.5 ? value * value / 3 : (std::exp((value - kC) / kA) + kB) / 12;
}

std::vector<float> LinearTable(AVColorTransferCharacteristic transfer) {
    std::vector<float> table(kLevels);
    for (int i = 0; i < kLevels; ++i) {
        const double value = i / (kLevels - 1.0);
        table[static_cast<std::size_t>(i)] = static_cast<float>(
            transfer == AVCOL_TRC_SMPTE2084      ? FromPq(value)
            : transfer == AVCOL_TRC_ARIB_STD_B67 ? FromHlg(value)
                                                 : std::pow(value, kStandardGamma));
    }
    return table;
}

const std::vector<float>& LinearTableFor(AVColorTransferCharacteristic transfer) {
    static const std::vector<float> pq = LinearTable(AVCOL_TRC_SMPTE2084);
    static const std::vector<float> hlg = LinearTable(AVCOL_TRC_ARIB_STD_B67);
    static const std::vector<float> standard = LinearTable(AVCOL_TRC_BT709);
    return transfer == AVCOL_TRC_SMPTE2084      ? pq
           : transfer == AVCOL_TRC_ARIB_STD_B67 ? hlg
                                                : standard;
}

// Indexed by the square root of linear light, which spreads the dark levels far enough apart.
const std::vector<std::uint8_t>& CodeTable() {
    static const std::vector<std::uint8_t> table = [] {
        std::vector<std::uint8_t> codes(kLevels);
        for (int i = 0; i < kLevels; ++i) {
            const double root = i / (kLevels - 1.0);
            codes[static_cast<std::size_t>(i)] =
                static_cast<std::uint8_t>(std::lround(std::pow(root, 2 / kStandardGamma) * 255));
        }
        return codes;
    }();
    return table;
}

// Straight up to the knee, then ever flatter until the peak becomes 1.
float RollOff(float value) {
    constexpr float kTop = (kPeakOverWhite - kKnee) / (1 - kKnee);
    const float over = (value - kKnee) / (1 - kKnee);
    return kKnee + (1 - kKnee) * over * (1 + over / (kTop * kTop)) / (1 + over);
}

std::uint8_t Code(const std::vector<std::uint8_t>& codes, float linear) {
    const float root = std::sqrt(std::clamp(linear, 0.0F, 1.0F));
    return codes[static_cast<std::size_t>(std::lround(root * (kLevels - 1)))];
}

struct Conversion {
    const std::vector<float>& linear;
    const std::vector<std::uint8_t>& codes;
    const Matrix3& matrix;
    bool hlg = false;
    bool hdr = false;

    void Row(const std::uint16_t* from, std::uint8_t* to, int width) const;
};

void Conversion::Row(const std::uint16_t* from, std::uint8_t* to, int width) const {
    for (int x = 0; x < width; ++x, from += 4, to += 4) {
        float r = linear[from[0]];
        float g = linear[from[1]];
        float b = linear[from[2]];
        if (hlg) {
            // The viewing gamma of a 1000 cd/m2 display, ITU-R BT.2100.
            const float scene = 0.2627F * r + 0.6780F * g + 0.0593F * b;
            const float gain = kPeakOverWhite * std::pow(scene, 0.2F);
            r *= gain;
            g *= gain;
            b *= gain;
        }
        float out[3] = {};
        for (std::size_t c = 0; c < 3; ++c) {
            out[c] = matrix[c][0] * r + matrix[c][1] * g + matrix[c][2] * b;
        }
        const float most = std::max({out[0], out[1], out[2]});
        // All three by the same factor, so that a bright colour keeps its hue.
        const float gain = hdr && most > kKnee ? RollOff(most) / most : 1.0F;
        for (int c = 0; c < 3; ++c) {
            to[c] = Code(codes, out[c] * gain);
        }
        to[3] = static_cast<std::uint8_t>((from[3] * 255U + 32767U) / 65535U);
    }
}

}  // namespace

QImage ToStandardColor(const QImage& deep, AVColorTransferCharacteristic transfer,
                       AVColorPrimaries primaries) {
    QImage result = NewPicture(deep.size(), QImage::Format_RGBA8888);
    const bool hlg = transfer == AVCOL_TRC_ARIB_STD_B67;
    const bool hdr = hlg || transfer == AVCOL_TRC_SMPTE2084;
    const bool p3 = primaries == AVCOL_PRI_SMPTE432 || primaries == AVCOL_PRI_SMPTE431;
    const bool wide = primaries == AVCOL_PRI_BT2020 || primaries == AVCOL_PRI_UNSPECIFIED;
    const Conversion conversion = {LinearTableFor(transfer), CodeTable(),
                                   p3     ? kFromP3
                                   : wide ? kFromBt2020
                                          : kAsIs,
                                   hlg, hdr};
    for (int y = 0; y < deep.height(); ++y) {
        conversion.Row(reinterpret_cast<const std::uint16_t*>(deep.constScanLine(y)),
                       result.scanLine(y), deep.width());
    }
    return result;
}

}  // namespace lumirra
