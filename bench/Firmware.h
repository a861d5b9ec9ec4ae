// A firmware of nine megabytes to send to cameras.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <stdexcept>

#include <unistd.h>

/// A file of zeros, there until the end.
class Firmware
{
public:
    static constexpr std::size_t size = 9'000'000;

    Firmware()
    {
        const int file = ::mkstemp(path_);
        if (file < 0 || ::ftruncate(file, size) != 0)
            throw std::runtime_error("no room for a firmware");
        ::close(file);
    }
    ~Firmware() { ::unlink(path_); }
    Firmware(const Firmware&) = delete;
    Firmware& operator=(const Firmware&) = delete;

    const char* path() const { return path_; }

private:
    char path_[32] = "/tmp/kx_bench_XXXXXX";
};
