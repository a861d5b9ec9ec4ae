// Reading ten values out of a reply: the SDK's readers, and what an application would write in their place.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Best.h"
#include "NetManager/ReplyFields.h"
#include "inirw/inirw.h"

namespace
{

constexpr std::size_t wantedCount = 10;

struct Wanted
{
    std::string key;    // "key007"
    std::string prefix; // what stands before its value and nowhere else: "OK key007=" or "\nkey007="
};

struct Reply
{
    std::string text;
    std::string linePrefix; // before each key
    std::vector<Wanted> wanted;
};

struct Value
{
    char text[64];
};

using Values = std::vector<Value>;
using Reader = void (*)(const Reply&, Values&);

std::string keyNumber(std::size_t number)
{
    char key[32];
    std::snprintf(key, sizeof key, "key%03zu", number);
    return key;
}

/// A reply of about `size` bytes; the values wanted are spread evenly over it, the last one in the last line.
Reply makeReply(std::size_t size, const std::string& linePrefix)
{
    Reply reply{"HTTP/1.1 200 OK\r\nContent-Type: text/plain\r\nConnection: close\r\n\r\n", linePrefix, {}};
    std::size_t lines = 0;
    for (; reply.text.size() < size; ++lines)
        reply.text += linePrefix + keyNumber(lines) + "=value of " + std::to_string(lines) + "\n";
    for (std::size_t i = 1; i <= wantedCount; ++i) {
        const std::string key = keyNumber(lines * i / wantedCount - 1);
        reply.wanted.push_back({key, (linePrefix.empty() ? "\n" : linePrefix) + key + "="});
    }
    return reply;
}

void keep(std::string_view text, Value& value)
{
    const std::size_t length = text.copy(value.text, sizeof value.text - 1);
    value.text[length] = '\0';
}

void byKxSscanf(const Reply& reply, Values& values)
{
    for (std::size_t i = 0; i < wantedCount; ++i)
        KxSscanf(reply.text.c_str(), reply.wanted[i].prefix.c_str(), "\n", values[i].text,
                 sizeof values[i].text - 1);
}

void byInirw(const Reply& reply, Values& values)
{
    for (std::size_t i = 0; i < wantedCount; ++i)
        iniGetValueFromStr(reply.text.c_str(), nullptr, reply.wanted[i].key.c_str(), values[i].text,
                           sizeof values[i].text, nullptr);
}

void byStringView(const Reply& reply, Values& values)
{
    const std::string_view text = reply.text;
    for (std::size_t i = 0; i < wantedCount; ++i) {
        const std::size_t found = text.find(reply.wanted[i].prefix);
        if (found == std::string_view::npos)
            continue;
        const std::size_t start = found + reply.wanted[i].prefix.size();
        keep(text.substr(start, text.find('\n', start) - start), values[i]);
    }
}

void bySscanf(const Reply& reply, Values& values)
{
    for (std::size_t i = 0; i < wantedCount; ++i) {
        const char* found = std::strstr(reply.text.c_str(), reply.wanted[i].prefix.c_str());
        if (found != nullptr)
            std::sscanf(found + reply.wanted[i].prefix.size(), "%63[^\n]", values[i].text);
    }
}

/// Splits the whole reply first, as one does who wants many values.
void byMap(const Reply& reply, Values& values)
{
    std::unordered_map<std::string_view, std::string_view> map;
    for (std::string_view rest = reply.text; !rest.empty();) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        const std::size_t equals = line.find('=');
        if (line.starts_with(reply.linePrefix) && equals != std::string_view::npos)
            map.emplace(line.substr(reply.linePrefix.size(), equals - reply.linePrefix.size()),
                        line.substr(equals + 1));
    }
    for (std::size_t i = 0; i < wantedCount; ++i) {
        const auto found = map.find(reply.wanted[i].key);
        if (found != map.end())
            keep(found->second, values[i]);
    }
}

bool agree(const Values& left, const Values& right)
{
    const auto same = [](const Value& a, const Value& b) { return std::strcmp(a.text, b.text) == 0; };
    return std::equal(left.begin(), left.end(), right.begin(), same) && left.back().text[0] != '\0';
}

void readReply(benchmark::State& state, const Reply& reply, Reader reader)
{
    Values values(wantedCount), expected(wantedCount);
    reader(reply, values);
    byMap(reply, expected);
    if (!agree(values, expected))
        state.SkipWithError("wrong values");
    for (auto _ : state) {
        reader(reply, values);
        benchmark::DoNotOptimize(values.data());
        benchmark::ClobberMemory();
    }
}

bool registerReaders()
{
    const struct
    {
        const char* name;
        const char* linePrefix;
        Reader reader;
    } rows[] = {
        {"ok/KxSscanf", "OK ", byKxSscanf},
        {"ok/string_view::find", "OK ", byStringView},
        {"ok/strstr+sscanf", "OK ", bySscanf},
        {"ok/unordered_map", "OK ", byMap},
        {"ini/inirw", "", byInirw},
        {"ini/string_view::find", "", byStringView},
        {"ini/strstr+sscanf", "", bySscanf},
        {"ini/unordered_map", "", byMap},
    };
    for (const std::size_t kilobytes : {1, 20}) {
        for (const auto& row : rows) {
            const std::string name = std::string(row.name) + "/" + std::to_string(kilobytes) + "K";
            benchmark::RegisterBenchmark(name.c_str(), readReply, makeReply(kilobytes * 1024, row.linePrefix),
                                         row.reader)
                ->ComputeStatistics("best", best);
        }
    }
    return true;
}

const bool registered = registerReaders();

} // namespace
