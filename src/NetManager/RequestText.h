// The text of a request: what all request functions write alike.
#pragma once

#include <string_view>

#include "Core/UserInfo.h"
#include "NetManager/BoundedText.h"
#include "NetManager/Encoding.h"

inline constexpr std::size_t requestSize = urlBufferSize;

/// Adds a query with its blanks encoded; one that is too long to be encoded is left out.
void addQuery(BoundedText& request, std::string_view query);

/// Ends the request line and adds the headers, which are the same for every request, and the blank line.
void addHeaders(BoundedText& request, const UserInfo& session);
