// Files to and from the camera through the calls of the application: where they go, what is checked before, and what is
// left of a transfer that does not end well.
#include "TransferTest.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

using kxsim::Fault;
using kxsim::httpReply;
using Kind = kxsim::Fault::Kind;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace
{

/// Logged in, with files "file" and a kernel on the disk, and nothing in the camera's request log.
class FileCalls : public TransferTest
{
protected:
    void SetUp() override
    {
        TransferTest::SetUp();
        path = make("file", "content");
        id = login(camera);
        ASSERT_GE(id, 1000);
        camera.forgetRequests();
    }

    /// The targets of the requests that a call makes, and what it prints of its own.
    template <typename Call>
    std::vector<std::string> requestsOf(Call call)
    {
        camera.forgetRequests();
        testing::internal::CaptureStdout();
        outcome = outcomeOf(call);
        printed = testing::internal::GetCapturedStdout();
        return queries(camera);
    }

    std::string path;
    long id = -1;
    Outcome outcome;
    std::string printed;
    const std::string askModel = "&paratest=productmodel";
};

} // namespace

TEST_F(FileCalls, ConfigurationsGoWhereTheFamilyTakesThem)
{
    const struct
    {
        std::string model;
        std::string config;
        std::string oem;
        std::string family;
        bool oemLogged = true;
    } rows[] = {
        {"KX-1A", "/dataloader.cgi?up=cfg", "/dataloader.cgi?up=oem", "Amba"},
        {"KX-SPA", "/dataloader.cgi?up=cfg", "/dataloader.cgi?up=oem", "Amba"},
        {"KX-1B", "/dataloader.cgi?up=cfg", "/dataloader.cgi?up=oem", "Hisi"},
        {"KX-1C", "/dataloader.cgi?up=cfg", "/dataloader.cgi?up=oem", "Hisi"},
        {"KX-SP", "/dataloader.cgi?up=cfg", "/dataloader.cgi?up=oem", "Hisi"},
        {"KX-1T", "/uploadpara.cgi", "/uploadoem.cgi", "Ti", false},
        {"", "/uploadpara.cgi", "/uploadoem.cgi", "Ti", false},
    };
    for (const auto& row : rows) {
        const auto answer = [&] {
            camera.replaceReply("productmodel", httpReply("OK productmodel=" + row.model + "\n"));
            camera.replaceReply("up", httpReply("OK upload\n"));
        };
        answer();
        EXPECT_THAT(requestsOf([&] { return Kx_Ipc_UploadConfigFile(id, path.c_str()); }),
                    ElementsAre(askModel, row.config));
        EXPECT_EQ(outcome, succeeds);
        EXPECT_EQ(printed, "KxOutputDebugInfo: Upload cfg file for " + row.family + " camera \n");
        answer();
        EXPECT_THAT(requestsOf([&] { return Kx_Ipc_UploadOemConfigFile(id, path.c_str()); }),
                    ElementsAre(askModel, row.oem));
        EXPECT_EQ(outcome, succeeds);
        EXPECT_EQ(printed,
                  row.oemLogged ? "KxOutputDebugInfo: Upload oem file for " + row.family + " camera \n" : "");
    }
    camera.replaceReply("productmodel", std::string("\0", 1));
    EXPECT_THAT(requestsOf([&] { return Kx_Ipc_UploadConfigFile(id, path.c_str()); }), ElementsAre(askModel));
    EXPECT_EQ(outcome, failsSilently);
}

TEST_F(FileCalls, FirmwareFollowsTheWordAboutTheSettings)
{
    const std::pair<std::uint8_t, const char*> words[] = {
        {0, "&keepconfig=1"}, {1, "&keepconfig=0"}, {255, "&keepconfig=0"}};
    for (const auto& [keep, word] : words) {
        camera.replaceReply("update.cgi", httpReply("OK upload\n"));
        EXPECT_THAT(requestsOf([&, kept = keep] { return Kx_Ipc_UpdateFirmware(id, path.c_str(), kept); }),
                    ElementsAre(word, "/update.cgi"));
        EXPECT_EQ(outcome, succeeds);
    }
    camera.replaceReply("keepconfig", httpReply("", "404 Not Found"));
    EXPECT_THAT(requestsOf([&] { return Kx_Ipc_UpdateFirmware(id, path.c_str(), 1); }),
                ElementsAre("&keepconfig=0"));
    EXPECT_EQ(outcome, Outcome(-1, KX_ERROR_NOT_FOUND));
    EXPECT_THAT(requestsOf([&] { return Kx_Ipc_UpdateFirmware(id, pathOf("missing").c_str(), 1); }),
                ElementsAre("&keepconfig=0"));
    EXPECT_EQ(outcome, failsSilently);
}

TEST_F(FileCalls, AFirmwareRestartsTheCameraAndTellsItsVersion)
{
    kxsim::SimCamera brief{{.restartTime = std::chrono::milliseconds(0)}};
    const long briefId = login(brief);
    const std::string firmware = make("firmware", "firmware 9.8.7\nand more");
    for (const bool keep : {true, false}) {
        brief.setValue("ftpip", "10.1.1.1");
        ASSERT_EQ(Kx_Ipc_UpdateFirmware(briefId, firmware.c_str(), keep), 0);
        SystemInfo info{};
        ASSERT_EQ(Kx_Ipc_GetSystemInfo(briefId, &info), 0);
        EXPECT_STREQ(info.softversion, "9.8.7");
        EXPECT_EQ(brief.value("ftpip") == "10.1.1.1", keep);
    }
}

TEST_F(FileCalls, AKernelMustBeMadeForTheCamera)
{
    const Outcome refused(-1, KX_ERROR_FIRMWARE_REFUSED);
    const std::string ask = "&paratest=kernalversion&paratest=productmodel";
    const struct
    {
        std::string name;
        std::string told;
        Outcome outcome;
        bool sent = false;
        std::string log = "";
    } rows[] = {
        {"KImage_D-1", "OK kernalversion=D-1.2\n", succeeds, true},
        {"KImage_Dx1", "OK kernalversion=Dy1\nOK productmodel=KX-1T\n", succeeds, true},
        {"KImage_E-1", "OK kernalversion=D-1.2\n", refused, false, "Platform is different."},
        {"KImage_", "OK kernalversion=D-1.2\n", refused, false, "Platform is different."},
        {"KImage_D-2", "OK kernalversion=D-1.2\n", refused, false, "Size is different.(%s) (%s)"},
        {"KImage_D", "OK kernalversion=D\n", refused, false, "Size is different.(%s) (%s)"},
        {"KImage_D-", "OK kernalversion=D-1\n", refused, false, "Size is different.(%s) (%s)"},
        {"KImage_D-1", "OK kernalversion=D-\n", refused, false, "Size is different.(%s) (%s)"},
        {"KImage_E-1KImage_D-1", "OK kernalversion=D-1\n", refused, false, "Platform is different."},
        {"KImage_D-1", "OK kernalversion=D-1\nOK productmodel=KX-1A\n", failsSilently, false,
         "Only upgrade kernel for amba or hisi is invalid."},
        {"KImage_D-1", "OK kernalversion=\n", failsSilently},
        {"KImage_D-1", "NG\n", failsSilently},
    };
    for (const auto& row : rows) {
        const std::string kernel = make(row.name, "kernel");
        camera.replaceReply("kernalversion", httpReply(row.told));
        if (row.sent)
            camera.replaceReply("update.cgi", httpReply("OK upload\n"));
        const auto requests = requestsOf([&] { return Kx_Ipc_UpdateKernal(id, kernel.c_str()); });
        EXPECT_EQ(outcome, row.outcome) << row.name << " for " << row.told;
        EXPECT_EQ(requests, row.sent ? std::vector<std::string>({ask, "/update.cgi"})
                                     : std::vector<std::string>({ask}));
        EXPECT_EQ(printed, row.log.empty() ? "" : "KxOutputDebugInfo: " + row.log + " \n");
    }
    EXPECT_THAT(requestsOf([&] { return Kx_Ipc_UpdateKernal(id, path.c_str()); }), IsEmpty());
    EXPECT_EQ(outcome, refused);
    EXPECT_EQ(outcomeOf([&] { return Kx_Ipc_UpdateKernal(999, path.c_str()); }),
              Outcome(-1, KX_ERROR_UNKNOWN_USER)); // which is looked for first
}

TEST_F(FileCalls, WithoutAPathThereIsNoRequest)
{
    for (const char* missing : {static_cast<const char*>(nullptr), ""}) {
        EXPECT_EQ(outcomeOf([&] { return Kx_Ipc_UploadConfigFile(id, missing); }), failsSilently);
        EXPECT_EQ(outcomeOf([&] { return Kx_Ipc_UploadOemConfigFile(id, missing); }), failsSilently);
        EXPECT_EQ(outcomeOf([&] { return Kx_Ipc_UpdateFirmware(id, missing, 1); }), failsSilently);
        EXPECT_EQ(outcomeOf([&] { return Kx_Ipc_UploadFileToSdCard(id, missing); }), failsSilently);
    }
    EXPECT_EQ(outcomeOf([&] { return Kx_Ipc_DownloadCustom(id, nullptr, 0, "name"); }), failsSilently);
    EXPECT_THAT(camera.requests(), IsEmpty());
}

TEST_F(FileCalls, AFileComesFromTheCameraUnderTheNameAskedFor)
{
    camera.putFile("/sd/clip.avi", "clip");
    camera.putFile("/var/some file", "other");
    EXPECT_EQ(Kx_Ipc_UploadFileToSdCard(id, path.c_str()), 0);
    EXPECT_EQ(camera.file("/sd/file"), "content");
    const struct
    {
        std::function<int(const char* path)> call;
        const char* target;
        std::string content;
    } rows[] = {
        {[&](const char* to) { return Kx_Ipc_DownloadLog(id, to); }, "/dataloader.cgi?dw=logdb",
         *camera.file("/var/log.db")},
        {[&](const char* to) { return Kx_Ipc_DownloadCustom(id, to, 0, "clip.avi"); },
         "/dataloader.cgi?dw=sd&file=clip.avi", "clip"},
        {[&](const char* to) { return Kx_Ipc_DownloadCustom(id, to, 4'294'967'295U, "/sd/file"); },
         "/dataloader.cgi?dw=file&path=/sd/file", "content"},
    };
    for (const auto& row : rows) {
        EXPECT_THAT(requestsOf([&] { return row.call(pathOf("down").c_str()); }), ElementsAre(row.target));
        EXPECT_EQ(outcome, succeeds);
        EXPECT_EQ(contentOf("down"), row.content + zeros(row.content.size()));
    }
    EXPECT_EQ(Kx_Ipc_DownloadCfg(id, pathOf("config").c_str()), 0);
    EXPECT_EQ(Kx_Ipc_ExportCfg(id, directory.c_str()), 0);
    EXPECT_EQ(contentOf("config"), contentOf("config.ini")); // as the camera has named it
    EXPECT_THAT(contentOf("config"), testing::StartsWith("[param]\n"));

    Kx_Ipc_UnMountSdCard(id);
    EXPECT_EQ(outcomeOf([&] { return Kx_Ipc_DownloadCustom(id, pathOf("no").c_str(), 0, "clip.avi"); }),
              failsSilently);
    EXPECT_FALSE(std::filesystem::exists(pathOf("no")));
    EXPECT_EQ(outcomeOf([&] { return Kx_Ipc_UploadFileToSdCard(id, path.c_str()); }), failsSilently);
}

// Stopped by the callback, by the camera's death, by its refusal or silence, by a full disk: nothing of it stays but what
// was written.
TEST_F(FileCalls, ATransferThatFailsLeavesNoTraceButWhatItWrote)
{
    const std::string content = someBytes(3'000'000);
    camera.putFile("/var/log.db", content);
    const std::string big = make("big", content);
    const std::string down = pathOf("down");
    const auto upload = [&] { return Kx_Ipc_UpdateFirmware(id, big.c_str(), 1); };
    const auto download = [&] { return Kx_Ipc_DownloadLog(id, down.c_str()); };
    const auto toFullDisk = [&] { return Kx_Ipc_DownloadLog(id, "/dev/full"); };
    const struct
    {
        const char* what;
        std::function<int()> call;
        Outcome outcome;
        Fault fault = {};
        std::uint64_t stopAt = UINT64_MAX;
    } rows[] = {
        {"upload stopped", upload, failsSilently, {}, 1'000'000},
        {"download stopped", download, failsSilently, {}, 1'000'000},
        {"upload, reply reset", upload, failsSilently, {.kind = Kind::EmptyReply, .onlyFor = "update.cgi"}},
        {"upload refused", upload, failsSilently, {.kind = Kind::Mismatch}},
        {"upload never answered",
         upload,
         failsSilently,
         {.kind = Kind::SilentAfter, .onlyFor = "update.cgi"}},
        {"download cut in the middle",
         download,
         failsByNetwork,
         {.kind = Kind::CutShort, .bytes = 1'500'000}},
        {"full disk", toFullDisk, failsSilently},
    };
    g_timing.uploadReply = std::chrono::milliseconds(200);
    const std::size_t descriptors = openDescriptors();
    for (const auto& row : rows) {
        camera.setFault(row.fault);
        watch([&](const Progress& now) { return now.done >= row.stopAt; });
        std::filesystem::remove(down);
        EXPECT_EQ(outcomeOf(row.call), row.outcome) << row.what;
        if (std::filesystem::exists(down)) {
            EXPECT_LT(contentOf("down").size(), content.size()) << row.what;
            EXPECT_TRUE(content.starts_with(contentOf("down"))) << row.what;
        }
        EXPECT_EQ(camera.file("/tmp/firmware.bin"), std::nullopt) << row.what;
        camera.clearFault();
        EXPECT_TRUE(descriptorsFallTo(descriptors)) << row.what;
        SdCardInfo card{};
        EXPECT_EQ(Kx_Ipc_GetSdCardInfo(id, &card), 0) << row.what;
        watch([](const Progress&) { return false; });
        EXPECT_EQ(outcomeOf(download), succeeds) << row.what;
    }
}
