# Eight threads converting and querying at once give what the same calls
# give one after another.
from concurrent.futures import ThreadPoolExecutor

import numpy as np
import verra_colorconfig as vc

INPUTS = [np.random.default_rng(i).random((96, 64, 4), dtype=np.float32) for i in range(24)]


def work(i):
    rgba, image, view = INPUTS[i].copy(), (INPUTS[i] * 255).astype(np.uint8), INPUTS[i].copy()
    vc.transform_rgb(rgba, ["srgb_tex", "sRGB", "Rec709"][i % 3])
    vc.transform_image(image, "srgb_tex", "lin")
    vc.apply_view(view, "lin", looks=["Bright"] if i % 2 else [])
    return (rgba, image, view, vc.generate_rgba8(np.ascontiguousarray(INPUTS[i][..., :3]), "srgb_tex"),
            vc.color_spaces(), vc.views(), vc.transform((0.5, 0.2, 0.1, 1.0), "lin", "srgb_tex"),
            vc.resolve_color_space("scene"), vc.parse_color_space("plate_srgb_tex.exr"), vc.check_config()["ok"])


def test_threads_agree_with_sequential_calls(config):
    config()
    sequential = [work(i) for i in range(len(INPUTS))]
    with ThreadPoolExecutor(8) as pool:
        parallel = list(pool.map(work, range(len(INPUTS))))
    for one, other in zip(sequential, parallel):
        for a, b in zip(one, other):
            assert np.array_equal(a, b) if isinstance(a, np.ndarray) else a == b
