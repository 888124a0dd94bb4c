// A music player as a page: it plays silence as long as a song, shows the song's lines, and tells the
// browser's media session what plays. The page itself says how its rows are made, by a global object:
//
//   rows.view      the element that scrolls
//   rows.fill(song)          shows the lines of a song
//   rows.mark(index)         lets this line be the current one
//   rows.top(index)          where the line begins below the view's top, in CSS pixels
//   rows.moved()             optional: the view was scrolled
//
// The address may ask for ?song=NUMBER (1 is the first), at=SECONDS and paused.

const asked = new URLSearchParams(location.search);
const audio = document.createElement("audio");
let current = -1;  // of songs
let line = -1;     // of the song

// A sound file of so many seconds: 8-bit samples, 8000 a second, of a tone too quiet to hear.
function quietSound(seconds) {
  const count = Math.round(seconds * 8000);
  const bytes = new Uint8Array(44 + count);
  const view = new DataView(bytes.buffer);
  const put = (at, text) => [...text].forEach((c, i) => view.setUint8(at + i, c.charCodeAt(0)));
  put(0, "RIFF");
  view.setUint32(4, 36 + count, true);
  put(8, "WAVEfmt ");
  view.setUint32(16, 16, true);
  view.setUint16(20, 1, true);
  view.setUint16(22, 1, true);
  view.setUint32(24, 8000, true);
  view.setUint32(28, 8000, true);
  view.setUint16(32, 1, true);
  view.setUint16(34, 8, true);
  put(36, "data");
  view.setUint32(40, count, true);
  for (let i = 0; i < count; ++i) bytes[44 + i] = 128 + (i >> 3) % 2;
  return URL.createObjectURL(new Blob([bytes], {type: "audio/wav"}));
}

function show(index) {
  current = (index + songs.length) % songs.length;
  line = -1;
  const song = songs[current];
  document.title = song.title + " · Page player";
  document.getElementById("title").textContent = song.title;
  document.getElementById("artist").textContent = song.artist;
  document.documentElement.lang = song.language;
  URL.revokeObjectURL(audio.src);
  audio.src = quietSound(song.length);
  rows.fill(song);
  navigator.mediaSession.metadata =
      new MediaMetadata({title: song.title, artist: song.artist, album: song.album});
  follow();
}

function change(step) {
  show(current + step);
  audio.play();
}

// The current line is marked and scrolled to a third of the view's height.
function follow() {
  const now = audio.currentTime;
  const next = songs[current].lines.findIndex((each) => each.at > now);
  const index = Math.max(0, (next < 0 ? songs[current].lines.length : next) - 1);
  if (index === line) return;
  line = index;
  rows.mark(index);
  rows.view.scrollTop = rows.top(index) - rows.view.clientHeight * 0.3;
  if (rows.moved) rows.moved();
}

async function begin() {
  const control = (name, what) => document.getElementById(name).addEventListener("click", what);
  const toggle = () => audio.paused ? audio.play() : audio.pause();
  control("previous", () => change(-1));
  control("toggle", toggle);
  control("next", () => change(1));
  const session = navigator.mediaSession;
  session.setActionHandler("play", () => audio.play());
  session.setActionHandler("pause", () => audio.pause());
  session.setActionHandler("nexttrack", () => change(1));
  session.setActionHandler("previoustrack", () => change(-1));
  session.setActionHandler("seekto", (to) => { audio.currentTime = to.seekTime; });
  audio.addEventListener("timeupdate", follow);
  audio.addEventListener("seeked", follow);
  audio.addEventListener("ended", () => change(1));
  for (const event of ["play", "pause", "seeked", "durationchange"]) {
    audio.addEventListener(event, () => {
      session.playbackState = audio.paused ? "paused" : "playing";
      if (!(audio.duration > 0)) return;
      session.setPositionState(
          {duration: audio.duration, position: audio.currentTime, playbackRate: 1});
    });
  }
  show(Number(asked.get("song") || 1) - 1);
  audio.currentTime = Number(asked.get("at") || 0);
  if (asked.has("silent")) return;
  await audio.play();
  if (!asked.has("paused")) return;
  // A browser tells of a page's player only once something has been heard of it.
  const from = audio.currentTime;
  const pauseSoon = () => {
    if (audio.currentTime < from + 1) return;
    audio.removeEventListener("timeupdate", pauseSoon);
    audio.pause();
    audio.currentTime = from;
  };
  audio.addEventListener("timeupdate", pauseSoon);
}

window.addEventListener("load", begin);
