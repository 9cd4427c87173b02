#pragma once

#include <QByteArray>
#include <cstddef>
#include <cstdint>
#include <span>

namespace lumirra {

/// A zlib stream made for filtered rows of four-byte pixels. It looks for nothing but runs of equal
/// pixels and gives each block its own Huffman code: a fraction of a general compressor's work for
/// nearly its size, because filtered photographs hold few other repeats. Formats: RFC 1950, 1951.
class PixelDeflate {
  public:
    /// Each block is appended to `out`, which must outlive this object.
    explicit PixelDeflate(QByteArray& out);

    /// `rows`: whole rows, each one filter byte and `pixels` times four bytes. The stream is
    /// complete after the block that is `last`.
    void Block(std::span<const std::uint8_t> rows, int pixels, bool last);

    /// What the output is lengthened by, for a while, for a block of that many bytes.
    static std::size_t MostBytes(std::size_t rowBytes);

  private:
    QByteArray& out_;
    // Deflate with a 32 KiB window, 0x78; the fastest, 0x01, makes the two a multiple of 31.
    std::uint64_t bits_ = 0x0178;
    unsigned bitCount_ = 16;
    std::uint32_t checksum_ = 1;
};

}  // namespace lumirra
