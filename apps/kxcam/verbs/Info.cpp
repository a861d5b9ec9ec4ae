// kxcam info: what the camera is, and what it can do at a glance.
#include <nlohmann/json.hpp>

#include "Abilities.h"
#include "Json.h"
#include "Table.h"
#include "areas/Areas.h"
#include "verbs/Verb.h"

namespace kxcam
{
namespace
{

constexpr char footer[] = R"(`kxcam capabilities` tells more of what the camera can do.

Example:
  kxcam --host 192.168.1.20 info

Run 'kxcam --help' for --host, --port, --user, --json and the exit codes.)";

std::string namesOf(const std::vector<Ability>& abilities)
{
    std::string names;
    for (const Ability& ability : abilities)
        if (ability.has == true)
            names.append(names.empty() ? "" : ", ").append(ability.name);
    return names.empty() ? "(none told)" : names;
}

nlohmann::ordered_json keysOf(const std::vector<Ability>& abilities)
{
    auto keys = nlohmann::ordered_json::array();
    for (const Ability& ability : abilities)
        if (ability.has == true)
            keys.push_back(ability.key);
    return keys;
}

ExitCode info(const CommandLine& line, Console& console)
{
    const Area& area = findArea("system");
    Session session(line.target);
    const Record record = session.read(area);
    const std::vector<Ability> abilities = askAbilities(session.userId());
    if (line.json) {
        nlohmann::ordered_json object = toJson(area, record, false);
        object["capabilities"] = keysOf(abilities);
        printJson(object, console);
    } else {
        std::vector<TableLine> lines = tableOf(area, record, false, console.isTerminal());
        lines.push_back({"capabilities", namesOf(abilities), ""});
        console.table(lines);
    }
    return ExitCode::Ok;
}

} // namespace

void addInfo(const Verb& kxcam)
{
    kxcam.add("info", "Show what the camera is", footer).does(info);
}

} // namespace kxcam
