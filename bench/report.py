#!/usr/bin/env python3
"""report.py FILE.json...: medians of Google Benchmark runs, and how each case does against its peers.

Benchmarks are named CASE/ours and CASE/peer_NAME, where CASE may hold slashes (Area/Case/size). The ratio is the peer's time over
ours: above 1 we are faster. Times are per item where a benchmark counts items, else per iteration; min and max are over all
repetitions, so that a noisy run shows.
"""
import collections
import json
import re
import statistics
import sys

NANOSECONDS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}
SUFFIXES = ("/repeats:", "/iterations:", "/min_time:", "/real_time", "/process_time", "/manual_time")


def plain_name(run):
    name = run.get("run_name", run["name"])
    for suffix in SUFFIXES:
        name = name.split(suffix)[0]
    return name


def cost(run):
    if run.get("items_per_second"):
        return 1e9 / run["items_per_second"]
    return run["cpu_time"] * NANOSECONDS[run.get("time_unit", "ns")]


def gather(paths):
    """{case: {who: [cost of each repetition in ns]}}, {(case, who): [bytes per second]}; and the machine of the first file."""
    costs = collections.defaultdict(lambda: collections.defaultdict(list))
    bandwidths = collections.defaultdict(list)
    left_out = set()
    context = None
    for path in paths:
        with open(path, encoding="utf-8") as file:
            document = json.load(file)
        context = context or document["context"]
        for run in document["benchmarks"]:
            if run.get("run_type") == "aggregate":
                continue
            if run.get("error_occurred"):
                left_out.add(f"{plain_name(run)}: {run.get('error_message', 'failed')}")
                continue
            case, _, who = plain_name(run).rpartition("/")
            costs[case][who].append(cost(run))
            if run.get("bytes_per_second"):
                bandwidths[case, who].append(run["bytes_per_second"])
    for reason in sorted(left_out):
        print(f"left out: {reason}")
    return costs, bandwidths, context


def number(value):
    return f"{value:.3g}" if value < 1000 else f"{value:.0f}"


def by_size(case):
    """Sorts numbers in names by their value."""
    return [(int(part), "") if part.isdigit() else (0, part) for part in re.split(r"(\d+)", case)]


def lines(costs, bandwidths):
    for case in sorted(costs, key=by_size):
        contenders = costs[case]
        ours = statistics.median(contenders["ours"]) if "ours" in contenders else None
        for who in sorted(contenders, key=lambda name: (name != "ours", name)):
            times = contenders[who]
            median = statistics.median(times)
            speed = f"{statistics.median(bandwidths[case, who]) / 1e9:.2f}" if bandwidths[case, who] else ""
            ratio = f"{median / ours:.2f}" if ours and who != "ours" else ""
            yield case, who.removeprefix("peer_"), number(median), number(min(times)), number(max(times)), speed, ratio


def main(paths):
    costs, bandwidths, context = gather(paths)
    if not costs:
        sys.exit("no benchmark has run")
    print(f"{context['date']}  {context['num_cpus']} x {context['mhz_per_cpu']} MHz  load {context.get('load_avg', [])[:1]}")
    rows = [("case", "who", "median ns", "min", "max", "GB/s", "ratio"), *lines(costs, bandwidths)]
    widths = [max(len(row[column]) for row in rows) for column in range(len(rows[0]))]
    for row in rows:
        cells = [text.ljust(width) if column < 2 else text.rjust(width) for column, (text, width) in enumerate(zip(row, widths))]
        print("  ".join(cells).rstrip())


if __name__ == "__main__":
    main(sys.argv[1:])
