#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QSize>
#include <optional>

namespace lumirra {

/// Walks through the blocks of a GIF without decoding its pictures: how many there are, for how
/// long each is shown and how often the whole is repeated. Keeps a few kilobytes however long the
/// file; a damaged file ends early.
class GifBlocks {
  public:
    /// `file` is open, at its beginning and outlives the object; nothing else moves it.
    explicit GifBlocks(QIODevice& file);

    /// Of the canvas; empty when the file does not begin as a GIF does.
    QSize Size() const { return size_; }

    /// The delay of the next whole picture as the file says, in hundredths of a second; absent
    /// after the last.
    std::optional<int> NextDelay();
    /// The repeat count met so far: absent without one, 0 for "forever".
    std::optional<int> Repeats() const { return repeats_; }

    /// Back to before the first picture.
    void Rewind();

  private:
    void ReadHeader();
    int Byte();  ///< -1 at the end
    int Word();  ///< -1 at the end
    QByteArray Bytes(int count);
    bool Skip(qint64 count);
    bool SkipSubBlocks();
    bool SkipColorTable(int flags);
    bool ReadExtension(int& delay);
    bool SkipPicture();

    QIODevice& file_;
    QByteArray buffer_;
    qsizetype at_ = 0;
    QSize size_;
    std::optional<int> repeats_;
};

/// How long a picture is shown: delays of a hundredth and less mean a tenth of a second, as
/// browsers take them.
constexpr int PlayedMilliseconds(int hundredths) {
    return hundredths <= 1 ? 100 : hundredths * 10;
}

}  // namespace lumirra
