"""From what the onlooker saw (and strace, if it was asked) to how the times are distributed.

    glide_report.py ONLOOKER_FILE [STRACE_FILE MAIN_THREAD]
"""
import bisect
import re
import sys


def line(name, microseconds):
    if not microseconds:
        print(f"{name:<44} never seen")
        return
    ordered = sorted(microseconds)
    at = [ordered[min(int(len(ordered) * share), len(ordered) - 1)] / 1000 for share in (0.5, 0.9)]
    print(f"{name:<44} {at[0]:8.2f} {at[1]:8.2f} {ordered[-1] / 1000:8.2f}   {len(ordered):5d}")


def readings(events):
    """Each from its tick (None where that was not seen) to the first pixels after its answers."""
    tick, reading = None, None
    for time, what in events:
        if what == "tick":
            tick = time
        elif what == "asked":
            if reading and "extents" in reading:
                yield reading
            reading = {"tick": tick, "asked": time}
            tick = None
        elif what in ("extents", "moved") and reading:
            reading.setdefault("first extents", time)
            reading["extents"] = time
            reading[what] = time
        elif what == "pixels" and reading and "extents" in reading:
            reading.setdefault("pixels", time)
            reading["last pixels"] = time


def system_calls(path, main_thread):
    """Of each system call that matters: when it began, whose it was, and what it was."""
    form = re.compile(r"(\d+) +(\d+\.\d+) (\w+)\(\d+<([^>]*)>.*= (\d+)(?: <[\d.]+>)?$")
    resumed = re.compile(r"(\d+) +(\d+\.\d+) <\.\.\. (\w+) resumed>.*= (\d+)(?: <[\d.]+>)?$")
    begun = re.compile(r"(\d+) +(\d+\.\d+) (\w+)\(\d+<([^>]*)>.*<unfinished \.\.\.>$")
    unfinished = {}
    with open(path, encoding="utf-8", errors="replace") as file:
        for text in file:
            if found := begun.match(text):
                unfinished[found[1]] = found[4]
                continue
            if found := form.match(text):
                thread, time, name, where = found[1], found[2], found[3], found[4]
            elif found := resumed.match(text):
                thread, time, name = found[1], found[2], found[3]
                where = unfinished.pop(thread, "")
            else:
                continue
            yield int(float(time) * 1e6), thread == main_thread, name, where


def stages(path, main_thread):
    """When the answers were taken, handed over, taken up by the main thread, and the drawing sent."""
    answered, stage = None, None
    for time, on_main, name, where in system_calls(path, main_thread):
        if not on_main and name == "recvmsg":
            answered = time
        elif not on_main and name == "write" and "eventfd" in where:
            if stage:
                yield stage
            stage = {"answered": answered, "handed": time}
        elif on_main and stage and name == "read" and "eventfd" in where:
            stage.setdefault("taken up", time)
        elif on_main and stage and "taken up" in stage and name == "writev":  # as libxcb sends
            stage.setdefault("sent", time)
            stage["all sent"] = time
    if stage:
        yield stage


def main():
    events = []
    with open(sys.argv[1], encoding="utf-8") as file:
        for text in file:
            time, what = text.split()
            events.append((int(time), what))
    found = list(readings(events))
    moved = [each for each in found if "pixels" in each]
    print(f"{'milliseconds':<44} {'median':>8} {'p90':>8} {'max':>8}   count")

    def between(name, which, begin, end):
        line(name, [e[end] - e[begin] for e in which if e.get(begin) and end in e])

    between("tick to the reading's first question", found, "tick", "asked")
    between("first question to the last place", found, "asked", "extents")
    between("first place to the last place", found, "first extents", "extents")
    between("last place to the pixels", moved, "extents", "pixels")
    between("last place to the last of the pixels", moved, "extents", "last pixels")
    between("tick to the pixels", moved, "tick", "pixels")
    shown = sum("moved" in each for each in moved)
    print(f"readings that saw a place move: {sum('moved' in each for each in found)}, "
          f"{shown} of them in pixels before the next reading")
    if len(sys.argv) < 4:
        return
    traced = [each for each in stages(sys.argv[2], sys.argv[3]) if "sent" in each]
    pixels = [each["pixels"] for each in moved]
    for each in traced:
        at = bisect.bisect_left(pixels, each["sent"])
        if at < len(pixels) and pixels[at] - each["handed"] < 100_000:
            each["pixels"] = pixels[at]
    traced = [each for each in traced if "pixels" in each]
    print("with strace attached:")
    between("last answer taken to handed over", traced, "answered", "handed")
    between("handed over to taken up", traced, "handed", "taken up")
    between("taken up to the drawing sent", traced, "taken up", "sent")
    between("first to last of the drawing sent", traced, "sent", "all sent")
    between("drawing sent to the pixels", traced, "sent", "pixels")


main()
