#include "LogLine.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>

namespace
{

constexpr std::array secretWords{"pwd", "password", "wpakey", "wepkey1", "wepkey2", "wepkey3", "wepkey4"};

/// How much of "key=value" anybody may see.
std::size_t openPart(std::string_view parameter)
{
    const std::size_t equals = parameter.find('=');
    if (equals == parameter.npos)
        return parameter.size();
    std::string key(parameter.substr(0, equals));
    std::transform(key.begin(), key.end(), key.begin(),
                   [](unsigned char character) { return static_cast<char>(std::tolower(character)); });
    if (key == "adduser" || key == "newsetuser") // behind the name
        return std::min(parameter.find(':'), parameter.size() - 1) + 1;
    const bool secret = std::any_of(secretWords.begin(), secretWords.end(),
                                    [&key](const char* word) { return key.find(word) != key.npos; });
    return secret ? equals + 1 : parameter.size();
}

} // namespace

std::string withoutSecrets(const std::string& line)
{
    std::size_t start = std::min(line.find('?'), line.size());
    std::string shown = line.substr(0, start);
    while (start < line.size()) {
        const std::size_t end = std::min(line.find('&', start + 1), line.size());
        const std::string_view parameter = std::string_view(line).substr(start + 1, end - start - 1);
        const std::size_t open = openPart(parameter);
        shown += line[start];
        shown += parameter.substr(0, open);
        if (open < parameter.size())
            shown += "***";
        start = end;
    }
    return shown;
}
