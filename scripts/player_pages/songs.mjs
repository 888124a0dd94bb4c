// Writes a folder of songs (demo/songs/README.md) as a script for the pages: songs.mjs FOLDER > songs.js
import {readdirSync, readFileSync} from "node:fs";

const folder = process.argv[2];
const seconds = (stamp) => stamp.split(":").reduce((sum, part) => sum * 60 + Number(part), 0);

function read(text) {
  const tag = (name) => text.match(new RegExp(`^\\[${name}:(.*)\\]$`, "m"))?.[1] ?? "";
  const lines = [...text.matchAll(/^\[(\d+:[\d.]+)\](.*)$/gm)];
  return {
    title: tag("ti"), artist: tag("ar"), album: tag("al"), language: tag("la"),
    length: seconds(tag("length")), lines: lines.map((line) => ({at: seconds(line[1]), text: line[2]})),
  };
}

const names = readdirSync(folder, {withFileTypes: true}).filter((entry) => entry.isDirectory());
const songs = names.map((entry) => entry.name).sort()
    .map((name) => read(readFileSync(`${folder}/${name}/lyrics.lrc`, "utf8")));
console.log("const songs = " + JSON.stringify(songs, null, 1) + ";");
