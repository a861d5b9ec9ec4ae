// How live video becomes pictures: as early as can be, and none that is damaged.
#include <algorithm>
#include <future>
#include <map>

#include "StreamMedia.h"
#include "StreamTest.h"
#include "ipcctl/AnnexB.h"
#include "ipcctl/FrameAssembler.h"
#include "ipcctl/H264Headers.h"
#include "ipcctl/VideoFeed.h"

namespace
{

using Picture = std::vector<std::uint8_t>; // its brightness
using Piece = std::vector<std::uint8_t>;   // as RTP carries it

constexpr std::size_t largestPiece = 600;

Picture pictureOf(const AVFrame& frame)
{
    Picture picture;
    for (int y = 0; y < frame.height; ++y) {
        const std::uint8_t* const row = frame.data[0] + y * frame.linesize[0];
        picture.insert(picture.end(), row, row + frame.width);
    }
    return picture;
}

/// The units of a frame in their pieces: of each, the first one begins with a start code.
std::vector<Piece> piecesOf(const AVPacket& frame, std::size_t largest)
{
    std::vector<Piece> pieces;
    Bytes rest = bytesOf(frame.data, frame.size);
    for (Bytes unit = nextUnit(rest); !unit.empty();) {
        const Bytes next = nextUnit(rest);
        std::size_t size = unit.size() - (next.empty() ? 0 : next.size() + 3);
        while (size > 1 && unit[size - 1] == 0) // the next one's
            --size;
        Piece piece{0, 0, 0, 1, unit[0]};
        for (std::size_t at = 1; at < size; at += largest) {
            const auto part = unit.subspan(at, std::min(largest, size - at));
            piece.insert(piece.end(), part.begin(), part.end());
            pieces.push_back(std::exchange(piece, {}));
        }
        unit = next;
    }
    return pieces;
}

std::vector<Piece> piecesOf(const Media& video, int frame, std::size_t largest = largestPiece)
{
    return piecesOf(*video.packets[static_cast<std::size_t>(frame)], largest);
}

/// Takes pieces as a stream's reader does, and keeps the pictures by the frame that they came with.
class Receiver : public FrameSink
{
public:
    explicit Receiver(const Media& video)
    {
        EXPECT_TRUE(frames_.open(*video.parameters));
        EXPECT_TRUE(feed.begin(*video.parameters));
        feed.attach(std::shared_ptr<Receiver>(std::shared_ptr<void>(), this));
    }

    void take(int frame, const Piece& piece)
    {
        frame_ = frame;
        const PacketPtr packet(av_packet_alloc());
        av_new_packet(packet.get(), static_cast<int>(piece.size()));
        std::ranges::copy(piece, packet->data);
        packet->pts = frame * 40;
        frames_.take(*packet, takers_);
    }
    void take(int frame, const std::vector<Piece>& pieces)
    {
        for (const Piece& piece : pieces)
            take(frame, piece);
    }

    bool wantsFrames() const override { return wants; }
    void takeFrame(const AVFrame& frame) override { pictures[frame_] = pictureOf(frame); }

    bool wants = true;
    std::map<int, Picture> pictures;
    StreamCounters counters;
    Backlog backlog{Backlog::Clock::now()};
    std::atomic<bool> stopped{false};
    VideoFeed feed{std::make_shared<CallBacks>(nullptr), counters, backlog, stopped};

private:
    FrameAssembler frames_;
    int frame_ = 0;
    const FrameAssembler::Takers takers_{.frame = [this](const AVPacket& frame) { feed.take(frame, 25); },
                                         .wantsUnit = [this] { return feed.beginUnit(); },
                                         .unit = [this](const AVPacket& unit) { feed.takeUnit(unit); },
                                         .startOver = [this] { feed.startOver(); }};
};

struct Encoding
{
    const char* name;
    const char* parameters;
    int delay = 0; // in frames, as pictures come in another order
};

class LiveDecoderTest : public testing::TestWithParam<Encoding>
{
protected:
    static constexpr int frames = 60;
    static constexpr int keyDistance = 20;

    std::vector<Piece> pieces(int frame) const { return piecesOf(video, frame); }

    const Media video = encodeVideo({.width = 640,
                                     .height = 480,
                                     .frames = frames,
                                     .keyDistance = keyDistance,
                                     .parameters = GetParam().parameters});
};

/// Where each picture comes with its own frame, so that it can be told which one it is.
class LiveLossTest : public LiveDecoderTest
{
};

/// The pictures of so many frames when nothing happens to them.
std::map<int, Picture> undisturbed(const Media& video, int count)
{
    Receiver receiver(video);
    for (int i = 0; i < count; ++i)
        receiver.take(i, piecesOf(video, i));
    return receiver.pictures;
}

const auto inOrder = testing::Values(Encoding{"OneSlice", ""}, Encoding{"Arithmetic", "cabac=1"},
                                     Encoding{"Slices", "slices=5"}, Encoding{"Interlaced", "tff=1:slices=2"},
                                     Encoding{"Refreshed", "intra-refresh=1:bframes=0"});

INSTANTIATE_TEST_SUITE_P(InOrder, LiveDecoderTest, inOrder, nameOf<Encoding>);
INSTANTIATE_TEST_SUITE_P(Others, LiveDecoderTest,
                         testing::Values(Encoding{"Reordered", "bframes=2:b-adapt=0", 2}), nameOf<Encoding>);
INSTANTIATE_TEST_SUITE_P(InOrder, LiveLossTest, inOrder, nameOf<Encoding>);

TEST_P(LiveDecoderTest, ShowsAPictureBeforeTheNextFrameBegins)
{
    Receiver receiver(video);
    for (int i = 0; i < frames; ++i) {
        receiver.take(i, pieces(i));
        EXPECT_EQ(receiver.pictures.count(i), i >= GetParam().delay ? 1u : 0u) << i;
    }
    EXPECT_EQ(receiver.counters.framesDropped, 0);
}

/// Loses something of a frame in the middle, of a key frame or another: all, or one piece.
TEST_P(LiveLossTest, ShowsNothingThatRefersToWhatWasLost)
{
    auto usual = undisturbed(video, frames);
    for (const int hit : {keyDistance, keyDistance + 5})
        for (int lost = -1; lost < static_cast<int>(pieces(hit).size()); ++lost) {
            constexpr int message = 6; // a unit that pictures do without
            std::vector<Piece> rest = pieces(hit);
            if (lost >= 0 && (rest[static_cast<std::size_t>(lost)][4] & 0x1F) == message)
                continue;
            SCOPED_TRACE(testing::Message() << "piece " << lost << " of frame " << hit);
            lost < 0 ? rest.clear() : void(rest.erase(rest.begin() + lost));
            Receiver receiver(video);
            for (int i = 0; i < frames; ++i)
                receiver.take(i, i == hit ? rest : pieces(i));
            for (const auto& [number, picture] : receiver.pictures)
                EXPECT_TRUE(picture == usual[number]) << number;
            EXPECT_EQ(receiver.pictures.count(hit - 1), 1u);
            EXPECT_EQ(receiver.pictures.count(frames - 1), 1u) << "it goes on";
            const auto shown = static_cast<std::int64_t>(receiver.pictures.size());
            EXPECT_GE(receiver.counters.framesDropped,
                      frames - shown - 1); // without the one of which nothing is left
            EXPECT_LE(receiver.counters.framesDropped, frames - shown);
            EXPECT_GE(receiver.counters.framesDropped, 2 * keyDistance - hit - 1);
        }
}

/// Pictures are wanted from some piece of a frame on: its first units may have gone by.
TEST_P(LiveLossTest, BeginsWithinAFrame)
{
    constexpr int some = 8;
    auto usual = undisturbed(video, some);
    for (const int first : {0, 3})
        for (std::size_t begin = 0; begin < pieces(first).size(); ++begin) {
            SCOPED_TRACE(testing::Message() << "from piece " << begin << " of frame " << first);
            Receiver receiver(video);
            receiver.wants = false;
            for (int i = 0; i < some; ++i) {
                const std::vector<Piece> all = pieces(i);
                for (std::size_t piece = 0; piece < all.size(); ++piece) {
                    receiver.wants |= i == first && piece == begin;
                    receiver.take(i, all[piece]);
                }
            }
            for (int i = first + 1; i < some; ++i)
                EXPECT_TRUE(receiver.pictures[i] == usual[i]) << i;
            EXPECT_EQ(receiver.counters.framesDropped, 0);
        }
}

/// Fragments of a size that does not tell which is the last: pictures come a frame later then, but they come, as they are.
TEST(VideoFeedTest, ShowsWhatIsFragmentedInAnotherWay)
{
    for (const std::ptrdiff_t first : {520, 90}) {
        const Media video = encodeVideo(
            {.width = 320, .height = 240, .frames = 20, .parameters = "slices=4", .detailed = true});
        auto usual = undisturbed(video, 20);
        Receiver receiver(video);
        for (int i = 0; i < 20; ++i) {
            for (const Piece& unit : piecesOf(video, i, 4000))
                for (auto at = unit.begin(); at != unit.end();) {
                    const auto end =
                        at + std::min(unit.end() - at, at == unit.begin() ? first : std::ptrdiff_t{100});
                    receiver.take(i, Piece(std::exchange(at, end), end));
                }
        }
        EXPECT_EQ(receiver.pictures.size(), 19u);
        for (const auto& [number, picture] : receiver.pictures)
            EXPECT_TRUE(picture == usual[number - 1]) << number;
        EXPECT_EQ(receiver.counters.framesDropped, 0);
    }
}

/// A slice that has lost its beginning looks like that, too, but seldom comes.
TEST(VideoFeedTest, ShowsPicturesAtOnceAlsoAfterTheBeginningOfASliceWasLost)
{
    constexpr int frames = 50;
    constexpr int hit = 40;
    const Media video =
        encodeVideo({.frames = frames, .keyDistance = 1, .parameters = "slices=2", .detailed = true});
    Receiver receiver(video);
    for (int i = 0; i < frames; ++i) {
        std::vector<Piece> pieces = piecesOf(video, i);
        const auto isBeginning = [](Bytes piece) { return !nextUnit(piece).empty(); };
        const auto last = std::find_if(pieces.rbegin(), pieces.rend(), isBeginning);
        if (i == hit)
            pieces.erase(std::prev(last.base()));
        receiver.take(i, pieces);
        EXPECT_EQ(receiver.pictures.count(i), i == hit ? 0u : 1u) << i;
    }
}

/// Larger than units are put together, smaller than frames are.
TEST(VideoFeedTest, ShowsFramesOfHugeUnits)
{
    constexpr int frames = 2;
    constexpr std::size_t filling = 9 << 20;
    const Media video = encodeVideo({.frames = frames});
    Receiver receiver(video);
    for (int i = 0; i < frames; ++i) {
        AVPacket& frame = *video.packets[static_cast<std::size_t>(i)];
        const auto size = static_cast<std::size_t>(frame.size);
        ASSERT_EQ(av_grow_packet(&frame, filling), 0);
        for (std::size_t at = 0; at < filling; ++at)
            frame.data[size + at] = at % 3 == 2 ? 3 : 0; // means nothing
        receiver.take(i, piecesOf(frame, 50'000));
    }
    EXPECT_EQ(receiver.pictures.size(), frames - 1u) << "the last one is not known to be whole";
    EXPECT_EQ(receiver.counters.framesDropped, 0);
}

/// A scaling list with the largest difference that can be written: nothing must overflow.
TEST(H264HeadersTest, TakeAnyNumbers)
{
    static constexpr std::uint8_t set[] = {0x67, 0x64, 0x00, 0x28, 0xAD, 0x80, 0x00,
                                           0x00, 0x03, 0x00, 0xFF, 0xFF, 0xFF, 0xFE};
    EXPECT_FALSE(readSequenceHeader(set));
}

/// A snapshot of a stream that has just been opened, in the middle of a refresh.
TEST(VideoFeedTest, WaitsForAPictureWhereWhatIsThereYieldsNone)
{
    constexpr int frames = 100;
    const Media video =
        encodeVideo({.frames = frames, .keyDistance = 20, .parameters = "intra-refresh=1:bframes=0"});
    Receiver receiver(video);
    receiver.wants = false;
    const auto take = [&](int frame) { receiver.take(frame, piecesOf(video, frame)); };
    for (int i = 21; i < 43; ++i)
        take(i);
    auto latest = std::async(std::launch::async, [&] { return receiver.feed.latestFrame(5s); });
    for (int i = 43; i < frames && latest.wait_for(10ms) != std::future_status::ready; ++i)
        take(i);
    EXPECT_NE(latest.get(), nullptr);
}

/// Too far from its key frame to be decoded when it is asked for.
TEST(VideoFeedTest, HasTheLatestPictureHoweverRareKeyFramesAre)
{
    constexpr int frames = 400;
    const Media video = encodeVideo({.frames = frames, .keyDistance = 1000});
    Receiver receiver(video);
    receiver.wants = false;
    for (int i = 0; i < frames; ++i) {
        receiver.take(i, piecesOf(video, i));
        if (i % 50 != 49)
            continue;
        SCOPED_TRACE(i);
        const FramePtr latest = receiver.feed.latestFrame(0ms);
        ASSERT_NE(latest, nullptr);
        EXPECT_GE(readNumber(latest->data[0], latest->linesize[0], latest->width, latest->height), i - 1);
    }
    EXPECT_TRUE(receiver.pictures.empty());
    receiver.feed.end();
    EXPECT_EQ(receiver.feed.latestFrame(0ms), nullptr) << "it has broken off";
}

} // namespace
