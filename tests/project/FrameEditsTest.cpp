#include <gtest/gtest.h>

#include <QSet>
#include <algorithm>
#include <cmath>
#include <random>

#include "project/edits/FrameEdits.h"

namespace lumirra {
namespace {

/// What a frame is to a person: which one, how long, selected or not.
struct Plain {
    FrameId id = 0;
    std::optional<int> delay;
    bool selected = false;
    friend bool operator==(const Plain&, const Plain&) = default;
};
using PlainList = std::vector<Plain>;

PlainList PlainOf(const Document& document) {
    PlainList plain;
    for (int i = 0; i < document.frames.Count(); ++i) {
        const Frame& frame = document.frames.At(i);
        plain.push_back({frame.id, frame.delay, document.frames.IsSelected(i)});
    }
    return plain;
}

/// Frames 1, 2, 3 ... with these delays; 0: none of their own.
Document Listing(const std::vector<int>& delays) {
    Document document;
    for (const int delay : delays) {
        Frame frame;
        frame.id = static_cast<FrameId>(document.frames.Count() + 1);
        frame.delay = delay == 0 ? std::nullopt : std::optional(delay);
        document.frames.Append(frame);
    }
    return document;
}

Document Selecting(Document document, const std::vector<int>& indices) {
    for (const int index : indices) {
        document = WithFrameClicked(std::move(document), index, true);
    }
    return document;
}

std::string Order(const Document& document) {
    std::string order;
    for (const Plain& frame : PlainOf(document)) {
        order += std::to_string(frame.id) +
                 (frame.delay ? ":" + std::to_string(*frame.delay) : "") +
                 (frame.selected ? "* " : " ");
    }
    return order;
}

PictureSignature Grey(int level) {
    return PictureSignature(768, static_cast<std::int16_t>(level * 64));
}

TEST(FrameEdits, SelectedFramesMoveTogetherAndOneByOne) {
    const Document five = Selecting(Listing({0, 0, 0, 0, 0}), {1, 3});
    EXPECT_EQ(Order(edits::MoveFramesTo(five, 5).after), "1 3 5 2* 4* ");
    EXPECT_EQ(Order(edits::MoveFramesTo(five, 0).after), "2* 4* 1 3 5 ");
    EXPECT_EQ(edits::MoveFramesTo(five, 5).after.frames.Tag(), 4) << "the frame last clicked";
    const Document once = edits::MoveFramesUp(five).after;
    EXPECT_EQ(Order(once), "2* 1 4* 3 5 ");
    const Document twice = edits::MoveFramesUp(once).after;
    EXPECT_EQ(Order(twice), "2* 4* 1 3 5 ");
    EXPECT_EQ(edits::MoveFramesUp(twice).after.frames, twice.frames)
        << "no step when all are there";
    EXPECT_EQ(Order(edits::MoveFramesDown(five).after), "1 3 2* 5 4* ");
    const Document none = Listing({0, 0});
    EXPECT_EQ(edits::MoveFramesUp(none).after.frames, none.frames);
    EXPECT_EQ(edits::MoveFramesDown(none).after.frames, none.frames);
}

TEST(FrameEdits, PastedFramesStandBehindTheSelection) {
    const Document three = Selecting(Listing({0, 0, 0}), {0});
    Frame four;
    four.id = 4;
    EXPECT_EQ(Order(edits::PasteFrames(three, {four}).after), "1 4* 2 3 ");
    EXPECT_EQ(Order(edits::PasteFrames(Listing({0, 0}), {four}).after), "1 2 4* ");
    EXPECT_EQ(edits::PasteFrames(three, {}).after.frames, three.frames);
    EXPECT_EQ(Order(edits::CutFrames(three).after), "2* 3 ") << "the next one is at hand";
}

TEST(FrameEdits, DelaysAreSetAndScaled) {
    const Document four = Listing({0, 20, 0, 5});  // the setting's delay is 0.1 s
    EXPECT_EQ(Order(edits::SetFrameDelay(Selecting(four, {3}), 200).after), "1 2:20 3 4:200* ");
    EXPECT_EQ(Order(edits::SetFrameDelay(four, std::nullopt).after), "1 2 3 4 ") << "all of them";
    EXPECT_EQ(Order(edits::ChangeSpeed(four, 2)->after), "1:5 2:10 3:5 4:3 ");
    EXPECT_EQ(Order(edits::ChangeSpeed(Selecting(four, {1}), 0.5)->after), "1 2:40* 3 4:5 ");
    EXPECT_FALSE(edits::ChangeSpeed(four, 100));
    EXPECT_FALSE(edits::ChangeSpeed(four, 0.0001));
}

TEST(FrameEdits, FramesAreThinnedOut) {
    EXPECT_EQ(Order(edits::KeepEveryNth(Listing({0, 1, 0, 2, 0}), 2).after), "1 3 5 ");
    const Document some = Selecting(Listing({0, 0, 0, 0, 0}), {1, 2, 4});
    EXPECT_EQ(Order(edits::KeepEveryNth(some, 2).after), "1 2* 4 5* ");
    EXPECT_EQ(Order(edits::KeepEveryNth(some, 1).after), Order(some));

    QHash<FrameId, PictureSignature> pictures;
    for (const auto& [id, level] : {std::pair{1, 10}, {2, 11}, {3, 12}, {4, 10}, {5, 10}}) {
        pictures.insert(static_cast<FrameId>(id), Grey(level));
    }
    const Document five = Listing({0, 3, 0, 0, 7});
    EXPECT_EQ(Order(edits::RemoveNearDuplicates(five, pictures, 0).after), "1 2:3 3 4:17 ");
    EXPECT_EQ(Order(edits::RemoveNearDuplicates(five, pictures, 1).after), "1:13 3 4:17 ")
        << "against the one that stays, so that a slow change is not lost";
    EXPECT_EQ(Order(edits::RemoveNearDuplicates(five, pictures, 2).after), "1:40 ");
    EXPECT_EQ(Order(edits::RemoveNearDuplicates(Selecting(five, {0, 1, 3, 4}), pictures, 2).after),
              "1:13* 3 4:17* ")
        << "what stands between parts them";
    EXPECT_EQ(
        Order(edits::RemoveNearDuplicates(Listing({30000, 30000, 30000, 0, 65535}), pictures, 2)
                  .after),
        "1:60000 3:30010 5:65535 ")
        << "no time is lost";
    EXPECT_EQ(Order(edits::RemoveNearDuplicates(five, {}, 254).after), Order(five));
}

/// The edits done to a plain list by other means.
class PlainEdits {
  public:
    explicit PlainEdits(PlainList list) : list_(std::move(list)) {}

    const PlainList& List() const { return list_; }
    std::vector<std::size_t> Chosen(std::size_t least) const {
        std::vector<std::size_t> chosen;
        for (std::size_t i = 0; i < list_.size(); ++i) {
            if (Selected() < least || list_[i].selected) {
                chosen.push_back(i);
            }
        }
        return chosen;
    }
    void MoveTo(std::size_t index) {
        const auto middle = list_.begin() + static_cast<std::ptrdiff_t>(index);
        std::stable_partition(list_.begin(), middle, [](const Plain& f) { return !f.selected; });
        std::stable_partition(middle, list_.end(), [](const Plain& f) { return f.selected; });
    }
    void MoveUp() {
        for (std::size_t i = 1; i < list_.size(); ++i) {
            if (list_[i].selected && !list_[i - 1].selected) {
                std::swap(list_[i], list_[i - 1]);
            }
        }
    }
    void Flip() { std::reverse(list_.begin(), list_.end()); }
    void Paste(const PlainList& frames) {
        std::size_t at = list_.size();
        for (std::size_t i = 0; i < list_.size(); ++i) {
            at = list_[i].selected ? i + 1 : at;
            list_[i].selected = list_[i].selected && frames.empty();
        }
        list_.insert(list_.begin() + static_cast<std::ptrdiff_t>(at), frames.begin(), frames.end());
    }
    void Reverse() {
        const auto chosen = Chosen(2);
        for (std::size_t i = 0; i < chosen.size() / 2; ++i) {
            std::swap(list_[chosen[i]], list_[chosen[chosen.size() - 1 - i]]);
        }
    }
    void KeepEveryNth(std::size_t step) {
        const auto chosen = Chosen(2);
        for (std::size_t i = chosen.size(); i-- > 0;) {
            if (i % step != 0) {
                list_.erase(list_.begin() + static_cast<std::ptrdiff_t>(chosen[i]));
            }
        }
    }
    void SetDelay(std::optional<int> delay) {
        for (const std::size_t i : Chosen(1)) {
            list_[i].delay = delay;
        }
    }

  private:
    std::size_t Selected() const {
        return static_cast<std::size_t>(std::count_if(
            list_.begin(), list_.end(), [](const Plain& frame) { return frame.selected; }));
    }
    PlainList list_;
};

TEST(FrameEdits, AnySequenceOfThemDoesWhatAPlainListDoes) {
    std::mt19937 random(5);
    const auto pick = [&](int below) { return static_cast<int>(random() % unsigned(below)); };
    Document document = Listing(std::vector<int>(12));
    FrameId last = 12;
    for (int round = 0; round < 3000; ++round) {
        const int count = document.frames.Count();
        for (int clicks = pick(4); clicks > 0 && count > 0; --clicks) {
            document = WithFrameClicked(document, pick(count), pick(3) != 0);
        }
        document = pick(12) == 0 ? WithNoneSelected(document) : document;
        PlainEdits plain(PlainOf(document));
        const FrameId tagged =
            document.frames.Tag() < 0 ? 0 : document.frames.At(document.frames.Tag()).id;
        const int what = pick(7);
        if (what == 0) {
            const int index = pick(count + 1);
            document = edits::MoveFramesTo(document, index).after;
            plain.MoveTo(static_cast<std::size_t>(index));
        } else if (what == 1) {
            document = edits::MoveFramesUp(document).after;
            plain.MoveUp();
        } else if (what == 2) {
            document = edits::MoveFramesDown(document).after;
            plain.Flip();
            plain.MoveUp();
            plain.Flip();
        } else if (what == 3 && count < 60) {
            QList<Frame> frames(pick(8));
            PlainList same;
            for (Frame& frame : frames) {
                frame.id = ++last;
                same.push_back({frame.id, std::nullopt, true});
            }
            document = edits::PasteFrames(document, frames).after;
            plain.Paste(same);
        } else if (what == 4) {
            document = edits::ReverseFrames(document).after;
            plain.Reverse();
        } else if (what == 5 && count > 20) {
            const int step = 1 + pick(4);
            document = edits::KeepEveryNth(document, step).after;
            plain.KeepEveryNth(static_cast<std::size_t>(step));
        } else {
            const auto delay = pick(2) == 0 ? std::nullopt : std::optional(1 + pick(300));
            document = edits::SetFrameDelay(document, delay).after;
            plain.SetDelay(delay);
        }
        ASSERT_EQ(PlainOf(document), plain.List()) << "round " << round << ", edit " << what;
        ASSERT_LT(document.frames.Tag(), std::max(document.frames.Count(), 1));
        if (what < 3 && tagged != 0) {
            ASSERT_EQ(document.frames.At(document.frames.Tag()).id, tagged) << "round " << round;
        }
    }
}

}  // namespace
}  // namespace lumirra
