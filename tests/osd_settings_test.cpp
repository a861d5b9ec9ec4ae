// On-screen display: both vocabularies, and captions on their way to the camera.
#include "SdkTest.h"

#include <cstring>

#include "NetManager/Encoding.h"

using kxsim::httpReply;
using testing::ElementsAre;

namespace
{

const std::string askModel = "&paratest=productmodel";
const std::string askOneStream = "&paratest=textenable1&paratest=textposition1&paratest=overlaytext1"
                                 "&paratest=dateposition&paratest=dateformat&paratest=datestampenable1";

std::string askThreeStreams()
{
    std::string query;
    for (const char* stream : {".0", ".1", ".2"})
        for (const char* key : {"textenable1", "textposition1", "overlaytext1", "dateposition", "dateformat",
                                "datestampenable1", "osdfontsize"})
            query += "&paratest=" + std::string(key) + stream;
    return query;
}

OsdStreamInfo sample(const std::string& caption, std::uint8_t valid = 1)
{
    OsdStreamInfo stream{valid, 1, 2, "", 3, 4, 5, 6};
    put(stream.overlaytext, caption);
    return stream;
}

class OsdSettings : public CameraTest
{
protected:
    /// The caption as it goes out.
    std::string sentCaption(const OsdStreamInfo& stream)
    {
        EXPECT_EQ(Kx_Ipc_SetOSD_ForOldVer(tiId, &stream), 0);
        const std::string query = queries(ti).back();
        const std::size_t start = query.find("&overlaytext1=") + 14;
        return query.substr(start, query.find("&dateposition") - start);
    }
};

} // namespace

TEST_F(OsdSettings, ACameraWithOneStreamLeavesTheOthersAlone)
{
    OsdInfo info;
    std::memset(&info, 0x55, sizeof info);
    OsdInfo wanted = info;
    const OsdStreamInfo told{0x55, 1, 1, "camera", 0, 1, 0, 0x55};
    EXPECT_EQ(Kx_Ipc_GetOSD(tiId, &info), 0);
    EXPECT_EQ(Kx_Ipc_GetOSD_ForOldVer(tiId, &info.streams[1]), 0);
    EXPECT_THAT(queries(ti), ElementsAre(askModel, askOneStream, askOneStream));
    for (std::size_t i : {0U, 1U}) {
        OsdStreamInfo& stream = wanted.streams[i];
        stream = told;
        std::memset(stream.overlaytext, 0x55, sizeof stream.overlaytext);
        std::strcpy(stream.overlaytext, "camera");
    }
    EXPECT_EQ(std::memcmp(&info, &wanted, sizeof info), 0);
}

TEST_F(OsdSettings, ThreeStreamsAreReadUnderSuffixesAndSentUnderPrefixes)
{
    OsdInfo set{};
    const char* const captions[] = {"a", "b", "c"};
    for (std::size_t i = 0; i < 3; ++i)
        set.streams[i] = sample(captions[i], 9);
    EXPECT_EQ(Kx_Ipc_SetOSD(pageId, &set), 0);
    EXPECT_THAT(queries(page),
                ElementsAre(askModel,
                            "&maintextenable=1&maintextposition=3&mainoverlaytext=%61&maindateposition=4"
                            "&maindateformat=5&maindatestampenable=2&mainosdfontsize=6"
                            "&subtextenable=1&subtextposition=3&suboverlaytext=%62&subdateposition=4"
                            "&subdateformat=5&subdatestampenable=2&subosdfontsize=6"
                            "&thirdtextenable=1&thirdtextposition=3&thirdoverlaytext=%63"
                            "&thirddateposition=4&thirddateformat=5&thirddatestampenable=2"
                            "&thirdosdfontsize=6"));
    page.forgetRequests();
    OsdInfo got{};
    EXPECT_EQ(Kx_Ipc_GetOSD(pageId, &got), 0);
    EXPECT_THAT(queries(page), ElementsAre(askModel, askThreeStreams()));
    EXPECT_EQ(askThreeStreams().size(), 507U);
    for (OsdStreamInfo& stream : set.streams)
        stream.valid = 0; // a get never fills it
    EXPECT_EQ(std::memcmp(&got, &set, sizeof got), 0);
}

TEST_F(OsdSettings, OnlyValidStreamsAreSent)
{
    OsdInfo info{{sample("a", 0), sample("b", 0), sample("c", 1)}};
    EXPECT_EQ(Kx_Ipc_SetOSD(pageId, &info), 0);
    EXPECT_THAT(queries(page).back(), testing::StartsWith("&thirdtextenable=1"));
    EXPECT_EQ(page.value("overlaytext1.0"), "main stream");
    EXPECT_EQ(page.value("overlaytext1.2"), "c");
    info.streams[2].valid = 0;
    EXPECT_EQ(Kx_Ipc_SetOSD(pageId, &info), 0);
    EXPECT_THAT(queries(page).back(), testing::HasSubstr("get.network.general")); // an empty query
    page.replaceReply("get.network.general", httpReply("404 Not Found"));
    EXPECT_EQ(Kx_Ipc_SetOSD(pageId, &info), -1);

    // A camera with one stream gets it, valid or not.
    const std::string sent = "&textenable1=1&textposition1=3&overlaytext1=%61&dateposition=4&dateformat=5"
                             "&datestampenable1=2";
    EXPECT_EQ(Kx_Ipc_SetOSD(tiId, &info), 0);
    EXPECT_EQ(Kx_Ipc_SetOSD_ForOldVer(pageId, info.streams), 0);
    EXPECT_THAT(queries(ti), ElementsAre(askModel, sent));
    EXPECT_EQ(queries(page).back(), sent);
}

TEST_F(OsdSettings, CaptionsReachTheCameraWhole)
{
    const std::string captions[] = {"a&textenable1=0=&",
                                    "R&D = 100% #1",
                                    "%26 %",
                                    "Gr\xC3\xB6\xC3\x9F"
                                    "e\x7F",
                                    std::string(95, '&'),
                                    ""};
    for (const std::string& caption : captions) {
        const std::string sent = sentCaption(sample(caption));
        EXPECT_EQ(sent.find_first_of("&="), std::string::npos) << sent;
        EXPECT_EQ(ti.value("overlaytext1"), caption);
        OsdStreamInfo got{};
        EXPECT_EQ(Kx_Ipc_GetOSD_ForOldVer(tiId, &got), 0);
        EXPECT_EQ(got.overlaytext, caption);
    }
    EXPECT_EQ(sentCaption(sample("aZ1 ?/")), "%61%5A%31%20?/");
    EXPECT_EQ(ti.value("textenable1"), "1");

    OsdStreamInfo unterminated = sample("");
    std::memset(unterminated.overlaytext, 'x', sizeof unterminated.overlaytext);
    EXPECT_EQ(sentCaption(unterminated), EncodeURI(std::string(96, 'x').c_str()));
}

TEST_F(OsdSettings, ACaptionThatIsTooLongIsCutToItsField)
{
    const OsdStreamInfo stream = read(Kx_Ipc_GetOSD_ForOldVer, "OK overlaytext1=" + std::string(200, 'x') +
                                                                   "\nOK textposition1=300\n");
    EXPECT_EQ(stream.overlaytext, std::string(95, 'x'));
    EXPECT_EQ(stream.textposition, 300 % 256);
    EXPECT_EQ(stream.textenable, 0);
}

TEST_F(OsdSettings, ASetCarriesNoMoreThanItsQuery)
{
    const std::string caption(95, 'x');
    const OsdInfo info{{sample(caption), sample(caption), sample(caption)}};
    EXPECT_EQ(Kx_Ipc_SetOSD(pageId, &info), 0);
    EXPECT_EQ(queries(page).back().size(), 1022U);
    EXPECT_EQ(page.value("overlaytext1.1"), caption);
}

TEST_F(OsdSettings, WithoutAModelThereIsNoSecondRequest)
{
    OsdInfo info{};
    for (auto* call : {+[](long id, OsdInfo*osd) { return Kx_Ipc_GetOSD(id, osd); },
                       +[](long id, OsdInfo*osd) { return Kx_Ipc_SetOSD(id, osd); }}) {
        page.forgetRequests();
        page.replaceReply("productmodel", std::string("\0", 1));
        EXPECT_EQ(call(pageId, &info), -1);
        EXPECT_THAT(queries(page), ElementsAre(askModel));
    }
}
