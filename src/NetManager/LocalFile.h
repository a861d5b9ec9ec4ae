// The local end of a transfer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include <sys/types.h>

#include "NetManager/Socket.h"

/// The text behind the last "/" of a path.
const char* baseName(const char* path);

/// A file to be sent. False when it can not be read or is none, a directory for one.
class InputFile
{
public:
    explicit InputFile(const char* path);

    explicit operator bool() const { return regular_; }
    /// As it was when the file was opened.
    std::uint64_t size() const { return size_; }
    /// The number of bytes read; 0 at the end, and -1.
    ssize_t read(char* bytes, std::size_t size) const;

private:
    FileDescriptor file_;
    bool regular_ = false;
    std::uint64_t size_ = 0;
};

/// A file being received; made or emptied by the constructor. False for a named pipe; once false, it stays so.
class OutputFile
{
public:
    explicit OutputFile(const char* path);

    explicit operator bool() const { return good_; }
    bool write(std::string_view bytes);
    bool writeZeros(std::uint64_t count);
    /// False too when what was written turns out not to have reached the file.
    bool close();

private:
    FileDescriptor file_;
    bool good_ = false;
};
