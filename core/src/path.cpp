#include <orv/path.h>

#include "string_body.h"

#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

namespace orv {

namespace stdfs = std::filesystem;

namespace {

/// `text` with a leading "~" or "~/" replaced by $HOME; unchanged when HOME
/// is unset or empty, or when the text names another user's home ("~name").
std::string expandedHome(std::string_view text)
{
    std::string result(text);
    if (text.empty() || text[0] != '~' || (text.size() > 1 && text[1] != '/')) {
        return result;
    }
    char const* const home = std::getenv("HOME");
    if (!home || !*home) {
        return result;
    }
    result.replace(0, 1, home);
    return result;
}

stdfs::path toFsPath(IRefCounted const* body)
{
    return stdfs::path(detail::textOf(body));
}

} // namespace

Path::Path(String const& text, bool expandHome)
{
    std::string_view const source = text.view();
    if (expandHome && !source.empty() && source[0] == '~') {
        std::string expanded = expandedHome(source);
        if (expanded != source) {
            adopt(detail::makeTextBody(std::move(expanded)));
            return;
        }
    }
    // Same text: share the String's body.
    if (IRefCounted* const shared = text.body()) {
        shared->retain();
        adopt(shared);
    }
}

String Path::join(StringVector const& parts)
{
    std::string result;
    for (String const& part : parts) {
        std::string_view piece = part.view();
        if (piece.empty()) {
            continue;
        }
        if (!result.empty()) {
            bool const endsWithSeparator = result.back() == '/';
            bool const startsWithSeparator = piece.front() == '/';
            if (endsWithSeparator && startsWithSeparator) {
                piece.remove_prefix(1);
            } else if (!endsWithSeparator && !startsWithSeparator) {
                result += '/';
            }
        }
        result += piece;
    }
    return String(String::AdoptBody{}, detail::makeTextBody(std::move(result)));
}

String Path::ext(String const& name, bool withDot)
{
    std::string const extension = stdfs::path(name.view()).extension().string();
    if (extension.empty()) {
        return String();
    }
    std::string_view result(extension);
    if (!withDot) {
        result.remove_prefix(1); // extension() always starts with the dot
    }
    return String(result);
}

String Path::str() const noexcept
{
    IRefCounted* const shared = body();
    if (shared) {
        shared->retain();
    }
    return String(String::AdoptBody{}, shared);
}

bool Path::isEmpty() const noexcept
{
    return detail::textOf(body()).empty();
}

bool Path::isFile() const noexcept
{
    if (isEmpty()) {
        return false;
    }
    try {
        std::error_code ec;
        return stdfs::is_regular_file(toFsPath(body()), ec);
    } catch (...) {
        return false;
    }
}

bool Path::isDirectory() const noexcept
{
    if (isEmpty()) {
        return false;
    }
    try {
        std::error_code ec;
        return stdfs::is_directory(toFsPath(body()), ec);
    } catch (...) {
        return false;
    }
}

String Path::canonical() const
{
    if (isEmpty()) {
        return String();
    }
    stdfs::path const path = toFsPath(body());
    std::error_code ec;
    stdfs::path resolved = stdfs::canonical(path, ec);
    if (ec) {
        // The path does not exist (entirely): resolve what does and fold
        // the rest lexically.
        stdfs::path const absolute = stdfs::absolute(path, ec);
        if (ec) {
            return String(path.lexically_normal().native());
        }
        resolved = stdfs::weakly_canonical(absolute, ec);
        if (ec) {
            resolved = absolute.lexically_normal();
        }
    }
    return String(resolved.native());
}

String Path::normalized() const
{
    if (isEmpty()) {
        return String();
    }
    return String(toFsPath(body()).lexically_normal().native());
}

} // namespace orv
