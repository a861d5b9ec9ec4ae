// Network settings: what each get asks, wired network, FTP, UPnP and ports, and what the calls have in common.
#include "SdkTest.h"

#include <cstring>

#include "CameraCalls.h"

using kxsim::httpReply;
using testing::ElementsAre;

using NetworkSettings = CameraTest;

static const std::string askModel = "&paratest=productmodel";

TEST_F(NetworkSettings, AskForTheirKeys)
{
    Records records;
    EXPECT_EQ(Kx_Ipc_GetNetwork(tiId, &records.network), 0);
    EXPECT_EQ(Kx_Ipc_GetWifiInfo(tiId, &records.wifi), 0);
    EXPECT_EQ(Kx_Ipc_GetDDNS(tiId, &records.ddns), 0);
    EXPECT_EQ(Kx_Ipc_GetSMTP(tiId, &records.smtp), 0);
    EXPECT_EQ(Kx_Ipc_GetFTP(tiId, &records.ftp), 0);
    EXPECT_EQ(Kx_Ipc_GetUpnpPortMapping(tiId, &records.upnp), 0);
    EXPECT_EQ(Kx_Ipc_GetPortInfo(tiId, &records.ports), 0);
    EXPECT_EQ(Kx_Ipc_IsUpnpEnable(tiId), 1);
    EXPECT_EQ(Kx_Ipc_SearchWifiList(tiId, nullptr), 0); // asks nothing
    const std::string wifiQuery =
        "&paratest=wifissid&paratest=wifimode&paratest=wifiencrypt\t\t&paratest=wepauthtype"
        "&paratest=wepkeylength&paratest=wepkeyformat&paratest=wepkeyindex&paratest=wepkey1&paratest=wepkey2"
        "&paratest=wepkey3&paratest=wepkey4\t\t&paratest=wpapairwise&paratest=wpakey\t\t&paratest=wpsenable"
        "&paratest=wpspincode&paratest=wpsconntype&paratest=wpsroutessid&paratest=wpsroutepin\t\t"
        "&paratest=wifidhcp&paratest=wifinip&paratest=wifinmask&paratest=wifigway&paratest=wifidns";
    EXPECT_EQ(wifiQuery.size(), 448U);
    EXPECT_THAT(
        queries(ti),
        ElementsAre(
            "&paratest=dhcpenable&paratest=netip&paratest=netmask&paratest=gateway&paratest=dnsip"
            "&paratest=macaddress&paratest=httpport",
            wifiQuery,
            "&paratest=productmodel&paratest=ddnsenable&paratest=ddnsusername&paratest=ddnspassword"
            "&paratest=ddnsdomain\t\t&paratest=ddnshost&paratest=ddnshash&paratest=planeteasymode"
            "&paratest=macaddress&paratest=ddnsurl&paratest=ddnshttpport&paratest=ddnsrtspport"
            "&paratest=ddnsplaybackport",
            "&paratest=smtpuser&paratest=smtppwd&paratest=smtpsender&paratest=smtpip&paratest=smtpport"
            "&paratest=emailuser&paratest=smtpauth&paratest=smtpencryssl&paratest=smtpencrytls"
            "&paratest=smtpenable",
            "&paratest=ftpip&paratest=ftpipport&paratest=ftpuser&paratest=ftppath&paratest=ftppassword",
            "&paratest=upnpname&paratest=upnpenable&paratest=upnptype&paratest=upnphttpport"
            "&paratest=upnpstatushttp&paratest=upnprtspport&paratest=upnpstatusrtsp&paratest=httpport"
            "&paratest=mainrtspport",
            "&paratest=httpport&paratest=onvifport&paratest=mainrtspport", "&paratest=scanupnp"));
}

TEST_F(NetworkSettings, FtpTravelsThereAndBack)
{
    FtpInfo set{};
    put(set.ftpip, "ftp.example.org");
    set.ftpipport = 2121;
    put(set.ftpuser, "cam one");
    put(set.ftppassword, "se%cret");
    put(set.ftppath, "/in/%n%s");
    EXPECT_EQ(Kx_Ipc_SetFTP(tiId, &set), 0);
    EXPECT_THAT(queries(ti), ElementsAre("&ftpip=ftp.example.org&ftpipport=2121&ftpuser=cam%20one"
                                         "&ftppath=/in/%n%s&ftppassword=se%cret"));
    FtpInfo got{};
    EXPECT_EQ(Kx_Ipc_GetFTP(tiId, &got), 0);
    EXPECT_EQ(std::memcmp(&got, &set, sizeof got), 0);
}

TEST_F(NetworkSettings, TextsAreCutToTheirFields)
{
    const std::string text(300, 'x');
    const FtpInfo ftp = read(Kx_Ipc_GetFTP, "OK ftpip=" + text + "\nOK ftpuser=" + text +
                                                "\nOK ftppassword=" + text + "\nOK ftppath=\n");
    EXPECT_EQ(ftp.ftpip, std::string(63, 'x'));
    EXPECT_EQ(ftp.ftpuser, std::string(191, 'x'));
    EXPECT_EQ(ftp.ftppassword, std::string(31, 'x'));
    EXPECT_STREQ(ftp.ftppath, "");
    const UpnpInfo upnp = read(Kx_Ipc_GetUpnpPortMapping, "OK upnpname=" + text + "\nOK upnpenable=257\n");
    EXPECT_EQ(upnp.upnpname, std::string(63, 'x'));
    EXPECT_EQ(upnp.upnpenable, 1); // the low byte
}

TEST_F(NetworkSettings, AbsentKeysKeepTheCallersValues)
{
    FtpInfo before{};
    put(before.ftpip, "kept");
    before.ftpipport = 7;
    const FtpInfo ftp = read(Kx_Ipc_GetFTP, "OK ftpuser=u\nNG ftpip=x\n", before);
    EXPECT_STREQ(ftp.ftpip, "kept");
    EXPECT_EQ(ftp.ftpipport, 7);
    EXPECT_STREQ(ftp.ftpuser, "u");
    const PortInfo ports =
        read(Kx_Ipc_GetPortInfo, "OK httpport=81\nOK onvifport=\nOK mainrtspport=x\nOK subrtspport=9\n",
             {1, 2, 3, 4});
    EXPECT_EQ(ports.httpport, 81);
    EXPECT_EQ(ports.onvifport, 0);
    EXPECT_EQ(ports.mainrtspport, 0);
    EXPECT_EQ(ports.subrtspport, 4);
}

TEST_F(NetworkSettings, AddressesLoseLeadingZeros)
{
    const std::pair<const char*, const char*> cases[] = {{"010.001.001.009", "10.1.1.9"},
                                                         {"192.168.1.10\r", "192.168.1.10"},
                                                         {"fe80::1", "fe80::1"},
                                                         {"1.2.3", "1.2.3"},
                                                         {"", ""},
                                                         {"1.2.3.x", "1.2.3.x"}};
    for (const auto& [sent, kept] : cases) {
        const std::string value = std::string(sent) + "\n";
        const NetworkInfo info =
            read(Kx_Ipc_GetNetwork, "OK dhcpenable=1\nOK netip=" + value + "OK netmask=" + value +
                                        "OK gateway=" + value + "OK dnsip=" + value +
                                        "OK macaddress=00:11\nOK httpport=80\n");
        EXPECT_STREQ(info.netip, kept);
        EXPECT_STREQ(info.netmask, kept);
        EXPECT_STREQ(info.gateway, kept);
        EXPECT_STREQ(info.dnsip, kept);
    }
}

TEST_F(NetworkSettings, NetworkReadsEveryKey)
{
    const NetworkInfo info =
        read(Kx_Ipc_GetNetwork, "OK dhcpenable=1\nOK netip=1.1.1.1\nOK netmask=2.2.2.2\nOK gateway=3.3.3.3\n"
                                "OK dnsip=4.4.4.4\nOK macaddress=00:11\nOK httpport=80\n");
    EXPECT_EQ(info.dhcpenable, 1);
    EXPECT_STREQ(info.netip, "1.1.1.1");
    EXPECT_STREQ(info.netmask, "2.2.2.2");
    EXPECT_STREQ(info.gateway, "3.3.3.3");
    EXPECT_STREQ(info.dnsip, "4.4.4.4");
    EXPECT_STREQ(info.macaddress, "00:11");
    EXPECT_EQ(info.httpport, 80);
}

TEST_F(NetworkSettings, WritingTheNetworkEndsTheSessionWhenTheCameraMoves)
{
    const struct
    {
        bool fails;
        std::uint8_t dhcp;
        const char* netip;
        int result;
        bool ended;
    } cases[] = {{true, 0, "127.0.0.10", -1, false},
                 {true, 1, "127.0.0.1", 0, true},
                 {false, 2, "127.0.0.1", 0, true},
                 {false, 0, "127.0.0.1", 0, false},
                 {false, 0, "127.0.0.10", 0, true}};
    for (const auto& row : cases) {
        const long id = login(ti);
        ti.forgetRequests();
        if (row.fails)
            ti.replaceReply("netip", "");
        NetworkInfo info{};
        info.dhcpenable = row.dhcp;
        put(info.netip, row.netip);
        put(info.netmask, "255.0.0.0");
        put(info.gateway, "10.0.0.1");
        put(info.dnsip, "10.0.0.2");
        EXPECT_EQ(Kx_Ipc_SetNetwork(id, &info), row.result);
        EXPECT_THAT(queries(ti),
                    ElementsAre("&dhcpenable=" + std::to_string(row.dhcp) + "&netip=" + row.netip +
                                "&netmask=255.0.0.0&gateway=10.0.0.1&dnsip=10.0.0.2"));
        FtpInfo ftp{};
        EXPECT_EQ(Kx_Ipc_GetFTP(id, &ftp), row.ended ? -1 : 0);
        if (row.ended) {
            EXPECT_EQ(Kx_Sdk_GetLastError(), KX_ERROR_UNKNOWN_USER);
            EXPECT_GE(login(ti), 1000); // the slot was cleared as a whole and can be had again
        }
    }
}

TEST_F(NetworkSettings, TheLastRequestOfSeveralDecides)
{
    const std::string refused = httpReply("", "404 Not Found");
    DdnsInfo ddns{};
    page.replaceReply("&ddnsenable=0", refused);
    EXPECT_EQ(Kx_Ipc_SetDDNS(pageId, &ddns), -1);

    ddns.ddnsenable = 1;
    put(ddns.ddnsdomain, "www.no-ip.com");
    page.replaceReply("&ddnsenable=1", refused);
    EXPECT_EQ(Kx_Ipc_SetDDNS(pageId, &ddns), -1);
    EXPECT_STREQ(ddns.ddnsdomain, "no-ip.com"); // what was sent, although it failed

    SmtpInfo smtp{};
    page.replaceReply("&smtpuser=", refused);
    EXPECT_EQ(Kx_Ipc_SetSMTP(pageId, &smtp), -1);
}

TEST_F(NetworkSettings, NothingIsWrittenToACameraThatDoesNotAnswer)
{
    const std::string empty("\0", 1);
    DdnsInfo ddns{};
    ddns.ddnsenable = 1;
    SmtpInfo smtp{};
    page.replaceReply("productmodel", empty);
    EXPECT_EQ(Kx_Ipc_SetDDNS(pageId, &ddns), -1);
    page.replaceReply("productmodel", httpReply("OK productmodel=KX-C1B\n"));
    page.replaceReply("productmodel", empty);
    EXPECT_EQ(Kx_Ipc_SetDDNS(pageId, &ddns), -1);
    page.replaceReply("productmodel", empty);
    EXPECT_EQ(Kx_Ipc_SetSMTP(pageId, &smtp), -1);
    EXPECT_THAT(queries(page), ElementsAre(askModel, askModel, askModel, askModel));
}

TEST_F(NetworkSettings, UpnpSwitchFoldsFailuresIntoOff)
{
    const std::pair<std::string, int> cases[] = {{httpReply("OK scanupnp=1\n"), 1},
                                                 {httpReply("OK scanupnp=200\n"), -56},
                                                 {httpReply("OK other=1\n"), 0},
                                                 {httpReply("OK scanupnp=1\n", "404 Not Found"), 0},
                                                 {httpReply("OK scanupnp=1\n", "401 Unauthorized"), 0}};
    for (const auto& [reply, value] : cases) {
        ti.replaceReply("scanupnp", reply);
        EXPECT_EQ(Kx_Ipc_IsUpnpEnable(tiId), value) << reply;
    }
    ti.forgetRequests();
    EXPECT_EQ(Kx_Ipc_SetUpnpEnable(tiId, 0x100), 0);
    EXPECT_EQ(Kx_Ipc_IsUpnpEnable(tiId), 0);
    EXPECT_EQ(Kx_Ipc_SetUpnpEnable(tiId, -1), 0);
    EXPECT_EQ(Kx_Ipc_IsUpnpEnable(tiId), 1);
    EXPECT_THAT(queries(ti),
                ElementsAre("&scanupnp=0", "&paratest=scanupnp", "&scanupnp=1", "&paratest=scanupnp"));
}

TEST_F(NetworkSettings, UpnpMappingTravelsAsOneValue)
{
    UpnpInfo set{};
    set.upnpenable = 1;
    put(set.upnpname, "front door");
    set.upnptype = 2;
    set.upnphttpport = 8081;
    set.upnprtspport = 8554;
    EXPECT_EQ(Kx_Ipc_SetUpnpPortMapping(tiId, &set), 0);
    EXPECT_THAT(queries(ti), ElementsAre("&upnpinfo=1:2:8081:8554:front%20door"));
    UpnpInfo got{};
    EXPECT_EQ(Kx_Ipc_GetUpnpPortMapping(tiId, &got), 0);
    EXPECT_EQ(got.upnpenable, 1);
    EXPECT_EQ(got.upnptype, 2);
    EXPECT_EQ(got.upnphttpport, 8081);
    EXPECT_EQ(got.upnprtspport, 8554);
    EXPECT_STREQ(got.upnpname, "front door");
    EXPECT_EQ(got.upnpstatushttp, 1);
    EXPECT_EQ(got.upnpstatusrtsp, 1);
    EXPECT_EQ(got.httpport, ti.port());
    EXPECT_EQ(got.mainrtspport, 554);
}

TEST_F(NetworkSettings, PortsAreAllWritten)
{
    const PortInfo set{8080, 8000, 5540, 5541};
    EXPECT_EQ(Kx_Ipc_SetPortInfo(tiId, &set), 0);
    EXPECT_THAT(queries(ti), ElementsAre("&httpport=8080&onvifport=8000&mainrtspport=5540&subrtspport=5541"));
    PortInfo got{0, 0, 0, 77};
    EXPECT_EQ(Kx_Ipc_GetPortInfo(tiId, &got), 0);
    EXPECT_EQ(got.httpport, 8080);
    EXPECT_EQ(got.onvifport, 8000);
    EXPECT_EQ(got.mainrtspport, 5540);
    EXPECT_EQ(got.subrtspport, 77);
}
