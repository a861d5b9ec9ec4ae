#include "Abilities.h"

#include <KxIpcSDK/KxCapabilities.h>

namespace kxcam
{
namespace
{

struct Interface
{
    std::string_view key;
    std::string_view name;
    unsigned bits;
};

constexpr Interface interfaces[] = {
    {"memorycard", "memory card", KX_INTERFACE_SD},
    {"audio", "audio", KX_INTERFACE_AUDIO},
    {"alarm", "alarm ports", KX_INTERFACE_ALARM | KX_INTERFACE_ALARM_SECOND},
    {"bnc", "analogue video output", KX_INTERFACE_BNC},
    {"ptz", "pan-tilt", KX_INTERFACE_PTZ},
};

struct Question
{
    std::string_view key;
    std::string_view name;
    int (*ask)(long userId);
};

// Each of these sends a request of its own, or two.
constexpr Question questions[] = {
    {"nas", "network storage", Kx_Ipc_HasNasInterface},
    {"sipphone", "SIP phone", Kx_Ipc_HasSipPhoneInterface},
    {"highframerate", "high frame rate", KX_Ipc_HasHighFrameInterface},
    {"mini", "mini housing", Kx_Ipc_IsMini},
    {"cube", "cube housing", Kx_Ipc_IsCube},
};

} // namespace

std::vector<Ability> askAbilities(long userId)
{
    std::uint32_t mask = 0;
    const bool told = Kx_Ipc_GetChipinterface(userId, &mask) == 0;
    std::vector<Ability> abilities;
    for (const auto& [key, name, bits] : interfaces)
        abilities.push_back({key, name, told ? std::optional((mask & bits) != 0) : std::nullopt});
    for (const auto& [key, name, ask] : questions)
        abilities.push_back({key, name, ask(userId) == 1});
    return abilities;
}

} // namespace kxcam
