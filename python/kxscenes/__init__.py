"""Finds the scenes of video files and tape captures.

    import kxscenes
    for scene in kxscenes.detect("holiday.mp4"):
        print(scene.index, scene.timecode)

`detect` and `scenes` read files, `figures` and `decide` part the measuring from the deciding, `Detector` takes
frames that a program already has, and `write` makes lists for editors and other programs. Scenes, numbers and
messages are those of the program kxscenes, whose code this is.
"""

from ._detector import Detector
from ._figures import Figures, decide, figures, read_figures
from ._lists import formats, to_text, write
from ._native import Error, default_parameters
from ._native import version as __version__
from ._runs import InputWarning, SceneIterator, detect, scenes
from ._scenes import Scene, SceneList, Video

__all__ = [
    "Detector",
    "Error",
    "Figures",
    "InputWarning",
    "Scene",
    "SceneIterator",
    "SceneList",
    "Video",
    "decide",
    "default_parameters",
    "detect",
    "figures",
    "formats",
    "read_figures",
    "scenes",
    "to_text",
    "write",
]
