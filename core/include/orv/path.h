#pragma once
// orv::Path: a file-system path and the queries made on it.

#include <orv/string.h>
#include <orv/string_vector.h>

namespace orv {

/// A path handle: its body is a shared, immutable text, like a String's. Queries never throw; a path
/// that cannot be resolved answers false or its best textual form.
class Path : public RefersTo<IRefCounted> {
public:
    /// The empty path.
    Path() noexcept = default;
    /// A path from `text`. With `expandHome` true, a leading "~" or "~/" is
    /// replaced by the user's home directory ($HOME).
    Path(String const& text, bool expandHome);

    /// `parts` joined with "/", without doubling a separator that a part
    /// already ends or starts with. Empty parts are skipped.
    static String join(StringVector const& parts);
    /// The extension of the file name in `name`, in its own letter case,
    /// with its dot when `withDot` is true; empty when the name has none
    /// (a leading dot, as in ".profile", starts a name, not an extension).
    static String ext(String const& name, bool withDot);

    /// The path's text as given (after home expansion); shares the body.
    String str() const noexcept;
    /// True when the path has no text.
    bool isEmpty() const noexcept;
    /// True when the path names an existing regular file (links followed).
    bool isFile() const noexcept;
    /// True when the path names an existing directory.
    bool isDirectory() const noexcept;
    /// The absolute path with every link, "." and ".." resolved. For a path
    /// that does not exist, the resolvable prefix is resolved and the rest
    /// normalized; the empty path stays empty.
    String canonical() const;
    /// The path with "." and ".." folded and repeated separators merged,
    /// lexically (nothing is looked up); relative paths stay relative.
    String normalized() const;
};

} // namespace orv
