"""What processes have used so far, out of /proc."""
import os
import pathlib
import re

KILOBYTE = re.compile(r"^(\w+):\s+(\d+) kB", re.MULTILINE)


def read(path):
    """The file's text; empty for a process or thread that is gone."""
    try:
        return pathlib.Path(path).read_text(encoding="utf-8", errors="replace")
    except OSError:
        return ""


def threads(pid):
    """What each thread of the process has used: nanoseconds on a processor, and how often it went to
    sleep and was made to wait."""
    try:
        names = os.listdir(f"/proc/{pid}/task")
    except OSError:
        return {}
    used = {}
    for name in names:
        folder = f"/proc/{pid}/task/{name}"
        times = read(f"{folder}/schedstat").split()
        switches = dict(re.findall(r"^(\w+)_ctxt_switches:\s+(\d+)", read(f"{folder}/status"), re.MULTILINE))
        if times and len(switches) == 2:
            used[name] = (int(times[0]), int(switches["voluntary"]), int(switches["nonvoluntary"]))
    return used


def difference(before, after):
    """Seconds on a processor, sleeps and forced waits between two results of `threads`."""
    sums = [0, 0, 0]
    for name, used in after.items():
        for i, amount in enumerate(used):
            sums[i] += amount - before.get(name, (0, 0, 0))[i]
    return {"cpu": sums[0] / 1e9, "sleeps": sums[1], "waits": sums[2]}


def memory(pid):
    """Resident and proportional set size, in MiB; nothing where they may not be seen."""
    sizes = dict(KILOBYTE.findall(read(f"/proc/{pid}/smaps_rollup")))
    if "Rss" not in sizes:
        return {}
    return {"rss": int(sizes["Rss"]) / 1024, "pss": int(sizes["Pss"]) / 1024}


def descendants(roots):
    """All processes below those, themselves included."""
    parents = {}
    for entry in os.listdir("/proc"):
        if entry.isdigit():
            fields = read(f"/proc/{entry}/stat").rpartition(")")[2].split()
            if fields:
                parents[int(entry)] = int(fields[1])
    found = set(roots)
    while more := {pid for pid, parent in parents.items() if parent in found} - found:
        found |= more
    return found


def busy():
    """Seconds that all the machine's processors have worked so far: 100ths of a second, in the first
    line of /proc/stat, without what was idle or waited for a disk."""
    fields = list(map(int, read("/proc/stat").split("\n", 1)[0].split()[1:9]))
    return (sum(fields) - fields[3] - fields[4]) / os.sysconf("SC_CLK_TCK")


def command(pid):
    return read(f"/proc/{pid}/cmdline").split("\0")
