// Dynamic DNS: the general service and the "planet" one.
#include <KxIpcSDK/KxNetwork.h>

#include <cstring>
#include <string_view>

#include "KxIpcSDK/CameraCall.h"

namespace
{

/// A provider as cameras of the page dialect keep it, and as it is shown.
struct Provider
{
    std::string_view mark; // a domain that contains this is the provider's
    std::string_view kept;
    std::string_view shown; // empty: shown as it is kept
};

constexpr Provider providers[] = {
    {"no-ip", "no-ip.com", "www.no-ip.com"},
    {"zoneedit.com", "zoneedit.com", "www.zoneedit.com"},
    {"PlanetDDNS", "planet", ""},
    {"custom_server", "custom_server", ""},
};

template <std::size_t Size>
void assign(char (&field)[Size], std::string_view text)
{
    std::memset(field, 0, Size);
    text.copy(field, Size - 1);
}

/// Replaces the domain by its provider's text; the first provider in the table wins.
template <std::size_t Size>
void replaceDomain(char (&domain)[Size], std::string_view Provider::*form)
{
    const std::string_view text(domain, strnlen(domain, Size));
    for (const Provider& provider : providers) {
        if ((provider.*form).empty() || text.find(provider.mark) == std::string_view::npos)
            continue;
        return assign(domain, provider.*form);
    }
}

void addPlanet(Query& query, const DdnsInfo& info)
{
    query.number("planetenable", info.planetenable);
    query.number("planeteasymode", info.planeteasymode);
    query.text("planetusername", info.ddnsusername);
    query.text("planetpassword", info.ddnspassword);
    query.text("planethost", info.ddnshost);
    query.text("ddnsdomain", info.ddnsdomain);
}

void addGeneral(Query& query, const DdnsInfo& info)
{
    query.number("ddnsenable", info.ddnsenable);
    query.text("ddnsusername", info.ddnsusername);
    query.text("ddnspassword", info.ddnspassword);
    query.text("ddnsdomain", info.ddnsdomain);
    query.text("ddnshost", info.ddnshost);
    query.text("ddnshash", info.ddnshash);
    query.text("ddnsurl", info.ddnsurl);
}

} // namespace

int Kx_Ipc_GetDDNS(long userId, DdnsInfo* info)
{
    CameraCall call(userId, info);
    const OkReply reply =
        call.get("&paratest=productmodel&paratest=ddnsenable&paratest=ddnsusername&paratest=ddnspassword"
                 "&paratest=ddnsdomain\t\t&paratest=ddnshost&paratest=ddnshash&paratest=planeteasymode"
                 "&paratest=macaddress&paratest=ddnsurl&paratest=ddnshttpport&paratest=ddnsrtspport"
                 "&paratest=ddnsplaybackport");
    if (!reply)
        return -1;
    reply.number("ddnsenable", info->ddnsenable);
    reply.text("ddnsusername", info->ddnsusername);
    reply.text("ddnspassword", info->ddnspassword);
    if (reply.text("ddnsdomain", info->ddnsdomain) && chipFamilyOf(reply) != ChipFamily::Ti)
        replaceDomain(info->ddnsdomain, &Provider::shown);
    reply.text("ddnshost", info->ddnshost);
    reply.text("ddnshash", info->ddnshash);
    reply.text("ddnsurl", info->ddnsurl);
    reply.number("planeteasymode", info->planeteasymode);
    reply.text("macaddress", info->macaddress);
    reply.number("ddnshttpport", info->ddnshttpport);
    reply.number("ddnsrtspport", info->ddnsrtspport);
    reply.number("ddnsplaybackport", info->ddnsplaybackport);
    return 0;
}

int Kx_Ipc_SetDDNS(long userId, DdnsInfo* info)
{
    CameraCall call(userId, info);
    if (!call.chipFamily()) // a camera that does not answer is not written to
        return -1;
    Query query;
    if (info->ddnsenable == 0) {
        query.number("ddnsenable", 0);
        return call.set(query);
    }

    const auto family = call.chipFamily(); // cameras expect the question again before the settings
    if (!family)
        return -1;
    if (*family != ChipFamily::Ti)
        replaceDomain(info->ddnsdomain, &Provider::kept);
    if (info->planetenable != 0)
        addPlanet(query, *info);
    else
        addGeneral(query, *info);
    query.number("ddnshttpport", info->ddnshttpport);
    query.number("ddnsrtspport", info->ddnsrtspport);
    query.number("ddnsplaybackport", info->ddnsplaybackport);
    return call.set(query);
}
