// The camera's memory card, and what it records.
#include <KxIpcSDK/KxStorage.h>

#include "KxIpcSDK/CameraCall.h"

namespace
{

constexpr std::size_t shortReply = 512;
using CardReply = Reply<OkStyle, shortReply, 128 + 1>;

/// Cameras tell sizes as numbers of 32 bits.
void readSize(const CardReply& reply, const char* key, std::int64_t& field)
{
    int size = 0;
    if (reply.number(key, size))
        field = size;
}

int command(long userId, const char* query)
{
    CameraCall call(userId);
    return call.get<CardReply>(query).received() ? 0 : -1;
}

} // namespace

int Kx_Ipc_GetSdCardInfo(long userId, SdCardInfo* info)
{
    CameraCall call(userId, info);
    const auto reply = call.get<CardReply>("&paratest=sdinsert&paratest=sdtotalsize&paratest=sdfreesize");
    if (!reply)
        return -1;
    reply.number("sdinsert", info->sdinsert);
    readSize(reply, "sdtotalsize", info->sdtotalsize);
    readSize(reply, "sdfreesize", info->sdfreesize);
    return 0;
}

int Kx_Ipc_MountSdCard(long userId)
{
    return command(userId, "&sdunmount=8"); // one key mounts, too
}

int Kx_Ipc_UnMountSdCard(long userId)
{
    return command(userId, "&sdunmount=1");
}

int Kx_Ipc_FormatSdCard(long userId)
{
    return command(userId, "&sdformat=1");
}

int Kx_Ipc_GetRecordConfig(long userId, RecordInfo* info)
{
    CameraCall call(userId, info);
    const OkReply reply =
        call.get("&paratest=productmodel&paratest=recordstoragetype&paratest=recordframetype"
                 "&paratest=nasrecordframetype&paratest=sdfilemaxsize&paratest=nasfilemaxsize"
                 "&paratest=deletesdoldfile&paratest=msfsprerecordtime");
    if (!reply)
        return -1;
    if (chipFamilyOf(reply) == ChipFamily::Ti) {
        info->recordstoragetype = 1; // which knows the memory card alone
        reply.number("sdfilemaxsize", info->sdfilemaxsize);
        reply.number("recordframetype", info->recordframetype);
        return 0;
    }
    reply.number("recordstoragetype", info->recordstoragetype);
    reply.number("sdfilemaxsize", info->sdfilemaxsize);
    reply.number("recordframetype", info->recordframetype);
    reply.number("nasfilemaxsize", info->nasfilemaxsize);
    reply.number("nasrecordframetype", info->nasrecordframetype);
    reply.number("deletesdoldfile", info->deletesdoldfile);
    reply.number("msfsprerecordtime", info->msfsprerecordtime);
    return 0;
}

int Kx_Ipc_SetRecordConfig(long userId, const RecordInfo* info)
{
    CameraCall call(userId, info);
    if (!call)
        return -1;
    Query query;
    query.add("page=sdrecordset");
    query.number("deletesdoldfile", static_cast<int>(info->deletesdoldfile));
    query.number("msfsprerecordtime", static_cast<int>(info->msfsprerecordtime));
    return call.set(query);
}
