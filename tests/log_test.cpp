// Log lines for the application, and the SDK's own debug print.
#include <string>

#include <gtest/gtest.h>

#include <KxIpcSDK/KxSdkLog.h>

#include "Log/KxLog.h"

namespace
{

int lastLevel;
std::string lastText;

void remember(int level, const char* text)
{
    lastLevel = level;
    lastText = text;
}

} // namespace

TEST(SdkLog, HandsFormattedLinesToTheCallback)
{
    kxsdk_log_set_callback(remember);
    kxsdk_log(7, "%s has %d streams", "camera", 2);
    EXPECT_EQ(lastLevel, 7);
    EXPECT_EQ(lastText, "camera has 2 streams");

    kxsdk_log(-1, "%s", std::string(5000, 'x').c_str());
    EXPECT_EQ(lastText, std::string(1598, 'x'));

    kxsdk_log_set_callback(nullptr);
    kxsdk_log(1, "nobody listens");
    EXPECT_EQ(lastLevel, -1);
}

TEST(DebugInfo, PrintsItsTextAsItStands)
{
    testing::internal::CaptureStdout();
    KxOutputDebugInfo(1, "Size is different.(%s) (%s)", "a", "b");
    KxOutputDebugInfo(0, "%n%s%%");
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "KxOutputDebugInfo: Size is different.(%s) (%s) \nKxOutputDebugInfo: %n%s%% \n");
}
