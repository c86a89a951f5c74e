# The catalogue against the colorconfig program's JSON.
import pytest
import verra_colorconfig as vc
from conftest import SAMPLE, program_json


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
