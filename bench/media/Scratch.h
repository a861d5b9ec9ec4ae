// Room for files of a measurement.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

/// A directory, gone at the end with all that is in it.
class Scratch
{
public:
    Scratch()
    {
        std::string pattern = std::filesystem::temp_directory_path() / "kx_bench_XXXXXX";
        if (::mkdtemp(pattern.data()) == nullptr)
            throw std::runtime_error("no room for files");
        path_ = pattern;
    }
    ~Scratch()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

    const std::string& path() const { return path_; }

private:
    std::string path_;
};
