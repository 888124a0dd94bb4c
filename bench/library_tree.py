#!/usr/bin/env python3
"""Makes a collection of 50,000 files, 10,000 of them songs: 1,000 albums of 10 songs, each song with
its lyrics, their translation, a sound file, a picture and a note that is none of them. With --tagged:
10,000 sound files that have all in their tags, FLAC and MP3 in turn.

    bench/library_tree.py [--tagged] FOLDER
"""
import os
import struct
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


def flac(tags):
    """A FLAC file (RFC 9639) of no sound with these Vorbis comments."""
    information = struct.pack(">HH6xQ16x", 4096, 4096, 44100 << 44 | 1 << 41 | 15 << 36)
    comments = [f"{key}={value}".encode() for key, value in tags.items()]
    block = struct.pack("<II", 0, len(comments))
    block += b"".join(struct.pack("<I", len(comment)) + comment for comment in comments)
    return (b"fLaC" + struct.pack(">I", len(information)) + information +
            struct.pack(">I", 0x84 << 24 | len(block)) + block)


def mp3(tags):
    """An ID3v2.4 tag and some frames of MPEG 1, layer 3."""
    def size(number):
        return bytes(number >> shift & 0x7F for shift in (21, 14, 7, 0))

    def frame(name, content):
        return name + size(len(content)) + b"\0\0" + content

    frames = b"".join(frame(name, b"\3" + tags[key].encode()) for name, key in (
        (b"TIT2", "TITLE"), (b"TPE1", "ARTIST"), (b"TALB", "ALBUM")))
    frames += frame(b"USLT", b"\3eng\0" + tags["LYRICS"].encode())
    return (b"ID3\4\0\0" + size(len(frames)) + frames +
            3 * (b"\xff\xfb\x90\x64" + bytes(413)))


def tagged(folder):
    for album in range(1000):
        artist = f"Artist {album // 5}"
        place = os.path.join(folder, artist, f"Album {album}")
        os.makedirs(place)
        for song in range(1, 11):
            title = f"Title {album} {song}"
            tags = {"TITLE": title, "ARTIST": artist, "ALBUM": f"Album {album}",
                    "LYRICS": lyrics(title, artist, "Line")}
            ending, write = ((".flac", flac), (".mp3", mp3))[song % 2]
            with open(os.path.join(place, f"{song:02}{ending}"), "wb") as file:
                file.write(write(tags))


if __name__ == "__main__":
    if sys.argv[1:2] == ["--tagged"] and len(sys.argv) == 3:
        tagged(sys.argv[2])
    elif len(sys.argv) == 2 and not sys.argv[1].startswith("-"):
        main(sys.argv[1])
    else:
        sys.exit(__doc__)
