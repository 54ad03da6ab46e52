"""What a run on a Dask cluster costs besides the work, measured with processes of its own on this machine.

    PYTHONPATH=build/native/python PATH=$PWD/build/native/bin:$PATH /usr/bin/python3 bench/cluster.py [FILES]
"""

import pathlib
import subprocess
import sys
import tempfile
import time

import distributed
import psutil

from kxscenes import cluster

TASKS = 5000
ROOT = pathlib.Path(__file__).resolve().parents[1]


def nothing(number):
    return number


class Meter:
    """Time, and the processor time of the client and of the scheduler, for as many tasks."""

    def __init__(self, scheduler):
        self._processes = psutil.Process(), psutil.Process(scheduler.pid)
        self._begin = self._times()

    def _times(self):
        return [time.monotonic(), *(sum(each.cpu_times()[:2]) for each in self._processes)]

    def text(self, tasks):
        spent, client, scheduler = [end - begin for begin, end in zip(self._begin, self._times())]
        return (
            f"{tasks / spent:.0f} a second; processor time of each: client {client / tasks * 1000:.2f} ms,"
            f" scheduler {scheduler / tasks * 1000:.2f} ms"
        )


def run_all(files, processes, program, folder):
    """The run's figures, and its memory at times."""
    watched = [psutil.Process(), *(psutil.Process(each.pid) for each in processes)]
    memory = []

    def watch(summary, _):
        if summary.done % (files // 5) == 0:
            sizes = " ".join(f"{each.memory_info().rss / 2**20:.0f}" for each in watched)
            memory.append(f"    after {summary.done}: {sizes}")

    inputs = [folder / f"{number}.dv" for number in range(files)]
    meter = Meter(processes[0])
    summary = cluster.run(
        inputs, folder / f"{program}.jsonl", scheduler=str(folder / "s.json"), program=program, progress=watch
    )
    assert summary.done == files
    return meter.text(files), memory


def measure(files, folder, processes):
    with distributed.Client(scheduler_file=str(folder / "s.json"), set_as_default=False) as client:
        client.wait_for_workers(2)
        meter = Meter(processes[0])
        client.gather(client.map(nothing, range(TASKS), pure=False))
        print("empty tasks:", meter.text(TASKS), flush=True)
    subprocess.run([ROOT / "hosts/kxscenes/make-demo-tape.sh", folder / "tape.dv"], check=True)
    for number in range(files):
        (folder / f"{number}.dv").symlink_to(folder / "tape.dv")
    print("inputs, with a program that does nothing:", run_all(files, processes, "true", folder)[0], flush=True)
    rate, memory = run_all(files, processes, "kxscenes", folder)
    print("tapes of 230 frames:", rate)
    print("  megabytes of client, scheduler and two workers:", *memory, sep="\n")


def main(files):
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        place = ["--scheduler-file", folder / "s.json", "--host", "127.0.0.1", "--no-dashboard"]
        processes = []
        try:
            for kind, *rest in [
                ["scheduler", "--port", "0"],
                *[["worker", "--nthreads", "1", "--no-nanny"]] * 2,
            ]:
                command = [sys.executable, "-m", f"distributed.cli.dask_{kind}", *rest, *place]
                processes.append(subprocess.Popen(command, stderr=subprocess.DEVNULL))
            measure(files, folder, processes)
        finally:
            for process in processes:
                process.kill()
                process.wait()


if __name__ == "__main__":
    main(int(sys.argv[1]) if len(sys.argv) > 1 else 1000)
