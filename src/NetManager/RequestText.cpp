#include "NetManager/RequestText.h"

namespace
{

constexpr std::size_t longestQuery = urlBufferSize;

void addCredentials(BoundedText& request, const UserInfo& session)
{
    char plain[256];
    BoundedText both(plain, sizeof plain);
    both.add(session.user);
    both.add(":");
    both.add(session.password);
    char encoded[base64Size(sizeof plain)];
    request.add({encoded, encodeBase64(plain, both.text().size(), encoded)});
}

} // namespace

void addQuery(BoundedText& request, std::string_view query)
{
    if (query.size() <= longestQuery)
        request.addEscaped(query);
}

void addHeaders(BoundedText& request, const UserInfo& session)
{
    request.add(" HTTP/1.1\r\nHost: ");
    request.add(session.host);
    request.add(":");
    request.add(session.port);
    request.add("\r\nConnection: Keep-Alive\r\nAuthorization: Basic ");
    addCredentials(request, session);
    request.add("\r\n\r\n");
}
