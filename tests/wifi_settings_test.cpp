// Wi-Fi: what goes out for each mode, and every key of the answer.
#include "SdkTest.h"

#include <cstddef>
#include <cstring>

using testing::ElementsAre;

using WifiSettings = CameraTest;

TEST_F(WifiSettings, WifiSendsWhatItsModesNeed)
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

TEST_F(WifiSettings, WifiReadsEveryKey)
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
