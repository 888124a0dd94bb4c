#!/usr/bin/env python3
"""Keeps a snapshot fresh as a companion does, with more lines than any song has.

  bench/longer_snapshot.py EXCHANGE_FOLDER LINES

Takes the lines that stand in the folder's snapshot, whose companion must have ended, adds others up
to LINES, and writes them with another time every 1.5 s until it is stopped.
"""
import json
import os
import pathlib
import sys
import time

INTERVAL = 1.5  # seconds


def main(folder, lines):
    path = pathlib.Path(folder) / "snapshot.json"
    snapshot = json.loads(path.read_text(encoding="utf-8"))
    snapshot["lines"] += [{"source": f"A line of verse {number} that nobody sings in this song",
                           "translation": f"Eine Zeile der Strophe {number}, die hier niemand singt"}
                          for number in range(lines - len(snapshot["lines"]))]
    new = path.with_name(".longer-snapshot.json")
    while True:
        snapshot["updatedAt"] = time.time()
        new.write_text(json.dumps(snapshot, ensure_ascii=False, separators=(",", ":")), encoding="utf-8")
        os.replace(new, path)
        time.sleep(INTERVAL)


main(sys.argv[1], int(sys.argv[2]))
