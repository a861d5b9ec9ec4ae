// The text of a request: what all request functions write alike. In the header, so that the compiler can make one piece
// of composing a request.
#pragma once

#include <string_view>

#include "Core/UserInfo.h"
#include "NetManager/BoundedText.h"
#include "NetManager/Encoding.h"

inline constexpr std::size_t requestSize = urlBufferSize;

/// Adds a query with its blanks encoded; one that is too long to be encoded is left out.
inline void addQuery(BoundedText& request, std::string_view query)
{
    constexpr std::size_t longestQuery = urlBufferSize;
    if (query.size() <= longestQuery)
        request.addEscaped(query);
}

/// The base64 text of "user:password".
inline void addCredentials(BoundedText& request, std::string_view user, std::string_view password)
{
    char plain[256];
    BoundedText both(plain, sizeof plain);
    both.add(user);
    both.add(":");
    both.add(password);
    char encoded[base64Size(sizeof plain)];
    request.add({encoded, encodeBase64(plain, both.text().size(), encoded)});
}

/// Ends the request line and adds the headers, which are the same for every request, and the blank line.
inline void addHeaders(BoundedText& request, std::string_view host, int port, std::string_view user,
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

inline void addHeaders(BoundedText& request, const UserInfo& session)
{
    addHeaders(request, session.host, session.port, session.user, session.password);
}

/// Writes the whole request, as far as it fits: "GET", the target and behind it the query, the headers. The text lies
/// in the buffer.
inline std::string_view composeGet(char (&buffer)[requestSize], std::string_view target,
                                   std::string_view query, const UserInfo& session)
{
    BoundedText request(buffer, sizeof buffer);
    request.add("GET ");
    request.add(target);
    addQuery(request, query);
    addHeaders(request, session);
    return request.text();
}
