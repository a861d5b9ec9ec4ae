#include "NetManager/LocalFile.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

const char* baseName(const char* path)
{
    const char* slash = std::strrchr(path, '/');
    return slash != nullptr ? slash + 1 : path;
}

// Without waiting: opening a named pipe that nobody writes to would never end.
InputFile::InputFile(const char* path) : file_(::open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK))
{
    struct stat status = {};
    regular_ = file_ && ::fstat(file_.get(), &status) == 0 && S_ISREG(status.st_mode);
    size_ = static_cast<std::uint64_t>(status.st_size);
}

ssize_t InputFile::read(char* bytes, std::size_t size) const
{
    ssize_t count = -1;
    do
        count = ::read(file_.get(), bytes, size);
    while (count < 0 && errno == EINTR);
    return count;
}

// Without waiting, as above; whoever reads from a pipe might also go away.
OutputFile::OutputFile(const char* path)
    : file_(::open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NONBLOCK, 0666))
{
    struct stat status = {};
    good_ = file_ && ::fstat(file_.get(), &status) == 0 && !S_ISFIFO(status.st_mode);
}

bool OutputFile::write(std::string_view bytes)
{
    while (good_ && !bytes.empty()) {
        const ssize_t count = ::write(file_.get(), bytes.data(), bytes.size());
        if (count > 0)
            bytes.remove_prefix(static_cast<std::size_t>(count));
        else
            good_ = count < 0 && errno == EINTR;
    }
    return good_;
}

bool OutputFile::writeZeros(std::uint64_t count)
{
    static constexpr char zeros[4096] = {};
    while (good_ && count > 0) {
        const auto piece = std::min<std::uint64_t>(count, sizeof zeros);
        write({zeros, static_cast<std::size_t>(piece)});
        count -= piece;
    }
    return good_;
}

bool OutputFile::close()
{
    good_ = ::close(file_.release()) == 0 && good_;
    return good_;
}
