// The numbers in an AVI file's header that are known only while it grows.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "ipcctl/Av.h"

class SavedFile;

/// Keeps the header true beside the muxer, which completes it at the end only: a recording that is cut short, because the
/// process was killed or the disk is full, can be played to its end all the same. The muxer takes the rate from
/// the header too, where it was written before it could be measured.
class AviHeader
{
public:
    /// Finds the places in a file whose header the muxer has written, the picture's track first; false when it has not.
    bool find(const SavedFile& file);

    /// Frames a second.
    bool setRate(SavedFile& file, AVRational rate) const;
    /// Of each track: frames, or what the track's sound is counted in.
    bool setLengths(SavedFile& file, const std::vector<std::int64_t>& lengths) const;
    /// Tells that the file ends here; left to the muxer once the file has more than one segment.
    bool setSize(SavedFile& file, std::int64_t size) const;

private:
    std::optional<std::int64_t> file_;  // where the main header begins
    std::vector<std::int64_t> tracks_;  // where those of the tracks begin
    std::optional<std::int64_t> media_; // where the list of frames begins
};
