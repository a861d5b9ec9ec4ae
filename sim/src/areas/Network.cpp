// The network area: wired and wireless network, dynamic DNS, e-mail, FTP, UPnP and the service ports.
#include "Area.h"

#include <array>

namespace kxsim
{
namespace
{

constexpr std::array settings{
    // Wired network. The camera's own address, port and MAC address are filled in by Device. A new address or port
    // is kept and read back, but the simulated camera stays where it listens.
    kept(Keep::Address, {"dhcpenable", "0"}),
    kept(Keep::Address, {"netip", ""}),
    kept(Keep::Address, {"netmask", "255.255.255.0"}),
    kept(Keep::Address, {"gateway", "192.168.1.1"}),
    kept(Keep::Address, {"dnsip", "192.168.1.1"}),
    Setting{"macaddress", "", Access::ReadOnly},

    // Service ports
    kept(Keep::Address, {"httpport", ""}),
    Setting{"onvifport", "8999"},
    Setting{"mainrtspport", "554"},
    Setting{"subrtspport", "555"},

    // How many may watch the live streams at once, and how many do
    Setting{"maxconn", "10"},
    Setting{"curmaxconn", "0", Access::ReadOnly},

    // Wireless network. A network is joined by "newwifissid" alone.
    Setting{"wifissid", "", Access::ReadOnly},
    Setting{"wifimode", "0"},
    Setting{"wifiencrypt", "0"},
    Setting{"wepauthtype", "0"},
    Setting{"wepkeylength", "0"},
    Setting{"wepkeyformat", "0"},
    Setting{"wepkeyindex", "0"},
    Setting{"wepkey1", ""},
    Setting{"wepkey2", ""},
    Setting{"wepkey3", ""},
    Setting{"wepkey4", ""},
    Setting{"wpapairwise", "0"},
    Setting{"wpakey", ""},
    Setting{"wpsenable", "0"},
    Setting{"wpspincode", "12345670", Access::ReadOnly},
    Setting{"wpsconntype", "0"},
    Setting{"wpsroutessid", ""},
    Setting{"wpsroutepin", ""},
    Setting{"wifidhcp", "1"},
    Setting{"wifinip", "192.168.2.100"},
    Setting{"wifinmask", "255.255.255.0"},
    Setting{"wifigway", "192.168.2.1"},
    Setting{"wifidns", "192.168.2.1"},

    // Dynamic DNS
    Setting{"ddnsenable", "0"},
    Setting{"ddnsdomain", ""},
    Setting{"ddnsusername", ""},
    Setting{"ddnspassword", ""},
    Setting{"ddnshash", ""},
    Setting{"ddnshost", ""},
    Setting{"ddnsurl", ""},
    Setting{"ddnshttpport", "80"},
    Setting{"ddnsrtspport", "554"},
    Setting{"ddnsplaybackport", "8000"},
    Setting{"planetenable", "0"},
    Setting{"planeteasymode", "0"},

    // E-mail. TI cameras always send mail, and code the security in one number.
    Setting{"smtpuser", ""},
    Setting{"smtppwd", ""},
    Setting{"smtpsender", ""},
    Setting{"smtpip", ""},
    Setting{"smtpport", "25"},
    Setting{"emailuser", ""},
    Setting{"smtpauth", "0", Access::ReadWrite, Ti},
    Setting{"smtpencryssl", "0", Access::ReadWrite, NotTi},
    Setting{"smtpencrytls", "0", Access::ReadWrite, NotTi},
    Setting{"smtpenable", "1", Access::ReadOnly, NotTi},

    // FTP
    Setting{"ftpip", ""},
    Setting{"ftpipport", "21"},
    Setting{"ftpuser", ""},
    Setting{"ftppath", "/"},
    Setting{"ftppassword", ""},

    // UPnP. The port mapping is written as a whole, by "upnpinfo".
    Setting{"scanupnp", "1"},
    Setting{"upnpname", "", Access::ReadOnly},
    Setting{"upnpenable", "0", Access::ReadOnly},
    Setting{"upnptype", "0", Access::ReadOnly},
    Setting{"upnphttpport", "80", Access::ReadOnly},
    Setting{"upnpstatushttp", "0", Access::ReadOnly},
    Setting{"upnprtspport", "554", Access::ReadOnly},
    Setting{"upnpstatusrtsp", "0", Access::ReadOnly},
};

// The camera knows providers by their bare domain; a web host name is what people see, not what it stores.
bool takeProvider(Settings& camera, const std::string& value)
{
    return !value.starts_with("www.") && camera.keep("ddnsdomain", value);
}

bool takePlanetSwitch(Settings& camera, const std::string& value)
{
    return camera.keep("planetenable", value) && camera.keep("ddnsenable", value);
}

// "enable:type:httpport:rtspport:name"; the name is all the rest, colons included.
bool takePortMapping(Settings& camera, const std::string& value)
{
    constexpr std::array numbers{"upnpenable", "upnptype", "upnphttpport", "upnprtspport"};
    std::array<std::string, numbers.size()> fields;
    std::size_t start = 0;
    for (std::string& field : fields) {
        const std::size_t colon = value.find(':', start);
        if (colon == std::string::npos)
            return false;
        field = value.substr(start, colon - start);
        start = colon + 1;
    }
    for (std::size_t i = 0; i < fields.size(); ++i)
        camera.keep(numbers[i], fields[i]);
    camera.keep("upnpname", value.substr(start));
    const char* const mapped = fields[0] == "0" ? "0" : "1"; // a simulated router never refuses
    camera.keep("upnpstatushttp", mapped);
    camera.keep("upnpstatusrtsp", mapped);
    return true;
}

constexpr std::array setRules{
    SetRule{"newwifissid", keepAs<"wifissid">},
    SetRule{"planetenable", takePlanetSwitch},
    SetRule{"planetusername", keepAs<"ddnsusername">},
    SetRule{"planetpassword", keepAs<"ddnspassword">},
    SetRule{"planethost", keepAs<"ddnshost">},
    SetRule{"ddnsdomain", takeProvider, NotTi},
    SetRule{"upnpinfo", takePortMapping},
};

bool sendTestMail(Settings& camera)
{
    return !camera.text("smtpip").empty();
}

constexpr std::array commands{
    Command{"testsmtp", sendTestMail},
};

std::vector<std::string> generalNetwork(Settings& camera, const Parameters&)
{
    constexpr std::string_view keys[] = {"dhcpenable", "netip",      "netmask", "gateway",
                                         "dnsip",      "macaddress", "httpport"};
    std::vector<std::string> lines = camera.lines(keys);
    lines.insert(lines.begin(), "OK");
    return lines;
}

constexpr std::array actions{
    Action{settingsPath, "get.network.general", generalNetwork}, // what a client logs in with
};

} // namespace

constinit const Area networkArea{settings, setRules, commands, actions};

} // namespace kxsim
