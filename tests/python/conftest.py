"""Fixtures of the Python module's tests: a clean environment where no config
is found unless a test writes one, small configs written as YAML text, and
the colorconfig program to compare with."""
import json
import os
import subprocess

import pytest
import verra_colorconfig as vc

SAMPLE = """ocio_profile_version: 2.1
roles: {default: lin, scene_linear: lin, color_picking: srgb_tex}
displays:
  Monitor: [!<View> {name: Standard, colorspace: srgb_tex}, !<View> {name: Raw, colorspace: raw}]
looks:
  - !<Look> {name: Bright, process_space: lin, transform: !<ExposureContrastTransform> {exposure: 1}}
inactive_colorspaces: [old]
colorspaces:
  - !<ColorSpace> {name: lin, aliases: [scene]}
  - !<ColorSpace> {name: raw, isdata: true}
  - !<ColorSpace> {name: srgb_tex, to_scene_reference: !<ExponentWithLinearTransform> {gamma: 2.4, offset: 0.055}}
  - !<ColorSpace> {name: old, to_scene_reference: !<ExponentTransform> {value: 1.8}}
"""
BROKEN = SAMPLE + "  - !<ColorSpace> {name: film, to_scene_reference: !<FileTransform> {src: gone.spi1d}}\n"
PROGRAM = os.environ.get("VERRA_COLORCONFIG", "")


@pytest.fixture(autouse=True)
def clean_env(tmp_path, monkeypatch):
    monkeypatch.setenv("XDG_CONFIG_HOME", str(tmp_path / "xdg"))
    monkeypatch.delenv("OCIO", raising=False)
    vc.load_ocio_config("")


@pytest.fixture
def config(tmp_path):
    """Writes a config and loads it (in a test's own folder: OpenImageIO rereads no file it holds)."""
    def write(text=SAMPLE):
        (tmp_path / "sample.ocio").write_text(text)
        assert vc.load_ocio_config(str(tmp_path / "sample.ocio")).startswith("Using specified OCIO config")
        return str(tmp_path / "sample.ocio")
    return write


def program_json(*args):
    """The JSON that `colorconfig ARGS --json` prints; the test skips without the program."""
    if not PROGRAM:
        pytest.skip("the colorconfig program is not built")
    run = subprocess.run([PROGRAM, *args, "--json"], capture_output=True, text=True)
    return json.loads(run.stdout)
