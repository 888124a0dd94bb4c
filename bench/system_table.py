"""The tables of what bench/system has measured, in Markdown."""
import statistics

SHARED = ["player", "accessibility bus", "session bus", "X server", "compositor", "window manager",
          "other services"]
MINUTE = 60
SHOWN_AS = {"least_following": "floor, following", "least_waiting": "floor, waiting",
            "least_background": "floor, background",
            "least": "the floor's program"}


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
    titles = [SHOWN_AS.get(scene, scene) for scene in shown]
    rows = ["overlay", "least", "conky", "dunst", "companion", *SHARED]
    lines = ["| CPU seconds in a minute | " + " | ".join(titles) + " |", "|---" * (len(shown) + 1) + "|"]
    for name in rows:
        cells = [spread(cpu(scenes[scene], name)) if name in scenes[scene][0]["processes"] else ""
                 for scene in shown]
        lines.append(f"| {SHOWN_AS.get(name, name)} | " + " | ".join(cells) + " |")
    elsewhere = [spread([100 * run["elsewhere"] / run["seconds"] for run in scenes[scene]], 0)
                 for scene in shown]
    lines.append("| everything else on the machine, % of a core | " + " | ".join(elsewhere) + " |")
    return lines


def program_table(scenes):
    lines = ["| the program itself | CPU s in a minute | wake-ups a second | switches a second | RSS, MiB | PSS, MiB |",
             "|---|---|---|---|---|---|"]
    for scene, runs in scenes.items():
        name = scene if scene in ("conky", "dunst") else "least" if scene in SHOWN_AS else "overlay"
        if scene == "alone" or not runs:
            continue
        title = "Vellora, " + scene if name == "overlay" else SHOWN_AS.get(scene, scene)
        sizes = [spread([run["processes"][name].get(size, 0) for run in runs], 1) for size in ("rss", "pss")]
        lines.append(f"| {title} | {spread(cpu(runs, name))} | "
                     f"{spread(switches(runs, name, ('sleeps',)), 0)} | {spread(switches(runs, name), 0)} | "
                     f"{sizes[0]} | {sizes[1]} |")
    return lines


def added(scenes, scene, name):
    """CPU seconds in a minute that the program takes, and that others take because of it."""
    runs, alone = scenes[scene], scenes["alone"]
    if not runs or not alone:
        return None
    return medians(runs, name) + sum(medians(runs, other) - medians(alone, other) for other in SHARED)


def targets(results):
    """What is held to a limit: what, measured, limit, the floor's; None where it is not known."""
    scenes, memory, after = results["scenes"], results["memory"], f"after {results['memory_seconds']:.0f} s"

    def of(scene, name, figure=medians):
        return figure(scenes[scene], name) if scenes[scene] else None

    def switched(runs, name):
        return statistics.median(switches(runs, name))

    def beside_conky(scene, name):
        return medians(scenes[scene], name) / medians(scenes["conky"], "conky") \
            if scenes[scene] and scenes["conky"] else None

    def messages(scene):
        sent = results["messages"].get(scene)
        return sent["messages"] * 10 / sent["seconds"] if sent else None

    def size(scene, what):
        return memory[scene]["processes"]["overlay"].get(what) if scene in memory else None

    return [
        ("following, all that it adds to the system, CPU s in a minute",
         added(scenes, "following", "overlay"), 1.2, added(scenes, "least_following", "least")),
        ("Vellora following ÷ conky at 8 Hz, CPU",
         beside_conky("following", "overlay"), 1.6, beside_conky("least_following", "least")),
        ("switches a second, following",
         of("following", "overlay", switched), 90, of("least_following", "least", switched)),
        ("messages in 10 s of following", messages("following"), 1300, messages("least_following")),
        ("accessibility bus daemon, CPU s in a minute", of("following", "accessibility bus"), 0.05,
         of("least_following", "accessibility bus")),
        ("waiting, CPU s in a minute", of("waiting", "overlay"), 0.06, of("least_waiting", "least")),
        ("player in the background, CPU s in a minute", of("background", "overlay"), 0.08,
         of("least_background", "least")),
        (f"resident {after}, scale 1, 1000 × 700, MiB", size("following", "rss"), 27, None),
        ("the same, PSS, MiB", size("following", "pss"), 15, None),
        (f"resident {after}, scale 3, full screen, MiB", size("following_large", "rss"), 55, None),
    ]


def target_table(results):
    lines = ["| | measured | limit | holds | the floor |", "|---|---|---|---|---|"]
    for what, measured, limit, floor in targets(results):
        if measured is None:
            lines.append(f"| {what} | not measured | {limit} | | |")
        else:
            digits = 0 if limit >= 50 else 2
            least = "" if floor is None else f"{floor:.{digits}f}"
            lines.append(f"| {what} | {measured:.{digits}f} | {limit} | "
                         f"{'yes' if measured <= limit else '**no**'} | {least} |")
    return lines


def table(results):
    sections = [target_table(results), program_table(results["scenes"]), used_table(results["scenes"])]
    said = (f"{results['rounds']} rounds of {results['seconds']:.0f} s; medians, in brackets the least "
            "and the most.")
    failed = [f"Failed, and not in the tables: {', '.join(results['failed'])}."] if results["failed"] else []
    return "\n\n".join(["\n".join(lines) for lines in ([said], failed, *sections) if lines])
