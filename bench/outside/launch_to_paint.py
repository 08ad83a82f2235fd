#!/usr/bin/env python3
"""Launch to first paint, as a user feels it: `mirtex --new-instance FILE` started in a real X
window (a private Xvfb), timed from just before exec until the first editor pane holding text has
been painted (the program reports it with MIRTEX_FIRST_PAINT_PROBE set, then exits). Every launch
gets its own XDG_CONFIG_HOME, XDG_STATE_HOME and XDG_RUNTIME_DIR, so no session is restored.

    python3 bench/outside/launch_to_paint.py [--runs 20] [--mirtex build/mirtex] FILE...

Prints, per file: median, p90, min and max in ms, the peak resident memory (VmHWM) and its ratio
to the file size, and the load average before and after the runs.
"""
import argparse
import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import time


def start_xvfb():
    for number in range(150 + os.getpid() % 50, 260):
        if os.path.exists(f"/tmp/.X11-unix/X{number}") or os.path.exists(f"/tmp/.X{number}-lock"):
            continue
        server = subprocess.Popen(["Xvfb", f":{number}", "-screen", "0", "1600x1000x24", "-nolisten", "tcp"],
                                  stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        for _ in range(100):
            if os.path.exists(f"/tmp/.X11-unix/X{number}"):
                return server, f":{number}"
            if server.poll() is not None:
                break
            time.sleep(0.05)
        server.kill()
    sys.exit("no free display for Xvfb")


def percentile(values, p):
    ordered = sorted(values)
    return ordered[min(len(ordered) - 1, int(round(p * (len(ordered) - 1))))]


class Display:
    """A private Xvfb, started again should it go away between launches."""

    def __init__(self):
        self.server, self.name = start_xvfb()

    def current(self):
        if self.server.poll() is not None:
            self.server, self.name = start_xvfb()
        return self.name

    def stop(self):
        self.server.kill()
        self.server.wait()


def launch(mirtex, path, display):
    display = display.current()
    home = tempfile.mkdtemp(prefix="mirtex-launch-")
    try:
        env = dict(os.environ)
        for name in ("config", "state", "runtime"):
            os.mkdir(os.path.join(home, name), 0o700)
        env.update(DISPLAY=display, QT_QPA_PLATFORM="xcb", MIRTEX_FIRST_PAINT_PROBE="1",
                   XDG_CONFIG_HOME=os.path.join(home, "config"),
                   XDG_STATE_HOME=os.path.join(home, "state"),
                   XDG_RUNTIME_DIR=os.path.join(home, "runtime"))
        start = time.monotonic_ns()
        done = subprocess.run([mirtex, "--new-instance", path], env=env, capture_output=True,
                              text=True, timeout=120)
        for line in done.stderr.splitlines():
            if line.startswith("mirtex-first-paint "):
                fields = dict(item.split("=") for item in line.split()[1:])
                return (int(fields["monotonic_ns"]) - start) / 1e6, int(fields["vmhwm_kb"]) * 1024
        sys.exit(f"no first paint reported (exit {done.returncode}):\n{done.stderr}")
    finally:
        shutil.rmtree(home, ignore_errors=True)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--runs", type=int, default=20)
    parser.add_argument("--mirtex", default=os.path.join(os.path.dirname(__file__), "../../build/mirtex"))
    parser.add_argument("files", nargs="+")
    args = parser.parse_args()
    display = Display()
    try:
        for path in args.files:
            size = os.path.getsize(path)
            launch(args.mirtex, path, display)  # warm-up: the file in the page cache
            load_before = os.getloadavg()
            times, peaks = [], []
            for _ in range(args.runs):
                elapsed, peak = launch(args.mirtex, path, display)
                times.append(elapsed)
                peaks.append(peak)
            load_after = os.getloadavg()
            print(f"{os.path.basename(path)} ({size / 1e6:.1f} MB, {args.runs} launches): "
                  f"median {statistics.median(times):.0f} ms, p90 {percentile(times, 0.9):.0f} ms, "
                  f"min {min(times):.0f} ms, max {max(times):.0f} ms; "
                  f"peak VmHWM {max(peaks) / 1e6:.0f} MB = {max(peaks) / size:.2f}x file "
                  f"(median {statistics.median(peaks) / size:.2f}x); "
                  f"load {load_before[0]:.2f} -> {load_after[0]:.2f}")
            print("  ms:", " ".join(f"{t:.0f}" for t in times))
    finally:
        display.stop()


if __name__ == "__main__":
    main()
