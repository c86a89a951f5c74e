#pragma once
// Helpers shared by the conversion tests (sdk_conversion_tests only): a base
// fixture that knows whether its test is the first of the process, loading
// a test config through the module, bit-level float helpers, OpenImageIO's
// own colorconvert on copies (the reference for image and buffer results),
// and pixel arrays placed against inaccessible guard pages.
//
// The module and OpenColorIO keep process-wide state (the shared
// configuration, OpenColorIO's current config read once from $OCIO, the
// one-time logging set-up). CTest runs every test in its own process; a test
// that depends on a fresh process skips itself when run after another one.

#include "support/env_guard.h"
#include "support/log_capture.h"
#include "support/ocio_config.h"
#include "support/temp_dir.h"

#include <verra_sdk/colorconfig.h>

#include <OpenImageIO/imagebuf.h>
#include <OpenImageIO/imagebufalgo.h>

#include <gtest/gtest.h>

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace verra_test {

// ---------------------------------------------------------------------------
// Bits of floats and doubles
// ---------------------------------------------------------------------------

inline std::uint32_t floatBits(float value)
{
    std::uint32_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

inline float floatFromBits(std::uint32_t bits)
{
    float value = 0.0f;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

inline std::uint64_t doubleBits(double value)
{
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

inline double doubleFromBits(std::uint64_t bits)
{
    double value = 0.0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

/// Distance in units in the last place between two finite floats of any
/// sign (0 for +0 and -0).
inline std::int64_t ulpDistance(float a, float b)
{
    auto ordered = [](float f) -> std::int64_t {
        std::uint32_t const bits = floatBits(f);
        std::int64_t const magnitude = static_cast<std::int64_t>(bits & 0x7FFFFFFFu);
        return (bits & 0x80000000u) != 0 ? -magnitude : magnitude;
    };
    std::int64_t const d = ordered(a) - ordered(b);
    return d < 0 ? -d : d;
}

// ---------------------------------------------------------------------------
// Fixture
// ---------------------------------------------------------------------------

/// Number of tests of this binary started in this process.
inline int g_testsStarted = 0;

/// Base fixture: $OCIO is unset (and restored afterwards) before the test
/// makes any module call, so the shared configuration starts as OpenImageIO's
/// built-in one; a test config loaded with `loadConfig` is replaced by the
/// built-in colour spaces again at the end of the test.
class ConversionTest : public ::testing::Test {
protected:
    ConversionTest() { m_ocio.unset(); }

    void SetUp() override { m_firstInProcess = (g_testsStarted++ == 0); }

    void TearDown() override
    {
        if (m_loaded) {
            // ocio.txt is looked for under $XDG_CONFIG_HOME: point it at an
            // empty folder so that the built-in colour spaces win.
            TempDir const empty;
            EnvGuard const xdg("XDG_CONFIG_HOME");
            xdg.set(empty.path());
            EnvGuard const ocio("OCIO");
            ocio.unset();
            LogCapture const log;
            orv::verra_sdk::ColorConfig::loadOcioConfig(orv::String());
        }
    }

    /// True when no other test ran before this one in this process.
    bool firstInProcess() const { return m_firstInProcess; }

    /// Writes `text` as a config file and makes it the shared configuration
    /// through the module; fails the test when the module complains.
    std::string loadConfig(OcioConfigText const& text)
    {
        std::string const path = m_dir.write("config.ocio", text.str());
        LogCapture const log;
        orv::String const report = orv::verra_sdk::ColorConfig::loadOcioConfig(orv::String(path.c_str()));
        EXPECT_EQ(std::string(report.buf()), "Using specified OCIO config: " + path);
        EXPECT_TRUE(log.lines().empty()) << log.lines().front();
        m_loaded = true;
        return path;
    }

    TempDir m_dir;

private:
    EnvGuard m_ocio{"OCIO"};
    bool m_firstInProcess = false;
    bool m_loaded = false;
};

// ---------------------------------------------------------------------------
// OpenImageIO's own conversion, on copies
// ---------------------------------------------------------------------------

/// Runs `ImageBufAlgo::colorconvert` with a processor from `from` to `to` of
/// the shared configuration, over `dst` and `src` (memory of `width` ×
/// `height` pixels with the given channel counts and types, wrapped with
/// automatic strides). `src` may equal `dst` (in place). Returns
/// colorconvert's result; fails the test when there is no processor or
/// OpenImageIO leaves an error.
inline bool referenceConvert(void* dst, int dstChannels, OIIO::TypeDesc dstType, void const* src, int srcChannels,
                             OIIO::TypeDesc srcType, int width, int height, char const* from, char const* to,
                             OIIO::ROI roi = OIIO::ROI::All())
{
    OIIO::ColorProcessorHandle const processor =
        orv::verra_sdk::colorConfig().createColorProcessor(from, to, "", "");
    EXPECT_TRUE(processor) << "no processor from " << from << " to " << to;
    if (!processor) {
        return false;
    }
    OIIO::ImageBuf dstBuf(OIIO::ImageSpec(width, height, dstChannels, dstType), dst, OIIO::AutoStride,
                          OIIO::AutoStride, OIIO::AutoStride);
    bool ok = false;
    if (src == dst) {
        ok = OIIO::ImageBufAlgo::colorconvert(dstBuf, dstBuf, processor.get(), false, roi, 0);
    } else {
        OIIO::ImageBuf const srcBuf(OIIO::ImageSpec(width, height, srcChannels, srcType), const_cast<void*>(src),
                                    OIIO::AutoStride, OIIO::AutoStride, OIIO::AutoStride);
        ok = OIIO::ImageBufAlgo::colorconvert(dstBuf, srcBuf, processor.get(), false, roi, 0);
    }
    EXPECT_EQ(dstBuf.geterror(true), "");
    return ok;
}

// ---------------------------------------------------------------------------
// Memory next to guard pages
// ---------------------------------------------------------------------------

/// An anonymous mapping laid out as [guard page][data pages][guard page], the
/// guard pages inaccessible: any access before `atStart` or from `atEnd(n)`
/// + n on kills the process with SIGSEGV (AddressSanitizer cannot see
/// accesses made by OpenImageIO's uninstrumented code; the guard pages can).
class GuardedPages {
public:
    explicit GuardedPages(std::size_t bytes)
    {
        long const page = ::sysconf(_SC_PAGESIZE);
        m_page = page > 0 ? static_cast<std::size_t>(page) : 4096u;
        m_dataBytes = (bytes + m_page - 1) / m_page * m_page;
        if (m_dataBytes == 0) {
            m_dataBytes = m_page;
        }
        m_size = m_dataBytes + 2 * m_page;
        void* const base = ::mmap(nullptr, m_size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (base == MAP_FAILED) {
            ADD_FAILURE() << "mmap failed";
            return;
        }
        m_base = static_cast<unsigned char*>(base);
        if (::mprotect(m_base, m_page, PROT_NONE) != 0 ||
            ::mprotect(m_base + m_page + m_dataBytes, m_page, PROT_NONE) != 0) {
            ADD_FAILURE() << "mprotect failed";
        }
    }
    ~GuardedPages()
    {
        if (m_base != nullptr) {
            ::munmap(m_base, m_size);
        }
    }
    GuardedPages(GuardedPages const&) = delete;
    GuardedPages& operator=(GuardedPages const&) = delete;

    bool ok() const { return m_base != nullptr; }
    /// The first accessible byte, right after the first guard page.
    void* atStart() const { return m_base + m_page; }
    /// Where `bytes` bytes must start to end exactly at the second guard page.
    void* atEnd(std::size_t bytes) const { return m_base + m_page + m_dataBytes - bytes; }

private:
    unsigned char* m_base = nullptr;
    std::size_t m_page = 0;
    std::size_t m_dataBytes = 0;
    std::size_t m_size = 0;
};

/// An owning pixel array whose data the test points into a GuardedPages
/// mapping; the pointer is taken back before the array's destructor runs,
/// so the array never deletes memory it did not allocate.
template <class T>
struct BorrowedArray {
    orv::verra::Vector2d<T, true> array;

    BorrowedArray(T* pixels, std::uint32_t width, std::uint32_t height)
    {
        array.data = pixels;
        array.width = width;
        array.height = height;
        array.count = width * height;
    }
    ~BorrowedArray()
    {
        array.data = nullptr;
        array.width = array.height = array.count = 0;
    }
    BorrowedArray(BorrowedArray const&) = delete;
    BorrowedArray& operator=(BorrowedArray const&) = delete;
};

} // namespace verra_test
