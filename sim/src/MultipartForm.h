// The form in which clients send files.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kxsim
{

struct UploadedFile
{
    std::string name;
    std::string content;
};

/// The file of a form with the one part "file"; nothing when the body is anything else than such a form, be it by a
/// single byte. `contentType` is the request's, which tells the boundary.
std::optional<UploadedFile> uploadedFile(std::string_view contentType, std::string_view body);

} // namespace kxsim
