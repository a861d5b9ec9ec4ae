#include "KxIpcSDK/ChipFamily.h"

#include "NetManager/ReplyFields.h"

ChipFamily chipFamilyOf(char* model)
{
    if (IsTiIPC(model) != 0)
        return ChipFamily::Ti;
    return IsHisiIPC(model) != 0 ? ChipFamily::Hisi : ChipFamily::A;
}

ChipFamily chipFamilyOf(const OkReply& reply)
{
    char model[64] = {};
    reply.text("productmodel", model);
    return chipFamilyOf(model);
}
