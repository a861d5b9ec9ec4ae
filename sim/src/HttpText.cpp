#include "HttpText.h"

#include "KxSim/SimCamera.h"

#include <charconv>
#include <cstdint>
#include <strings.h>

namespace kxsim
{
namespace
{

std::string assemble(const std::string& status, const std::string& extraHeaders, std::string_view body)
{
    return "HTTP/1.1 " + status + "\r\nContent-Type: text/plain\r\n" + extraHeaders +
           "Connection: close\r\n\r\n" + std::string(body);
}

std::string lengthHeader(std::string_view body)
{
    return "Content-Length: " + std::to_string(body.size()) + "\r\n";
}

// The value of two hexadecimal digits, or -1.
int hexByte(std::string_view digits)
{
    unsigned char byte = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, byte, 16);
    return digits.size() == 2 && stop == end && error == std::errc() ? byte : -1;
}

bool isHeader(std::string_view line, std::string_view name)
{
    return line.size() > name.size() && line[name.size()] == ':' &&
           strncasecmp(line.data(), name.data(), name.size()) == 0;
}

} // namespace

std::string httpReply(const std::string& body, const std::string& status)
{
    return assemble(status, lengthHeader(body), body);
}

std::string statusText(int status)
{
    switch (status) {
    case 200:
        return "200 OK";
    case 400:
        return "400 Bad Request";
    case 401:
        return "401 Unauthorized";
    case 403:
        return "403 Forbidden";
    case 404:
        return "404 Not Found";
    case 500:
        return "500 Internal Server Error";
    case 502:
        return "502 Bad Gateway";
    case 503:
        return "503 Service Unavailable";
    default:
        return std::to_string(status) + " Simulated Status";
    }
}

std::string renderReply(int status, std::string_view body, bool tellLength)
{
    std::string headers;
    if (status == 401)
        headers += "WWW-Authenticate: Basic realm=\"camera\"\r\n";
    if (tellLength)
        headers += lengthHeader(body);
    return assemble(statusText(status), headers, body);
}

std::string renderFile(std::string_view name, std::string_view body, bool tellLength)
{
    std::string reply = "HTTP/1.1 200 OK\nContent-Type: application/octet-stream\n"
                        "Content-Disposition: attachment; filename=\"";
    reply.append(name).append("\"\n");
    if (tellLength)
        reply.append("Content-Length: ").append(std::to_string(body.size())).append("\n");
    return reply.append("Connection: close\n\n").append(body);
}

int statusOf(std::string_view reply)
{
    constexpr std::string_view start = "HTTP/1.1 ";
    int status = 0;
    if (reply.starts_with(start) && reply.size() >= start.size() + 3)
        std::from_chars(reply.data() + start.size(), reply.data() + start.size() + 3, status);
    return status;
}

std::string targetOf(std::string_view head)
{
    const std::string_view line = head.substr(0, head.find("\r\n"));
    const std::size_t start = line.find(' ');
    if (start == std::string_view::npos)
        return "";
    return std::string(line.substr(start + 1, line.find(' ', start + 1) - start - 1));
}

std::string headerOf(std::string_view head, std::string_view name)
{
    for (std::size_t end = head.find("\r\n"); end != std::string_view::npos; end = head.find("\r\n")) {
        head.remove_prefix(end + 2);
        const std::string_view line = head.substr(0, head.find("\r\n"));
        if (!isHeader(line, name))
            continue;
        const std::size_t value = line.find_first_not_of(" \t", name.size() + 1);
        return value == std::string_view::npos ? "" : std::string(line.substr(value));
    }
    return "";
}

std::string percentDecoded(std::string_view text)
{
    std::string decoded;
    decoded.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const int byte = text[i] == '%' ? hexByte(text.substr(i + 1, 2)) : -1;
        decoded += byte < 0 ? text[i] : static_cast<char>(byte);
        i += byte < 0 ? 0 : 2;
    }
    return decoded;
}

std::string percentEncoded(std::string_view text)
{
    constexpr std::string_view unreserved =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
    constexpr char digits[] = "0123456789ABCDEF";
    std::string encoded;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (unreserved.find(c) != std::string_view::npos)
            encoded += c;
        else
            encoded += {'%', digits[byte >> 4U], digits[byte & 15U]};
    }
    return encoded;
}

std::string base64(std::string_view bytes)
{
    constexpr char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        std::uint32_t group = 0;
        for (std::size_t j = i; j < i + 3; ++j)
            group = group << 8U | (j < bytes.size() ? static_cast<unsigned char>(bytes[j]) : 0U);
        for (unsigned shift = 24; shift > 0; shift -= 6)
            text += alphabet[group >> (shift - 6) & 63U];
    }
    for (std::size_t missing = (3 - bytes.size() % 3) % 3; missing > 0; --missing)
        text[text.size() - missing] = '=';
    return text;
}

} // namespace kxsim
