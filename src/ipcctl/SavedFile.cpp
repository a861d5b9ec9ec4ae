#include "ipcctl/SavedFile.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <ctime>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr int mostNames = 10'000; // tried before one gives up

std::string pathOf(const std::string& directory, const std::string& name, int number, const char* extension)
{
    std::string path = directory;
    if (!path.empty() && !path.ends_with('/'))
        path += '/';
    path += name;
    if (number > 1)
        path += '_' + std::to_string(number);
    return path + extension;
}

/// Tries a step with one path after the other, until it succeeds or fails for another reason than that the file exists.
template <typename Step>
bool withFreePath(const std::string& directory, const std::string& name, const char* extension, Step step)
{
    for (int number = 1; number <= mostNames; ++number) {
        if (step(pathOf(directory, name, number, extension)))
            return true;
        if (errno != EEXIST)
            return false;
    }
    return false;
}

/// Not every file system can refuse to replace by itself.
bool renameToNew(const std::string& from, const std::string& to)
{
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return true;
    if (errno != EINVAL && errno != ENOSYS)
        return false;
    if (::access(to.c_str(), F_OK) == 0) {
        errno = EEXIST;
        return false;
    }
    return std::rename(from.c_str(), to.c_str()) == 0;
}

} // namespace

std::string timeStamp(std::chrono::system_clock::time_point time)
{
    const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
    std::tm local = {};
    ::localtime_r(&seconds, &local);
    char text[32];
    const std::size_t size = std::strftime(text, sizeof text, "%Y%m%d_%H%M%S", &local);
    return {text, size};
}

std::string timeStampWithMilliseconds(std::chrono::system_clock::time_point time)
{
    const auto whole = std::chrono::floor<std::chrono::seconds>(time);
    const auto rest = std::chrono::floor<std::chrono::milliseconds>(time - whole).count();
    const std::string text = std::to_string(1000 + rest); // four digits, of which the last three count
    return timeStamp(whole) + '_' + text.substr(1);
}

SavedFile::~SavedFile()
{
    close();
}

bool SavedFile::create(const std::string& path)
{
    close();
    file_ = ::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (isOpen())
        path_ = path;
    return isOpen();
}

bool SavedFile::createIn(const std::string& directory, const std::string& name, const char* extension)
{
    return withFreePath(directory, name, extension, [this](const std::string& path) { return create(path); });
}

bool SavedFile::write(const void* bytes, std::size_t size)
{
    const char* rest = static_cast<const char*>(bytes);
    while (size > 0) {
        const ssize_t count = ::write(file_, rest, size);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        rest += count;
        size -= static_cast<std::size_t>(count);
    }
    return true;
}

bool SavedFile::writeAt(std::int64_t position, const void* bytes, std::size_t size)
{
    ssize_t count = -1;
    do
        count = ::pwrite(file_, bytes, size, position);
    while (count < 0 && errno == EINTR);
    return count == static_cast<ssize_t>(size);
}

std::size_t SavedFile::readAt(std::int64_t position, void* bytes, std::size_t size) const
{
    ssize_t count = -1;
    do
        count = ::pread(file_, bytes, size, position);
    while (count < 0 && errno == EINTR);
    return static_cast<std::size_t>(std::max<ssize_t>(count, 0));
}

std::int64_t SavedFile::seek(std::int64_t offset, int whence)
{
    return ::lseek(file_, offset, whence);
}

std::int64_t SavedFile::size() const
{
    struct stat status = {};
    return ::fstat(file_, &status) == 0 ? status.st_size : -1;
}

void SavedFile::truncate(std::int64_t size)
{
    if (::ftruncate(file_, size) != 0)
        return; // what is behind it stays
}

bool SavedFile::close()
{
    if (!isOpen())
        return false;
    const bool closed = ::close(file_) == 0;
    file_ = -1;
    return closed;
}

bool SavedFile::closeAs(const std::string& directory, const std::string& name, const char* extension)
{
    if (!close())
        return false;
    return withFreePath(directory, name, extension, [this](const std::string& path) {
        const bool moved = renameToNew(path_, path);
        if (moved)
            path_ = path;
        return moved;
    });
}

void SavedFile::discard()
{
    close();
    ::unlink(path_.c_str());
}
