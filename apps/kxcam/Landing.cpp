#include "Landing.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <system_error>

#include <stdlib.h>

#include <nlohmann/json.hpp>

#include "Amounts.h"
#include "Failure.h"
#include "Json.h"

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

void requireNoDirectory(const fs::path& file)
{
    std::error_code error;
    if (fs::is_directory(file, error))
        throw cannotWrite(file, std::strerror(EISDIR));
}

void move(const fs::path& path, const fs::path& destination)
{
    std::error_code error;
    fs::rename(path, destination, error);
    if (error)
        throw Failure(ExitCode::ThisComputer, "what was saved is in '" + printable(path.string()) +
                                                  "': it can not be moved to '" +
                                                  printable(destination.string()) + "': " + error.message());
}

/// The name itself, or with a number behind it: "20240501_080000_2.avi".
fs::path freeName(const fs::path& file)
{
    fs::path name = file;
    for (int number = 2; fs::exists(name); ++number)
        name.replace_filename(file.stem().string() + "_" + std::to_string(number) +
                              file.extension().string());
    return name;
}

} // namespace

PartFile::PartFile(const std::string& destination) : destination_(destination), path_(destination + ".part")
{
    requireNoDirectory(destination);
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

LandingDirectory::LandingDirectory(const fs::path& destination)
    : destination_(destination), path_(destination / "kxcam.XXXXXX")
{
    if (mkdtemp(path_.data()) == nullptr)
        throw cannotWrite(destination.empty() ? "." : destination, std::strerror(errno));
}

LandingDirectory::~LandingDirectory()
{
    std::error_code error;
    if (!stays_)
        fs::remove_all(path_, error);
}

std::vector<fs::path> LandingDirectory::files() const
{
    std::error_code error;
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(path_, error))
        files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

fs::path LandingDirectory::complete()
{
    const std::vector<fs::path> landed = files();
    if (landed.empty())
        throw cannotWrite(path_, "another program changes it");
    const fs::path& file = landed.front();
    cut(file, fs::file_size(file) / 2);
    return deliver(file, destination_ / file.filename());
}

fs::path LandingDirectory::deliver(const fs::path& file, const fs::path& wanted)
{
    const fs::path target = wanted.empty() ? freeName(destination_ / file.filename()) : wanted;
    stays_ = true; // should it not be possible
    move(file, target);
    stays_ = false;
    return target;
}

fs::path directoryFor(const fs::path& file)
{
    requireNoDirectory(file);
    return file.parent_path();
}

void reportSaved(const fs::path& file, std::uint64_t bytes, bool json, Console& console)
{
    if (json)
        printJson({{"saved", file.string()}, {"bytes", bytes}}, console);
    else
        console.print("saved " + printable(file.string()) + ", " + sizeText(bytes) + "\n");
}

} // namespace kxcam
