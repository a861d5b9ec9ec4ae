// A disk that hangs: this program's writes to recordings and pictures are caught by the linker's option --wrap.
#pragma once

/// While there is one, they do not return.
class SlowDisk
{
public:
    SlowDisk();
    ~SlowDisk();
    SlowDisk(const SlowDisk&) = delete;
    SlowDisk& operator=(const SlowDisk&) = delete;

    /// How many writes hang.
    int caught() const;
};
