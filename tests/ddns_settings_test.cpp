// Dynamic DNS: the two services, and the providers' names in both dialects.
#include "SdkTest.h"

#include <cstring>

using testing::ElementsAre;

using DdnsSettings = CameraTest;

static const std::string askModel = "&paratest=productmodel";

TEST_F(DdnsSettings, DdnsShowsAPagesProviderByItsWebHost)
{
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"KX-C1B", "no-ip.com", "www.no-ip.com"},
        {"KX-C1A", "xno-ipx", "www.no-ip.com"},
        {"KX-C1C", "zoneedit.com", "www.zoneedit.com"},
        {"KX-C1T", "no-ip.com", "no-ip.com"},
        {"KX-C1B", "planet", "planet"},
        {"KX-C1B", "custom_server", "custom_server"},
        {"KX-C1B\r", "no-ip.com", "no-ip.com"}};
    for (const auto& [model, kept, shown] : cases) {
        const DdnsInfo info =
            read(Kx_Ipc_GetDDNS, std::string("OK productmodel=") + model + "\nOK ddnsdomain=" + kept + "\n");
        EXPECT_STREQ(info.ddnsdomain, shown) << model;
    }
    DdnsInfo before{};
    put(before.ddnsdomain, "no-ip");
    EXPECT_STREQ(read(Kx_Ipc_GetDDNS, "OK productmodel=KX-C1B\n", before).ddnsdomain, "no-ip");
    EXPECT_STREQ(read(Kx_Ipc_GetDDNS, "OK ddnsdomain=no-ip.com\n").ddnsdomain, "no-ip.com"); // no model: TI
}

TEST_F(DdnsSettings, DdnsReadsEveryKey)
{
    const DdnsInfo info =
        read(Kx_Ipc_GetDDNS,
             "OK ddnsenable=1\nOK ddnsusername=u\nOK ddnspassword=p\nOK ddnsdomain=d\nOK ddnshost=h\n"
             "OK ddnshash=x\nOK ddnsurl=l\nOK planeteasymode=2\nOK macaddress=m\nOK ddnshttpport=3\n"
             "OK ddnsrtspport=4\nOK ddnsplaybackport=5\nOK planetenable=1\n");
    EXPECT_EQ(info.ddnsenable, 1);
    EXPECT_STREQ(info.ddnsusername, "u");
    EXPECT_STREQ(info.ddnspassword, "p");
    EXPECT_STREQ(info.ddnsdomain, "d");
    EXPECT_STREQ(info.ddnshost, "h");
    EXPECT_STREQ(info.ddnshash, "x");
    EXPECT_STREQ(info.ddnsurl, "l");
    EXPECT_EQ(info.planeteasymode, 2);
    EXPECT_STREQ(info.macaddress, "m");
    EXPECT_EQ(info.ddnshttpport, 3);
    EXPECT_EQ(info.ddnsrtspport, 4);
    EXPECT_EQ(info.ddnsplaybackport, 5);
    EXPECT_EQ(info.planetenable, 0); // never filled
}

TEST_F(DdnsSettings, DdnsIsWrittenInTheFamilyThatTheCallerChose)
{
    DdnsInfo info{};
    info.ddnsenable = 1;
    put(info.ddnsusername, "u");
    put(info.ddnspassword, "p");
    put(info.ddnshash, "x");
    put(info.ddnshost, "h");
    put(info.ddnsurl, "l");
    info.ddnshttpport = 1;
    info.ddnsrtspport = 2;
    info.ddnsplaybackport = 3;
    info.planeteasymode = 4;
    const std::string ports = "&ddnshttpport=1&ddnsrtspport=2&ddnsplaybackport=3";
    const std::tuple<bool, std::uint8_t, const char*, const char*> cases[] = {
        {false, 0, "www.no-ip.com", "no-ip.com"},
        {false, 0, "www.zoneedit.com", "zoneedit.com"},
        {false, 5, "my PlanetDDNS", "planet"},
        {false, 0, "a custom_server!", "custom_server"},
        {false, 0, "custom_server PlanetDDNS zoneedit.com no-ip", "no-ip.com"},
        {false, 0, "custom_server PlanetDDNS zoneedit.com", "zoneedit.com"},
        {false, 0, "custom_server PlanetDDNS", "planet"},
        {false, 0, "other.org", "other.org"},
        {true, 0, "www.no-ip.com", "www.no-ip.com"},
        {true, 1, "PlanetDDNS", "PlanetDDNS"}};
    for (const auto& [toTi, planet, domain, sent] : cases) {
        auto& camera = toTi ? ti : page;
        camera.forgetRequests();
        put(info.ddnsdomain, domain);
        info.planetenable = planet;
        EXPECT_EQ(Kx_Ipc_SetDDNS(toTi ? tiId : pageId, &info), 0);
        EXPECT_STREQ(info.ddnsdomain, sent); // the caller sees what was sent
        const std::string settings =
            planet != 0
                ? "&planetenable=" + std::to_string(planet) +
                      "&planeteasymode=4&planetusername=u&planetpassword=p&planethost=h&ddnsdomain=" + sent
                : std::string("&ddnsenable=1&ddnsusername=u&ddnspassword=p&ddnsdomain=") + sent +
                      "&ddnshost=h&ddnshash=x&ddnsurl=l";
        EXPECT_THAT(queries(camera), ElementsAre(askModel, askModel, settings + ports));
    }
}

TEST_F(DdnsSettings, DdnsIsSwitchedOffWithoutFurtherSettings)
{
    DdnsInfo info{};
    put(info.ddnsdomain, "www.no-ip.com");
    EXPECT_EQ(Kx_Ipc_SetDDNS(pageId, &info), 0);
    EXPECT_THAT(queries(page), ElementsAre(askModel, "&ddnsenable=0"));
    EXPECT_STREQ(info.ddnsdomain, "www.no-ip.com");
}
