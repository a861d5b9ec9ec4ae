#include "Landing.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <system_error>

#include <stdlib.h>

#include "Console.h"
#include "Failure.h"

namespace kxcam
{
namespace
{

namespace fs = std::filesystem;

Failure cannotWrite(const std::string& path, const std::string& why)
{
    return {ExitCode::ThisComputer, "can not write '" + printable(path) + "': " + why};
}

void cut(const std::string& path, std::uint64_t size)
{
    std::error_code error;
    fs::resize_file(path, size, error);
    if (error)
        throw cannotWrite(path, error.message());
}

void move(const std::string& path, const std::string& destination)
{
    std::error_code error;
    fs::rename(path, destination, error);
    if (error)
        throw cannotWrite(destination, error.message());
}

} // namespace

PartFile::PartFile(const std::string& destination) : destination_(destination), path_(destination + ".part")
{
    if (fs::is_directory(destination))
        throw cannotWrite(destination, std::strerror(EISDIR));
    if (!std::ofstream(path_))
        throw cannotWrite(path_, std::strerror(errno));
}

PartFile::~PartFile()
{
    std::error_code error;
    if (size() == 0)
        fs::remove(path_, error);
}

std::uint64_t PartFile::size() const
{
    std::error_code error;
    const std::uintmax_t size = fs::file_size(path_, error);
    return error ? 0 : size;
}

void PartFile::cutTo(std::uint64_t bodySize) const
{
    if (size() != 2 * bodySize)
        throw cannotWrite(path_, "another program changes it");
    cut(path_, bodySize);
}

void PartFile::complete() const
{
    move(path_, destination_);
}

LandingDirectory::LandingDirectory(const std::string& destination)
    : destination_(destination), path_(destination + "/kxcam.XXXXXX")
{
    if (mkdtemp(path_.data()) == nullptr)
        throw cannotWrite(destination, std::strerror(errno));
}

LandingDirectory::~LandingDirectory()
{
    std::error_code error;
    fs::remove_all(path_, error);
}

fs::path LandingDirectory::complete() const
{
    const fs::directory_iterator file(path_);
    if (file == fs::directory_iterator())
        throw cannotWrite(path_, "another program changes it");
    const fs::path destination = destination_ / file->path().filename();
    cut(file->path(), file->file_size() / 2);
    move(file->path(), destination);
    return destination;
}

} // namespace kxcam
