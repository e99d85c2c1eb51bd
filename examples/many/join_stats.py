#!/usr/bin/env python3
"""Reads the objects of `sigpak stats --json`, one a line, and writes the figures of all signals taken together. They
join in the order of the lines (Chan, Golub and LeVeque, Am. Stat. 37, 1983), so that the same parts give the same bits.
Histograms join where they have one range: sigpak stats --bins 64 --low -1 --high 1."""
import json
import math
import sys


def join(a, b):
    count = a["count"] + b["count"]
    step = b["mean"] - a["mean"]
    whole = {
        "unit": a["unit"],
        "count": count,
        "mean": a["mean"] + step * (b["count"] / count),
        "deviations": a["deviations"] + b["deviations"] + step * step * (a["count"] * b["count"] / count),
        "min": min(a["min"], b["min"]),
        "max": max(a["max"], b["max"]),
    }
    if "histogram" in a:
        counts = [x + y for x, y in zip(a["histogram"]["counts"], b["histogram"]["counts"])]
        whole["histogram"] = {**a["histogram"], "counts": counts}
    return whole


def bins_of(part):
    bins = part.get("histogram")
    return bins and (bins["low"], bins["high"], len(bins["counts"]))


def main():
    whole = None
    for line in sys.stdin:
        part = json.loads(line)
        if whole and (part["unit"] != whole["unit"] or bins_of(part) != bins_of(whole)):
            sys.exit(f"{part['source']['name']}: another unit, or another range of its histogram, than the first")
        whole = join(whole, part) if whole else part
    if not whole:
        sys.exit("there are no figures to join")
    whole.pop("source", None)
    whole.pop("median", None)  # that of the whole is not in its parts
    whole["variance"] = whole["deviations"] / max(whole["count"] - 1, 1)
    whole["rms"] = math.hypot(whole["mean"], math.sqrt(whole["deviations"] / whole["count"]))
    print(json.dumps(whole))


if __name__ == "__main__":
    main()
