#include <verra_sdk/kit/safe_output.h>

#include "half_floats.h"

#include <OpenImageIO/filesystem.h>
#include <OpenImageIO/imagebufalgo.h>
#include <OpenImageIO/imageio.h>
#include <OpenImageIO/strutil.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <map>
#include <set>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

namespace orv::verra_sdk::kit {

namespace {

namespace stdfs = std::filesystem;

/// The temporary files of the writes in progress, for the signal handler:
/// one slot per write, claimed and freed with atomic operations, which a
/// signal handler may read.
constexpr std::size_t kPendingSlots = 64;
char s_pendingPaths[kPendingSlots][4096];
/// 0: free; 1: being filled; 2: holds the path of a pending file.
std::atomic<int> s_pendingState[kPendingSlots];

void removePending()
{
    for (std::size_t slot = 0; slot < kPendingSlots; ++slot) {
        if (s_pendingState[slot].load() == 2) {
            ::unlink(s_pendingPaths[slot]);
        }
    }
}

extern "C" void removePendingAndExit(int signalNumber)
{
    removePending();
    std::signal(signalNumber, SIG_DFL);
    std::raise(signalNumber);
}

/// The suffix of a temporary file's name after the target's name:
/// ".colorconfig-" eight hexadecimal digits ".tmp".
constexpr char const* kTemporaryMark = ".colorconfig-";
constexpr std::size_t kTemporaryDigits = 8;
constexpr char const* kTemporaryEnd = ".tmp";

/// A temporary file that is removed when it goes, unless it was renamed
/// into place.
class PendingFile {
public:
    explicit PendingFile(std::string path) : m_path(std::move(path))
    {
        // Without a free slot, or for a longer path, a signal leaves the file
        // behind, and the next write to the target removes it.
        for (std::size_t slot = 0; slot < kPendingSlots && m_path.size() < sizeof s_pendingPaths[0]; ++slot) {
            int expected = 0;
            if (s_pendingState[slot].compare_exchange_strong(expected, 1)) {
                std::memcpy(s_pendingPaths[slot], m_path.c_str(), m_path.size() + 1);
                s_pendingState[slot].store(2);
                m_slot = slot;
                break;
            }
        }
    }
    ~PendingFile()
    {
        if (m_slot < kPendingSlots) {
            s_pendingState[m_slot].store(0);
        }
        if (!m_committed) {
            ::unlink(m_path.c_str());
        }
    }
    PendingFile(PendingFile const&) = delete;
    PendingFile& operator=(PendingFile const&) = delete;

    std::string const& path() const { return m_path; }

    /// Renames the file over `target`; false, with the reason, on failure.
    bool commit(std::string const& target, std::string& error)
    {
        m_committed = ::rename(m_path.c_str(), target.c_str()) == 0;
        if (!m_committed) {
            error = std::strerror(errno);
        }
        return m_committed;
    }

private:
    std::string m_path;
    bool m_committed = false;
    std::size_t m_slot = kPendingSlots;
};

/// OpenImageIO's stdio proxy that remembers the first short write, which
/// some of OpenImageIO's writers do not check themselves.
class CheckedFile : public OIIO::Filesystem::IOFile {
public:
    explicit CheckedFile(FILE* file) : IOFile(file, Write) {}

    size_t write(void const* buffer, size_t size) override { return checked(IOFile::write(buffer, size), size); }
    size_t pwrite(void const* buffer, size_t size, int64_t offset) override
    {
        return checked(IOFile::pwrite(buffer, size, offset), size);
    }

    /// The reason of the first failed write, or empty.
    std::string const& failure() const { return m_failure; }

private:
    size_t checked(size_t written, size_t size)
    {
        if (written != size && m_failure.empty()) {
            m_failure = errno != 0 ? std::strerror(errno) : "short write";
        }
        return written;
    }

    std::string m_failure;
};

/// Where the bytes of `target` really go: the file a symbolic link points
/// to, so that the link stays a link.
std::string realTarget(std::string const& target)
{
    std::error_code failed;
    if (stdfs::is_symlink(stdfs::symlink_status(target, failed))) {
        stdfs::path const resolved = stdfs::weakly_canonical(target, failed);
        if (!failed) {
            return resolved.string();
        }
    }
    return target;
}

/// True when `output` stores MIP levels as a texture's subimages, as TIFF
/// textures do: its readers take the subimages of a file marked as a
/// texture for the MIP levels of one image.
bool mipLevelsAsSubimages(OIIO::ImageOutput& output)
{
    return !output.supports("mipmap") && output.supports("multiimage") && output.supports("appendsubimage");
}

/// Refuses a file that the output format cannot hold whole.
bool checkFormatHolds(OIIO::ImageOutput& output, ImageFile const& file, std::string& error)
{
    std::string const format = output.format_name();
    if (file.subimages > 1 && !output.supports("multiimage")) {
        error = "a " + format + " file holds one image, and the input has " + std::to_string(file.subimages) +
                " subimages; choose a format that holds them all (exr, tif)";
        return false;
    }
    bool const severalSubimages = file.subimages > 1;
    if (file.mipmapped && !output.supports("mipmap") && (severalSubimages || !mipLevelsAsSubimages(output))) {
        error = "a " + format + " file holds no MIP levels" + (severalSubimages ? " in several subimages" : "") +
                ", and the input has them; choose a format that holds them (exr" + (severalSubimages ? ")" : ", tif)");
        return false;
    }
    return true;
}

/// The mark under which OpenImageIO's writers take colour values that are
/// not multiplied by alpha.
constexpr char const* kUnassociatedAlpha = "oiio:UnassociatedAlpha";

/// True when `level` goes to a file of the format `format` with colour values
/// not multiplied by alpha. PNG and Targa files hold them so (their writers
/// divide associated values by alpha themselves, in integers, unless the
/// ImageSpec is marked); HEIF files are written as given and read back as
/// unassociated; TIFF files hold either form, marked; every other format
/// holds the values as given, and OpenImageIO reads them as associated.
bool writesUnassociated(std::string const& format, ImageLevel const& level)
{
    if (format == "tiff") {
        return !level.associatedAlpha;
    }
    return format == "png" || format == "targa" || format == "heif";
}

/// The pixels of `level` in the form that its file holds (see
/// `writesUnassociated`): its own, or a FLOAT copy in `converted` divided or
/// multiplied by alpha. False, with the reason, when the copy fails.
bool pixelsToWrite(ImageLevel const& level, bool unassociated, OIIO::ImageBuf const*& pixels, OIIO::ImageBuf& converted,
                   std::string& error)
{
    bool const convert = level.pixels.spec().alpha_channel >= 0 && unassociated == level.associatedAlpha;
    bool const copied = !convert || (OIIO::ImageBufAlgo::copy(converted, level.pixels, OIIO::TypeDesc::FLOAT) &&
                                     (unassociated ? OIIO::ImageBufAlgo::unpremult(converted, converted)
                                                   : OIIO::ImageBufAlgo::premult(converted, converted)));
    if (!copied) {
        error = orUnknown(converted.geterror());
    }
    pixels = convert ? &converted : &level.pixels;
    return copied;
}

/// The specs to write: the files' own, without tiling where the format has
/// none, marked as a texture where there are MIP levels (OpenEXR writes MIP
/// levels, and TIFF readers take subimages for them, only in textures), and
/// marked as holding unassociated alpha where they do.
std::vector<OIIO::ImageSpec> outputSpecs(OIIO::ImageOutput& output, ImageFile const& file)
{
    std::vector<OIIO::ImageSpec> specs;
    for (ImageLevel const& level : file.levels) {
        specs.push_back(level.fileSpec);
        if (!output.supports("tiles")) {
            specs.back().tile_width = specs.back().tile_height = specs.back().tile_depth = 0;
        }
        if (file.mipmapped && specs.back().get_string_attribute("textureformat").empty()) {
            specs.back().attribute("textureformat", "Plain Texture");
        }
        specs.back().attribute(kUnassociatedAlpha, int(writesUnassociated(output.format_name(), level)));
    }
    return specs;
}

/// Writes `pixels` as the level `output` has open. FLOAT pixels of a HALF
/// scanline file go in bands of rows, each converted as it goes: the same
/// values as OpenImageIO's conversion, in a tenth of its time.
bool writePixels(OIIO::ImageOutput& output, OIIO::ImageBuf const& pixels)
{
    OIIO::ImageSpec const& spec = output.spec();
    auto const* floats = static_cast<float const*>(pixels.localpixels());
    if (pixels.spec().format != OIIO::TypeDesc::FLOAT || spec.format != OIIO::TypeDesc::HALF ||
        !spec.channelformats.empty() || spec.tile_width != 0 || spec.depth != 1 ||
        pixels.spec().nchannels != spec.nchannels || pixels.spec().width != spec.width ||
        pixels.spec().height != spec.height) {
        return output.write_image(pixels.spec().format, floats);
    }
    std::size_t const rowValues = std::size_t(spec.width) * std::size_t(spec.nchannels);
    std::vector<std::uint16_t> band(detail::kBandRows * rowValues);
    for (int y = spec.y; y < spec.y + spec.height; y += detail::kBandRows) {
        int const end = std::min(y + detail::kBandRows, spec.y + spec.height);
        detail::floatToHalf(floats + std::size_t(y - spec.y) * rowValues, band.data(),
                            std::size_t(end - y) * rowValues);
        if (!output.write_scanlines(y, end, spec.z, OIIO::TypeDesc::HALF, band.data())) {
            return false;
        }
    }
    return true;
}

bool writeLevels(OIIO::ImageOutput& output, std::string const& path, ImageFile const& file,
                 std::vector<OIIO::ImageSpec> const& specs, std::string& error)
{
    std::string const format = output.format_name();
    std::vector<OIIO::ImageSpec> firstLevels;
    for (std::size_t i = 0; i < file.levels.size(); ++i) {
        if (file.levels[i].miplevel == 0) {
            firstLevels.push_back(specs[i]);
        }
    }
    for (std::size_t i = 0; i < file.levels.size(); ++i) {
        ImageLevel const& level = file.levels[i];
        bool const appendLevel = level.miplevel > 0 && output.supports("mipmap");
        bool const opened =
            i == 0 ? output.open(path, static_cast<int>(firstLevels.size()), firstLevels.data())
                   : output.open(path, specs[i],
                                 appendLevel ? OIIO::ImageOutput::AppendMIPLevel : OIIO::ImageOutput::AppendSubimage);
        OIIO::ImageBuf const* pixels = nullptr;
        OIIO::ImageBuf converted;
        if (!opened || !pixelsToWrite(level, writesUnassociated(format, level), pixels, converted, error) ||
            !writePixels(output, *pixels)) {
            return false;
        }
    }
    return output.close();
}

/// Reads `path` back whole: the check for formats whose writes we cannot see.
bool readsBack(std::string const& path, ImageFile const& file, std::string& error)
{
    ImageFile copy;
    if (!readImageFile(path, Precision::KeepBytes, copy, error)) {
        error = "the written file does not read back: " + error;
        return false;
    }
    if (copy.levels.size() != file.levels.size() || copy.mipmapped != file.mipmapped) {
        error = "the written file does not hold every image";
        return false;
    }
    return true;
}

/// Gives the new file the permissions of the file it replaces.
void keepPermissions(std::string const& path, std::string const& replaced)
{
    struct stat old {};
    if (::stat(replaced.c_str(), &old) == 0) {
        ::chmod(path.c_str(), old.st_mode & 07777);
    }
}

/// False, with the reason, when `destination` exists and is not a regular
/// file: a device, pipe or socket would be replaced by a plain file, not
/// written.
bool replaceable(std::string const& destination, std::string& error)
{
    struct stat existing {};
    if (::stat(destination.c_str(), &existing) == 0 && !S_ISREG(existing.st_mode)) {
        error = S_ISDIR(existing.st_mode) ? "it is a folder" : "it is not a regular file";
        return false;
    }
    return true;
}

/// A new temporary name beside `destination`.
std::string pendingPath(std::string const& destination)
{
    return destination + kTemporaryMark + OIIO::Filesystem::unique_path("%%%%%%%%") + kTemporaryEnd;
}

} // namespace

bool writeTextFile(std::string const& target, std::string const& bytes, std::string& error)
{
    std::string const destination = realTarget(target);
    if (!replaceable(destination, error)) {
        return false;
    }
    PendingFile pending(pendingPath(destination));
    FILE* const stream = std::fopen(pending.path().c_str(), "wbx");
    if (stream == nullptr) {
        error = std::strerror(errno);
        return false;
    }
    bool const written = std::fwrite(bytes.data(), 1, bytes.size(), stream) == bytes.size();
    error = written ? "" : std::strerror(errno);
    // The last buffered bytes reach the file only here.
    if (std::fclose(stream) != 0 && written) {
        error = std::strerror(errno);
    }
    if (!error.empty()) {
        return false;
    }
    keepPermissions(pending.path(), destination);
    return pending.commit(destination, error);
}

bool writeImageFile(std::string const& target, ImageFile const& file, std::string& error)
{
    auto output = OIIO::ImageOutput::create(target);
    if (!output) {
        error = orUnknown(OIIO::geterror());
        return false;
    }
    if (!checkFormatHolds(*output, file, error)) {
        return false;
    }
    std::string const destination = realTarget(target);
    if (!replaceable(destination, error)) {
        return false;
    }
    PendingFile pending(pendingPath(destination));
    FILE* stream = std::fopen(pending.path().c_str(), "wbx");
    if (stream == nullptr) {
        error = std::strerror(errno);
        return false;
    }
    // How a failed write is seen, format by format:
    // - OpenEXR checks every write itself and throws, which OpenImageIO
    //   reports (and OpenImageIO 2.4.7's EXR writer reads uninitialised
    //   memory when it closes a proxy);
    // - libtiff reads its own directories back while it writes, which a
    //   write-only stream cannot serve: TIFF files are read back;
    // - other formats go through the proxy where OpenImageIO takes one, and
    //   are read back where it does not.
    std::string const format = output->format_name();
    bool const selfChecked = format == "openexr";
    bool const checkedWrites = output->supports("ioproxy") != 0 && format != "tiff" && !selfChecked;
    CheckedFile proxy(stream);
    if (checkedWrites) {
        output->set_ioproxy(&proxy);
    } else {
        std::fclose(stream);
        stream = nullptr;
    }
    std::string levelError;
    bool const written = writeLevels(*output, pending.path(), file, outputSpecs(*output, file), levelError);
    std::string const outputError = levelError.empty() ? output->geterror() : levelError;
    output.reset();
    // The last buffered bytes reach the file only here.
    std::string closeError;
    if (stream != nullptr) {
        if (std::fflush(stream) != 0) {
            closeError = std::strerror(errno);
        }
        if (std::fclose(stream) != 0 && closeError.empty()) {
            closeError = std::strerror(errno);
        }
    }
    if (!proxy.failure().empty()) {
        error = proxy.failure();
        return false;
    }
    if (!written) {
        error = orUnknown(outputError);
        return false;
    }
    if (!closeError.empty()) {
        error = closeError;
        return false;
    }
    if (!checkedWrites && !selfChecked && !readsBack(pending.path(), file, error)) {
        return false;
    }
    keepPermissions(pending.path(), destination);
    return pending.commit(destination, error);
}

std::size_t removeStaleTemporaries(std::vector<std::string> const& targets)
{
    // The targets' names by folder: each folder is read once.
    std::map<stdfs::path, std::set<std::string>> folders;
    for (std::string const& target : targets) {
        stdfs::path const destination(realTarget(target));
        folders[destination.has_parent_path() ? destination.parent_path() : stdfs::path(".")].insert(
            destination.filename().string());
    }
    std::size_t const suffix = std::strlen(kTemporaryMark) + kTemporaryDigits + std::strlen(kTemporaryEnd);
    std::size_t removed = 0;
    for (auto const& [folder, names] : folders) {
        std::error_code failed;
        for (stdfs::directory_iterator entry(folder, failed), end; !failed && entry != end; entry.increment(failed)) {
            std::string const name = entry->path().filename().string();
            std::size_t const base = name.size() > suffix ? name.size() - suffix : 0;
            bool const ours = base > 0 && name.compare(base, std::strlen(kTemporaryMark), kTemporaryMark) == 0 &&
                              OIIO::Strutil::ends_with(name, kTemporaryEnd) &&
                              name.find_first_not_of("0123456789abcdef", base + std::strlen(kTemporaryMark)) ==
                                  name.size() - std::strlen(kTemporaryEnd) &&
                              names.count(name.substr(0, base)) != 0;
            std::error_code ignored;
            if (ours && entry->is_regular_file(ignored) && stdfs::remove(entry->path(), ignored)) {
                ++removed;
            }
        }
    }
    return removed;
}

void installWriteGuards()
{
    // Some of OpenImageIO's libraries end the program on a write error
    // (libjpeg): the temporary file goes then too.
    std::atexit(removePending);
    std::signal(SIGXFSZ, SIG_IGN);
    for (int signalNumber : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        // A signal the program was started to ignore stays ignored.
        if (std::signal(signalNumber, removePendingAndExit) == SIG_IGN) {
            std::signal(signalNumber, SIG_IGN);
        }
    }
}

} // namespace orv::verra_sdk::kit
