"""The Verra colour-configuration module and its toolkit: the OpenColorIO
configuration of the process, its catalogue, conversions of colours, numpy
pixel arrays (in place, without copies) and image files."""

from typing import Any, Dict, List, Optional, Sequence, Tuple, Union

import numpy
import numpy.typing

Rgba = Tuple[float, float, float, float]
Looks = Union[str, Sequence[str]]

def load_ocio_config(path: str = "") -> str:
    """Chooses the process's OpenColorIO configuration; returns the module's report."""

def config_status() -> Dict[str, Any]:
    """The latest load: 'report', 'source', 'file', 'errors', 'warnings'."""

def color_spaces() -> List[str]:
    """'linear', 'sRGB', 'Rec709', then the config's colour spaces."""

def displays() -> List[str]:
    """The config's displays, in its order."""

def looks() -> List[str]:
    """The config's looks, in its order."""

def roles() -> List[str]:
    """The config's role names."""

def default_display() -> str:
    """The config's default display, or ''."""

def default_view() -> str:
    """The default view of the default display, or ''."""

def views() -> Dict[str, List[str]]:
    """Each display that has views, mapped to its views."""

def find_color_space(name: str) -> str:
    """The listed form of `name` (trimmed, any case), or '' when unknown."""

def parse_color_space(file_name: str, fallback: bool = True) -> str:
    """The colour space of a file from its name; '' when nothing answered and not `fallback`."""

def resolve_color_space(name: str) -> Optional[Tuple[str, str]]:
    """(canonical name, how) through the list, aliases, roles and inactive spaces; None when unknown."""

def closest_color_spaces(name: str, limit: int = 3) -> List[str]:
    """Up to `limit` colour-space names that resemble `name`."""

def inactive_color_spaces() -> List[str]:
    """The config's inactive colour spaces."""

def roles_with_spaces() -> Dict[str, str]:
    """Each role of the config mapped to its colour space."""

def check_config(path: Optional[str] = None, *, context: Dict[str, str] = {}) -> Dict[str, Any]:
    """The content of `colorconfig check --json`, with 'ok'; loads `path` first when given."""

def transform(rgba: Sequence[float], from_space: str, to_space: str) -> Rgba:
    """One colour converted; returned unchanged when it cannot be converted."""

def color_space_to_linear(rgba: Sequence[float], from_space: str) -> Rgba:
    """transform(rgba, from_space, 'linear')."""

def linear_to_color_space(rgba: Sequence[float], to_space: str) -> Rgba:
    """transform(rgba, 'linear', to_space)."""

def color_route(from_space: str, to_space: str) -> str:
    """'same', 'built-in curve', 'processor' or 'none'."""

def transform_image(pixels: numpy.typing.NDArray[numpy.uint8], from_space: str, to_space: str) -> None:
    """Converts uint8 (H, W, 4) pixels in place; ValueError/RuntimeError on failure."""

def generate_rgba8(pixels: numpy.typing.NDArray[numpy.float32], to_space: str = "sRGB") -> numpy.typing.NDArray[numpy.uint8]:
    """float32 (H, W, 3) out of 'linear' into `to_space`, as new opaque uint8 (H, W, 4)."""

def transform_rgb(pixels: numpy.typing.NDArray[numpy.float32], to_space: str = "sRGB") -> numpy.typing.NDArray[numpy.float32]:
    """(H, W, 3): a new converted array; (H, W, 4): converted in place and returned."""

def apply_view(
    pixels: numpy.typing.NDArray[numpy.float32],
    from_space: str,
    display: Optional[str] = None,
    view: Optional[str] = None,
    looks: Looks = (),
    *,
    inverse: bool = False,
    context: Dict[str, str] = {},
) -> None:
    """The config's display/view transform (or its inverse) on float32 (H, W, 3 or 4) pixels, in place."""

def convert_file(
    src: str,
    dst: str,
    from_space: Optional[str] = None,
    to_space: Optional[str] = None,
    *,
    unassociated_alpha: bool = False,
    looks: Looks = (),
    lut: Optional[str] = None,
    invert: bool = False,
    context: Dict[str, str] = {},
    frames: Optional[str] = None,
    jobs: int = 0,
    threads: int = 0,
    update: bool = False,
    data_type: Optional[str] = None,
    compression: Optional[str] = None,
    quality: int = 0,
    dither: bool = False,
) -> Optional[Dict[str, List[Any]]]:
    """Converts an image file or a frame sequence as `colorconfig convert` does (looks between the spaces, or a
    LUT file), with its file safety; for a pattern, returns {'converted': [...], 'skipped': [...], 'missing': [frames]}."""

def view_file(
    src: str,
    dst: str,
    from_space: str,
    display: Optional[str] = None,
    view: Optional[str] = None,
    looks: Looks = (),
    *,
    unassociated_alpha: bool = False,
    from_space: Optional[str] = None,
    to_space: Optional[str] = None,
    *,
    unassociated_alpha: bool = False,
    looks: Looks = (),
    lut: Optional[str] = None,
    invert: bool = False,
    context: Dict[str, str] = {},
    frames: Optional[str] = None,
    jobs: int = 0,
    threads: int = 0,
    update: bool = False,
    data_type: Optional[str] = None,
    compression: Optional[str] = None,
    quality: int = 0,
    dither: bool = False,
) -> Optional[Dict[str, List[Any]]]:
    """Converts an image file or a frame sequence as `colorconfig convert` does (looks between the spaces, or a
    LUT file), with its file safety; for a pattern, returns {'converted': [...], 'skipped': [...], 'missing': [frames]}."""
