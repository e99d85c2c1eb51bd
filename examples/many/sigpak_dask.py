#!/usr/bin/env python3
"""Runs the program on each of many files as processes of Dask workers, and writes what they print in the order of the
files, so that what reads it gets the same bytes however many workers there are:

    sigpak_dask.py --workers 4 spectrum --csv -- night/*.wav | sigpak merge -o night.csv
    sigpak_dask.py --scheduler tcp://head:8786 stats --json -- night/*.wav | ./join_stats.py

A worker that is lost has its files done again by the others. A file that cannot be used is named and left out."""
import argparse
import subprocess
import sys

from distributed import Client, LocalCluster

DATA_ERROR = 1  # the status for a file that is no better on another machine
MOST_FILES = 25  # of a task


def run(words, files):
    done = subprocess.run(["sigpak", *words, "--keep-going", *files], capture_output=True, check=False)
    if done.returncode not in (0, DATA_ERROR):
        raise RuntimeError(f"status {done.returncode}, {done.stderr.decode(errors='replace')}")
    return done


def in_batches(files, workers):
    """Short files together, since a task costs as much as seconds of recording; eight batches or more for each worker."""
    size = min(max(len(files) // (8 * workers), 1), MOST_FILES)
    return [files[i : i + size] for i in range(0, len(files), size)]


def run_all(client, words, files):
    batches = in_batches(files, max(len(client.ncores()), 1))
    tasks = [client.submit(run, words, batch, retries=3, pure=False) for batch in batches]
    complete = True
    for batch in batches:
        task = tasks.pop(0)  # forgotten once it is written, so that its worker may forget it too
        try:
            done = task.result()
        except Exception as error:  # every try has failed
            print(f"{', '.join(batch)}: {error}", file=sys.stderr)
            complete = False
            continue
        sys.stderr.buffer.write(done.stderr)
        sys.stdout.buffer.write(done.stdout)
        complete = complete and done.returncode == 0
    return complete


def main():
    parser = argparse.ArgumentParser(usage="%(prog)s [--workers N | --scheduler ADDRESS] COMMAND [OPTION...] -- FILE...")
    parser.add_argument("--workers", type=int, help="processes on this machine; one for each processor otherwise")
    parser.add_argument("--scheduler", help="of a running cluster whose machines see the files under the same names")
    places = [i for i, word in enumerate(sys.argv) if word == "--"]
    if not places:
        parser.error("-- stands before the files")
    given, words = parser.parse_known_args(sys.argv[1 : places[0]])
    cluster = given.scheduler or LocalCluster(n_workers=given.workers, threads_per_worker=1, dashboard_address=None)
    with Client(cluster) as client:
        return 0 if run_all(client, words, sys.argv[places[0] + 1 :]) else 1


if __name__ == "__main__":
    sys.exit(main())
