#!/usr/bin/env python3
"""Prints the tables of docs/performance.md. Standard input is the JSON output of kelvinbar_bench."""

import json
import sys

FIRST_SIZE = 512  # growth compares the time per key with that at this number of keys


def print_pass(times, title, ours, floor, sizes):
    print(title)
    print(f"  {'keys':>8} {'pass (ns)':>12} {'floor (ns)':>12} {'ratio':>9} {'ns/key above':>14} {'growth':>10}")
    for size in sizes:
        time, least = times[f"{ours}/{size}"], times[f"{floor}/{size}"]
        growth = "-"
        if size >= FIRST_SIZE:
            growth = f"{time / size / (times[f'{ours}/{FIRST_SIZE}'] / FIRST_SIZE):.2f}"
        print(f"  {size:8d} {time:12.0f} {least:12.0f} {time / least:9.1f} {(time - least) / size:14.0f} {growth:>10}")
    print()


def print_step(title, nanoseconds):
    print(f"  {title:<48} {nanoseconds:10.1f} ns")


def main():
    benchmarks = json.load(sys.stdin)["benchmarks"]
    times = {entry["name"].partition("/iterations:")[0]: entry["cpu_time"] for entry in benchmarks}
    growth = next(entry for entry in benchmarks if "memoryGrowthKiB" in entry)

    print_pass(times, "A pass with discovery (growth: time per key against 512 keys)",
               "loadReadingsWithDiscovery", "driverCallsWithDiscovery", [64, 512, 1000, 2048, 8192])
    print_pass(times, "A pass between discoveries", "loadReadings", "driverCalls", [64, 512, 1000])
    print("Steps")
    print_step("menu-bar-only pass of six keys", times["loadPinnedReadings"])
    print_step("catalogue: key of the table", times["tableHit"])
    print_step("catalogue: key named by a rule", times["ruleHit"])
    print_step("catalogue: key that nothing names", times["miss"])
    print_step("decoding one value", times["decodeValue"])
    print_step("normalising one value", times["normalizeOneValue"])
    print_step("number as text", times["numberText"])
    print_step("number as text by printf (peer)", times["numberTextByPrintf"])
    print_step("sorting, per reading at 1000", times["sortReadings/1000"] / 1000)
    print(f"\n100000 refreshes of 300 keys: memory grew by {growth['memoryGrowthKiB']:.0f} KiB, "
          f"threads by {growth['threadGrowth']:.0f}")


if __name__ == "__main__":
    main()
