# Fixtures of the Python module's tests: a clean environment where no config
# is found unless a test writes one, the sample config the C++ tests share
# (and a broken one), and the colorconfig program to compare with.
import json
import os
import subprocess

import pytest
import verra_colorconfig as vc

SAMPLE = open(os.path.join(os.path.dirname(__file__), "..", "support", "sample.ocio")).read()
BROKEN = SAMPLE + "  - !<ColorSpace> {name: film, to_scene_reference: !<FileTransform> {src: gone.spi1d}}\n"
PROGRAM = os.environ.get("VERRA_COLORCONFIG", "")


@pytest.fixture(autouse=True)
def clean_env(tmp_path, monkeypatch):
    monkeypatch.setenv("XDG_CONFIG_HOME", str(tmp_path / "xdg"))
    monkeypatch.delenv("OCIO", raising=False)
    vc.load_ocio_config("")


@pytest.fixture
def config(tmp_path):
    # Writes a config and loads it (in a test's own folder: OpenImageIO rereads no file it holds).
    def write(text=SAMPLE):
        (tmp_path / "sample.ocio").write_text(text)
        assert vc.load_ocio_config(str(tmp_path / "sample.ocio")).startswith("Using specified OCIO config")
        return str(tmp_path / "sample.ocio")
    return write


def program_json(*args):
    # The JSON that `colorconfig ARGS --json` prints; the test skips without the program.
    if not PROGRAM:
        pytest.skip("the colorconfig program is not built")
    run = subprocess.run([PROGRAM, *args, "--json"], capture_output=True, text=True)
    return json.loads(run.stdout)
