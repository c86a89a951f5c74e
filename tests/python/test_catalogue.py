# The catalogue, names and checks, against the colorconfig program's JSON.
import glob
import os

import pytest
import verra_colorconfig as vc
from conftest import BROKEN, SAMPLE, program_json


@pytest.mark.parametrize("text", [None, SAMPLE])
def test_catalogue_is_the_programs(config, text):
    args = ("info", "--config", config(text)) if text else ("info",)
    info = program_json(*args)
    assert vc.config_status()["report"] == info["report"]
    assert vc.color_spaces() == info["colorSpaces"]
    assert vc.views() == {d["name"]: d["views"] for d in info["displays"] if d["views"]}
    assert (vc.displays(), vc.default_display(), vc.default_view(), vc.looks()) == (
        [d["name"] for d in info["displays"]], info["defaultDisplay"], info["defaultView"], info["looks"])
    assert vc.roles_with_spaces() == {r["name"]: r["colorSpace"] for r in info["roles"]}
    assert sorted(vc.roles()) == sorted(vc.roles_with_spaces())
    assert vc.inactive_color_spaces() == info["inactiveColorSpaces"]


SHARED = sorted(glob.glob(os.path.join(os.environ.get("VERRA_SHARED_CONFIGS", "/nonexistent"), "*", "*.ocio")))


@pytest.mark.parametrize("name", ["sample", "broken"] + SHARED)
def test_check_is_the_programs(config, name):
    path = config({"sample": SAMPLE, "broken": BROKEN}[name]) if name in ("sample", "broken") else name
    expected = program_json("check", "--config", path)
    assert (vc.check_config(path), vc.check_config()) == (expected, expected)
    assert expected["ok"] is (name != "broken" and "ocio-v2.3" not in name)  # OpenColorIO 2.1 reads no 2.3 config
    if "context" in name:  # shot1 lacks the file that the config's default shot4 has
        shot1 = program_json("check", "--config", path, "--context", "SHOT=shot1")
        assert vc.check_config(path, context={"SHOT": "shot1"}) == shot1 != expected


@pytest.mark.parametrize("call, args, expected", [
    ("find_color_space", (" SRGB ",), "sRGB"),
    ("resolve_color_space", ("scene",), ("lin", "alias")),
    ("resolve_color_space", ("nope",), None),
    ("parse_color_space", ("a.PNG",), "sRGB"),
    ("closest_color_spaces", ("srgb_te",), ["srgb_tex", "sRGB"]),
    ("color_route", ("lin", "srgb_tex"), "processor"),
])
def test_names(config, call, args, expected):
    config()
    assert getattr(vc, call)(*args) == expected


def test_missing_config_is_reported_not_raised(tmp_path):
    report = vc.load_ocio_config(str(tmp_path / "none.ocio"))
    assert vc.config_status()["errors"] == [f"the config set by --config '{tmp_path}/none.ocio' was not found"]
    assert report == vc.config_status()["report"] and vc.color_spaces() == ["linear", "sRGB", "Rec709"]
