#include "MultipartForm.h"

#include "HttpText.h"

namespace kxsim
{
namespace
{

constexpr std::string_view blankLine = "\r\n\r\n";

/// Takes an opening off a text; false when the text has another one.
bool skip(std::string_view& text, std::string_view opening)
{
    if (!text.starts_with(opening))
        return false;
    text.remove_prefix(opening.size());
    return true;
}

/// The file name out of the part's description; nothing when the part is another one.
std::optional<std::string> fileNameOf(std::string_view disposition)
{
    if (!skip(disposition, "form-data; name=\"file\"; filename=\"") || !disposition.ends_with('"'))
        return std::nullopt;
    disposition.remove_suffix(1);
    return std::string(disposition);
}

} // namespace

std::optional<UploadedFile> uploadedFile(std::string_view contentType, std::string_view body)
{
    if (!skip(contentType, "multipart/form-data; boundary="))
        return std::nullopt;
    const std::string separator = "--" + std::string(contentType);
    const std::string closing = "\r\n" + separator + "--\r\n";
    if (!skip(body, separator) || !body.ends_with(closing))
        return std::nullopt;
    body.remove_suffix(closing.size());
    const std::size_t headerEnd = body.find(blankLine);
    if (headerEnd == std::string_view::npos)
        return std::nullopt;
    const auto name = fileNameOf(headerOf(body.substr(0, headerEnd), "Content-Disposition"));
    if (!name)
        return std::nullopt;
    return UploadedFile{*name, std::string(body.substr(headerEnd + blankLine.size()))};
}

} // namespace kxsim
