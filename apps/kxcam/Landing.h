// Where a file lands that the SDK fetches: not at its destination before it is whole. The SDK makes its files twice as long
// as what the camera sent, with zero bytes for the rest; those are cut off.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace kxcam
{

/// A file that bears its name with ".part" behind it until it is whole.
class PartFile
{
public:
    /// Makes the file. A Failure when it can not be written.
    explicit PartFile(const std::string& destination);
    /// Removes it when nothing has come.
    ~PartFile();
    PartFile(const PartFile&) = delete;
    PartFile& operator=(const PartFile&) = delete;

    const std::string& path() const { return path_; }

    /// How much is there of it.
    std::uint64_t size() const;

    /// Cuts it to the body that the camera sent.
    void cutTo(std::uint64_t bodySize) const;

    /// Gives it its name.
    void complete() const;

private:
    std::string destination_;
    std::string path_;
};

/// A directory within another one, gone with this object and all that is in it.
class LandingDirectory
{
public:
    /// A Failure when it can not be made.
    explicit LandingDirectory(const std::string& destination);
    ~LandingDirectory();
    LandingDirectory(const LandingDirectory&) = delete;
    LandingDirectory& operator=(const LandingDirectory&) = delete;

    const std::string& path() const { return path_; }

    /// Cuts the one file in it to its body and moves it to the destination; where it is then.
    std::filesystem::path complete() const;

private:
    std::string destination_;
    std::string path_;
};

} // namespace kxcam
