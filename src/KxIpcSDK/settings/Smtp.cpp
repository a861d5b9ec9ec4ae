// E-mail.
#include <KxIpcSDK/KxNetwork.h>

#include "KxIpcSDK/CameraCall.h"

namespace
{

// The bits of smtpauth where it travels as two flags.
enum SmtpSecurity
{
    Tls = 1,
    Ssl = 2
};

/// True for exactly 1, not for any other number.
bool isOn(const OkReply& reply, const char* key)
{
    int flag = 0;
    return reply.number(key, flag) && flag == 1;
}

} // namespace

int Kx_Ipc_GetSMTP(long userId, SmtpInfo* info)
{
    CameraCall call(userId, info);
    const OkReply reply =
        call.get("&paratest=smtpuser&paratest=smtppwd&paratest=smtpsender&paratest=smtpip&paratest=smtpport"
                 "&paratest=emailuser&paratest=smtpauth&paratest=smtpencryssl&paratest=smtpencrytls"
                 "&paratest=smtpenable");
    if (!reply)
        return -1;
    reply.text("smtpuser", info->smtpuser);
    reply.text("smtppwd", info->smtppwd);
    reply.text("smtpsender", info->smtpsender);
    reply.text("smtpip", info->smtpip);
    reply.number("smtpport", info->smtpport);
    reply.text("emailuser", info->emailuser);
    if (!reply.number("smtpenable", info->smtpenable))
        info->smtpenable = 1; // cameras that lack the switch always send mail
    if (reply.number("smtpauth", info->smtpauth))
        return 0;
    if (isOn(reply, "smtpencryssl"))
        info->smtpauth = Ssl;
    else if (isOn(reply, "smtpencrytls"))
        info->smtpauth = Tls;
    return 0;
}

int Kx_Ipc_SetSMTP(long userId, const SmtpInfo* info)
{
    CameraCall call(userId, info);
    const auto family = call.chipFamily();
    if (!family)
        return -1;
    Query query;
    query.text("smtpuser", info->smtpuser);
    query.text("smtppwd", info->smtppwd);
    query.text("smtpsender", info->smtpsender);
    query.text("smtpip", info->smtpip);
    query.number("smtpport", info->smtpport);
    query.text("emailuser", info->emailuser);
    if (*family == ChipFamily::Ti) {
        query.number("smtpauth", info->smtpauth);
    } else {
        query.number("smtpencryssl", (info->smtpauth & Ssl) != 0 ? 1 : 0);
        query.number("smtpencrytls", (info->smtpauth & Tls) != 0 ? 1 : 0);
    }
    return call.set(query);
}

int Kx_Ipc_TestSMTP(long userId)
{
    CameraCall call(userId);
    const OkReply reply = call.get("&testsmtp");
    if (!reply)
        return -1;
    return reply.contains("OK testsmtp") ? 0 : 1;
}
