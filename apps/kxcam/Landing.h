// Where a file lands that the SDK fetches or records: not at its destination before it is whole. The SDK makes fetched files
// twice as long as what the camera sent, with zero bytes for the rest; those are cut off.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "Console.h"

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

/// A directory within another one, for files that the library names by itself. It is gone with this object and all that is
/// in it.
class LandingDirectory
{
public:
    /// @param destination  the directory where the files go in the end; empty: the working directory
    ///
    /// A Failure when it can not be made.
    explicit LandingDirectory(const std::filesystem::path& destination);
    ~LandingDirectory();
    LandingDirectory(const LandingDirectory&) = delete;
    LandingDirectory& operator=(const LandingDirectory&) = delete;

    const std::string& path() const { return path_; }

    /// Its files, in the order of their names.
    std::vector<std::filesystem::path> files() const;

    /// Cuts the one file in it to its body and moves it to the destination; where it is then.
    std::filesystem::path complete();

    /// Moves a file to where the person wants it, or, for an empty name, to the destination under a name like its own that
    /// is free there. Where it is then; a Failure tells where it is when it can not be moved.
    std::filesystem::path deliver(const std::filesystem::path& file, const std::filesystem::path& wanted);

private:
    std::filesystem::path destination_;
    std::string path_;
    bool stays_ = false;
};

/// The directory that a file is to lie in. A Failure when the file is a directory itself.
std::filesystem::path directoryFor(const std::filesystem::path& file);

/// Tells of a file that is there now.
void reportSaved(const std::filesystem::path& file, std::uint64_t bytes, bool json, Console& console);

} // namespace kxcam
