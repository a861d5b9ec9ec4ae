// The text of a request: what all request functions write alike.
#pragma once

#include <string_view>

#include "Core/UserInfo.h"
#include "NetManager/BoundedText.h"
#include "NetManager/Encoding.h"

inline constexpr std::size_t requestSize = urlBufferSize;

/// Adds a query with its blanks encoded; one that is too long to be encoded is left out.
void addQuery(BoundedText& request, std::string_view query);

/// The base64 text of "user:password".
void addCredentials(BoundedText& request, std::string_view user, std::string_view password);

/// Ends the request line and adds the headers, which are the same for every request, and the blank line.
void addHeaders(BoundedText& request, std::string_view host, int port, std::string_view user,
                std::string_view password);
void addHeaders(BoundedText& request, const UserInfo& session);

/// Writes the whole request, as far as it fits: "GET", the target and behind it the query, the headers. The text lies
/// in the buffer.
std::string_view composeGet(char (&buffer)[requestSize], std::string_view target, std::string_view query,
                            const UserInfo& session);
