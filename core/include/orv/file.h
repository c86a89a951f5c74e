#pragma once
// orv::File: a file opened for reading or writing, shared by its handles.

#include <orv/ref_counted.h>
#include <orv/string.h>

namespace orv {

/// A file handle. A default File is not open. The file closes when the last
/// handle on it goes (or on `close`). Failures are `false` or empty results.
class File : public RefersTo<RefCounted> {
public:
    /// How `open` opens the file. `Read` (0) needs an existing file.
    enum Mode { Read = 0, Write = 1, Append = 2 };
    /// `Binary` (0) passes bytes through unchanged; `Text` is the same on
    /// POSIX systems and exists for hosts that share code with other platforms.
    enum Format { Binary = 0, Text = 1 };

    /// A file object that is not open.
    File() noexcept = default;

    /// Opens `path` (closing whatever this handle had open). False when the
    /// file cannot be opened or names a directory.
    bool open(String const& path, Mode mode, Format format);
    /// True while the file is open.
    bool isOpen() const noexcept;
    /// The whole content, from the start of the file; empty when the file is
    /// not open for reading or cannot be read.
    String read();
    /// Writes `text`; false when the file is not open for writing or the
    /// write fails.
    bool write(String const& text);
    /// Closes the file for every handle on it.
    void close() noexcept;

private:
    class Body;
    Body* file() const noexcept;
};

} // namespace orv
