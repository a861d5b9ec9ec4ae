// The on-screen display: one stream on TI cameras, three on others, which are read under keys with a suffix and set
// under keys with a prefix.
#include "Area.h"

#include <array>

namespace kxsim
{
namespace
{

constexpr Setting ofStream(std::string_view key, std::string_view initial)
{
    return {key, initial, Access::ReadOnly, NotTi}; // by these names
}

constexpr std::array settings{
    Setting{"textenable1", "1", Access::ReadWrite, Ti},
    Setting{"textposition1", "0", Access::ReadWrite, Ti},
    Setting{"overlaytext1", "camera", Access::ReadWrite, Ti},
    Setting{"dateposition", "1", Access::ReadWrite, Ti},
    Setting{"dateformat", "0", Access::ReadWrite, Ti},
    Setting{"datestampenable1", "1", Access::ReadWrite, Ti},

    ofStream("textenable1.0", "1"),
    ofStream("textposition1.0", "0"),
    ofStream("overlaytext1.0", "main stream"),
    ofStream("dateposition.0", "1"),
    ofStream("dateformat.0", "0"),
    ofStream("datestampenable1.0", "1"),
    ofStream("osdfontsize.0", "2"),

    ofStream("textenable1.1", "0"),
    ofStream("textposition1.1", "0"),
    ofStream("overlaytext1.1", "sub stream"),
    ofStream("dateposition.1", "1"),
    ofStream("dateformat.1", "0"),
    ofStream("datestampenable1.1", "1"),
    ofStream("osdfontsize.1", "1"),

    ofStream("textenable1.2", "0"),
    ofStream("textposition1.2", "0"),
    ofStream("overlaytext1.2", ""),
    ofStream("dateposition.2", "1"),
    ofStream("dateformat.2", "0"),
    ofStream("datestampenable1.2", "0"),
    ofStream("osdfontsize.2", "0"),
};

constexpr std::array setRules{
    SetRule{"maintextenable", keepAs<"textenable1.0">, NotTi},
    SetRule{"maintextposition", keepAs<"textposition1.0">, NotTi},
    SetRule{"mainoverlaytext", keepAs<"overlaytext1.0">, NotTi},
    SetRule{"maindateposition", keepAs<"dateposition.0">, NotTi},
    SetRule{"maindateformat", keepAs<"dateformat.0">, NotTi},
    SetRule{"maindatestampenable", keepAs<"datestampenable1.0">, NotTi},
    SetRule{"mainosdfontsize", keepAs<"osdfontsize.0">, NotTi},
    SetRule{"subtextenable", keepAs<"textenable1.1">, NotTi},
    SetRule{"subtextposition", keepAs<"textposition1.1">, NotTi},
    SetRule{"suboverlaytext", keepAs<"overlaytext1.1">, NotTi},
    SetRule{"subdateposition", keepAs<"dateposition.1">, NotTi},
    SetRule{"subdateformat", keepAs<"dateformat.1">, NotTi},
    SetRule{"subdatestampenable", keepAs<"datestampenable1.1">, NotTi},
    SetRule{"subosdfontsize", keepAs<"osdfontsize.1">, NotTi},
    SetRule{"thirdtextenable", keepAs<"textenable1.2">, NotTi},
    SetRule{"thirdtextposition", keepAs<"textposition1.2">, NotTi},
    SetRule{"thirdoverlaytext", keepAs<"overlaytext1.2">, NotTi},
    SetRule{"thirddateposition", keepAs<"dateposition.2">, NotTi},
    SetRule{"thirddateformat", keepAs<"dateformat.2">, NotTi},
    SetRule{"thirddatestampenable", keepAs<"datestampenable1.2">, NotTi},
    SetRule{"thirdosdfontsize", keepAs<"osdfontsize.2">, NotTi},
};

} // namespace

constinit const Area osdArea{.settings = settings, .setRules = setRules};

} // namespace kxsim
