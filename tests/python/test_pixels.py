# Colours against the program, pixel arrays against OpenImageIO's own
# binding, and failures raised with the module's line, which stays off stderr.
import numpy as np
import OpenImageIO as oiio
import pytest
import verra_colorconfig as vc
from conftest import BROKEN, program_json


@pytest.mark.parametrize("src, dst, rgba", [
    ("sRGB", "linear", (0.5, -0.5, 2.0, 0.25)), ("lin", "srgb_tex", (0.5, 0.2, 0.1, 1.0))])
def test_colour_is_the_programs(config, src, dst, rgba):
    out = program_json("color", "--config", config(), "--from", src, "--to", dst, *map(repr, rgba))
    assert vc.transform(rgba, src, dst) == tuple(out["output"])
    assert vc.linear_to_color_space(rgba, dst) == vc.transform(rgba, "linear", dst)
    assert vc.color_space_to_linear(rgba, src) == vc.transform(rgba, src, "linear")


def theirs(operation, pixels, *args, out=None, **config):
    # `pixels` through OpenImageIO's own ImageBufAlgo `operation`, colours not divided by alpha.
    kind = "uint8" if pixels.dtype == np.uint8 else "float"
    buf = oiio.ImageBuf(oiio.ImageSpec(pixels.shape[1], pixels.shape[0], pixels.shape[2], kind))
    buf.set_pixels(oiio.ROI(), pixels)
    return getattr(oiio.ImageBufAlgo, operation)(buf, *args, unpremult=False, **config).get_pixels(out or kind)


PIXELS = np.random.default_rng(7).random((33, 17, 4), dtype=np.float32) * 1.2 - 0.1


def test_pixels_are_openimageios(config):
    path = config()
    rgba8 = (PIXELS.clip(0, 1) * 255).astype(np.uint8)
    rgb = np.ascontiguousarray(PIXELS[..., :3])
    image, rgba = rgba8.copy(), PIXELS.copy()
    assert vc.transform_image(image, "srgb_tex", "lin") is None
    np.testing.assert_array_equal(image, theirs("colorconvert", rgba8, "srgb_tex", "lin", colorconfig=path))
    assert vc.transform_rgb(rgba, "srgb_tex") is rgba
    np.testing.assert_array_equal(rgba, theirs("colorconvert", PIXELS, "linear", "srgb_tex", colorconfig=path))
    np.testing.assert_array_equal(vc.transform_rgb(rgb, "srgb_tex"), rgba[..., :3])
    made = vc.generate_rgba8(rgb, "srgb_tex")
    expected = theirs("colorconvert", rgb, "linear", "srgb_tex", out="uint8", colorconfig=path)
    np.testing.assert_array_equal(made, np.dstack([expected, np.full(rgb.shape[:2], 255, np.uint8)]))


def test_view_is_openimageios_and_looks_apply(config):
    path = config()
    view, bright, twice = PIXELS.copy(), PIXELS.copy(), PIXELS * np.float32([2, 2, 2, 1])
    vc.apply_view(view, "scene")
    # The look doubles scene-linear values before the view.
    vc.apply_view(bright, "lin", "Monitor", "Standard", looks=["Bright"])
    vc.apply_view(twice, "lin", "Monitor", "Standard")
    np.testing.assert_allclose(bright, twice, rtol=1e-6, atol=1e-6)
    shown = theirs("ociodisplay", PIXELS, "Monitor", "Tone", "lin", colorconfig=path)[..., :3]
    np.testing.assert_allclose(view, np.dstack([shown, PIXELS[..., 3]]), 1e-6, 1e-6)


@pytest.mark.parametrize("call, args, error, message", [
    ("transform_image", ("nope", "linear"), ValueError, "Cannot convert from 'nope' to 'linear'."),
    ("transform_rgb", ("nope",), ValueError, "Cannot convert from 'linear' to 'nope'."),
    ("generate_rgba8", ("film",), RuntimeError, "cannot convert from 'linear' to 'film': The specified file "),
    ("apply_view", ("lin", "nope"), ValueError, "unknown display 'nope'; the config's displays: 'Monitor'"),
])
def test_failures_raise_the_line(config, capfd, call, args, error, message):
    config(BROKEN)
    pixels = (np.zeros((2, 2, 4), np.uint8) if call == "transform_image"
              else np.zeros((2, 2, 3 if call == "generate_rgba8" else 4), np.float32))
    with pytest.raises(error) as raised:
        getattr(vc, call)(pixels, *args)
    assert str(raised.value).startswith(message)
    assert not pixels.any() and capfd.readouterr().err == ""


def ro(array):
    return np.lib.stride_tricks.as_strided(array, writeable=False)


@pytest.mark.parametrize("call, array, error, words", [
    ("transform_image", lambda: [[0, 0, 0, 0]], TypeError, "uint8 array of shape (H, W, 4)"),
    ("transform_image", lambda: np.zeros((2, 2, 4), np.float32), TypeError, "got dtype float32"),
    ("transform_image", lambda: np.zeros((2, 2, 3), np.uint8), ValueError, "got shape (2, 2, 3)"),
    ("transform_image", lambda: np.zeros((0, 2, 4), np.uint8), ValueError, "at least one pixel"),
    ("transform_image", lambda: np.zeros((2, 4, 4), np.uint8)[:, ::2], ValueError, "non-contiguous"),
    ("transform_image", lambda: ro(np.zeros((2, 2, 4), np.uint8)), ValueError, "read-only"),
    ("transform_image", lambda: np.broadcast_to(np.zeros(4, np.uint8), (70000, 70000, 4)), ValueError, "4294967295"),
    ("transform_rgb", lambda: np.zeros((2, 2, 4), ">f4"), TypeError, "got dtype >f4"),
    ("transform_rgb", lambda: np.frombuffer(bytearray(49), np.float32, 12, 1).reshape(2, 2, 3), ValueError,
     "misaligned"),
    ("apply_view", lambda: np.zeros((2, 2), np.float32), ValueError, "got shape (2, 2)"),
    ("generate_rgba8", lambda: ro(np.zeros((2, 2, 3), np.float32)), None, ""),  # read, not written
])
def test_bad_arrays_raise(config, call, array, error, words):
    config()
    args = {"apply_view": ("lin",), "transform_image": ("lin", "srgb_tex")}.get(call, ())
    if error is None:
        getattr(vc, call)(array(), *args)
        return
    with pytest.raises(error) as raised:
        getattr(vc, call)(array(), *args)
    assert words in str(raised.value)
