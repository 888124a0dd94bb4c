"""The tables of what bench/system has measured, in Markdown."""
import statistics

SHARED = ["player", "accessibility bus", "session bus", "X server", "compositor", "window manager",
          "other services"]
MINUTE = 60


def spread(values, digits=2):
    """Median, and least and most where there are several."""
    middle = f"{statistics.median(values):.{digits}f}"
    if len(values) < 2:
        return middle
    return f"{middle} ({min(values):.{digits}f}–{max(values):.{digits}f})"


def cpu(runs, name):
    """CPU seconds in a minute, one number a run."""
    return [run["processes"].get(name, {"cpu": 0})["cpu"] * MINUTE / run["seconds"] for run in runs]


def switches(runs, name, kinds=("sleeps", "waits")):
    return [sum(run["processes"][name][kind] for kind in kinds) / run["seconds"] for run in runs]


def medians(runs, name):
    return statistics.median(cpu(runs, name))


def used_table(scenes):
    shown = [scene for scene in scenes if scenes[scene]]
    rows = ["overlay", "conky", "dunst", "companion", *SHARED]
    lines = ["| CPU seconds in a minute | " + " | ".join(shown) + " |", "|---" * (len(shown) + 1) + "|"]
    for name in rows:
        cells = [spread(cpu(scenes[scene], name)) if name in scenes[scene][0]["processes"] else ""
                 for scene in shown]
        lines.append(f"| {name} | " + " | ".join(cells) + " |")
    elsewhere = [spread([100 * run["elsewhere"] / run["seconds"] for run in scenes[scene]], 0)
                 for scene in shown]
    lines.append("| everything else on the machine, % of a core | " + " | ".join(elsewhere) + " |")
    return lines


def program_table(scenes):
    lines = ["| the program itself | CPU s in a minute | wake-ups a second | switches a second | RSS, MiB | PSS, MiB |",
             "|---|---|---|---|---|---|"]
    for scene, runs in scenes.items():
        name = scene if scene in ("conky", "dunst") else "overlay"
        if scene == "alone" or not runs:
            continue
        sizes = [spread([run["processes"][name].get(size, 0) for run in runs], 1) for size in ("rss", "pss")]
        lines.append(f"| {name if name == scene else 'Vellora, ' + scene} | {spread(cpu(runs, name))} | "
                     f"{spread(switches(runs, name, ('sleeps',)), 0)} | {spread(switches(runs, name), 0)} | "
                     f"{sizes[0]} | {sizes[1]} |")
    return lines


def targets(results):
    """What is held to a limit: what, measured, limit, unit; None as measured where it is not known."""
    scenes = results["scenes"]
    following, alone = scenes["following"], scenes["alone"]
    added = ratio = None
    if following and alone:
        added = medians(following, "overlay") + sum(
            medians(following, name) - medians(alone, name) for name in SHARED)
    if following and scenes["conky"]:
        ratio = medians(following, "overlay") / medians(scenes["conky"], "conky")
    memory, after = results["memory"], f"after {results['memory_seconds']:.0f} s"

    def size(scene, what):
        return memory[scene]["processes"]["overlay"].get(what) if scene in memory else None

    def overlay(scene):
        return medians(scenes[scene], "overlay") if scenes[scene] else None

    return [
        ("following, all that it adds to the system, CPU s in a minute", added, 1.2),
        ("Vellora following ÷ conky at 8 Hz, CPU", ratio, 1.6),
        ("switches a second, following",
         statistics.median(switches(following, "overlay")) if following else None, 90),
        ("messages in 10 s of following",
         results["messages"][0]["messages"] * 10 / results["messages"][0]["seconds"]
         if results["messages"] else None, 1300),
        ("accessibility bus daemon, CPU s in a minute",
         medians(following, "accessibility bus") if following else None, 0.05),
        ("waiting, CPU s in a minute", overlay("waiting"), 0.06),
        ("player in the background, CPU s in a minute", overlay("background"), 0.08),
        (f"resident {after}, scale 1, 1000 × 700, MiB", size("following", "rss"), 27),
        (f"the same, PSS, MiB", size("following", "pss"), 15),
        (f"resident {after}, scale 3, full screen, MiB", size("following_large", "rss"), 55),
    ]


def target_table(results):
    lines = ["| | measured | limit | holds |", "|---|---|---|---|"]
    for what, measured, limit in targets(results):
        if measured is None:
            lines.append(f"| {what} | not measured | {limit} | |")
        else:
            digits = 0 if limit >= 50 else 2
            lines.append(f"| {what} | {measured:.{digits}f} | {limit} | "
                         f"{'yes' if measured <= limit else '**no**'} |")
    return lines


def table(results):
    sections = [target_table(results), program_table(results["scenes"]), used_table(results["scenes"])]
    said = (f"{results['rounds']} rounds of {results['seconds']:.0f} s; medians, in brackets the least "
            "and the most.")
    failed = [f"Failed, and not in the tables: {', '.join(results['failed'])}."] if results["failed"] else []
    return "\n\n".join(["\n".join(lines) for lines in ([said], failed, *sections) if lines])
