# Image files: the same files as the program writes, and its file safety.
import os
import subprocess

import numpy as np
import OpenImageIO as oiio
import pytest
import verra_colorconfig as vc
from conftest import PROGRAM, program_json


@pytest.fixture
def png(tmp_path):
    out = oiio.ImageBuf(oiio.ImageSpec(8, 4, 4, "uint8"))
    out.set_pixels(oiio.ROI(), np.arange(128, dtype=np.uint8).reshape(4, 8, 4) * 2)
    return str(tmp_path / "in.png") if out.write(str(tmp_path / "in.png")) else None


def pixels_and_space(path):
    buf = oiio.ImageBuf(path)
    return buf.get_pixels("float").tolist(), buf.spec().get_string_attribute("oiio:ColorSpace")


@pytest.mark.parametrize("call, args, options, words", [
    (vc.convert_file, ("srgb_tex", "scene"), {}, ["convert", "--from", "srgb_tex", "--to", "scene"]),
    (vc.convert_file, ("lin", "lin"), {"looks": "Bright"}, ["convert", "--from", "lin", "--to", "lin", "--look", "Bright"]),
    (vc.view_file, ("srgb_tex", None, "Standard", ["Bright"]), {},
     ["view", "--from", "srgb_tex", "--view", "Standard", "--look", "Bright"]),
    (vc.view_file, ("lin",), {"inverse": True, "context": {"SHOT": "a"}},
     ["view", "--from", "lin", "--inverse", "--context", "SHOT=a"]),
])
def test_files_are_the_programs(config, png, call, args, options, words):
    if not PROGRAM:
        pytest.skip("the colorconfig program is not built")
    path = config()
    ours, theirs = png[:-4] + "_ours.exr", png[:-4] + "_theirs.exr"
    shown = None if call is vc.convert_file else ("Monitor", args[2] if len(args) > 2 else "Tone")
    assert call(png, ours, *args, **options) == shown
    subprocess.run([PROGRAM, words[0], "--config", path, *words[1:], png, theirs], check=True)
    assert pixels_and_space(ours) == pixels_and_space(theirs)


@pytest.mark.parametrize("dst, src, error, message", [
    ("in.png", "in.png", ValueError, "'{0}/in.png' would replace its own input; choose another output"),
    ("out.exr", "gone.png", OSError, "cannot read '{0}/gone.png': "),
    ("no/out.exr", "in.png", OSError, "cannot write '{0}/no/out.exr': "),
])
def test_files_refused(config, png, tmp_path, dst, src, error, message):
    config()
    before = sorted(os.listdir(tmp_path))
    with pytest.raises(error) as raised:
        vc.convert_file(str(tmp_path / src), str(tmp_path / dst), "srgb_tex", "lin")
    assert str(raised.value).startswith(message.format(tmp_path))
    assert sorted(os.listdir(tmp_path)) == before


def test_bake_is_the_programs(config, tmp_path):
    path = config()
    ours = vc.bake_lut(str(tmp_path / "ours.cube"), "lin", display="Monitor", looks="Bright", size=17)
    theirs = program_json("bake", "--config", path, "--from", "lin", "--look", "Bright", "--size", "17",
                          str(tmp_path / "theirs.cube"))
    assert (ours["format"], ours["largest_error"]) == (theirs["format"], theirs["largest_error"])
    assert (tmp_path / "ours.cube").read_text() == (tmp_path / "theirs.cube").read_text()
    with pytest.raises(ValueError, match="unknown LUT format 'icc'; the formats: flame"):
        vc.bake_lut(str(tmp_path / "x.cube"), "lin", "raw", format="icc")
