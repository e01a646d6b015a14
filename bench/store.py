#!/usr/bin/env python3
"""store.py VQTYPE OUT.json: the workbench's store of a million rows next to the shell of sqlite3, whole processes.

StoreLoad/… is making a store, loading a CSV file and indexing two columns, a name in German order and a number. The peer imports the same
file into a table and makes the same two indexes; its names sort by their bytes. Both leave all on the disk. StoreQuery/… is a query for the
few rows of one name, its peers are the same by a look at every record and vqtype that does nothing but print the command's help; the
cases with less_start are without the time that takes. StoreDump/… prints all rows as CSV. The runs alternate. OUT.json is what report.py
reads; the most memory of each is told on standard error.
"""
import csv
import itertools
import json
import os
import pathlib
import shutil
import statistics
import subprocess
import sys
import time

COUNT = int(os.environ.get("VQTM_BENCH_ROWS", "1000000"))
REPETITIONS = int(os.environ.get("VQTM_BENCH_REPETITIONS", "9"))
SCHEMA = ("name:VqString(language=german, codeset=1), population:VqInt64, founded:VqDate, area:double, "
          "remark:VqString(language=german, codeset=1)")
PLACES = pathlib.Path(__file__).parent.parent / "examples" / "make_places.py"
SCRIPT = """create table places(name text, population integer, founded text, area real, remark text);
.mode csv
.import --skip 1 {rows} places
create index names on places(name);
create index populations on places(population);
"""
MEBIBYTE = 1024


def make_rows(path):
    """In a process of its own: those that are measured would count this one's memory as theirs, up to their start."""
    with open(path, "wb") as file:
        subprocess.run([sys.executable, PLACES, str(COUNT)], stdout=file, check=True)


def name_within(path):
    with open(path, encoding="utf-8", newline="") as file:
        return next(itertools.islice(csv.reader(file), COUNT // 2, None))[0]


class Contender:
    """Commands that run one after the other, and what they take: nanoseconds of the processes and of the clock, most KiB."""

    def __init__(self, *commands, script=None):
        self.commands, self.script, self.most = commands, script, 0

    def run(self):
        spent = passed = 0
        for command in self.commands:
            with open(os.devnull, "wb") as nothing:
                start = time.monotonic_ns()
                process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=nothing)
                process.stdin.write((self.script or "").encode())
                process.stdin.close()
                _, status, usage = os.wait4(process.pid, 0)
                passed += time.monotonic_ns() - start
            process.returncode = os.waitstatus_to_exitcode(status)
            if process.returncode != 0:
                sys.exit(f"{' '.join(command)}: ended with status {process.returncode}")
            spent += (usage.ru_utime + usage.ru_stime) * 1e9
            self.most = max(self.most, usage.ru_maxrss)
        return {"process": spent, "clock": passed}


def remove(*paths):
    for path in paths:
        for name in (path, path.with_name(path.name + "-lock")):
            name.unlink(missing_ok=True)


def measure(case, contenders, repetitions, before=lambda: None):
    for _ in range(repetitions):
        for who, contender in contenders.items():
            before()
            for kind, value in contender.run().items():
                yield {"name": f"{case}/{kind}/{who}", "run_type": "iteration", "cpu_time": value, "time_unit": "ns"}
    for who, contender in contenders.items():
        print(f"{case}/{who}: at most {contender.most / MEBIBYTE:.0f} MiB of memory", file=sys.stderr)


def without_start(runs_of_queries):
    """The same less the median start of the program, as cases of their own."""
    starts = {kind: statistics.median(run["cpu_time"] for run in runs_of_queries if run["name"].endswith(f"/{kind}/peer_start"))
              for kind in ("process", "clock")}
    for run in runs_of_queries:
        case, kind, who = run["name"].rsplit("/", 2)
        if who != "peer_start":
            yield {**run, "name": f"{case}/{kind}_less_start/{who}", "cpu_time": max(run["cpu_time"] - starts[kind], 1)}


def runs(program, rows):
    store, peer = rows.with_name("store.db"), rows.with_name("sqlite.db")
    vqtype = [program, "store"]
    loads = {
        "ours": Contender([*vqtype, "create", str(store), "--schema", SCHEMA], [*vqtype, "load", str(store), str(rows)],
                          [*vqtype, "index", str(store), "name,population"]),
        "peer_sqlite3": Contender(["sqlite3", str(peer)], script=SCRIPT.format(rows=rows)),
    }
    yield from measure(f"StoreLoad/{COUNT}", loads, REPETITIONS, lambda: remove(store, peer))
    loads["ours"].run()
    name = name_within(rows).replace("'", "''")
    query = [*vqtype, "query", str(store), f"name = '{name}'"]
    start = [*vqtype, "query", "--help"]
    queries = {"ours": Contender(query), "peer_full_scan": Contender([*query, "--no-index"]), "peer_start": Contender(start)}
    runs_of_queries = list(measure(f"StoreQuery/{COUNT}", queries, REPETITIONS))
    yield from runs_of_queries
    yield from without_start(runs_of_queries)
    dumps = {"ours": Contender([*vqtype, "dump", str(store)]),
             "peer_sqlite3": Contender(["sqlite3", "-csv", "-header", str(peer), "select * from places"])}
    yield from measure(f"StoreDump/{COUNT}", dumps, REPETITIONS)
    remove(store, peer)


def main(program, result):
    if shutil.which("sqlite3") is None:
        print("left out: store: sqlite3 is missing", file=sys.stderr)
        return
    result = pathlib.Path(result).resolve()
    rows = result.with_name("places.csv")
    make_rows(rows)
    benchmarks = list(runs(program, rows))
    context = {"date": time.strftime("%Y-%m-%dT%H:%M:%S"), "num_cpus": os.cpu_count(), "mhz_per_cpu": "?", "load_avg": os.getloadavg()}
    result.write_text(json.dumps({"context": context, "benchmarks": benchmarks}), encoding="utf-8")


if __name__ == "__main__":
    main(*sys.argv[1:])
