#include "NetManager/RequestText.h"

namespace
{

constexpr std::size_t longestQuery = urlBufferSize;

} // namespace

void addQuery(BoundedText& request, std::string_view query)
{
    if (query.size() <= longestQuery)
        request.addEscaped(query);
}

void addCredentials(BoundedText& request, std::string_view user, std::string_view password)
{
    char plain[256];
    BoundedText both(plain, sizeof plain);
    both.add(user);
    both.add(":");
    both.add(password);
    char encoded[base64Size(sizeof plain)];
    request.add({encoded, encodeBase64(plain, both.text().size(), encoded)});
}

void addHeaders(BoundedText& request, std::string_view host, int port, std::string_view user,
                std::string_view password)
{
    request.add(" HTTP/1.1\r\nHost: ");
    request.add(host);
    request.add(":");
    request.add(port);
    request.add("\r\nConnection: Keep-Alive\r\nAuthorization: Basic ");
    addCredentials(request, user, password);
    request.add("\r\n\r\n");
}

void addHeaders(BoundedText& request, const UserInfo& session)
{
    addHeaders(request, session.host, session.port, session.user, session.password);
}

std::string_view composeGet(char (&buffer)[requestSize], std::string_view target, std::string_view query,
                            const UserInfo& session)
{
    BoundedText request(buffer, sizeof buffer);
    request.add("GET ");
    request.add(target);
    addQuery(request, query);
    addHeaders(request, session);
    return request.text();
}
