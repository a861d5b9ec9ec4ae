// Wi-Fi client.
#include <KxIpcSDK/KxNetwork.h>

#include "KxIpcSDK/CameraCall.h"

namespace
{

enum WifiEncryption
{
    Wep = 1,
    FirstWpa = 2,
    LastWpa = 4
};

constexpr int wpsByRouter = 2; // connection type: the router's name and PIN

void addWep(Query& query, const WifiInfo& info)
{
    query.number("wepauthtype", info.wepauthtype);
    query.number("wepkeylength", info.wepkeylength);
    query.number("wepkeyformat", info.wepkeyformat);
    query.number("wepkeyindex", info.wepkeyindex);
    switch (info.wepkeyindex) { // only the active key travels
    case 0:
        return query.text("wepkey1", info.wepkey1);
    case 1:
        return query.text("wepkey2", info.wepkey2);
    case 2:
        return query.text("wepkey3", info.wepkey3);
    case 3:
        return query.text("wepkey4", info.wepkey4);
    default:
        return;
    }
}

void addWps(Query& query, const WifiInfo& info)
{
    query.number("wpsenable", info.wpsenable);
    if (info.wpsenable == 0)
        return;
    query.number("wpsconntype", info.wpsconntype);
    if (info.wpsconntype != wpsByRouter)
        return;
    query.text("wpsroutessid", info.wpsroutessid);
    query.text("wpsroutepin", info.wpsroutepin);
}

void addAddress(Query& query, const WifiInfo& info)
{
    query.number("wifidhcp", info.wifidhcp);
    if (info.wifidhcp != 0)
        return;
    query.text("wifinip", info.wifinip);
    query.text("wifinmask", info.wifinmask);
    query.text("wifigway", info.wifigway);
    query.text("wifidns", info.wifidns);
}

} // namespace

int Kx_Ipc_SearchWifiList(long /*userId*/, void* /*list*/)
{
    return 0;
}

int Kx_Ipc_GetWifiInfo(long userId, WifiInfo* info)
{
    CameraCall call(userId, info);
    // The tabs belong to the query: cameras have always been asked so.
    const OkReply reply = call.get(
        "&paratest=wifissid&paratest=wifimode&paratest=wifiencrypt"
        "\t\t&paratest=wepauthtype&paratest=wepkeylength&paratest=wepkeyformat&paratest=wepkeyindex"
        "&paratest=wepkey1&paratest=wepkey2&paratest=wepkey3&paratest=wepkey4"
        "\t\t&paratest=wpapairwise&paratest=wpakey"
        "\t\t&paratest=wpsenable&paratest=wpspincode&paratest=wpsconntype&paratest=wpsroutessid"
        "&paratest=wpsroutepin"
        "\t\t&paratest=wifidhcp&paratest=wifinip&paratest=wifinmask&paratest=wifigway&paratest=wifidns");
    if (!reply)
        return -1;
    reply.text("wifissid", info->wifissid);
    reply.number("wifimode", info->wifimode);
    reply.number("wifiencrypt", info->wifiencrypt);
    reply.number("wepauthtype", info->wepauthtype);
    reply.number("wepkeylength", info->wepkeylength);
    reply.number("wepkeyformat", info->wepkeyformat);
    reply.number("wepkeyindex", info->wepkeyindex);
    reply.text("wepkey1", info->wepkey1);
    reply.text("wepkey2", info->wepkey2);
    reply.text("wepkey3", info->wepkey3);
    reply.text("wepkey4", info->wepkey4);
    reply.number("wpapairwise", info->wpapairwise);
    reply.text("wpakey", info->wpakey);
    reply.number("wpsenable", info->wpsenable);
    reply.text("wpspincode", info->wpspincode);
    reply.number("wpsconntype", info->wpsconntype);
    reply.text("wpsroutessid", info->wpsroutessid);
    reply.text("wpsroutepin", info->wpsroutepin);
    reply.number("wifidhcp", info->wifidhcp);
    reply.text("wifinip", info->wifinip);
    reply.text("wifinmask", info->wifinmask);
    reply.text("wifigway", info->wifigway);
    reply.text("wifidns", info->wifidns);
    return 0;
}

int Kx_Ipc_SetWifiInfo(long userId, const WifiInfo* info)
{
    CameraCall call(userId, info);
    if (!call)
        return -1;
    Query query;
    query.text("newwifissid", info->wifissid); // read back as wifissid
    query.number("wifimode", info->wifimode);
    query.number("wifiencrypt", info->wifiencrypt);
    if (info->wifiencrypt == Wep)
        addWep(query, *info);
    if (info->wifiencrypt >= FirstWpa && info->wifiencrypt <= LastWpa) {
        query.number("wpapairwise", info->wpapairwise);
        query.text("wpakey", info->wpakey);
    }
    addWps(query, *info);
    addAddress(query, *info);
    return call.set(query);
}
