"""From what a benchmark said to a page of Markdown, with date, machine and spread, and to plots."""
import collections
import re
import statistics
import subprocess

import system_table

# A page tells that its figures are of a busy machine from here on, in per cent of one processor.
BUSY = 20
SECONDS = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1}
LANGUAGES = ["English", "French", "Japanese", "Simplified", "Traditional", "Korean", "Hindi"]
TITLES = {
    "accessibility_walk": "Reading the player's window", "drawing": "Drawing captions",
    "first_caption": "From a song's start to its first caption", "following": "Following a song",
    "glide": "From the player's answer to the pixel", "growth": "How costs grow",
    "idle": "The companion while nothing plays", "library": "The companion's library",
    "matching": "Looking a row up", "pages": "Reading a page in a browser",
    "snapshot": "A snapshot that is kept fresh", "start": "From the start to the first caption", "system": "The whole system", "tick": "A tick",
    "wayland": "On Wayland, beside X11",
}


class Figures:
    """Google Benchmark's results: each repetition's seconds, by the benchmark's name."""

    def __init__(self, figures):
        self.runs = collections.defaultdict(list)
        for run in figures["benchmarks"]:
            if run.get("run_type", "iteration") == "iteration" and not run.get("error_occurred"):
                self.runs[re.sub(r"/(real_time|repeats:\d+)", "", run["name"])].append(run)

    def values(self, name, key="cpu_time"):
        """Of every repetition; a counter of the benchmark's own as it is."""
        return [run[key] * (SECONDS[run["time_unit"]] if key.endswith("_time") else 1)
                for run in self.runs.get(name, [])]

    def median(self, name, key="cpu_time"):
        values = self.values(name, key)
        return statistics.median(values) if values else None

    def ratio(self, name, other, key="cpu_time"):
        a, b = self.median(name, key), self.median(other, key)
        return a / b if a is not None and b else None


def span(seconds):
    """With a unit, and three figures."""
    for unit, factor in (("s", 1), ("ms", 1e3), ("µs", 1e6)):
        if seconds * factor >= 1:
            return f"{seconds * factor:.3g} {unit}"
    return f"{seconds * 1e9:.3g} ns"


def spread(values):
    """Median, and least and most in brackets."""
    if not values:
        return "–"
    return f"{span(statistics.median(values))} ({span(min(values))}–{span(max(values))})"


def number(value):
    return "–" if value is None else f"{value:.2f}"


def held(measured, limit, shown):
    """The last cells of a row: what is measured, its limit, and whether that holds."""
    verdict = "–" if measured is None else "yes" if measured <= limit else "**no**"
    return [shown, verdict]


def table(head, rows):
    lines = ["| " + " | ".join(head) + " |", "|" + "---|" * len(head)]
    return "\n".join(lines + ["| " + " | ".join(row) + " |" for row in rows])


def walk(figures, _):
    whole, remembered, peer = ("walk_700_elements" + end for end in ("", "_remembered", "_libatspi"))
    rows = []
    for what, key, scale in (("wall time", "real_time", 1), ("the reader's CPU time", "cpu_time", 1),
                             ("the player's CPU time", "player_ms", 1e-3)):
        times = [[value * scale for value in figures.values(name, key)]
                 for name in (whole, remembered, peer)]
        ratio = figures.ratio(whole, peer, key)
        limit, shown = {"wall time": (1 / 8, "1/8"), "the player's CPU time": (1 / 3, "1/3")}.get(
            what, (None, ""))
        rows.append([what, *map(spread, times), "–" if not ratio else f"1/{1 / ratio:.1f}",
                     *(held(ratio, limit, shown) if limit else ["", ""])])
    text = [table(["walk of 700 elements", "nothing remembered", "all but frames remembered",
                   "libatspi", "first ÷ last", "limit", "holds"], rows)]
    floors = [("the same messages to the same window, answers thrown away", "same_messages_to_the_window", ""),
              ("the same messages to an empty peer: the wire", "same_messages_to_an_empty_peer", "1.15")]
    rows = []
    for what, name, shown in floors:
        ratio = figures.ratio(whole, name, "real_time")
        rows.append([what, spread(figures.values(name, "real_time")), spread(figures.values(name)),
                     spread([value * 1e-3 for value in figures.values(name, "player_ms")]), number(ratio),
                     *(held(ratio, 1.15, shown) if shown else ["", ""])])
    text.append(table(["floors, over a private connection", "wall time", "the asker's CPU time",
                       "the answerer's CPU time", "the walk ÷ this", "limit", "holds"], rows))
    names = [f"read_rows_in_view:{rows}" for rows in (15, 60, 150, 300)]
    floors = [name.replace("read_rows_in_view", "same_places") for name in names]
    text.append(table(["a reading, so many rows in view", "wall time", "the reader's CPU time",
                       "the player's CPU time", "the floor: the same places asked, answers thrown away",
                       "the asker's CPU time"],
                      [[name.rpartition(":")[2], spread(figures.values(name, "real_time")),
                        spread(figures.values(name)),
                        spread([value * 1e-3 for value in figures.values(name, "player_ms")]),
                        spread(figures.values(floor, "real_time")), spread(figures.values(floor))]
                       for name, floor in zip(names, floors)]))
    text.append("![with rows](accessibility_walk-rows.svg)")
    ratio = figures.ratio(names[3], names[1])
    text.append(f"300 rows in view cost the reader {number(ratio)} times what 60 cost "
                f"(limit 1.5; {held(ratio, 1.5, '')[1]}); asking alone costs "
                f"{number(figures.ratio(floors[3], floors[1]))} times.")
    plots = {"rows": ("rows in view", "microseconds", {
        "the reader, CPU": points(figures, names), "the player, CPU": points(figures, names, "player_ms", 1e3)})}
    return text, plots


def points(figures, names, key="cpu_time", scale=1e6):
    """For a plot: the number that ends the name, and microseconds."""
    return [(int(re.search(r"(\d+)$", name)[1]), figures.median(name, key) * scale)
            for name in names if figures.values(name, key)]


def matching(figures, _):
    kinds = [("warm, 60 lines", "lookUpRow/{}/60", 1.5e-6, "1.5 µs"),
             ("warm, 5,000 lines", "lookUpRow/{}/5000", None, ""),
             ("first after a change, 60 lines", "firstLookUpAfterAChange/{}/60", 150e-6, "150 µs in Chinese"),
             ("first after a change, 5,000 lines", "firstLookUpAfterAChange/{}/5000", None, ""),
             ("the row's key alone", "normalizeARow/{}", None, "")]
    rows = []
    for what, pattern, limit, shown in kinds:
        names = [pattern.format(language) for language in range(len(LANGUAGES))]
        medians = [figures.median(name) for name in names]
        judged = medians[3:5] if limit == 150e-6 else medians
        worst = max((value for value in judged if value is not None), default=None)
        rows.append([what, *("–" if value is None else span(value) for value in medians),
                     *(held(worst, limit, shown) if limit else ["", ""])])
    text = [table(["", *LANGUAGES, "limit", "holds"], rows)]
    others = [("the plain search through all 60 lines", "peerPlainSearch/{}/60"),
              ("the index, with the row's key ready", "lookUpReadyKey/{}/60"),
              ("a hash map, with the key ready: the floor", "floorFindReadyKeyInAMap/{}/60")]
    text.append(table(["beside it", "English", "Traditional"],
                      [[what, *(spread(figures.values(pattern.format(at))) for at in (0, 4))]
                       for what, pattern in others]))
    return text, {}


def drawing(figures, _):
    texts = ["English", "Chinese", "Arabic", "emoji"]
    sharp = [[spread(figures.values(f"{name}/{at}")) for at in range(4)]
             for name in ("pangoAlone", "sharpCaption")]
    ratios = [figures.ratio(f"sharpCaption/{at}", f"pangoAlone/{at}") for at in range(4)]
    worst = max((ratio for ratio in ratios if ratio), default=None)
    text = [table(["a sharp caption, scale 1", *texts, "limit", "holds"],
                  [["Pango's layout and show alone", *sharp[0], "", ""], ["the whole caption", *sharp[1], "", ""],
                   ["ratio", *map(number, ratios), *held(worst, 1.5, "1.5")]])]
    rows = []
    kinds = [("of a caption ÷ OpenCV's, one thread", "caption", "caption", 2, 0.5, "0.5 at σ 2.6 and 5.2"),
             ("the same with the plain loops", "captionWithPlainLoops", "caption", 0, 1, "1"),
             ("of noise ÷ OpenCV's, one thread", "noise", "noise", 0, 1, "1")]
    for what, own, peer, first, limit, shown in kinds:
        ratios = [figures.ratio(f"ownBlur/{own}/{sigma}", f"openCvBlur/{peer}/{sigma}")
                  for sigma in (33, 130, 260, 520)]
        worst = max((ratio for ratio in ratios[first:] if ratio), default=None)
        rows.append([what, *map(number, ratios), *held(worst, limit, shown)])
    text.append(table(["blur", "σ 0.33", "σ 1.3", "σ 2.6", "σ 5.2", "limit", "holds"], rows))
    captions = {name: figures.values(f"Redraw/{name}", "caption") for name in ("takenDown", "onBitmap")}
    text.append(table(["a redraw from the cache, per caption, scale 1", ""],
                      [["handed to the panel as it is", spread(captions["takenDown"])],
                       ["blended into a bitmap, as `--render-test` does", spread(captions["onBitmap"])]]))
    return text, {}


def tick(figures, _):
    names = [("a steady tick, a reading in flight", "steadyTickDuringAReading"),
             ("a steady tick, with the status line", "steadyTickWithTheStatusLine"),
             ("the same on this system's own bus and display", "steadyTickOnTheSystem"),
             ("both of its files read and decoded", "readAndDecodeBothFiles"),
             ("a snapshot of 60 other lines, on the main thread", "snapshotOfOtherLines/60"),
             ("a snapshot of 100,000 other lines (12 MiB), on the main thread", "snapshotOfOtherLines/100000")]
    return [table(["", "CPU time"], [[what, spread(figures.values(name))] for what, name in names])], {}


def growth(figures, _):
    lines, rows, scales = (60, 600, 5000, 50000), (15, 60, 150, 300), (1, 2, 3)
    kinds = {"decode a snapshot": "decodeLines", "RapidJSON decodes it": "peerRapidJson",
             "nlohmann/json parses it": "floorNlohmannJson", "index, English": "indexLines/English",
             "index, Traditional": "indexLines/Traditional", "look a row up, English": "lookUpAmongLines/English",
             "look a row up, Traditional": "lookUpAmongLines/Traditional"}
    text = [table(["", *(f"{count:,} lines" for count in lines)],
                  [[what, *(spread(figures.values(f"{name}/{count}")) for count in lines)]
                   for what, name in kinds.items()]), "![with lines](growth-lines.svg)"]
    ratio = figures.ratio("decodeLines/60", "peerRapidJson/60")
    text.append(f"60 lines are decoded in {number(ratio)} times RapidJSON's time "
                f"(limit 1.3; {held(ratio, 1.3, '')[1]}).")
    text += [table(["", *(f"{count} rows" for count in rows)],
                   [["compose a reading", *(spread(figures.values(f"composeRows/{count}")) for count in rows)]]),
             "![with rows](growth-rows.svg)"]
    painting = {"paint a sharp caption": "paintAtScale", "blur it": "blurAtScale"}
    text += [table(["", *(f"scale {scale}" for scale in scales)],
                   [[what, *(spread(figures.values(f"{name}/{scale}")) for scale in scales)]
                    for what, name in painting.items()]), "![with the scale](growth-scale.svg)"]

    def series(named, counts):
        return {what: points(figures, [f"{name}/{count}" for count in counts]) for what, name in named.items()}
    return text, {"lines": ("lines in the snapshot", "microseconds", series(kinds, lines)),
                  "rows": ("rows in view", "microseconds", series({"compose a reading": "composeRows"}, rows)),
                  "scale": ("scale", "microseconds", series(painting, scales))}


def every_benchmark(figures, _):
    """For those without tables of their own."""
    return [table(["benchmark", "CPU time"],
                  [[f"`{name}`", spread(figures.values(name))] for name in sorted(figures.runs)])], {}


def snapshot(figures, result):
    text, _ = every_benchmark(figures, result)
    for count, limit in ((60, 0.2), (50000, 0.2)):
        ratio = figures.ratio(f"decodeAfterAnotherTime/{count}", f"decodeWhole/{count}")
        text.append(f"{count:,} lines beside another time cost {number(ratio)} of decoding them whole "
                    f"(limit {limit}; {held(ratio, limit, '')[1]}).")
    return text, {}


def start(_, result):
    times = result["figures"]
    rows = []
    for what, at, limit in (("to the mapped window", 0, 0.035), ("to the first picture in it", 1, 0.05)):
        own, peer, least = ([pair[at] / 1e3 for pair in times[name]] for name in ("Vellora", "conky", "Least"))
        rows.append([what, spread(own), spread(peer), spread(least),
                     *held(statistics.median(own), limit, span(limit))])
    return [table(["wall time from the start", "Vellora", "conky", "the floor: three lines through Pango",
                   "limit", "holds"], rows)], {}


def printed(_, result):
    return ["```\n" + result["output"].rstrip() + "\n```"], {}


def whole_system(_, result):
    return [system_table.table(result["figures"])], {}


MAKERS = {"accessibility_walk": walk, "matching": matching, "drawing": drawing, "tick": tick, "growth": growth,
          "snapshot": snapshot, "start": start, "system": whole_system}


def plot(path, across, up, series):
    """Both axes logarithmic, so that a straight line is growth by a power; gnuplot draws it."""
    blocks = "".join(f"$d{i} << END\n" + "".join(f"{x} {y:.4g}\n" for x, y in values) + "END\n"
                     for i, values in enumerate(series.values()))
    ticks = sorted({x for values in series.values() for x, _ in values})
    drawn = ", ".join(f'$d{i} with linespoints pointtype 7 pointsize 0.6 linewidth 2 title "{name}"'
                      for i, name in enumerate(series))
    script = (f'{blocks}set terminal svg size 640,360 font "sans-serif,12" background "white"\n'
              f'set output "{path}"\nset logscale xy\nset xlabel "{across}"\nset ylabel "{up}"\n'
              f'set xtics ({", ".join(map(str, ticks))})\nset key outside right top\nset grid\nset format y "%g"\nplot {drawn}\n')
    subprocess.run(["gnuplot"], input=script, text=True, check=True)


def heading(result):
    name = result["name"]
    how = f"bench/run{' --quick' if result['quick'] else ''} {name}"
    lines = [f"# {TITLES.get(name, name)}", "<!-- Written by bench/run: what is changed here is lost. -->",
             f"`{how}`, {result['date']}. {result['machine']}. "
             f"{'Medians; in brackets the least and the most. ' if result['figures'] else ''}Other work on the machine meanwhile: about {result['elsewhere']:.0f} % of one processor."]
    if result["elsewhere"] > BUSY:
        lines.append("**The machine was busy.** These figures show that the benchmark runs, not what anything "
                     "costs.")
    if result["failed"]:
        lines.append(f"**It failed** ({result['failed']}); what is here is what came before that.")
    return lines


def write(result, folder):
    """The page of one benchmark, NAME.md, and its plots, NAME-WHAT.svg."""
    name = result["name"]
    maker = printed
    if result["figures"]:
        maker = MAKERS.get(name, every_benchmark)
    figures = Figures(result["figures"]) if result["figures"] and "benchmarks" in result["figures"] else None
    text, plots = maker(figures, result)
    (folder / f"{name}.md").write_text("\n\n".join([*heading(result), *text]) + "\n", encoding="utf-8")
    for what, (across, up, series) in plots.items():
        kept = {title: values for title, values in series.items() if values}
        if kept:
            plot(folder / f"{name}-{what}.svg", across, up, kept)
    write_index(folder)


def write_index(folder):
    pages = sorted(path for path in folder.glob("*.md") if path.name != "README.md")
    lines = [f"- [{path.read_text(encoding='utf-8').splitlines()[0].lstrip('# ')}]({path.name}): "
             f"`bench/run {path.stem}`" for path in pages]
    (folder / "README.md").write_text(
        "# What bench/run measured\n\n<!-- Written by bench/run: what is changed here is lost. -->\n\n"
        "[performance.md](../performance.md) says what the pages mean and what each is held to.\n\n"
        + "\n".join(lines) + "\n", encoding="utf-8")
