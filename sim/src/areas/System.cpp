// The system area: what the camera is, and who logs in.
#include "Area.h"

#include <array>

namespace kxsim
{
namespace
{

constexpr std::array settings{
    Setting{"productmodel", "", Access::ReadOnly}, // the camera's own, filled in by Device
};

// The camera notes the login in its journal, which no client can read here.
bool noteLogin(Settings&)
{
    return true;
}

constexpr std::array commands{
    Command{"loginlog", noteLogin},
};

} // namespace

constinit const Area systemArea{.settings = settings, .commands = commands};

} // namespace kxsim
