// Network settings: what goes out for each call, and what a camera's answer becomes.
#include "SdkTest.h"

#include <cstddef>
#include <cstring>

using kxsim::Fault;
using kxsim::httpReply;
using testing::ElementsAre;

namespace
{

template <std::size_t Size>
void put(char (&field)[Size], const std::string& text)
{
    std::memset(field, 0, Size);
    text.copy(field, Size - 1);
}

const std::string askModel = "&paratest=productmodel";

} // namespace

class NetworkSettings : public CameraTest
{
protected:
    /// The record that a get makes of these answer lines.
    template <typename Record>
    Record read(int (*get)(long, Record*), const std::string& lines, Record record = {}, bool fromTi = true)
    {
        (fromTi ? ti : page).replaceReply("", httpReply(lines));
        EXPECT_EQ(get(fromTi ? tiId : pageId, &record), 0);
        return record;
    }
};

TEST_F(NetworkSettings, AskForTheirKeys)
{
    NetworkInfo network{};
    WifiInfo wifi{};
    DdnsInfo ddns{};
    SmtpInfo smtp{};
    FtpInfo ftp{};
    UpnpInfo upnp{};
    PortInfo ports{};
    EXPECT_EQ(Kx_Ipc_GetNetwork(tiId, &network), 0);
    EXPECT_EQ(Kx_Ipc_GetWifiInfo(tiId, &wifi), 0);
    EXPECT_EQ(Kx_Ipc_GetDDNS(tiId, &ddns), 0);
    EXPECT_EQ(Kx_Ipc_GetSMTP(tiId, &smtp), 0);
    EXPECT_EQ(Kx_Ipc_GetFTP(tiId, &ftp), 0);
    EXPECT_EQ(Kx_Ipc_GetUpnpPortMapping(tiId, &upnp), 0);
    EXPECT_EQ(Kx_Ipc_GetPortInfo(tiId, &ports), 0);
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
    const struct
    {
        const char* sent;
        const char* kept;
    } cases[] = {{"010.001.001.009", "10.1.1.9"},
                 {"192.168.1.10\r", "192.168.1.10"},
                 {"fe80::1", "fe80::1"},
                 {"1.2.3", "1.2.3"},
                 {"", ""},
                 {"1.2.3.x", "1.2.3.x"}};
    for (const auto& row : cases) {
        const std::string value = std::string(row.sent) + "\n";
        const NetworkInfo info =
            read(Kx_Ipc_GetNetwork, "OK dhcpenable=1\nOK netip=" + value + "OK netmask=" + value +
                                        "OK gateway=" + value + "OK dnsip=" + value +
                                        "OK macaddress=00:11\nOK httpport=80\n");
        EXPECT_STREQ(info.netip, row.kept);
        EXPECT_STREQ(info.netmask, row.kept);
        EXPECT_STREQ(info.gateway, row.kept);
        EXPECT_STREQ(info.dnsip, row.kept);
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

TEST_F(NetworkSettings, RepliesAreReadUpToTheirBound)
{
    const std::string head = httpReply("");
    const auto padded = [&](std::size_t size, const std::string& line) {
        return head + std::string(size - head.size() - line.size(), ' ') + line;
    };
    for (const std::size_t length : {511U, 512U, 513U}) {
        PortInfo ports{};
        ti.replaceReply("httpport", padded(length, "OK httpport=8080"));
        EXPECT_EQ(Kx_Ipc_GetPortInfo(tiId, &ports), 0);
        EXPECT_EQ(ports.httpport, length == 511 ? 8080 : length == 512 ? 808 : 80);
    }
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

TEST_F(NetworkSettings, WifiSendsWhatItsModesNeed)
{
    WifiInfo wifi{};
    put(wifi.wifissid, "home");
    wifi.wifimode = 3;
    wifi.wepauthtype = 1;
    wifi.wepkeylength = 2;
    wifi.wepkeyformat = 3;
    put(wifi.wepkey1, "k1");
    put(wifi.wepkey2, "k2");
    put(wifi.wepkey3, "k3");
    put(wifi.wepkey4, "k4");
    wifi.wpapairwise = 5;
    put(wifi.wpakey, "phrase");
    put(wifi.wpspincode, "never");
    put(wifi.wpsroutessid, "router");
    put(wifi.wpsroutepin, "1234");
    put(wifi.wifinip, "10.0.0.5");
    put(wifi.wifinmask, "255.0.0.0");
    put(wifi.wifigway, "10.0.0.1");
    put(wifi.wifidns, "10.0.0.2");
    const std::string wep = "&wepauthtype=1&wepkeylength=2&wepkeyformat=3&wepkeyindex=";
    const std::string address =
        "&wifidhcp=0&wifinip=10.0.0.5&wifinmask=255.0.0.0&wifigway=10.0.0.1&wifidns=10.0.0.2";
    const struct
    {
        std::uint8_t encrypt, keyIndex, wps;
        int wpsType;
        std::uint8_t dhcp;
        std::string pieces;
    } cases[] = {
        {0, 0, 0, 2, 1, "&wpsenable=0&wifidhcp=1"},
        {1, 0, 0, 0, 1, wep + "0&wepkey1=k1&wpsenable=0&wifidhcp=1"},
        {1, 1, 0, 0, 1, wep + "1&wepkey2=k2&wpsenable=0&wifidhcp=1"},
        {1, 2, 0, 0, 1, wep + "2&wepkey3=k3&wpsenable=0&wifidhcp=1"},
        {1, 3, 0, 0, 1, wep + "3&wepkey4=k4&wpsenable=0&wifidhcp=1"},
        {1, 7, 0, 0, 1, wep + "7&wpsenable=0&wifidhcp=1"},
        {2, 0, 1, 1, 1, "&wpapairwise=5&wpakey=phrase&wpsenable=1&wpsconntype=1&wifidhcp=1"},
        {3, 0, 0, 0, 1, "&wpapairwise=5&wpakey=phrase&wpsenable=0&wifidhcp=1"},
        {4, 0, 1, 2, 0,
         "&wpapairwise=5&wpakey=phrase&wpsenable=1&wpsconntype=2&wpsroutessid=router&wpsroutepin=1234" +
             address},
        {5, 2, 0, 0, 0, "&wpsenable=0" + address},
    };
    for (const auto& row : cases) {
        ti.forgetRequests();
        wifi.wifiencrypt = row.encrypt;
        wifi.wepkeyindex = row.keyIndex;
        wifi.wpsenable = row.wps;
        wifi.wpsconntype = row.wpsType;
        wifi.wifidhcp = row.dhcp;
        EXPECT_EQ(Kx_Ipc_SetWifiInfo(tiId, &wifi), 0);
        EXPECT_THAT(queries(ti), ElementsAre("&newwifissid=home&wifimode=3&wifiencrypt=" +
                                             std::to_string(row.encrypt) + row.pieces));
    }
    WifiInfo got{};
    EXPECT_EQ(Kx_Ipc_GetWifiInfo(tiId, &got), 0);
    EXPECT_STREQ(got.wifissid, "home");
    EXPECT_STREQ(got.wepkey3, "k3");
    EXPECT_STREQ(got.wpakey, "phrase");
    EXPECT_EQ(got.wpsconntype, 2);
    EXPECT_STREQ(got.wpsroutepin, "1234");
    EXPECT_STREQ(got.wifidns, "10.0.0.2");
}

TEST_F(NetworkSettings, WifiReadsEveryKey)
{
    const WifiInfo wifi =
        read(Kx_Ipc_GetWifiInfo,
             "OK wifissid=s\nOK wifimode=1\nOK wifiencrypt=2\nOK wepauthtype=3\nOK wepkeylength=4\n"
             "OK wepkeyformat=5\nOK wepkeyindex=6\nOK wepkey1=a\nOK wepkey2=b\nOK wepkey3=c\n"
             "OK wepkey4=d\nOK wpapairwise=7\nOK wpakey=e\nOK wpsenable=8\nOK wpspincode=f\n"
             "OK wpsconntype=900\nOK wpsroutessid=g\nOK wpsroutepin=h\nOK wifidhcp=10\n"
             "OK wifinip=i\nOK wifinmask=j\nOK wifigway=k\nOK wifidns=l\n");
    const WifiInfo expected{"s", 1, 2,   3,   4,   5,   6,  "a", "b", "c", "d", 7,
                            "e", 8, "f", 900, "g", "h", 10, "i", "j", "k", "l"};
    constexpr std::size_t used = offsetof(WifiInfo, wifidns) + sizeof wifi.wifidns; // no padding before that
    EXPECT_EQ(std::memcmp(&wifi, &expected, used), 0);
}

TEST_F(NetworkSettings, DdnsShowsAPagesProviderByItsWebHost)
{
    const struct
    {
        const char* model;
        const char* kept;
        const char* shown;
    } cases[] = {{"KX-C1B", "no-ip.com", "www.no-ip.com"},
                 {"KX-C1A", "xno-ipx", "www.no-ip.com"},
                 {"KX-C1C", "zoneedit.com", "www.zoneedit.com"},
                 {"KX-C1T", "no-ip.com", "no-ip.com"},
                 {"KX-C1B", "planet", "planet"},
                 {"KX-C1B", "custom_server", "custom_server"},
                 {"KX-C1B\r", "no-ip.com", "no-ip.com"}};
    for (const auto& row : cases) {
        const DdnsInfo info = read(Kx_Ipc_GetDDNS, std::string("OK productmodel=") + row.model +
                                                       "\nOK ddnsdomain=" + row.kept + "\n");
        EXPECT_STREQ(info.ddnsdomain, row.shown) << row.model;
    }
    DdnsInfo before{};
    put(before.ddnsdomain, "no-ip");
    EXPECT_STREQ(read(Kx_Ipc_GetDDNS, "OK productmodel=KX-C1B\n", before).ddnsdomain, "no-ip");
    EXPECT_STREQ(read(Kx_Ipc_GetDDNS, "OK ddnsdomain=no-ip.com\n").ddnsdomain, "no-ip.com"); // no model: TI
}

TEST_F(NetworkSettings, DdnsReadsEveryKey)
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

TEST_F(NetworkSettings, DdnsIsWrittenInTheFamilyThatTheCallerChose)
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
    const struct
    {
        bool toTi;
        std::uint8_t planet;
        const char* domain;
        const char* sent;
    } cases[] = {{false, 0, "www.no-ip.com", "no-ip.com"},
                 {false, 0, "www.zoneedit.com", "zoneedit.com"},
                 {false, 5, "my PlanetDDNS", "planet"},
                 {false, 0, "a custom_server!", "custom_server"},
                 {false, 0, "custom_server PlanetDDNS zoneedit.com no-ip", "no-ip.com"},
                 {false, 0, "custom_server PlanetDDNS zoneedit.com", "zoneedit.com"},
                 {false, 0, "custom_server PlanetDDNS", "planet"},
                 {false, 0, "other.org", "other.org"},
                 {true, 0, "www.no-ip.com", "www.no-ip.com"},
                 {true, 1, "PlanetDDNS", "PlanetDDNS"}};
    for (const auto& row : cases) {
        auto& camera = row.toTi ? ti : page;
        camera.forgetRequests();
        put(info.ddnsdomain, row.domain);
        info.planetenable = row.planet;
        EXPECT_EQ(Kx_Ipc_SetDDNS(row.toTi ? tiId : pageId, &info), 0);
        EXPECT_STREQ(info.ddnsdomain, row.sent); // the caller sees what was sent
        const std::string settings =
            row.planet != 0
                ? "&planetenable=" + std::to_string(row.planet) +
                      "&planeteasymode=4&planetusername=u&planetpassword=p&planethost=h&ddnsdomain=" +
                      row.sent
                : std::string("&ddnsenable=1&ddnsusername=u&ddnspassword=p&ddnsdomain=") + row.sent +
                      "&ddnshost=h&ddnshash=x&ddnsurl=l";
        EXPECT_THAT(queries(camera), ElementsAre(askModel, askModel, settings + ports));
    }
}

TEST_F(NetworkSettings, DdnsIsSwitchedOffWithoutFurtherSettings)
{
    DdnsInfo info{};
    put(info.ddnsdomain, "www.no-ip.com");
    EXPECT_EQ(Kx_Ipc_SetDDNS(pageId, &info), 0);
    EXPECT_THAT(queries(page), ElementsAre(askModel, "&ddnsenable=0"));
    EXPECT_STREQ(info.ddnsdomain, "www.no-ip.com");
}

TEST_F(NetworkSettings, ACameraThatAnswersWithoutItsModelCountsAsTi)
{
    page.removeValue("productmodel");
    SmtpInfo smtp{};
    EXPECT_EQ(Kx_Ipc_SetSMTP(pageId, &smtp), 0);
    EXPECT_THAT(queries(page).back(), testing::EndsWith("&smtpauth=0"));
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

TEST_F(NetworkSettings, SmtpSecurityIsANumberOrTwoFlags)
{
    const struct
    {
        const char* lines;
        int auth;
        int enable;
    } cases[] = {{"OK smtpauth=0\nOK smtpencryssl=1\nOK smtpenable=7\n", 0, 7},
                 {"OK smtpencryssl=1\nOK smtpencrytls=1\n", 2, 1},
                 {"OK smtpencryssl=0\nOK smtpencrytls=1\n", 1, 1},
                 {"OK smtpencrytls=2\n", 9, 1},
                 {"OK smtpip=x\n", 9, 1}};
    SmtpInfo before{};
    before.smtpauth = 9;
    for (const auto& row : cases) {
        const SmtpInfo info = read(Kx_Ipc_GetSMTP, row.lines, before);
        EXPECT_EQ(info.smtpauth, row.auth) << row.lines;
        EXPECT_EQ(info.smtpenable, row.enable) << row.lines;
    }
}

TEST_F(NetworkSettings, SmtpTravelsInBothDialects)
{
    SmtpInfo set{"user", "a@b.org", "pass", "mail.b.org", 465, "x@b.org;y@b.org", 3, 0};
    const std::string common = "&smtpuser=user&smtppwd=pass&smtpsender=a@b.org&smtpip=mail.b.org&smtpport=465"
                               "&emailuser=x@b.org;y@b.org";
    EXPECT_EQ(Kx_Ipc_SetSMTP(tiId, &set), 0);
    EXPECT_THAT(queries(ti), ElementsAre(askModel, common + "&smtpauth=3"));
    const std::pair<int, std::string> flags[] = {{3, "&smtpencryssl=1&smtpencrytls=1"},
                                                 {2, "&smtpencryssl=1&smtpencrytls=0"},
                                                 {1, "&smtpencryssl=0&smtpencrytls=1"},
                                                 {0, "&smtpencryssl=0&smtpencrytls=0"}};
    for (const auto& [auth, text] : flags) {
        page.forgetRequests();
        set.smtpauth = auth;
        EXPECT_EQ(Kx_Ipc_SetSMTP(pageId, &set), 0);
        EXPECT_THAT(queries(page), ElementsAre(askModel, common + text));
    }
    set.smtpauth = 0;
    set.smtpenable = 1;
    page.setValue("smtpenable", "1");
    SmtpInfo got{};
    EXPECT_EQ(Kx_Ipc_GetSMTP(pageId, &got), 0);
    EXPECT_EQ(std::memcmp(&got, &set, sizeof got), 0);
}

TEST_F(NetworkSettings, TestMailIsSentRefusedOrFails)
{
    ti.setValue("smtpip", "mail.example.org");
    EXPECT_EQ(Kx_Ipc_TestSMTP(tiId), 0);
    ti.replaceReply("testsmtp", httpReply("NG testsmtp\n"));
    EXPECT_EQ(Kx_Ipc_TestSMTP(tiId), 1);
    for (const std::string& nothing : {std::string(), std::string("\0OK testsmtp", 12)}) {
        ti.replaceReply("testsmtp", nothing);
        EXPECT_EQ(Kx_Ipc_TestSMTP(tiId), -1);
    }
    EXPECT_THAT(queries(ti), ElementsAre("&testsmtp", "&testsmtp", "&testsmtp", "&testsmtp"));
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

TEST_F(NetworkSettings, SetsFailOnlyWithTheirRequest)
{
    const PortInfo ports{};
    ti.replaceReply("httpport", httpReply("nothing of use"));
    EXPECT_EQ(Kx_Ipc_SetPortInfo(tiId, &ports), 0); // the reply is not looked at
    ti.replaceReply("httpport", httpReply("", "401 Unauthorized"));
    EXPECT_EQ(Kx_Ipc_SetPortInfo(tiId, &ports), -1);
    EXPECT_EQ(Kx_Sdk_GetLastError(), KX_ERROR_UNAUTHORISED);
}
