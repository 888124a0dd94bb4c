#!/usr/bin/env python3
"""A companion for Vellora in as few lines as it takes; docs/exchange.md explains the files.

usage: minimal_companion.py FOLDER TITLE ARTIST LINES [--play]

FOLDER is the exchange folder, made if it is missing. LINES is a text file with a lyric line, a tab
and its translation in each line. While TITLE by ARTIST plays, the overlay gets these translations;
--play asks the player for the song first. Ends with Control-C.
"""
import json
import os
import signal
import sys
import time


def write(folder, name, record):
    """Replaces the file in one step: the overlay never sees half of it."""
    temporary = os.path.join(folder, f".{name}.{os.getpid()}")
    with open(temporary, "w", encoding="utf-8") as file:
        json.dump(record, file, ensure_ascii=False)
    os.replace(temporary, os.path.join(folder, name))


def read(folder, name):
    """The record, or an empty one where there is no file that can be read."""
    try:
        with open(os.path.join(folder, name), encoding="utf-8") as file:
            record = json.load(file)
        return record if isinstance(record, dict) else {}
    except (OSError, ValueError):
        return {}


def plays(track, title, artist):
    now = time.time()
    fresh = now - track.get("updatedAt", 0) < 8 and track.get("updatedAt", 0) - 1 <= now
    return (track.get("version") == 1 and fresh and track.get("title", "").lower() == title.lower()
            and track.get("artist", "").lower() == artist.lower())


def main():
    if len(sys.argv) < 5:
        sys.exit(__doc__.strip())
    folder, title, artist, path = sys.argv[1:5]
    with open(path, encoding="utf-8") as file:
        pairs = [line.rstrip("\n").split("\t") for line in file if line.count("\t") == 1]
    lines = [{"source": source, "translation": translation} for source, translation in pairs]
    os.makedirs(folder, exist_ok=True)
    signal.signal(signal.SIGTERM, signal.default_int_handler)

    def snapshot(enabled):
        return {"version": 1, "updatedAt": time.time(), "enabled": enabled, "musicTitle": title,
                "musicArtist": artist, "fontSize": 26, "verticalOffset": 0, "lines": lines}

    if "--play" in sys.argv[5:]:
        write(folder, "command.json", {"requestedAt": time.time(), "action": "play", "title": title,
                                       "artist": artist, "position": 0})
    said = None
    try:
        while True:
            write(folder, "sync.json", {"updatedAt": time.time()})  # counts for 25 seconds
            write(folder, "snapshot.json",  # counts for 6 seconds
                  snapshot(plays(read(folder, "nowplaying.json"), title, artist)))
            message = read(folder, "status.json").get("message")
            if message != said:
                print(message or "Vellora is not there", flush=True)
                said = message
            time.sleep(1)
    except KeyboardInterrupt:
        write(folder, "snapshot.json", snapshot(False))
        os.remove(os.path.join(folder, "sync.json"))


if __name__ == "__main__":
    main()
