// The text side of HTTP: heads taken apart, replies put together, and the encodings in them.
#pragma once

#include <string>
#include <string_view>

namespace kxsim
{

/// "404 Not Found"
std::string statusText(int status);

/// A well-formed reply. Without `tellLength` it has no Content-Length and ends with the connection.
std::string renderReply(int status, std::string_view body, bool tellLength = true);

/// A reply whose body is a file. Unlike its other replies, the camera ends the lines of its header with bare line feeds.
std::string renderFile(std::string_view name, std::string_view body, bool tellLength = true);

/// The status that a reply's first line tells, or 0 when these bytes do not begin with one.
int statusOf(std::string_view reply);

/// The second word of the request line; empty when there is none.
std::string targetOf(std::string_view head);

/// The value of a header; empty when the head lacks it. Upper and lower case of the name are the same.
std::string headerOf(std::string_view head, std::string_view name);

/// "%41" becomes "A"; a percent sign without two hexadecimal digits stays.
std::string percentDecoded(std::string_view text);
/// What may not stand in a part of a path becomes "%41".
std::string percentEncoded(std::string_view text);

std::string base64(std::string_view bytes);

} // namespace kxsim
