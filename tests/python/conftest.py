"""Material, and the program that the package must agree with."""

import os
import pathlib
import subprocess

import pytest

ROOT = pathlib.Path(__file__).resolve().parents[2]


def kxscenes_program(*arguments):
    """Its exit code, standard output and standard error."""
    command = [os.environ["KXSCENES_PROGRAM"], "--no-config", *map(str, arguments)]
    done = subprocess.run(command, capture_output=True, text=True, check=False)
    return done.returncode, done.stdout, done.stderr


@pytest.fixture(scope="session")
def tape(tmp_path_factory):
    """Raw DV: two recordings, scenes at 0, 60, 130 and 175, a break of recording time at 130."""
    path = tmp_path_factory.mktemp("material") / "tape.dv"
    subprocess.run([ROOT / "hosts/kxscenes/make-demo-tape.sh", path], check=True)
    return path


@pytest.fixture(scope="session")
def film(tmp_path_factory):
    """H.264 at 29.97 frames per second with cuts at 25 and 70, and a sine tone."""
    path = tmp_path_factory.mktemp("material") / "film.mkv"
    parts = [("smptebars", 25), ("testsrc2", 45), ("yuvtestsrc", 30)]
    inputs = [word for name, _ in parts for word in ("-f", "lavfi", "-i", f"{name}=s=320x240:r=30000/1001")]
    cut = ";".join(
        f"[{i}]trim=end_frame={n},setpts=PTS-STARTPTS,format=yuv420p[v{i}]" for i, (_, n) in enumerate(parts)
    )
    graph = cut + ";[v0][v1][v2]concat=n=3[v]"
    encoding = ["-map", "[v]", "-map", "3", "-c:v", "libx264", "-c:a", "flac", "-shortest"]
    tone = ["-f", "lavfi", "-i", "sine=d=3.3"]
    subprocess.run(
        [ROOT / "tests/make-material.sh", *inputs, *tone, "-filter_complex", graph, *encoding, path], check=True
    )
    return path
