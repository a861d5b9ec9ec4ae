// The files that recordings and snapshots are saved in. None ever takes the place of another.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

/// "YYYYMMDD_hhmmss", local time.
std::string timeStamp(std::chrono::system_clock::time_point time);
/// "YYYYMMDD_hhmmss_mmm".
std::string timeStampWithMilliseconds(std::chrono::system_clock::time_point time);

/// A file that is being made.
class SavedFile
{
public:
    SavedFile() = default;
    ~SavedFile();
    SavedFile(const SavedFile&) = delete;
    SavedFile& operator=(const SavedFile&) = delete;

    /// False when it is there already or can not be made.
    bool create(const std::string& path);
    /// Makes "<directory>/<name><extension>" or, when there is one already, "<name>_2" and so on. An empty directory is
    /// the working directory.
    bool createIn(const std::string& directory, const std::string& name, const char* extension);

    const std::string& path() const { return path_; }
    bool isOpen() const { return file_ >= 0; }

    /// As the system's calls of these names, but for interruptions, and for writing all or failing.
    bool write(const void* bytes, std::size_t size);
    bool writeAt(std::int64_t position, const void* bytes, std::size_t size);
    std::size_t readAt(std::int64_t position, void* bytes, std::size_t size) const;
    std::int64_t seek(std::int64_t offset, int whence);
    std::int64_t size() const;
    void truncate(std::int64_t size);

    /// False when what was written turns out not to have reached the file.
    bool close();
    /// Closes it and moves it to "<directory>/<name><extension>", or a name as in createIn.
    bool closeAs(const std::string& directory, const std::string& name, const char* extension);
    /// Closes and removes it.
    void discard();

private:
    int file_ = -1;
    std::string path_;
};
