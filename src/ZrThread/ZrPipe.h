// An anonymous pipe.
#pragma once

#include <cstddef>
#include <cstdint>

struct ZrPipe
{
    std::int32_t readEnd;
    std::int32_t writeEnd;
};

extern "C" {

ZrPipe* zr_pipe_init();            ///< null when the system has none left
int zr_pipe_destroy(ZrPipe* pipe); ///< closes both ends and frees the handle; 0, -1 for null
/// The system's result: the bytes moved, or -1. Also -1 for null.
int zr_pipe_write(ZrPipe* pipe, const void* bytes, std::size_t length);
int zr_pipe_read(ZrPipe* pipe, void* bytes, std::size_t length); ///< as zr_pipe_write
int zr_pipe_get_read_descr(const ZrPipe* pipe);                  ///< the descriptor to read from; -1 for null
}
