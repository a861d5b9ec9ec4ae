#include "ipcctl/AviHeader.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <string_view>

#include "ipcctl/SavedFile.h"

namespace
{

constexpr std::size_t longestHeader = 16'384;
constexpr std::size_t chunkHead = 8;            // name and size
constexpr std::size_t listHead = chunkHead + 4; // and kind
constexpr std::int64_t segment = 1'000'000'000; // the muxer begins another one a little later

// Within the main header and that of a track.
constexpr std::int64_t microsecondsPerFrame = 0;
constexpr std::int64_t totalFrames = 16;
constexpr std::int64_t scale = 20;
constexpr std::int64_t rateOfScale = 24;
constexpr std::int64_t length = 32;

std::uint32_t numberAt(std::string_view bytes, std::size_t position)
{
    std::uint32_t number = 0;
    for (std::size_t i = 4; i-- > 0;)
        number = number << 8 | static_cast<unsigned char>(bytes[position + i]);
    return number;
}

bool writeNumber(SavedFile& file, std::int64_t position, std::int64_t value)
{
    const auto number = static_cast<std::uint32_t>(std::clamp<std::int64_t>(value, 0, UINT32_MAX));
    std::array<unsigned char, 4> bytes;
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<unsigned char>(number >> (8 * i));
    return file.writeAt(position, bytes.data(), bytes.size());
}

} // namespace

bool AviHeader::find(const SavedFile& file)
{
    std::array<char, longestHeader> buffer;
    const std::string_view bytes(buffer.data(), file.readAt(0, buffer.data(), buffer.size()));
    std::size_t position = listHead; // behind that of the file
    while (!media_ && position + listHead <= bytes.size()) {
        const std::string_view name = bytes.substr(position, 4);
        const std::string_view kind = bytes.substr(position + chunkHead, 4);
        const auto content = static_cast<std::int64_t>(position + chunkHead);
        if (name == "avih")
            file_ = content;
        else if (name == "strh")
            tracks_.push_back(content);
        else if (name == "LIST" && kind == "movi")
            media_ = content;
        const bool enter = name == "LIST" && (kind == "hdrl" || kind == "strl");
        const std::size_t size = numberAt(bytes, position + 4);
        position += enter ? listHead : chunkHead + size + size % 2;
    }
    return file_ && media_ && !tracks_.empty();
}

bool AviHeader::setRate(SavedFile& file, AVRational rate) const
{
    const auto period = static_cast<std::int64_t>(1e6 / av_q2d(rate));
    return writeNumber(file, *file_ + microsecondsPerFrame, period) &&
           writeNumber(file, tracks_.front() + scale, rate.den) &&
           writeNumber(file, tracks_.front() + rateOfScale, rate.num);
}

bool AviHeader::setLengths(SavedFile& file, const std::vector<std::int64_t>& lengths) const
{
    bool good = writeNumber(file, *file_ + totalFrames, lengths.front());
    for (std::size_t track = 0; track < std::min(lengths.size(), tracks_.size()); ++track)
        good = good && writeNumber(file, tracks_[track] + length, lengths[track]);
    return good;
}

bool AviHeader::setSize(SavedFile& file, std::int64_t size) const
{
    if (size > segment)
        return true;
    return writeNumber(file, 4, size - static_cast<std::int64_t>(chunkHead)) &&
           writeNumber(file, *media_ - 4, size - *media_);
}
