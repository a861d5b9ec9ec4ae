#include "ZrThread/ZrPipe.h"

#include <unistd.h>

#include "ZrThread/ZrMemory.h"

ZrPipe* zr_pipe_init()
{
    int ends[2];
    auto* handle = static_cast<ZrPipe*>(zr_malloc(sizeof(ZrPipe)));
    if (handle != nullptr && pipe(ends) == 0) {
        *handle = {.readEnd = ends[0], .writeEnd = ends[1]};
        return handle;
    }
    zr_free(handle);
    return nullptr;
}

int zr_pipe_destroy(ZrPipe* pipe)
{
    if (pipe == nullptr)
        return -1;
    close(pipe->readEnd);
    close(pipe->writeEnd);
    zr_free(pipe);
    return 0;
}

int zr_pipe_write(ZrPipe* pipe, const void* bytes, std::size_t length)
{
    return pipe == nullptr ? -1 : static_cast<int>(write(pipe->writeEnd, bytes, length));
}

int zr_pipe_read(ZrPipe* pipe, void* bytes, std::size_t length)
{
    return pipe == nullptr ? -1 : static_cast<int>(read(pipe->readEnd, bytes, length));
}

int zr_pipe_get_read_descr(const ZrPipe* pipe)
{
    return pipe == nullptr ? -1 : pipe->readEnd;
}
