// What a camera can do: interface mask, yes/no questions, model families, the general list.
#include "SdkTest.h"

#include <array>
#include <bit>

using kxsim::httpReply;
using testing::Each;
using testing::ElementsAre;

using Capabilities = CameraTest;

TEST_F(Capabilities, EachQuestionTestsItsBitsOfTheMask)
{
    const std::tuple<const char*, int, std::vector<int>> cases[] = {
        {"0", 0, {0, 0, 0, 0, 0}},           {"1", 1, {1, 0, 0, 0, 0}},   {"2", 2, {0, 1, 0, 0, 0}},
        {"4", 4, {0, 0, 1, 0, 0}},           {"8", 8, {0, 0, 0, 1, 0}},   {"16", 16, {0, 0, 0, 0, 1}},
        {"32", 32, {0, 0, 1, 0, 0}},         {"64", 64, {0, 0, 0, 0, 0}}, {"63", 63, {1, 1, 1, 1, 1}},
        {"4294967295", -1, {1, 1, 1, 1, 1}}, {"x", 0, {0, 0, 0, 0, 0}}};
    for (const auto& [told, all, has] : cases) { // memory card, audio, alarm, BNC, PTZ
        SCOPED_TRACE(told);
        ti.setValue("chipninterface", told);
        std::uint32_t mask = 99;
        EXPECT_EQ(Kx_Ipc_GetAllChipInterface(tiId), all);
        EXPECT_EQ(Kx_Ipc_GetChipinterface(tiId, &mask), 0);
        EXPECT_EQ(mask, static_cast<std::uint32_t>(all));
        EXPECT_THAT((std::vector{Kx_Ipc_HasSDInterface(tiId), Kx_Ipc_HasAudioInterface(tiId),
                                 Kx_Ipc_HasAlarmInterface(tiId), Kx_Ipc_HasBNCInterface(tiId),
                                 Kx_Ipc_HasPTZInterface(tiId)}),
                    has);
    }
    EXPECT_THAT(queries(ti), Each("&paratest=chipninterface"));
}

TEST_F(Capabilities, FailuresAndMissingKeysAreNo)
{
    int (*const questions[])(long) = {
        Kx_Ipc_HasSDInterface,  Kx_Ipc_HasAudioInterface, Kx_Ipc_HasAlarmInterface,    Kx_Ipc_HasBNCInterface,
        Kx_Ipc_HasPTZInterface, Kx_Ipc_HasNasInterface,   Kx_Ipc_HasSipPhoneInterface, Kx_Ipc_IsMini,
        Kx_Ipc_IsCube};
    const std::string yes =
        "OK chipninterface=63\nOK nasmountstatu=1\nOK sipenable=1\nOK productmodel=KX-C208T\n";
    const std::string replies[] = {httpReply(yes, "404 Not Found"), '\0' + httpReply(yes), httpReply("OK\n"),
                                   ""};
    for (const std::string& reply : replies) {
        for (const auto question : questions) {
            ti.replaceReply("", reply);
            EXPECT_EQ(question(tiId), 0) << reply;
        }
    }
}

TEST_F(Capabilities, TheMaskTellsAMissingKeyFromAFailureInOneFormOnly)
{
    const std::pair<std::string, int> cases[] = {{httpReply("OK\n"), 0},
                                                 {httpReply("OK chipninterface=1\n", "404 Not Found"), -1},
                                                 {std::string("\0OK chipninterface=1", 20), -1}};
    for (const auto& [reply, all] : cases) {
        std::uint32_t mask = 99;
        ti.replaceReply("", reply, 2);
        EXPECT_EQ(Kx_Ipc_GetAllChipInterface(tiId), all);
        EXPECT_EQ(Kx_Ipc_GetChipinterface(tiId, &mask), -1);
        EXPECT_EQ(mask, 99U);
    }
}

TEST_F(Capabilities, StorageAndPhoneAreThereWhenTheirKeyIsNotZero)
{
    EXPECT_EQ(Kx_Ipc_HasNasInterface(tiId), 0);
    EXPECT_EQ(Kx_Ipc_HasSipPhoneInterface(tiId), 0); // this family has no phone
    EXPECT_EQ(Kx_Ipc_HasSipPhoneInterface(pageId), 1);
    ti.setValue("nasmountstatu", "-2");
    EXPECT_EQ(Kx_Ipc_HasNasInterface(tiId), 1);
    EXPECT_THAT(queries(ti),
                ElementsAre("&paratest=nasmountstatu", "&paratest=sipenable", "&paratest=nasmountstatu"));
}

TEST_F(Capabilities, TheModelTellsItsFamilies)
{
    const std::tuple<const char*, int, int, int> cases[] = {
        {"KX-C208T", 1, 0, 0}, {"KX-C209RT", 0, 1, 0},  {"KX-C20", 0, 0, 0}, {"KX-C28", 0, 0, 0},
        {"", 0, 0, 0},         {"KX-C3081RB", 1, 0, 1}, {"RXC", 0, 0, 1},    {"KX-R-SP", 0, 0, 1},
        {"KX-R200A", 0, 0, 0}, {"KX-r300B", 0, 0, 0}};
    for (const auto& [model, mini, cube, highFrame] : cases) {
        SCOPED_TRACE(model);
        ti.setValue("productmodel", model);
        EXPECT_EQ(Kx_Ipc_IsMini(tiId), mini);
        EXPECT_EQ(Kx_Ipc_IsCube(tiId), cube);
        EXPECT_EQ(KX_Ipc_HasHighFrameInterface(tiId), highFrame);
    }
    ti.replaceReply("productmodel", httpReply("OK productmodel=KX-R300B\n", "404 Not Found"));
    EXPECT_EQ(KX_Ipc_HasHighFrameInterface(tiId), 0); // a failed request is no failure here
}

TEST_F(Capabilities, TheGeneralListIsReadWhole)
{
    std::string lines;
    int number = 100;
    for (const char* key :
         {"system_io_support", "system_audio_support", "system_fisheye_support", "system_vca_support",
          "system_audio_alarm_support", "system_led_support", "system_led_group_support",
          "system_ptz_motion_support", "system_ptz_motion_max_zoom_times", "system_vca_type"})
        lines += "\r\n" + std::string(key) + "=" + std::to_string(number++);
    const ModelGeneralInfo info = read(Kx_Ipc_GetModelGeneral, lines);
    EXPECT_THAT(queries(ti), ElementsAre("/cgi-bin/admin/admin.cgi?action=get.model.general&format=inf"));
    EXPECT_THAT((std::bit_cast<std::array<std::uint32_t, 10>>(info)),
                ElementsAre(100, 101, 102, 103, 104, 105, 106, 107, 108, 109));
}

TEST_F(Capabilities, OnlyAMissingKindOfAnalysisHasADefault)
{
    const ModelGeneralInfo before{1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
    const ModelGeneralInfo info = read(Kx_Ipc_GetModelGeneral, "system_led_support=0\n", before);
    EXPECT_EQ(info.system_led_support, 0U);
    EXPECT_EQ(info.system_led_group_support, 7U);
    EXPECT_EQ(info.system_vca_type, 2U);
    ModelGeneralInfo kept = before;
    ti.replaceReply("", std::string("\0system_led_support=0", 21));
    EXPECT_EQ(Kx_Ipc_GetModelGeneral(tiId, &kept), -1);
    EXPECT_EQ(kept.system_vca_type, 10U);

    ModelGeneralInfo own{};
    EXPECT_EQ(Kx_Ipc_GetModelGeneral(pageId, &own), 0);
    EXPECT_EQ(own.system_ptz_motion_max_zoom_times, 18U);
    EXPECT_EQ(own.system_vca_type, 1U);
}
