#!/usr/bin/env python3
"""sort_words.py VQTYPE OUT.json: `vqtype sort` of a million words under German next to the system's `sort`, whole processes.

The words are the German list of /usr/share/dict, repeated, and shuffled with a fixed seed. The peer runs under LC_ALL=de_DE.UTF-8 with
one thread; where the system lacks that locale, it is made below build/bench. The runs alternate. OUT.json is what report.py reads:
the processes' own time (user and system) and the time that passed.
"""
import json
import os
import pathlib
import random
import subprocess
import sys
import time

COUNT = 1000000
REPETITIONS = int(os.environ.get("VQTM_BENCH_REPETITIONS", "9"))
LIST = pathlib.Path("/usr/share/dict/ngerman")
LOCALE = "de_DE.UTF-8"


def make_words(path):
    words = LIST.read_text(encoding="utf-8").split()
    words = (words * (COUNT // len(words) + 1))[:COUNT]
    random.Random(1).shuffle(words)
    path.write_text("\n".join(words) + "\n", encoding="utf-8", newline="\n")


def obstacle(environment):
    """What is missing here, or None."""
    if not LIST.exists():
        return f"{LIST} is missing: install wngerman"
    probe = subprocess.run(["locale", "charmap"], capture_output=True, text=True, env=environment, check=False)
    if probe.stdout.strip() != "UTF-8":
        return f"the locale {LOCALE} is missing: make it with localedef, LOCPATH may name its folder"
    return None


def measure(command, output, environment):
    """Nanoseconds of the process and of the clock."""
    with open(output, "wb") as file:
        start = time.monotonic_ns()
        process = subprocess.Popen(command, stdout=file, env=environment)
        _, status, usage = os.wait4(process.pid, 0)
        passed = time.monotonic_ns() - start
        process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        sys.exit(f"{command[0]}: ended with status {process.returncode}")
    return (usage.ru_utime + usage.ru_stime) * 1e9, passed


def runs_of(who, times):
    for case, value in zip(("process", "clock"), times):
        yield {"name": f"SortWords/german/{COUNT}/{case}/{who}", "run_type": "iteration", "cpu_time": value, "time_unit": "ns"}


def main(program, result):
    environment = {**os.environ, "LC_ALL": LOCALE}
    if (reason := obstacle(environment)) is not None:
        print(f"left out: sort: {reason}", file=sys.stderr)
        return
    result = pathlib.Path(result).resolve()
    words = result.with_name("words.txt")
    make_words(words)
    contenders = {
        "ours": [program, "sort", "VqString", str(words), "--language", "german"],
        "peer_sort": ["sort", "--parallel=1", str(words)],
    }
    runs = []
    for _ in range(REPETITIONS):
        for who, command in contenders.items():
            runs += runs_of(who, measure(command, result.with_name(f"sorted_{who}.txt"), environment))
    lines = [sorted(result.with_name(f"sorted_{who}.txt").read_bytes().split(b"\n")) for who in contenders]
    if lines[0] != lines[1]:
        sys.exit("the outputs have not the same lines")
    context = {"date": time.strftime("%Y-%m-%dT%H:%M:%S"), "num_cpus": os.cpu_count(), "mhz_per_cpu": "?", "load_avg": os.getloadavg()}
    result.write_text(json.dumps({"context": context, "benchmarks": runs}), encoding="utf-8")


if __name__ == "__main__":
    main(*sys.argv[1:])
