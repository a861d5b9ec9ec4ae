#include "NetManager/Login.h"

#include <cstring>

#include "NetManager/RequestChannel.h"

int DoLogin(UserInfo* session, char* reply, int replySize)
{
    DoRequest(session, "&loginlog", reply, replySize, 0);
    std::memset(reply, 0,
                static_cast<std::size_t>(replySize)); // the announcement's reply is nobody's business
    return DoRequest(session, "", reply, replySize, 0);
}
