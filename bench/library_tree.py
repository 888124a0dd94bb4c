#!/usr/bin/env python3
"""Makes a collection of 50,000 files, 10,000 of them songs: 1,000 albums of 10 songs, each song with
its lyrics, their translation, a sound file, a picture and a note that is none of them.

    bench/library_tree.py FOLDER
"""
import os
import sys

LINES = 40


def lyrics(title, artist, word):
    text = f"[ti:{title}]\n[ar:{artist}]\n"
    for line in range(LINES):
        text += f"[{line * 4 // 60:02}:{line * 4 % 60:02}.50]{word} {line} of {title}, as it is sung\n"
    return text


def main(folder):
    for album in range(1000):
        artist = f"Artist {album // 5}"
        place = os.path.join(folder, artist, f"Album {album}")
        os.makedirs(place)
        for song in range(1, 11):
            stem = os.path.join(place, f"{song:02} - Title {album} {song}")
            title = f"Title {album} {song}"
            with open(stem + ".lrc", "w") as file:
                file.write(lyrics(title, artist, "Line"))
            with open(stem + ".de.lrc", "w") as file:
                file.write(lyrics(title, artist, "Zeile"))
            for ending in ".wav", ".jpg", ".nfo":
                open(stem + ending, "w").close()


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    main(sys.argv[1])
