// The transfer area: where clients send files to and fetch files from.
#include "Area.h"

#include <array>

namespace kxsim
{
namespace
{

constexpr std::string_view configuration = "/etc/config.ini";

constexpr std::array uploads{
    Upload{"/update.cgi", "/tmp/firmware.bin", Content::Firmware},
    Upload{"/uploadpara.cgi", configuration, Content::Configuration, Ti},
    Upload{"/dataloader.cgi?up=cfg", configuration, Content::Configuration, NotTi},
    Upload{"/uploadoem.cgi", oemConfiguration, Content::Plain, Ti},
    Upload{"/dataloader.cgi?up=oem", oemConfiguration, Content::Plain, NotTi},
    Upload{"/dataloader.cgi?up=sd", "/sd/"},
    Upload{"/dataloader.cgi?up=lprlist", "/etc/lprlist.csv"},
};

constexpr std::array downloads{
    Download{"/dataloader.cgi?dw=logdb", "/var/log.db"},
    Download{"/dataloader.cgi?dw=cfg", configuration, Content::Configuration},
    Download{"/dataloader.cgi?dw=file&path=", ""},
    Download{"/dataloader.cgi?dw=sd&file=", "/sd/"},
    Download{"/dataloader.cgi?dw=lprlogcsv&", "/var/lprlog.csv"},
};

constexpr std::array files{
    StoredFile{"/var/log.db", "2024-05-01 08:00:00 system started\n2024-05-01 08:00:07 admin logged in\n"},
    StoredFile{"/var/lprlog.csv", "time,plate,direction\n2024-05-01 08:12:44,KX123,in\n"},
};

} // namespace

constinit const Area transferArea{.uploads = uploads, .downloads = downloads, .files = files};

} // namespace kxsim
