#pragma once
// Writing image files without ever leaving a damaged one behind: the new
// file is written beside its target and renamed over it only once every
// byte is known to be on disk.
//
// Threading: one write per target at a time (writes to different targets may
// run at once); `installWriteGuards` once, from the main thread. Failures are values; nothing is thrown or printed.

#include <verra_sdk/kit/image_file.h>

#include <cstddef>
#include <string>
#include <vector>

namespace orv::verra_sdk::kit {

/// Writes every level of `file` to `target`, in the format that `target`'s
/// name asks for, each with its `fileSpec` (tiling is dropped for formats
/// without tiles). The file is first written as a temporary file in the
/// target's folder; it replaces `target` (through a symbolic link, the file
/// it points to, whose permissions it takes) only when every write and the
/// final close succeeded, or, for formats that OpenImageIO writes without
/// letting us see each write, when the new file reads back whole. On any
/// failure the temporary file is removed, `target` is left as it was, and
/// `error` says why: a format that cannot hold several subimages or MIP
/// levels is refused before anything is written, and so is a `target` that
/// exists and is not a regular file (a folder, device, pipe or socket). Formats without MIP levels
/// but with subimages (TIFF) hold the levels as a texture's subimages; a file
/// with MIP levels is marked as a texture ("textureformat") unless it is one.
/// Colour is written in the form the format holds: not multiplied by alpha
/// in PNG, Targa and HEIF files, multiplied in OpenEXR and the other formats,
/// as `associatedAlpha` says in TIFF files (which record it); levels in the
/// other form are converted on a FLOAT copy. Costs the encoding of the file,
/// a copy of a level converted so, and for TIFF and HEIF a read back.
bool writeImageFile(std::string const& target, ImageFile const& file, std::string& error);

/// Removes the temporary files that writes to `targets` (or the files they
/// link to) left beside them when their program was killed before it could
/// remove them: the files of the targets' folders named as `writeImageFile`
/// names its temporary files for one of them
/// ("NAME.colorconfig-XXXXXXXX.tmp"), and no others. Returns how many were
/// removed; errors are passed over. Call it before writing, never while
/// another write to one of the targets runs. Costs one read of each folder.
std::size_t removeStaleTemporaries(std::vector<std::string> const& targets);

/// Writes `bytes` to `target` (a LUT file, a text) as `writeImageFile`
/// writes images: into a temporary file beside it, renamed over it (through
/// a symbolic link, the file it points to, whose permissions it takes) only
/// once every byte is written and the file is closed. On failure `target`
/// is left as it was, and `error` says why; a `target` that exists and is
/// not a regular file is refused. Costs one write of `bytes`.
bool writeTextFile(std::string const& target, std::string const& bytes, std::string& error);

/// Makes SIGINT, SIGTERM, SIGHUP and SIGQUIT, and an exit() from inside a
/// library, remove the temporary files of the writes in progress before the
/// program ends as asked, and makes a
/// file-size limit (SIGXFSZ) a write error instead of the end of the program.
/// Call once at start-up.
void installWriteGuards();

} // namespace orv::verra_sdk::kit
