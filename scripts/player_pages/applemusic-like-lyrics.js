// The component "Apple Music-like Lyrics", with the songs' words one by one.
import {DomLyricPlayer} from "@applemusic-like-lyrics/core";
import "@applemusic-like-lyrics/core/style.css";

const player = new DomLyricPlayer();
document.getElementById("here").append(player.getElement());

function timed(line, end) {
  const words = line.text.split(/(?<= )/);
  const length = (end - line.at) * 1000 / words.length;
  const wordAt = (i) => Math.round(line.at * 1000 + i * length);
  return {
    words: words.map((word, i) => ({word, startTime: wordAt(i), endTime: wordAt(i + 1)})),
    translatedLyric: "", romanLyric: "", isBG: false, isDuet: false,
    startTime: wordAt(0), endTime: wordAt(words.length),
  };
}

window.rows = {
  view: document.getElementById("here"),
  fill(song) {
    const end = (i) => i + 1 < song.lines.length ? song.lines[i + 1].at : song.length;
    player.setLyricLines(song.lines.map((line, i) => timed(line, end(i))));
  },
  mark() { player.setCurrentTime(Math.round(audio.currentTime * 1000), true); },
  top() { return 0; },
};

let last = performance.now();
function draw(now) {
  player.setCurrentTime(Math.round(audio.currentTime * 1000));
  player.update(Math.max(0, now - last));
  last = now;
  requestAnimationFrame(draw);
}
requestAnimationFrame(draw);
