#include <orv/file.h>

#include <sys/stat.h>

#include <cstdio>
#include <string>

namespace orv {

/// The open file shared by every copy of a File handle. Closes the file
/// when the last handle goes.
class File::Body final : public RefCounted {
public:
    Body() noexcept = default;

    void close() noexcept
    {
        if (m_stream) {
            std::fclose(m_stream);
            m_stream = nullptr;
        }
    }

    std::FILE* m_stream = nullptr;
    Mode m_mode = Read;

private:
    ~Body() override { close(); }
};

namespace {

char const* modeString(File::Mode mode, File::Format format) noexcept
{
    bool const binary = format == File::Binary;
    switch (mode) {
    case File::Write:
        return binary ? "wb" : "w";
    case File::Append:
        return binary ? "ab" : "a";
    case File::Read:
        break;
    }
    return binary ? "rb" : "r";
}

bool isDirectoryStream(std::FILE* stream) noexcept
{
    struct stat info {};
    return ::fstat(::fileno(stream), &info) == 0 && S_ISDIR(info.st_mode);
}

} // namespace

File::Body* File::file() const noexcept
{
    return static_cast<Body*>(body());
}

bool File::open(String const& path, Mode mode, Format format)
{
    if (!file()) {
        adopt(new Body());
    }
    Body* const target = file();
    target->close();
    if (path.isEmpty()) {
        return false;
    }
    std::FILE* const stream = std::fopen(path.buf(), modeString(mode, format));
    if (!stream) {
        return false;
    }
    // Reading mode opens a directory without complaint on POSIX systems;
    // every later read would fail, so refuse it here.
    if (isDirectoryStream(stream)) {
        std::fclose(stream);
        return false;
    }
    target->m_stream = stream;
    target->m_mode = mode;
    return true;
}

bool File::isOpen() const noexcept
{
    Body const* const target = file();
    return target && target->m_stream;
}

String File::read()
{
    Body* const target = file();
    if (!target || !target->m_stream || target->m_mode != Read) {
        return String();
    }
    std::FILE* const stream = target->m_stream;
    if (std::fseek(stream, 0, SEEK_SET) != 0) {
        return String();
    }
    // Read in blocks rather than trusting the reported size, so files whose
    // size is unknown up front (pipes, /proc) come out whole too.
    std::string content;
    char block[65536];
    for (;;) {
        std::size_t const got = std::fread(block, 1, sizeof block, stream);
        content.append(block, got);
        if (got < sizeof block) {
            break;
        }
    }
    if (std::ferror(stream)) {
        std::clearerr(stream);
        return String();
    }
    std::clearerr(stream);
    return String(std::string_view(content));
}

bool File::write(String const& text)
{
    Body* const target = file();
    if (!target || !target->m_stream || target->m_mode == Read) {
        return false;
    }
    std::string_view const bytes = text.view();
    if (!bytes.empty() && std::fwrite(bytes.data(), 1, bytes.size(), target->m_stream) != bytes.size()) {
        return false;
    }
    // Flushed so that readers of the file see each write as soon as it returns.
    return std::fflush(target->m_stream) == 0;
}

void File::close() noexcept
{
    if (Body* const target = file()) {
        target->close();
    }
}

} // namespace orv
